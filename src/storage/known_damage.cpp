#include "storage/known_damage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

#include "storage/profile_bag.h"
#include "storage/time_text.h"
#include "storage/ui.h"
#include "storage/whole_file.h"

namespace vorn {
namespace {

const QString kEnding = QStringLiteral(".damaged");
const QString kDecided = QStringLiteral("decided");
const QString kUndecided = QStringLiteral("undecided");

// Lines: whether the user has decided, since when it is known, and what is damaged. Nothing when
// there is a note that cannot be read.
std::optional<KnownDamage> Read(const QString& file) {
  KnownDamage damage;
  damage.file = QFileInfo(file).fileName();
  QFile note(file + kEnding);
  if (!note.exists()) return damage;
  if (!note.open(QIODevice::ReadOnly)) return std::nullopt;
  const QStringList lines = QString::fromUtf8(note.readAll()).split(u'\n');
  if (lines.size() < 3 || note.error() != QFileDevice::NoError) return std::nullopt;
  damage.decided = lines[0] == kDecided;
  damage.since = lines[1];
  damage.parts = lines.mid(2);
  return damage;
}

bool Write(const QString& file, const KnownDamage& damage) {
  QSaveFile note(file + kEnding);
  if (!note.open(QIODevice::WriteOnly)) return false;
  note.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
  const QStringList lines =
      QStringList{damage.decided ? kDecided : kUndecided, damage.since} + damage.parts;
  note.write(lines.join(u'\n').toUtf8());
  return FinishFile(note);
}

bool Add(const QString& file, const QSet<QString>& parts) {
  std::optional<KnownDamage> damage = Read(file);
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
  return Write(file, *damage);
}

}  // namespace

bool NoteDamage(const QString& path, const QString& part) {
  return Add(path, {part});
}

bool KeepDamage(Context& context) {
  bool kept = true;
  const QHash<QString, QSet<QString>> found = context.Data.Damage().Take();
  for (auto file = found.begin(); file != found.end(); ++file) {
    if (Add(file.key(), file.value())) continue;
    context.Data.Damage().Add(file.key(), file.value());
    kept = false;
  }
  return kept;
}

std::optional<KnownDamage> FindDamage(Context& context, const QString& file) {
  return KeepDamage(context) ? Read(file) : std::nullopt;
}

bool IsKnownDamaged(Context& context, const QString& file) {
  const std::optional<KnownDamage> damage = FindDamage(context, file);
  return !damage || damage->WaitsForDecision();
}

bool IsKnownBroken(Context& context, const QString& file) {
  const std::optional<KnownDamage> damage = FindDamage(context, file);
  return !damage || (damage->WaitsForDecision() &&
                     (damage->parts.contains(kDamagedFile) || damage->parts.contains(kDamagedLog)));
}

QString FirstDamaged(Context& context, const QStringList& files) {
  for (const QString& file : files) {
    if (IsKnownDamaged(context, file)) return file;
  }
  return {};
}

QList<KnownDamage> UndecidedDamage(Context& context) {
  KeepDamage(context);
  QList<KnownDamage> undecided;
  const QDir folder = QFileInfo(PlatformPath(context, ProfileBag(*context.Session).File())).dir();
  for (const QString& note : folder.entryList({u'*' + kEnding}, QDir::Files)) {
    const std::optional<KnownDamage> damage = Read(folder.filePath(note.chopped(kEnding.size())));
    if (damage && damage->WaitsForDecision()) undecided.append(*damage);
  }
  return undecided;
}

bool AcceptDamage(Context& context, const QString& file) {
  std::optional<KnownDamage> damage = FindDamage(context, file);
  if (!damage) return false;
  damage->decided = true;
  return damage->parts.isEmpty() || Write(file, *damage);
}

bool IsNoted(const QString& file, const QString& part) {
  const std::optional<KnownDamage> damage = Read(file);
  return damage && damage->WaitsForDecision() && damage->parts.contains(part);
}

bool ForgetDamage(const QString& file, const QString& part) {
  std::optional<KnownDamage> damage = Read(file);
  if (!damage) return false;
  damage->parts.removeAll(part);
  return damage->parts.isEmpty() ? ForgetDamage(file) : Write(file, *damage);
}

QString DamageWords(const KnownDamage& damage) {
  if (damage.parts != QStringList{kOlderFile}) {
    return Ui::tr("データベースファイル「%1」が壊れています。").arg(damage.file);
  }
  return Ui::tr(
             "データベースファイル「%1」は、前に使ったときより古い状態です（古い複製か、"
             "記録ファイルが失われています）。送信待ちのメッセージは、送信済みかどうかを"
             "確かめてください。")
      .arg(damage.file);
}

bool ForgetDamage(const QString& file) {
  return !QFile::exists(file + kEnding) || QFile::remove(file + kEnding);
}

}  // namespace vorn
