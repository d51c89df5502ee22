#include "present/page_script.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "present/link_command.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// All files, in any order: each begins with nothing but functions of others. They see one
// another's names, and the page's own world none of them.
QString Files() {
  QString joined;
  const QDir folder(QStringLiteral(":/page_script"));
  for (const QString& name : folder.entryList({QStringLiteral("*.js")}, QDir::Files, QDir::Name)) {
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::ReadOnly)) qFatal("a part of the page's script is missing");
    joined += QString::fromUtf8(file.readAll());
  }
  return joined;
}

}  // namespace

QString PageScript() {
  static const QString files = Files();  // wanted with each change of a page
  const QJsonObject words{{QStringLiteral("link"), LinkStart(link_word::kShow)},
                          {QStringLiteral("messages"), Ui::tr("%1通")}};
  return QStringLiteral("(words => {\nif (window.vorn) return;\n") + files +
         QStringLiteral("begin();\n})(") +
         QString::fromUtf8(QJsonDocument(words).toJson(QJsonDocument::Compact)) + u')';
}

}  // namespace vorn
