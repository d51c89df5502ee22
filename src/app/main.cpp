// Vorn, the program with windows.

#include <QApplication>
#include <QCommandLineParser>

#include "frame/start_up.h"
#include "frame/window/program.h"
#include "storage/ui.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("vorn"));
  QApplication::setApplicationDisplayName(vorn::kApplicationTitle);
  QApplication::setApplicationVersion(QStringLiteral(VORN_VERSION));

  QCommandLineParser parser;
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption data(QStringLiteral("data"), vorn::Ui::tr("データベースを置くフォルダ"),
                                QStringLiteral("folder"));
  parser.addOption(data);
  parser.addPositionalArgument(QStringLiteral("open"),
                               vorn::Ui::tr("開くメッセージのファイルまたはmailto:のアドレス"),
                               QStringLiteral("[open...]"));
  parser.process(application);

  vorn::Program program(
      vorn::ChooseAppFolder(parser.value(data), QCoreApplication::applicationDirPath()),
      parser.positionalArguments());
  if (program.Start()) return QApplication::exec();
  return program.HandedOver() ? 0 : 1;
}
