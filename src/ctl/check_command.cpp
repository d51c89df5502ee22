#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "objects/profile.h"

namespace vorn::ctl {

int CheckFiles(Context& context, const Arguments& arguments) {
  struct File {
    QString path;
    QString password;
  };
  QList<File> files{{context.NaviDatabasePath, context.SecurityKey}};
  for (const QString& path : ProfileFiles(context, *context.Session)) {
    files.append({path, context.Session->Text(u"password")});
  }
  bool sound = true;
  for (const File& file : files) {
    const QStringList problems = context.Data.CheckFile(file.path, file.password);
    sound = sound && problems.isEmpty();
    const QString name = QDir::toNativeSeparators(file.path);
    if (arguments.Has(QStringLiteral("json"))) {
      const QJsonObject object{{QStringLiteral("file"), name},
                               {QStringLiteral("problems"), QJsonArray::fromStringList(problems)}};
      Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
    } else {
      Print(name + QStringLiteral(": ") +
            (problems.isEmpty() ? QStringLiteral("正常です。") : problems.join(u' ')));
    }
  }
  return sound ? kExitOk : kExitFailure;
}

}  // namespace vorn::ctl
