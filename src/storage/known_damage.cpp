#include "storage/known_damage.h"

#include <QDir>
#include <QFileInfo>
#include <tuple>

#include "storage/bags/profile_bag.h"
#include "storage/files/found_damage.h"
#include "storage/ui.h"

namespace vorn {

bool KeepDamage(Context& context) {
  bool kept = true;
  const QHash<QString, QSet<QString>> found = context.Data.Damage().Take();
  for (auto file = found.begin(); file != found.end(); ++file) {
    if (NoteDamage(file.key(), file.value())) continue;
    context.Data.Damage().Add(file.key(), file.value());
    kept = false;
  }
  return kept;
}

std::optional<KnownDamage> FindDamage(Context& context, const QString& file) {
  return KeepDamage(context) ? ReadDamage(file) : std::nullopt;
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
  std::ignore = KeepDamage(context);  // else it is still to be kept
  QList<KnownDamage> undecided;
  const QDir folder = QFileInfo(PlatformPath(context, ProfileBag(*context.Session).File())).dir();
  for (const QString& note : folder.entryList({u'*' + kDamageEnding}, QDir::Files)) {
    const std::optional<KnownDamage> damage =
        ReadDamage(folder.filePath(note.chopped(kDamageEnding.size())));
    if (damage && damage->WaitsForDecision()) undecided.append(*damage);
  }
  return undecided;
}

bool AcceptDamage(Context& context, const QString& file) {
  std::optional<KnownDamage> damage = FindDamage(context, file);
  if (!damage) return false;
  damage->decided = true;
  return damage->parts.isEmpty() || WriteDamage(file, *damage);
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

}  // namespace vorn
