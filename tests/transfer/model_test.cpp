// A model of sending and receiving: random histories of what users, servers, other programs and
// deaths do, and what must hold after each of them, whatever happened.
//
// VORN_MODEL_HISTORIES sets how many histories are run, VORN_MODEL_SEED where they begin.

#include <array>
#include <map>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "mail/store/outbox.h"
#include "objects/account.h"
#include "storage/databases.h"
#include "storage/engine/connection.h"
#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::LoopbackSmtpServer;
using test::WaitFor;

constexpr int kActions = 60;      // in a history
constexpr int kTimeoutMs = 150;   // of the programs, so that silent servers are given up soon
constexpr int kQuietMs = 600000;  // the most that a history may take to come to rest

// A program over the data folder. Its end without a word is a death: nothing is told to the server,
// nothing more is stored.
struct RunningProgram {
  explicit RunningProgram(const QString& folder) {
    EXPECT_TRUE(test::Enter(context, folder));
    traffic.Control().Patience.ReplyMs = kTimeoutMs;
    traffic.Control().Patience.DecisionMs = kTimeoutMs;
  }

  Context context;
  test::RecordingHost host;
  MailTraffic traffic{context, host, host};
};

// What the user knows of a message that he wrote.
struct Written {
  QByteArray version;      // the source that he last told the program to send, as it should arrive
  int allowed = 1;         // deliveries; one more for each time he sends a doubtful one again
  bool withdrawn = false;  // taken back, thrown away or deleted before it was handed over
  bool keptAsSent = false;
};

// A delivered source without what sending adds.
QByteArray WithoutAdded(const QByteArray& delivered) {
  QByteArrayList lines = delivered.split('\n');
  lines.removeIf([](const QByteArray& line) {
    return line.startsWith("Date: ") || line.startsWith("Message-ID: ");
  });
  return lines.join('\n');
}

class Model : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(smtp_.Listen());
    ASSERT_TRUE(pop3_.Listen());
    ASSERT_TRUE(empty_.Listen());
    {
      Context first;
      ASSERT_TRUE(StartUp(first, Folder()));
      ASSERT_TRUE(CreateFirstProfile(first));
      ASSERT_TRUE(LogIn(first, {}, {}));
      AddAccount(first, QStringLiteral("me"), pop3_.Port());
      AddAccount(first, QStringLiteral("other"), empty_.Port());
      first.Data.CloseAll();
    }
    for (auto& program : programs_) program = std::make_unique<RunningProgram>(Folder());
  }
  void TearDown() override {
    for (auto& program : programs_) program.reset();
  }

  void AddAccount(Context& context, const QString& name, int port) {
    AccountValues values;
    values.name = name;
    values.address = name + QStringLiteral("@example.com");
    values.incoming.host = values.outgoing.host = QStringLiteral("127.0.0.1");
    values.incoming.port = port;
    values.outgoing.port = smtp_.Port();
    values.incoming.who.user = QStringLiteral("user");
    values.incoming.who.password = QStringLiteral("secret");
    values.deletesOnServer = true;
    ASSERT_TRUE(CreateAccount(context, values));
  }

  QString Folder() const { return folder_.path() + QStringLiteral("/data/"); }
  int Dice(int sides) { return static_cast<int>(chance_.bounded(sides)); }
  RunningProgram& AnyProgram() { return *programs_[static_cast<size_t>(Dice(2))]; }
  SerialId AnyMessage() {
    if (written_.empty()) return {};
    auto found = written_.begin();
    std::advance(found, Dice(static_cast<int>(written_.size())));
    return found->first;
  }

  // A source whose subject names the message and whose text and recipient name the version.
  QByteArray NewSource(const SerialId& serial) {
    const QByteArray version = QByteArray::number(++versions_);
    return "From: me@example.com\r\nTo: to" + version +
           "@example.com\r\nSubject: " + serial.Text().toLatin1() + "\r\n\r\n" +
           QByteArray(Dice(3) == 0 ? 400000 : 20, 'x') + "\r\n.dot " + version + "\r\n.\r\n";
  }

  // --- what users do ---
  bool StoreWaiting(Context& context, const SerialId& serial) {
    const QByteArray source = NewSource(serial);
    Disk request(serial);
    request.Let(QStringLiteral("process"), 2);
    request.Let(QStringLiteral("Flag"), QStringLiteral("02"));
    if (!MailStore(context).StoreMessage(request, source)) return false;
    Written& message = written_[serial];
    // From here on only the last version may arrive.
    message.version = source.chopped(3);  // without the end mark
    message.withdrawn = false;
    return true;
  }
  void Write() {
    RunningProgram& program = AnyProgram();
    StoreWaiting(program.context, program.context.Data.NewSerialID(QStringLiteral("mail_")));
  }
  // As the message window edits one that waits: taken back first.
  void Edit() {
    const SerialId serial = AnyMessage();
    Context& context = AnyProgram().context;
    if (serial.IsEmpty() || !MailStore(context).CancelWaiting(Disk(serial))) return;
    written_[serial].withdrawn = true;
    if (Dice(2) == 0) StoreWaiting(context, serial);
  }
  void ThrowAway() {
    const SerialId serial = AnyMessage();
    Context& context = AnyProgram().context;
    if (serial.IsEmpty() || StatusOf(context, serial) != kStatusWaiting) return;
    if (Outbox(context, MailDatabasePath(context)).FindDoubtful(serial)->has_value()) return;
    bool gone = false;
    if (Dice(2) == 0) {
      const Result<Moved> moved = SetDust(context, {serial}, true);
      gone = moved && moved->underWay.isEmpty();
    } else {
      gone = DeleteMessages(context, {serial}) == UnderWay();
    }
    // Between the look and the throw it may have been sent; what counts is what the row says now.
    if (gone && qAbs(StatusOf(context, serial)) != kStatusSent) written_[serial].withdrawn = true;
  }
  void Decide() {
    Context& context = AnyProgram().context;
    Outbox outbox(context, MailDatabasePath(context));
    const QList<DoubtfulMessage> doubtful = *outbox.Doubtful();
    if (doubtful.isEmpty()) return;
    const SerialId serial = doubtful[Dice(static_cast<int>(doubtful.size()))].serialId;
    if (Dice(2) == 0) {
      if (outbox.SendAgain(serial)) ++written_[serial].allowed;
    } else if (outbox.KeepAsSent(serial)) {
      written_[serial].keptAsSent = true;
    }
  }
  void Plan() {
    RunningProgram& program = AnyProgram();
    static constexpr PlanFlags kFlags[] = {kPlanSend, kPlanReceive, kPlanSend | kPlanReceive};
    program.traffic.Plan().CreateMessagePlan(kFlags[Dice(3)],
                                             Dice(3) == 0 ? AnyMessage() : SerialId());
  }

  // --- what servers, disks and deaths do ---
  void Mail() {
    const QByteArray number = QByteArray::number(++mailed_);
    const QByteArray source =
        "Subject: in" + number + "\r\n\r\n" + QByteArray(Dice(4) == 0 ? 200000 : 10, 'y') + "\r\n";
    pop3_.AddMessage("u" + number, source);
    mail_.insert(source);
  }
  void Trouble() {
    static constexpr Fault::Kind kKinds[] = {Fault::Kind::Cut, Fault::Kind::Stall,
                                             Fault::Kind::Reply};
    static const QByteArray kSmtp[] = {"GREETING", "EHLO", "MAIL", "RCPT",
                                       "DATA",     ".",    ".",    "QUIT"};
    static const QByteArray kPop3[] = {"GREETING", "USER", "PASS", "LIST", "UIDL",
                                       "RETR",     "RETR", "DELE", "QUIT"};
    Fault fault{kKinds[Dice(3)], {}, 1, Dice(20), Dice(2) == 0 ? "451 later\r\n" : "\x02 what\r\n"};
    fault.command = kSmtp[Dice(8)];
    fault.occurrence = smtp_.Count(fault.command) + 1;
    smtp_.Faults = {fault};
    fault.command = kPop3[Dice(9)];
    fault.occurrence = 1 + Dice(2);
    fault.text = "-ERR no\r\n";
    pop3_.Faults = {fault};
    // Where sizes say nothing, nobody can tell a piece from a message.
    if (Dice(3) == 0 && isNear_) {
      pop3_.Faults = {{Fault::Kind::Torn, "RETR", 1 + Dice(2), Dice(14), {}}};
    }
  }
  void EndTrouble() {
    smtp_.Faults.clear();
    pop3_.Faults.clear();
    for (const char* name : {"no_attempt", "no_sent", "no_mail"}) {
      Run("DROP TRIGGER IF EXISTS " + QByteArray(name));
    }
  }
  // The disk takes nothing of one kind for a while.
  void FailingStore() {
    static const QByteArray kTriggers[] = {"no_attempt BEFORE INSERT ON send_attempt",
                                           "no_sent BEFORE UPDATE OF MAIL ON mail",
                                           "no_mail BEFORE INSERT ON mail"};
    Run("CREATE TRIGGER IF NOT EXISTS " + kTriggers[Dice(3)] +
        " BEGIN SELECT RAISE(ABORT, 'no room'); END");
  }
  bool Run(const QByteArray& statement) {
    const auto connection = Connection::Open(MailDatabasePath(programs_[0]->context),
                                             programs_[0]->context.Session->Text(u"password"),
                                             Connection::Mode::Existing)
                                .ValueOr(nullptr);
    return connection != nullptr && connection->Run(statement);
  }
  void Die() {
    auto& program = programs_[static_cast<size_t>(Dice(2))];
    program.reset();
    program = std::make_unique<RunningProgram>(Folder());
  }

  void GoOn(int rounds) {
    for (int i = 0; i < rounds; ++i) {
      for (auto& program : programs_) program->traffic.Tick();
      QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
  }
  void Act() {
    switch (Dice(16)) {
      case 0:
      case 1:
        Write();
        break;
      case 2:
        Edit();
        break;
      case 3:
        ThrowAway();
        break;
      case 4:
        Decide();
        break;
      case 5:
        AnyProgram().traffic.Plan().Cancel();
        break;
      case 6:
      case 7:
        Trouble();
        break;
      case 8:
        Dice(3) == 0 ? FailingStore() : EndTrouble();
        break;
      case 9:
        if (Dice(3) == 0) Die();
        break;
      case 10:
      case 11:
        Mail();
        break;
      default:
        Plan();
    }
    GoOn(Dice(2) == 0 ? Dice(4) : Dice(40));
  }

  // What the programs are at, for who looks into one that does not come to rest.
  std::string Whereabouts() const {
    QStringList words;
    for (const auto& program : programs_) {
      const Pop& control = program->traffic.Control();
      words.append(QStringLiteral("[planned %1, busy %2, mode %3, job %4, held %5, last %6]")
                       .arg(!program->traffic.Plan().IsEmpty())
                       .arg(control.Busy())
                       .arg(control.Mode)
                       .arg(control.Tag, program->host.held.value(program->host.held.size() - 1),
                            program->host.log.value(program->host.log.size() - 1)));
    }
    return words.join(u' ').toStdString();
  }

  // Everything comes to rest, and once more without trouble.
  void Rest() {
    const auto idle = [this] {
      bool all = true;
      for (auto& program : programs_) {
        program->traffic.Tick();
        all = all && program->traffic.Plan().IsEmpty() && !program->traffic.Control().Busy();
      }
      return all;
    };
    ASSERT_TRUE(WaitFor(idle, kQuietMs)) << Whereabouts();
    EndTrouble();
    for (auto& program : programs_) {
      program->traffic.Plan().CreateMessagePlan(kPlanSend | kPlanReceive);
      ASSERT_TRUE(WaitFor(idle, kQuietMs)) << Whereabouts();
    }
  }

  // --- what must hold ---
  int StatusOf(Context& context, const SerialId& serial) {
    int status = 0;
    if (OpenDatabase(context, DatabaseKind::Mail) &&
        context.Data.OpenRecordset(
            QStringLiteral("SELECT STATUS FROM mail WHERE SERIALID = '%1'").arg(serial.Text()),
            CursorKind::ForwardOnly)) {
      status = context.Data.Recordset()->Fields(u"STATUS").toInt();
    }
    context.Data.Close();
    return status;
  }
  void CheckSent() {
    Context& context = programs_[0]->context;
    std::map<QString, QList<test::SentMessage>> delivered;
    for (const test::SentMessage& message : smtp_.Messages()) {
      const qsizetype at = message.source.indexOf("Subject: ") + 9;
      delivered[QString::fromLatin1(
                    message.source.sliced(at, message.source.indexOf('\r', at) - at))]
          .append(message);
    }
    EXPECT_EQ(delivered.count(QString()), 0U) << "something arrived that nobody sent";
    for (const auto& [serial, message] : written_) {
      const QList<test::SentMessage> copies = delivered[serial.Text()];
      const int status = StatusOf(context, serial);
      const bool doubtful =
          Outbox(context, MailDatabasePath(context)).FindDoubtful(serial)->has_value();
      const std::string what = serial.Text().toStdString() + " status " + std::to_string(status) +
                               (doubtful ? " doubtful" : "");
      EXPECT_LE(copies.size(), message.allowed) << what << " was delivered too often";
      EXPECT_TRUE(status != kStatusWaiting || doubtful) << what << " still waits";
      EXPECT_TRUE(status != kStatusSent || message.keptAsSent || !copies.isEmpty())
          << what << " counts as sent and did not arrive";
      if (message.withdrawn && !doubtful && message.allowed == 1) {
        EXPECT_EQ(copies.size(), 0) << what << " was sent although it was taken back";
      }
      if (copies.isEmpty()) continue;
      // One that was doubtful, sent again, changed and then taken back had arrived as it was first.
      if (message.withdrawn && message.allowed > 1) continue;
      EXPECT_TRUE(WithoutAdded(copies.last().source) == message.version)
          << what << " is not what was stored";
      EXPECT_TRUE(message.version.contains("To: " + copies.last().recipients.value(0)))
          << what << " went to an address of another version";
    }
  }
  void CheckReceived() {
    Context& context = programs_[0]->context;
    ASSERT_TRUE(OpenDatabase(context, DatabaseKind::Mail));
    ASSERT_TRUE(context.Data.OpenRecordset(
        QStringLiteral("SELECT FIELD_SUBJECT, MAIL FROM mail WHERE STATUS = 4"),
        CursorKind::ForwardOnly));
    std::map<QString, int> stored;
    const RecordsetPtr rows = context.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      // A piece that the server gave stands beside the whole message, which it stands for nowhere.
      if (!mail_.contains(rows->Fields(u"MAIL").toByteArray())) continue;
      ++stored[rows->Fields(u"FIELD_SUBJECT").toString()];
    }
    EXPECT_FALSE(rows->Failed());
    context.Data.Close();
    EXPECT_EQ(stored.size(), static_cast<size_t>(mailed_));
    for (const auto& [subject, count] : stored) EXPECT_EQ(count, 1) << subject.toStdString();
    EXPECT_EQ(pop3_.Messages.size(), 0);
  }

  QTemporaryDir folder_;
  LoopbackSmtpServer smtp_;
  LoopbackPop3Server pop3_;
  LoopbackPop3Server empty_;  // of another account
  std::array<std::unique_ptr<RunningProgram>, 2> programs_;
  std::map<SerialId, Written> written_;
  int versions_ = 0;
  int mailed_ = 0;
  QSet<QByteArray> mail_;
  bool isNear_ = false;  // are the sizes that the server tells
  QRandomGenerator chance_;
};

TEST_F(Model, EveryMessageOnce) {
  const int wanted = qEnvironmentVariableIntValue("VORN_MODEL_HISTORIES");
  const int histories = wanted > 0 ? wanted : test::Rounds(5, 40);
  const quint32 seed = test::Seed("VORN_MODEL_SEED");
  int actions = 0;
  qsizetype deliveries = 0;
  for (int history = 0; history < histories && !HasFailure(); ++history) {
    SCOPED_TRACE("VORN_MODEL_SEED=" + std::to_string(seed) + " history " + std::to_string(history));
    chance_.seed(seed + static_cast<quint32>(history));
    // What LIST says of sizes is an estimate on some servers, and wrong on others.
    static constexpr double kSizes[] = {1, 1, 1.02, 0.97, 0.5, 2, 0};
    pop3_.SizeFactor = kSizes[Dice(std::size(kSizes))];
    isNear_ = qAbs(pop3_.SizeFactor - 1) < 0.1;
    for (int i = 0; i < kActions; ++i, ++actions) Act();
    Rest();
    CheckSent();
    CheckReceived();
    deliveries = smtp_.Messages().size();
  }
  std::printf(
      "%d actions in %d histories from seed %u: %d messages written, %d delivered, %d "
      "received\n",
      actions, histories, seed, static_cast<int>(written_.size()), static_cast<int>(deliveries),
      mailed_);
}

}  // namespace
}  // namespace vorn
