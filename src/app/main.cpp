// Vorn, the program with windows.

#include <QApplication>
#include <QCommandLineParser>

#include "frame/start_up.h"
#include "frame/window/program.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("vorn"));
  QApplication::setApplicationDisplayName(vorn::kApplicationTitle);
  QApplication::setApplicationVersion(QStringLiteral(VORN_VERSION));

  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption data(QStringLiteral("data"),
                                QStringLiteral("データベースを置くフォルダ"),
                                QStringLiteral("folder"));
  parser.addOption(data);
  parser.process(application);

  vorn::Program program(
      vorn::ChooseAppFolder(parser.value(data), QCoreApplication::applicationDirPath()));
  return program.Start() ? QApplication::exec() : 1;
}
