#include "objects/account.h"

#include "objects/account_keys.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/trusted_certificates.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"
#include "storage/work_lock.h"

namespace vorn {

namespace key = account_key;

namespace {

// The choices of the outgoing server's protocol by their stored numbers.
enum class OutProtocol { Smtp = 0, PopBeforeSmtp = 1 };

QString KeyOf(const QString& server, const CredentialPart& part) {
  return server + part.key;
}

// Of the incoming server.
QStringList KeysWhere(bool CredentialPart::*is) {
  QStringList keys;
  for (const CredentialPart& part : kCredentialParts) {
    if (part.*is) keys.append(KeyOf(key::kIn, part));
  }
  return keys;
}

Credentials StoredCredentials(const Disk& account, const QString& server) {
  Credentials who;
  for (const CredentialPart& part : kCredentialParts) {
    who.*part.text = account.Text(KeyOf(server, part));
  }
  return who;
}

void Store(Disk& account, const QString& server, const Credentials& who) {
  for (const CredentialPart& part : kCredentialParts) {
    account.Let(KeyOf(server, part), who.*part.text);
  }
}

Endpoint Server(const Disk& account, const QString& server) {
  const QString host = account.Text(server);
  return {.host = host,
          .port = account.Number(server + key::kPort),
          .security = Account::SecurityOf(account, server),
          .who = StoredCredentials(account, server),
          .trustedFingerprints =
              TrustedCertificates(account.Text(server + key::kCertificates)).For(host)};
}

DiskPtr ToObject(const SerialId& serialId, const AccountValues& values) {
  auto account = std::make_shared<Disk>(serialId);
  AnyObject::Begin(*account, object_type::kAccount, values.name);
  AnyObject::SetDefault(*account, values.isDefault);
  AnyObject::SetEnabled(*account, true);
  account->Let(key::kAddress, values.address);
  account->Let(key::kDisplay, values.display);
  account->Let(key::kEventLog, true);
  account->Let(key::kIn, values.incoming.host);
  account->Let(key::kIn + key::kPort, QString::number(values.incoming.port));
  Store(*account, key::kIn, values.incoming.who);
  account->Let(key::kIn + key::kPasswordSave, true);
  account->Let(key::kIn + key::kProtocol, static_cast<int>(values.protocol));
  account->Let(key::kIn + key::kDelete, values.deletesOnServer);
  account->Let(key::kIn + key::kSecurity, static_cast<int>(values.incoming.security));
  account->Let(key::kOut,
               values.outgoing.host.isEmpty() ? values.incoming.host : values.outgoing.host);
  account->Let(key::kOut + key::kPort, QString::number(values.outgoing.port));
  account->Let(key::kOut + key::kProtocol, static_cast<int>(OutProtocol::Smtp));
  account->Let(key::kOut + key::kSecurity, static_cast<int>(values.outgoing.security));
  account->Let(key::kOut + key::kAuth, !values.outgoing.who.user.isEmpty());
  Store(*account, key::kOut, values.outgoing.who);
  return account;
}

}  // namespace

QString Account::Name() const {
  return AnyObject(*bag_).Name();
}

bool Account::IsDefault() const {
  return AnyObject(*bag_).IsDefault();
}

QString Account::Address() const {
  return bag_->Text(key::kAddress);
}

QString Account::Display() const {
  return bag_->Text(key::kDisplay);
}

QString Account::Signature() const {
  return bag_->Text(key::kSignature);
}

bool Account::LogsEvents() const {
  return bag_->Flag(key::kEventLog);
}

Endpoint Account::Incoming() const {
  return Server(*bag_, key::kIn);
}

InProtocol Account::Protocol() const {
  const bool isApop = bag_->Number(key::kIn + key::kProtocol) == static_cast<int>(InProtocol::Apop);
  return isApop ? InProtocol::Apop : InProtocol::Pop3;
}

bool Account::DeletesOnServer() const {
  return bag_->Flag(key::kIn + key::kDelete);
}

QString Account::Work() const {
  const Endpoint server = Incoming();
  return ReceivingWork(server.who.user, server.host);
}

Endpoint Account::Outgoing() const {
  Endpoint server = Server(*bag_, key::kOut);
  if (SendsByAskedPassword()) server.who = StoredCredentials(*bag_, key::kIn);
  return server;
}

bool Account::Authenticates() const {
  return bag_->Flag(key::kOut + key::kAuth);
}

bool Account::IsPopBeforeSmtp() const {
  return bag_->Number(key::kOut + key::kProtocol) == static_cast<int>(OutProtocol::PopBeforeSmtp);
}

bool Account::SendsByAskedPassword() const {
  const Credentials sending = StoredCredentials(*bag_, key::kOut);
  return Authenticates() && !SavesPassword() && !sending.IsKnown() &&
         sending.user == StoredCredentials(*bag_, key::kIn).user;
}

bool Account::SavesPassword() const {
  return bag_->Flag(key::kIn + key::kPasswordSave, true);
}

void Account::SetPassword(const QString& password) {
  for (const QString& key : AskedKeys()) bag_->Let(key, password);
}

Security Account::SecurityOf(const Disk& bag, const QString& server) {
  const QString key = server + key::kSecurity;
  if (bag.Text(key).isEmpty()) return Security::None;
  const qint32 stored = bag.Number(key, static_cast<qint32>(Security::Tls));
  for (const Security security : {Security::None, Security::StartTls}) {
    if (stored == static_cast<qint32>(security)) return security;
  }
  return Security::Tls;
}

QString Account::UserKey() {
  return KeyOf(key::kIn, kCredentialParts[0]);
}

QStringList Account::SecretKeys() {
  return KeysWhere(&CredentialPart::isSecret);
}

QStringList Account::AskedKeys() {
  return KeysWhere(&CredentialPart::isAsked);
}

QString PortWords() {
  return Ui::tr("ポート番号は1から65535までの数です。");
}

Result<> ValidateAccount(const Context& context, const AccountValues& values) {
  const auto wrong = [](const QString& words) {
    return StorageError{StorageError::Kind::Other, words};
  };
  const auto probe = std::make_shared<Disk>();
  AnyObject::SetName(*probe, values.name);
  if (const Result<> named = ValidateObject(context.Objects, *probe); !named) return named;
  if (!values.address.contains(u'@')) {
    return wrong(Ui::tr("メールアドレスに「@」がありません。"));
  }
  if (values.incoming.host.isEmpty()) return wrong(Ui::tr("受信サーバーが設定されていません。"));
  if (values.incoming.who.user.isEmpty()) {
    return wrong(Ui::tr("受信サーバーのユーザー名が設定されていません。"));
  }
  if (!IsPort(values.incoming.port) || !IsPort(values.outgoing.port)) return wrong(PortWords());
  QStringList texts{values.name, values.address, values.display, values.incoming.host,
                    values.outgoing.host};
  for (const CredentialPart& part : kCredentialParts) {
    texts += {values.incoming.who.*part.text, values.outgoing.who.*part.text};
  }
  for (const QString& text : texts) {
    if (HasControlCharacter(text)) return wrong(Ui::tr("使えない文字（制御文字）があります。"));
  }
  return {};
}

Result<DiskPtr> CreateAccount(Context& context, const AccountValues& values) {
  const DiskPtr account = ToObject(context.Data.NewSerialID(object_type::kAccount + u'_'), values);
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *account);
  if (!saved) return saved.Error();
  context.Objects.Add(account);
  return account;
}

}  // namespace vorn
