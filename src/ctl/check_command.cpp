#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "objects/profile/profile.h"
#include "storage/bags/profile_bag.h"
#include "storage/base/shown_text.h"
#include "storage/keys/file_key.h"
#include "storage/known_damage.h"
#include "storage/session/file_check.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

QJsonObject Describe(const QString& file, const FileFindings& findings) {
  return {{QStringLiteral("file"), file},
          {QStringLiteral("problems"), QJsonArray::fromStringList(findings.problems)},
          {QStringLiteral("unreadable"), ToJson(findings.unreadable)}};
}

void Report(const QString& path, const FileFindings& findings, bool asJson) {
  const QString name = QDir::toNativeSeparators(path);
  if (asJson) {
    Print(
        QString::fromUtf8(QJsonDocument(Describe(name, findings)).toJson(QJsonDocument::Compact)));
    return;
  }
  Print(name + QStringLiteral(": ") +
        (findings.IsSound() ? Ui::tr("正常です。") : findings.problems.join(u' ')));
  for (const UnreadableMessage& message : findings.unreadable) {
    Print(Ui::tr("  読み込めません: ") + ShownInLine(message.Name()));
  }
}

// A log that was damaged when an earlier command met it, and an older copy, have left no trace
// since.
void AddWhatIsKnown(Context& context, const QString& path, FileFindings& findings) {
  const std::optional<KnownDamage> known = FindDamage(context, path);
  if (!known || known->decided) return;
  if (known->parts.contains(QStringLiteral("log"))) findings.AddLostLog();
  if (known->parts.contains(kOlderFile)) findings.AddOlderFile();
}

// What is known of the file's damage follows what was found. False when that cannot be kept.
bool Remember(Context& context, const QString& path, const FileFindings& findings, bool accept) {
  if (findings.IsSound()) return ForgetDamage(path);
  return KeepDamage(context) && (!accept || AcceptDamage(context, path));
}

}  // namespace

int CheckFiles(Context& context, const Arguments& arguments) {
  struct File {
    QString path;
    QString password;
    FileContents contents;
  };
  QList<File> files{
      {context.NaviDatabasePath, FileKey::Unguessable(context.SecurityKey), FileContents::Objects}};
  FileContents contents = FileContents::Objects;  // the profile's own database comes first
  for (const QString& path : ProfileFiles(context, *context.Session)) {
    files.append({path, ProfileBag(*context.Session).Password(), contents});
    contents = FileContents::Messages;
  }
  const bool accept = arguments.Has(QStringLiteral("accept-damage"));
  bool sound = true;
  bool remembered = true;
  for (const File& file : files) {
    FoundDamage& damage = context.Data.Damage();
    FileFindings findings =
        CheckDatabaseFile(file.path, file.password, file.contents, damage.TakeOf(file.path));
    damage.Add(file.path, findings.parts);
    AddWhatIsKnown(context, file.path, findings);
    sound = sound && findings.IsSound();
    Report(file.path, findings, arguments.Has(QStringLiteral("json")));
    remembered = Remember(context, file.path, findings, accept) && remembered;
  }
  if (accept && !remembered) {
    return Complain(Ui::tr("判断を保存できません。"), kExitFailure);
  }
  return sound ? kExitOk : kExitFailure;
}

}  // namespace vorn::ctl
