#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "storage/context.h"

namespace vorn {

/// What is known of a damaged file, kept in a small file beside it: the database that it would
/// belong in may be the damaged one. A mail file that is known to be damaged receives nothing, and
/// nothing is deleted on a server, until the user decides.
struct KnownDamage {
  QString file;       ///< the file's name in the profile's folder
  QString since;      ///< when it was first noticed, as stored
  QStringList parts;  ///< what is damaged (see `FoundDamage`)
  bool decided = false;

  bool WaitsForDecision() const { return !parts.isEmpty() && !decided; }
};

/// Keeps that a part of the file at `path` is damaged. Whatever is new takes an earlier decision
/// back, but a source where the user decided on the whole file. False when it cannot be kept.
bool NoteDamage(const QString& path, const QString& part);

/// Keeps what reading has shown to be damaged since the last call (`FoundDamage`).
/// False when it cannot be kept; it is then still to be kept.
bool KeepDamage(Context& context);

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
bool AcceptDamage(Context& context, const QString& file);

/// Forgets what was known of a file that has been found sound. False when that cannot be kept.
bool ForgetDamage(const QString& file);
/// The same for what is called `part`. False when that cannot be kept.
bool ForgetDamage(const QString& file, const QString& part);

/// Whether a part was kept as damaged before, and the user has not decided.
bool IsNoted(const QString& file, const QString& part);

/// What is wrong with a file, as a sentence for the user.
QString DamageWords(const KnownDamage& damage);

}  // namespace vorn
