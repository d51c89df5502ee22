#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

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

/// What the names of those files have behind that of the file they are about.
inline const QString kDamageEnding = QStringLiteral(".damaged");

// Notes by the path of the file that they are about.

/// What is noted; without parts when nothing is. Nothing when the note cannot be read.
std::optional<KnownDamage> ReadDamage(const QString& path);
/// Writes the note. False when it cannot be kept.
[[nodiscard]] bool WriteDamage(const QString& path, const KnownDamage& damage);

/// Keeps that parts of the file are damaged. Whatever is new takes an earlier decision back, but a
/// source where the user decided on the whole file. False when it cannot be kept.
[[nodiscard]] bool NoteDamage(const QString& path, const QSet<QString>& parts);

/// Forgets what was known of a file that has been found sound. False when that cannot be kept.
[[nodiscard]] bool ForgetDamage(const QString& path);
/// The same for what is called `part`. False when that cannot be kept.
[[nodiscard]] bool ForgetDamage(const QString& path, const QString& part);

/// Whether a part was kept as damaged before, and the user has not decided.
bool IsNoted(const QString& path, const QString& part);

}  // namespace vorn
