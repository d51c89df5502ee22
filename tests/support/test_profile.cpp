#include "support/test_profile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QThread>

#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "objects/account.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "storage/databases.h"

void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
void PrintTo(const QByteArray& bytes, std::ostream* out) {
  *out << '"' << bytes.left(400).toPercentEncoding(" \r\n<>@:;,./=?!\"'()[]{}").toStdString()
       << '"';
}

namespace vorn::test {

Result<> Enter(Context& context, const QString& folder, const QString& password,
               const LostFileChoice& choice, const QString& name) {
  const Result<> started = StartUp(context, folder);
  return started ? LogIn(context, name, password, choice) : started;
}

PrivateUser::PrivateUser() {
  for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                             "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
    qputenv(folder, folder_.path().toUtf8());
  }
  for (const char* variable : {"LC_ALL", "LANG"}) qputenv(variable, "C.UTF-8");
  for (const char* variable : {"LANGUAGE", "DBUS_SESSION_BUS_ADDRESS"}) qunsetenv(variable);
}

TestProfile::TestProfile(const QString& password) {
  LogInAgain(password);
}

TestProfile::~TestProfile() {
  context_->Data.CloseAll();
}

void TestProfile::Restart(const QString& password) {
  context_->Data.CloseAll();
  LogInAgain(password);
}

void TestProfile::LogInAgain(const QString& password) {
  context_ = std::make_unique<Context>();
  ASSERT_TRUE(StartUp(*context_, Folder()));
  const bool isNew = context_->Objects.IsEmpty();
  if (isNew) {
    ASSERT_TRUE(CreateFirstProfile(*context_));
  }
  ASSERT_TRUE(LogIn(*context_, {}, password));
  if (!isNew) return;
  // What comes, a test has fetched.
  const DiskPtr settings = Settings(*context_).Bag();
  settings->Let(QStringLiteral("MessageCheck"), false);
  ASSERT_TRUE(SaveObject(*context_, DatabaseKind::Profile, *settings));
}

DiskPtr TestProfile::AddAccount(int port, bool deleteOnServer, bool apop, const QString& user,
                                const QString& password) {
  AccountValues values;
  values.name = QStringLiteral("account") + QString::number(context_->Objects.Count());
  values.address = QStringLiteral("yamada@example.org");
  values.incoming.host = QStringLiteral("127.0.0.1");
  values.incoming.port = port;
  values.incoming.who.user = user;
  values.incoming.who.password = password;
  values.protocol = apop ? InProtocol::Apop : InProtocol::Pop3;
  values.deletesOnServer = deleteOnServer;
  return *CreateAccount(*context_, values);
}

SerialId TestProfile::Store(const QByteArray& source, int status) {
  Disk request(context_->Data.NewSerialID(QStringLiteral("mail_")));
  request.Let(QStringLiteral("process"), status);
  request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
  return MailStore(*context_).StoreMessage(request, source).ValueOr({});
}

QList<QVariant> Select(Context& context, const QString& select) {
  QList<QVariant> values;
  EXPECT_TRUE(OpenDatabase(context, DatabaseKind::Mail));
  EXPECT_TRUE(context.Data.OpenRecordset(select, CursorKind::ForwardOnly))
      << context.Data.LastError().text.toStdString();
  const RecordsetPtr rows = context.Data.Recordset();
  for (; rows != nullptr && !rows->Eof(); rows->MoveNext()) values.append(rows->Fields(u"V"));
  context.Data.Close();
  return values;
}

SerialIds Filed(Context& context, SerialIds messages, const SerialId& folder) {
  const QList<QVariant> filed = Select(
      context,
      QStringLiteral("SELECT SERIALID AS V FROM folder WHERE FOLDERID = '%1'").arg(folder.Text()));
  messages.removeIf([&filed](const SerialId& serial) { return !filed.contains(serial.Text()); });
  return messages;
}

void RunPosted() {
  bool isDone = false;
  QTimer::singleShot(0, [&isDone] { QTimer::singleShot(0, [&isDone] { isDone = true; }); });
  WaitFor([&isDone] { return isDone; });
}

void RunFor(int milliseconds) {
  WaitFor([] { return false; }, milliseconds);
}

bool WaitFor(const std::function<bool()>& condition, int timeoutMs) {
  // Where a mistake has been planted most waits are in vain.
  static const int most = qEnvironmentVariableIntValue("VORN_MOST_WAIT_MS");
  if (most > 0) timeoutMs = qMin(timeoutMs, most);
  QElapsedTimer timer;
  timer.start();
  while (!condition()) {
    if (timer.elapsed() > timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    QThread::msleep(1);
  }
  return true;
}

int Rounds(int few, int many) {
  return qEnvironmentVariableIsSet("VORN_LONG_TESTS") ? many : few;
}

quint32 Seed(const char* variable) {
  constexpr quint32 kAlways = 20261126;
  bool isGiven = false;
  const int given = qEnvironmentVariableIntValue(variable, &isGiven);
  if (isGiven) return static_cast<quint32>(given);
  const bool isLong = qEnvironmentVariableIsSet("VORN_LONG_TESTS");
  return isLong ? QRandomGenerator::global()->generate() >> 1 : kAlways;
}

QByteArray ReadFile(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return file.readAll();
}

void WriteFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
      << path.toStdString();
}

QMap<QString, QByteArray> Samples() {
  QMap<QString, QByteArray> samples;
  const QDir folder(QStringLiteral(VORN_SAMPLES));
  for (const QString& name : folder.entryList({QStringLiteral("*.eml")}, QDir::Files)) {
    samples.insert(name, ReadFile(folder.filePath(name)));
  }
  return samples;
}

}  // namespace vorn::test
