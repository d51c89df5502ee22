// The sending half of the check plan: which messages wait, with which account each goes, and the
// steps of a send job.

#include <utility>

#include "mail/address.h"
#include "mail/mail_store.h"
#include "mail/mime_codec.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/sql_text.h"
#include "storage/ui.h"
#include "transfer/check_plan.h"
#include "transfer/outgoing_source.h"
#include "transfer/pop.h"
#include "transfer/trusted_certificates.h"

namespace vorn {
namespace {

const QString kAccount = QStringLiteral("account");
const QString kProcess = QStringLiteral("process");
// The choices of "OutMailServerProtocol".
constexpr int kPopBeforeSmtp = 1;

enum SendProcess { kBegin = 0, kStart = 1, kEnded = 2 };

void Append(Disk& bag, const QString& key, const QString& line) {
  const QString text = bag.Text(key);
  bag.Let(key, text.isEmpty() ? line : text + kLineBreak + line);
}

void SetAccount(Disk& message, const DiskPtr& account) {
  auto accounts = std::make_shared<DiskCollection>();
  if (account != nullptr) accounts->Add(account);
  message.Set(kAccount, QVariant::fromValue(accounts));
}

const QString kTo = QStringLiteral("mailaddress_to");
const QString kFrom = QStringLiteral("mailaddress_from");

// The envelope, from the address lines.
void FillEnvelope(Disk& message) {
  for (const QString& line : message.Text(u"Mailaddress").split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    const QString kind = entry.kind.toLower();
    if (entry.address.isEmpty()) continue;
    if (kind == u"from") {
      Append(message, kFrom, entry.address);
      Append(message, QStringLiteral("update_from_list"), line);
    } else if (kind == u"to" || kind == u"cc" || kind == u"bcc" || kind == u"bc") {
      Append(message, kTo, entry.address);
    }
  }
}

}  // namespace

// The enabled account that bears a sender's address; the default one before others.
DiskPtr CheckPlan::AccountFor(const QString& addressLines) const {
  const DiskCollectionPtr accounts =
      SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled);
  DiskPtr taken;
  for (const QString& line : addressLines.split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (entry.kind.compare(u"from", Qt::CaseInsensitive) != 0) continue;
    for (const DiskPtr& account : *accounts) {
      if (account->Text(u"Mailaddress") != entry.address) continue;
      if (taken == nullptr || account->Flag(u"Default")) taken = account;
    }
  }
  return taken;
}

std::vector<DiskPtr> CheckPlan::WaitingMessages(const QString& serial, DatabaseKind db,
                                                const QString& file) {
  std::vector<DiskPtr> messages;
  if (!OpenDatabase(context_, db, file)) return messages;
  QString select = QStringLiteral("SELECT * FROM mail WHERE STATUS = 2");
  if (!serial.isEmpty()) select += QStringLiteral(" AND SERIALID = ") + QuoteSql(serial);
  if (context_.Data.OpenRecordset(select, CursorKind::ForwardOnly)) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      auto message = std::make_shared<Disk>(rows->SerialID());
      const QString lines = rows->Fields(u"FIELD_MAILADDRESS").toString();
      SetAccount(*message, AccountFor(lines));
      message->Let(QStringLiteral("File"), file.isEmpty() ? context_.Session->Text(u"Mail") : file);
      message->Let(QStringLiteral("Password"), context_.Session->Text(u"password"));
      message->Let(QStringLiteral("Mailaddress"), lines);
      messages.push_back(message);
    }
  }
  context_.Data.Close();
  return messages;
}

bool CheckPlan::UseChosenAccount(Disk& message, DiskPtr& chosen, bool& asked) {
  if (!asked) {
    asked = true;
    chosen = context_.Objects.Find(host_.ChooseAccount(
        Ui::tr("アカウントの選択"), Ui::tr("送信する際のアカウントを選択して下さい。")));
  }
  if (chosen == nullptr) {
    host_.AddEvent(1, 1, message.SerialID(), Ui::tr("システム"), QStringLiteral("mailup"),
                   Ui::tr("送信で使用するアカウントが不明です。"));
    return false;
  }
  Append(message, kFrom, chosen->Text(u"Mailaddress"));
  message.Let(QStringLiteral("update_from"), true);
  SetAccount(message, chosen);
  return true;
}

void CheckPlan::AddSendJob(const std::vector<DiskPtr>& messages) {
  auto waiting = std::make_shared<DiskCollection>();
  DiskPtr chosen;
  bool asked = false;
  for (const DiskPtr& message : messages) {
    FillEnvelope(*message);
    const bool hasAccount = !message->Collection(kAccount)->IsEmpty();
    if (hasAccount || UseChosenAccount(*message, chosen, asked)) waiting->Add(message);
  }
  if (waiting->IsEmpty()) return;
  auto job =
      std::make_shared<Disk>(context_.Data.NewSerialID(QString::number(jobs_.Count()) + u'_'));
  job->Let(QStringLiteral("mode"), QStringLiteral("mailup"));
  job->Let(QStringLiteral("daytime"), QString());
  job->Set(QStringLiteral("message"), QVariant::fromValue(waiting));
  jobs_.Add(job);
}

void CheckPlan::SendStep(Disk& job) {
  if (pop_.Busy()) return;
  const DiskPtr message = job.Collection(u"message")->First();
  switch (job.Number(kProcess)) {
    case kBegin:
      BeginSending(job, *message);
      break;
    case kStart:
      if (StartSending(*message)) {
        pop_.Start();
        job.Let(kProcess, static_cast<int>(kEnded));
      }
      break;
    default:
      FinishSending(job, message);
  }
}

// "POP before SMTP" first logs in at the incoming server.
void CheckPlan::BeginSending(Disk& job, const Disk& message) {
  const DiskPtr account = message.Collection(kAccount)->First();
  if (account->Number(u"OutMailServerProtocol") == kPopBeforeSmtp && KnowsPassword(*account)) {
    LoadReceiving(*account);
    pop_.LoginOnly = true;
    pop_.Start();
  }
  pop_.Tag = job.SerialID();
  job.Let(QStringLiteral("log"), QString());
  job.Let(QStringLiteral("error"), false);
  job.Let(kProcess, static_cast<int>(kStart));
}

// Loads the control with the message; false when it cannot be read yet.
bool CheckPlan::StartSending(Disk& message) {
  const QString where = QStringLiteral(" WHERE SERIALID = ") + QuoteSql(message.SerialID());
  if (!OpenDatabase(context_, DatabaseKind::MailByPath, message.Text(u"File"))) return false;
  QByteArray source;
  if (context_.Data.OpenRecordset(QStringLiteral("SELECT * FROM mail") + where,
                                  CursorKind::ForwardOnly)) {
    const RecordsetPtr row = context_.Data.Recordset();
    source = row->Fields(u"MAIL").toByteArray();
    // What a message that is stored again keeps.
    message.Let(QStringLiteral("Flag"), row->Fields(u"FIELD_FLAG"));
  }
  QStringList folders;
  if (context_.Data.OpenRecordset(QStringLiteral("SELECT * FROM folder") + where,
                                  CursorKind::ForwardOnly)) {
    const RecordsetPtr rows = context_.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) folders.append(rows->Fields(u"FOLDERID").toString());
  }
  message.Let(QStringLiteral("folder"), folders.join(kLineBreak));
  context_.Data.Close();

  const DiskPtr account = message.Collection(kAccount)->First();
  OutgoingSender sender{
      account->Text(u"Mailaddress"), account->Text(u"Display"), message.Flag(u"update_from"), {}};
  for (const QString& line : message.Text(u"update_from_list").split(kLineBreak)) {
    if (!line.isEmpty()) sender.former.append(ParseAddressEntry(line));
  }
  pop_.Server = account->Text(u"OutMailServer");
  pop_.ServerPort = account->Number(u"OutMailServerPort");
  pop_.Mode = kPopSend;
  pop_.LoginOnly = false;
  pop_.Encryption = static_cast<Security>(account->Number(u"OutMailServerSecurity"));
  pop_.TrustedFingerprints =
      TrustedCertificates(account->Text(u"OutMailServerCertificates")).For(pop_.Server);
  pop_.Authenticate = account->Flag(u"OutMailServerAuth");
  pop_.User = account->Text(u"OutMailServerUser");
  pop_.Password = account->Text(u"OutMailServerPassword");
  pop_.MailTo = message.Text(kTo);
  // The account that sends answers for the message.
  pop_.MailFrom = sender.rewrite ? sender.address : message.Text(kFrom);
  pop_.SetMessage(OutgoingSource(source, message.SerialID(), sender));
  return true;
}

void CheckPlan::FinishSending(Disk& job, const DiskPtr& message) {
  RecordSession(job, *message->Collection(kAccount)->First());
  const DiskCollectionPtr messages = job.Collection(u"message");
  messages->Remove(message->SerialID());
  if (messages->IsEmpty()) {
    job.Let(QStringLiteral("delete"), true);
  } else {
    job.Let(kProcess, static_cast<int>(kBegin));
  }
}

}  // namespace vorn
