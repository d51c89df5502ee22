// The loopback mail server as a program, for demonstrations and scripts: serves a folder of *.eml
// files by POP3, and puts what it is sent by SMTP among them. Prints its ports once it listens, and
// with --tell a line for each message that it accepts.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <cstdio>

#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QCommandLineParser parser;
  const auto option = [&parser](const char* name, const char* value, const char* fallback) {
    parser.addOption({QString::fromLatin1(name), QString(), QString::fromLatin1(value),
                      QString::fromLatin1(fallback)});
  };
  parser.addHelpOption();
  option("mail", "folder", "");
  option("user", "name", "demo");
  option("password", "word", "demo");
  option("pop3-port", "port", "0");
  option("smtp-port", "port", "0");
  const QCommandLineOption tell(QStringLiteral("tell"));
  parser.addOption(tell);
  parser.process(application);
  const bool tells = parser.isSet(tell);
  const auto value = [&parser](const char* name) {
    return parser.value(QString::fromLatin1(name));
  };

  vorn::test::LoopbackPop3Server pop3;
  vorn::test::LoopbackSmtpServer smtp;
  pop3.User = value("user").toUtf8();
  pop3.Password = value("password").toUtf8();
  const QDir folder(value("mail"));
  for (const QString& name : folder.entryList({QStringLiteral("*.eml")}, QDir::Files)) {
    QFile file(folder.filePath(name));
    if (file.open(QIODevice::ReadOnly)) pop3.AddMessage(name.toLatin1(), file.readAll());
  }
  int sent = 0;
  smtp.OnMessage = [&](const vorn::test::SentMessage& message) {
    pop3.AddMessage("sent-" + QByteArray::number(++sent), message.source);
    if (!tells) return;
    std::printf("accepted %d\n", sent);
    std::fflush(stdout);
  };
  if (!pop3.Listen(value("pop3-port").toUShort()) || !smtp.Listen(value("smtp-port").toUShort())) {
    std::fputs("cannot listen\n", stderr);
    return 1;
  }
  std::printf("pop3 %d smtp %d messages %d\n", pop3.Port(), smtp.Port(),
              static_cast<int>(pop3.Messages.size()));
  std::fflush(stdout);
  return QCoreApplication::exec();
}
