#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "storage/context.h"
#include "storage/files/damage_note.h"

namespace vorn {

/// Keeps what reading has shown to be damaged since the last call (`FoundDamage`).
/// False when it cannot be kept; it is then still to be kept.
[[nodiscard]] bool KeepDamage(Context& context);

/// What is known of a file, given by its path; without parts when nothing is. Nothing when that
/// cannot be found out.
std::optional<KnownDamage> FindDamage(Context& context, const QString& file);

/// Whether a file, given by its path, is known to be damaged and the user has not decided. True as
/// well when that cannot be found out.
bool IsKnownDamaged(Context& context, const QString& file);

/// Whether what a file says of its messages cannot be trusted: more than the sources of some of
/// them is known to be damaged, and the user has not decided. True as well when that cannot be
/// found out.
bool IsKnownBroken(Context& context, const QString& file);

/// The first of the files that is known to be damaged and of which the user has not decided; empty
/// when there is none.
QString FirstDamaged(Context& context, const QStringList& files);

/// What waits for the user's decision.
QList<KnownDamage> UndecidedDamage(Context& context);

/// The user's decision: to work with the file all the same. False when it cannot be kept.
[[nodiscard]] bool AcceptDamage(Context& context, const QString& file);

/// What is wrong with a file, as a sentence for the user.
QString DamageWords(const KnownDamage& damage);

}  // namespace vorn
