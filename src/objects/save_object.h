#pragma once

#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/databases.h"

namespace vorn {

/// What is said where an object of a type has no name.
QString NoNameText(const QString& type);

/// Whether a confirmed object may be saved; not when its name is missing or another loaded object
/// bears it.
Result<> ValidateObject(const DiskCollection& objects, const Disk& object);

/// Saves an object whole in one transaction, its time of change set to now, and keeps the rule that
/// only the logged-in profile is the default one. When it fails, the stored object is as it
/// was.
Result<> SaveObject(Context& context, DatabaseKind kind, Disk& object);

/// Changes an object of the profile, made when there is none, and saves it. When that fails, the
/// loaded object is as it was, too.
Result<> ChangeObject(Context& context, const SerialId& serialId,
                      const std::function<void(Disk&)>& change);

/// Has `SaveMarkedObjects` save the object, now and ever after.
void MarkForSaving(Disk& object);
/// Saves every loaded object that is marked into the profile's database, in one transaction.
Result<> SaveMarkedObjects(Context& context);

/// Deletes an object of the profile, if there is one. Where that fails it is deleted no sooner than
/// somebody tries again: it is only not loaded any more.
void ForgetObject(Context& context, const SerialId& serialId);

}  // namespace vorn
