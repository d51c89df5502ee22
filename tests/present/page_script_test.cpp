// The files of the page's script, by themselves and joined. What it does is tested in the engine.
#include "present/page_script.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJSEngine>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QSet>

namespace vorn {
namespace {

constexpr int kLongestFunction = 25;  // lines

QStringList Lines(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return QString::fromUtf8(file.readAll()).split(u'\n');
}

// The name that a line declares for all files; none in the midst of a function.
QString Declared(const QString& line) {
  static const QRegularExpression declaration(QStringLiteral("^(?:function|let|const) (\\w+)"));
  return declaration.match(line).captured(1);
}

// A second function of a name would silently take the place of the first.
TEST(PageScriptTest, EachFileIsAScriptOfShortFunctionsWithNamesOfItsOwn) {
  QJSEngine engine;
  QSet<QString> names;
  const QFileInfoList files = QDir(QStringLiteral(":/page_script")).entryInfoList();
  EXPECT_GE(files.size(), 5);
  for (const QFileInfo& file : files) {
    SCOPED_TRACE(file.fileName().toStdString());
    const QStringList lines = Lines(file.filePath());
    const QJSValue read =
        engine.evaluate(QStringLiteral("(() => {\n") + lines.join(u'\n') + QStringLiteral("\n})"));
    EXPECT_TRUE(read.isCallable()) << read.toString().toStdString() << " at "
                                   << read.property(QStringLiteral("lineNumber")).toInt() - 1;
    qsizetype begin = 0;
    for (qsizetype at = 0; at < lines.size(); ++at) {
      if (const QString name = Declared(lines[at]); !name.isEmpty()) {
        EXPECT_FALSE(names.contains(name)) << name.toStdString() << " stands twice";
        names.insert(name);
        begin = at;
      } else if (lines[at] == u'}') {
        EXPECT_LE(at - begin, kLongestFunction) << "line " << at + 1;
      }
    }
  }
}

TEST(PageScriptTest, WhereItHasRunItDoesNothing) {
  // That names are used above the line that declares them is meant: the files come in any order.
  QLoggingCategory::setFilterRules(QStringLiteral("qt.qml.compiler.warning=false"));
  QJSEngine engine;
  engine.evaluate(QStringLiteral("var window = {vorn: 1}"));
  const QJSValue ran = engine.evaluate(PageScript());
  EXPECT_TRUE(ran.isUndefined()) << ran.toString().toStdString();
}

}  // namespace
}  // namespace vorn
