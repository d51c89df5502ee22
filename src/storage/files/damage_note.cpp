#include "storage/files/damage_note.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

#include "storage/base/time_text.h"
#include "storage/files/found_damage.h"
#include "storage/files/whole_file.h"

namespace vorn {
namespace {

const QString kDecided = QStringLiteral("decided");
const QString kUndecided = QStringLiteral("undecided");

}  // namespace

// Lines: whether the user has decided, since when it is known, and what is damaged. Nothing when
// there is a note that cannot be read.
std::optional<KnownDamage> ReadDamage(const QString& path) {
  KnownDamage damage;
  damage.file = QFileInfo(path).fileName();
  QFile note(path + kDamageEnding);
  if (!note.exists()) return damage;
  if (!note.open(QIODevice::ReadOnly)) return std::nullopt;
  const QStringList lines = QString::fromUtf8(note.readAll()).split(u'\n');
  if (lines.size() < 3 || note.error() != QFileDevice::NoError) return std::nullopt;
  damage.decided = lines[0] == kDecided;
  damage.since = lines[1];
  damage.parts = lines.mid(2);
  return damage;
}

bool WriteDamage(const QString& path, const KnownDamage& damage) {
  QSaveFile note(path + kDamageEnding);
  if (!note.open(QIODevice::WriteOnly)) return false;
  note.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
  const QStringList lines =
      QStringList{damage.decided ? kDecided : kUndecided, damage.since} + damage.parts;
  note.write(lines.join(u'\n').toUtf8());
  return FinishFile(note);
}

bool NoteDamage(const QString& path, const QSet<QString>& parts) {
  std::optional<KnownDamage> damage = ReadDamage(path);
  if (!damage) damage.emplace();
  const bool isKnown = std::all_of(parts.begin(), parts.end(), [&damage](const QString& part) {
    return damage->parts.contains(part);
  });
  if (isKnown) return true;
  // Who decided on the file as a whole decided on what stands in it.
  const bool isDecided = damage->decided && damage->parts.contains(kDamagedFile) &&
                         std::all_of(parts.begin(), parts.end(), [&damage](const QString& part) {
                           return part.startsWith(kDamagedSource) || damage->parts.contains(part);
                         });
  if (damage->since.isEmpty()) damage->since = CurrentTimeText();
  damage->parts += QStringList(parts.begin(), parts.end());
  damage->parts.removeDuplicates();
  damage->decided = isDecided;
  return WriteDamage(path, *damage);
}

bool ForgetDamage(const QString& path) {
  return !QFile::exists(path + kDamageEnding) || QFile::remove(path + kDamageEnding);
}

bool IsNoted(const QString& path, const QString& part) {
  const std::optional<KnownDamage> damage = ReadDamage(path);
  return damage && damage->WaitsForDecision() && damage->parts.contains(part);
}

bool ForgetDamage(const QString& path, const QString& part) {
  std::optional<KnownDamage> damage = ReadDamage(path);
  if (!damage) return false;
  damage->parts.removeAll(part);
  return damage->parts.isEmpty() ? ForgetDamage(path) : WriteDamage(path, *damage);
}

}  // namespace vorn
