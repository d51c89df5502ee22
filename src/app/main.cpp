// Vorn, the program with windows.

#include <QApplication>
#include <QCommandLineParser>
#include <csignal>
#include <memory>

#include "frame/process_privacy.h"
#include "frame/start_up.h"
#include "frame/window/announcer.h"
#include "frame/window/program.h"
#include "storage/ui.h"

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);  // a limit on the size of files is told as a full disk is
#endif
  vorn::ForbidCoreDumps();
  vorn::ForbidWritingByOthers();
  vorn::Program::PrepareEngine();
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
  const QCommandLineOption announce(
      QStringLiteral("announce"),
      vorn::Ui::tr("画面の状態を1行ずつ標準出力に書く（自動操作のため）"));
  parser.addOption(announce);
  parser.addPositionalArgument(QStringLiteral("open"),
                               vorn::Ui::tr("開くメッセージのファイルまたはmailto:のアドレス"),
                               QStringLiteral("[open...]"));
  parser.process(application);

  std::unique_ptr<vorn::Announcer> announcer;
  if (parser.isSet(announce)) {
    announcer = std::make_unique<vorn::Announcer>(&vorn::Announcer::ToStandardOutput);
  }

  vorn::Program program(
      vorn::ChooseAppFolder(parser.value(data), QCoreApplication::applicationDirPath()),
      parser.positionalArguments());
  if (program.Start()) return QApplication::exec();
  return program.HandedOver() ? 0 : 1;
}
