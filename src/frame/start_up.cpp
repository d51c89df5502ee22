#include "frame/start_up.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>

#include "frame/security_key.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kComputerNameCharacters = 40;
constexpr qsizetype kIniValueCharacters = 255;

QString WithSeparator(const QString& folder) {
  return folder.endsWith(u'/') || folder.endsWith(QDir::separator()) ? folder : folder + u'/';
}

bool ReadDebugMode(const QString& appFolder) {
  const QSettings ini(appFolder + QStringLiteral("vorn.ini"), QSettings::IniFormat);
  const QString value =
      ini.value(QStringLiteral("infomation/debug"), QStringLiteral("False")).toString();
  return value.left(kIniValueCharacters).toLower() == u"true";
}

// An earlier version that was killed as it made its first file left an empty one.
void RemoveEmptyNavigator(const Context& context) {
  const QFileInfo file(context.NaviDatabasePath);
  const QDir folder(context.AppFolder);
  if (!file.exists() || file.size() > 0) return;
  if (folder.entryList({QStringLiteral("_profile*")}, QDir::Dirs).isEmpty()) {
    QFile::remove(file.filePath());
  }
}

}  // namespace

QString ChooseAppFolder(const QString& requested, const QString& executableFolder) {
  if (!requested.isEmpty()) return WithSeparator(QDir::cleanPath(QDir(requested).absolutePath()));
  const QString portable = WithSeparator(executableFolder);
  for (const QString& mark : {QStringLiteral("vorn.ini"), QStringLiteral("navi.mbx")}) {
    if (QFileInfo::exists(portable + mark)) return portable;
  }
  return WithSeparator(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                       QStringLiteral("/vorn"));
}

bool StartUp(Context& context, const QString& appFolder, QString* error) {
  context.ComputerName = QSysInfo::machineHostName().left(kComputerNameCharacters);
  context.Session = std::make_shared<Disk>();
  context.AppFolder = WithSeparator(appFolder);
  context.VersionText = QStringLiteral(VORN_VERSION);
  context.DebugMode = ReadDebugMode(context.AppFolder);
  context.NaviDatabasePath = context.AppFolder + QStringLiteral("navi.mbx");
  context.TempFolder = context.AppFolder + QStringLiteral("temp/");
  context.LayoutFolder = context.AppFolder + QStringLiteral("layout/");
  context.SecurityKey = SecurityKey(context.Data);
  if (context.SecurityKey.isEmpty()) {
    *error = Ui::tr("ユーザー設定を保存できないため、起動できません。");
    return false;
  }
  context.Session->Let(QStringLiteral("login"), false);
  RemoveEmptyNavigator(context);
  if (!CreateDatabase(context, DatabaseKind::Navigator) ||
      !LoadObjects(context, DatabaseKind::Navigator, context.Objects)) {
    *error =
        Ui::tr("プロファイル一覧のファイル「%1」を開けません。%2")
            .arg(QDir::toNativeSeparators(context.NaviDatabasePath), context.Data.LastError().text);
    return false;
  }
  return true;
}

}  // namespace vorn
