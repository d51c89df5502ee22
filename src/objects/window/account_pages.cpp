#include "objects/window/account_pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>

#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "objects/account.h"
#include "objects/account_keys.h"
#include "objects/object_types.h"
#include "objects/trusted_certificates.h"
#include "objects/window/control_names.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"
#include "transfer/servers/known_providers.h"

namespace vorn {
namespace {

// A new account sends no password in clear text until the user says so (RFC 8314, 3).
constexpr int kFirstSecurity = static_cast<int>(Security::Tls);

constexpr int kResultLines = 3;
constexpr int kFoundLines = 2;
constexpr int kSignatureLines = 5;
constexpr qsizetype kShownDigits = 16;

// As it is typed while an input method is on: in full-width characters, with blanks around.
void Narrow(QLineEdit& box) {
  box.setText(box.text().normalized(QString::NormalizationForm_KC).trimmed());
}

}  // namespace

// --- account -----------------------------------------------------------------------------------

AccountPage::AccountPage(QLineEdit& name, ReceivePage& receiving, SendPage& sending)
    : FormPage(object_type::kAccount, Ui::tr("アカウント(&A)")),
      name_(name),
      receiving_(receiving),
      sending_(sending),
      lookup_(new ServerLookup(this)) {
  txMailaddress_ = AddText(control::kText + account_key::kAddress, Ui::tr("メールアドレス(&M)"));
  AddText(control::kText + account_key::kDisplay, Ui::tr("表示名(&D)"));
  AddLookup();
  auto* signature = new TextBox(this);
  signature->setObjectName(control::kText + account_key::kSignature);
  signature->setTabChangesFocus(true);
  signature->setFixedHeight(signature->fontMetrics().lineSpacing() * (kSignatureLines + 1));
  signature->setToolTip(Ui::tr("新しいメッセージと返信の本文に入ります。空なら入れません。"));
  Layout().addRow(Ui::tr("署名(&B)"), signature);
  AddCheck(control::kCheck + account_key::kEventLog, Ui::tr("送受信の結果をイベントに記録する(&L)"))
      ->setChecked(true);
}

void AccountPage::AddLookup() {
  find_ = MakeButton(QStringLiteral("cmFindServers"), Ui::tr("サーバーを探す(&F)"));
  find_->setToolTip(Ui::tr("メールアドレスのドメインに、受信と送信のサーバーを問い合わせます。"));
  find_->setMinimumWidth(find_->sizeHint().width());  // also with the shorter text
  result_ = PlainLabel({}, this);
  result_->setObjectName(QStringLiteral("lbFindServers"));
  result_->setWordWrap(true);
  result_->setMinimumHeight(result_->fontMetrics().lineSpacing() * kFoundLines);
  result_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  QSizePolicy policy = result_->sizePolicy();
  policy.setHorizontalPolicy(QSizePolicy::Expanding);
  policy.setVerticalPolicy(QSizePolicy::Fixed);  // the room that is left is not its own
  result_->setSizePolicy(policy);
  Layout().addRow(QString(), find_);
  Layout().addRow(QString(), result_);
  connect(txMailaddress_, &QLineEdit::editingFinished, this, &AccountPage::ProposeKnown);
  connect(find_, &QPushButton::clicked, this, &AccountPage::LookUp);
  connect(lookup_, &ServerLookup::Found, this, &AccountPage::TakeFound);
}

// The address of a stored account proposes nothing.
void AccountPage::Loaded(const Disk&) {
  answered_ = txMailaddress_->text();
}

void AccountPage::ProposeKnown() {
  Narrow(*txMailaddress_);
  const QString address = txMailaddress_->text();
  if (address == answered_) return;
  answered_ = address;
  ProposeName();
  lookup_->Stop();  // of another address
  find_->setText(Ui::tr("サーバーを探す(&F)"));
  const std::optional<MailServers> known = KnownServers(address);
  if (!Propose(known.value_or(MailServers()))) return;
  result_->setText(known ? Ui::tr("サーバーを入れました: 受信 %1、送信 %2")
                               .arg(known->receiving.host, known->sending.host)
                         : QString());
}

// Nobody has to think of one.
void AccountPage::ProposeName() {
  if (name_.text() != named_) return;
  named_ = answered_;
  name_.setText(named_);
}

// False when the user has named servers of his own. Most log in by the whole address.
bool AccountPage::Propose(MailServers servers) {
  for (Endpoint* server : {&servers.receiving, &servers.sending}) {
    if (server->who.user.isEmpty() && answered_.contains(u'@')) server->who.user = answered_;
  }
  if (!receiving_.IsUntouched() || !sending_.IsUntouched()) return false;
  receiving_.Propose(servers.receiving);
  sending_.Propose(servers.sending);
  return true;
}

void AccountPage::LookUp() {
  const bool isStopped = lookup_->IsRunning();
  lookup_->Stop();
  find_->setText(Ui::tr("サーバーを探す(&F)"));
  result_->clear();
  if (isStopped) return;
  if (const PageFault fault = Check()) {
    result_->setText(fault.text);
    return fault.field->setFocus();
  }
  answered_ = txMailaddress_->text();  // what is found stays when the box is left
  find_->setText(Ui::tr("中止(&F)"));
  result_->setText(Ui::tr("問い合わせています…"));
  lookup_->Start(txMailaddress_->text());
}

void AccountPage::TakeFound(const MailServers& found) {
  const MailServers servers = found.IsEmpty() ? KnownServers(answered_).value_or(found) : found;
  find_->setText(Ui::tr("サーバーを探す(&F)"));
  if (servers.IsEmpty()) {
    result_->setText(Ui::tr("見つかりませんでした。プロバイダーの案内を見て入力してください。"));
    return;
  }
  const QString none = Ui::tr("なし");
  const auto name = [&none](const Endpoint& server) {
    return server.host.isEmpty() ? none : server.host;
  };
  const QString text = Propose(servers)
                           ? Ui::tr("サーバーを入れました: 受信 %1、送信 %2")
                           : Ui::tr(
                                 "見つかったサーバーは受信 %1、送信 %2 です。入力されているものは"
                                 "そのままにしました。");
  result_->setText(ShownText(text.arg(name(servers.receiving), name(servers.sending))));
}

PageFault AccountPage::Check() {
  Narrow(*txMailaddress_);
  const QString address = txMailaddress_->text();
  if (!address.contains(u'@') || address.contains(u' ') || HasControlCharacter(address)) {
    return {Ui::tr("メールアドレスは「名前@ドメイン」の形で入力してください。"), txMailaddress_};
  }
  return {};
}

// --- what receive and send share ---------------------------------------------------------------

ServerPage::ServerPage(const QString& page, const QString& title, const QString& prefix)
    : FormPage(page, title), prefix_(prefix) {
  server_ = AddText(control::kText + prefix, Ui::tr("サーバー(&S)"));
  trusted_ = AddHidden(control::kText + prefix + account_key::kCertificates);
  connect(&check_, &ConnectionCheck::Finished, this, &ServerPage::ShowResult);
}

void ServerPage::AddSecurity() {
  security_ =
      AddChoice(control::kChoice + prefix_ + account_key::kSecurity, Ui::tr("セキュリティ(&Y)"),
                {Ui::tr("なし"), QStringLiteral("STARTTLS"), QStringLiteral("TLS")});
  port_ = AddText(control::kText + prefix_ + account_key::kPort, Ui::tr("ポート番号(&P)"));
  connect(security_, &QComboBox::currentIndexChanged, this, &ServerPage::FollowSecurity);
  security_->setCurrentIndex(kFirstSecurity);
}

void ServerPage::AddCredentials() {
  for (const CredentialPart& part : kCredentialParts) {
    const QString name = control::kText + prefix_ + part.key;
    const QString label = Ui::tr(part.label);
    credentials_.append(part.isSecret ? AddPassword(name, label) : AddText(name, label));
  }
}

Credentials ServerPage::Who() const {
  Credentials who;
  auto box = credentials_.begin();
  for (const CredentialPart& part : kCredentialParts) who.*part.text = (*box++)->text();
  return who;
}

bool ServerPage::HasServer() const {
  return !server_->text().isEmpty();
}

void ServerPage::LetSecrets(Disk& account) const {
  auto box = credentials_.begin();
  for (const CredentialPart& part : kCredentialParts) {
    if (part.isSecret) account.Let(prefix_ + part.key, (*box)->text());
    ++box;
  }
}

bool ServerPage::IsUntouched() const {
  return server_->text() == proposed_.host && User()->text() == proposed_.who.user;
}

void ServerPage::Propose(const Endpoint& server) {
  proposed_ = server;
  const bool isNone = server.host.isEmpty();
  const int security = isNone ? kFirstSecurity : static_cast<int>(server.security);
  server_->setText(server.host);
  security_->setCurrentIndex(security);
  port_->setText(QString::number(isNone ? ports_[security] : server.port));
  User()->setText(server.who.user);
}

// The port follows the security unless the user gave another one.
void ServerPage::FollowSecurity() {
  if (port_->text().isEmpty() || ports_.contains(port_->text().toInt())) {
    port_->setText(QString::number(ports_[security_->currentIndex()]));
  }
}

void ServerPage::Loaded(const Disk& object) {
  // As an account is used that says nothing of it, or what no program has written.
  if (!server_->text().isEmpty()) {
    security_->setCurrentIndex(static_cast<int>(Account::SecurityOf(object, prefix_)));
  }
  trust_->hide();
  result_->clear();
}

void ServerPage::AddCheckButton() {
  try_ = MakeButton(QStringLiteral("cmCheck") + prefix_, Ui::tr("接続を確認(&K)"));
  result_ = PlainLabel({}, this);
  result_->setObjectName(QStringLiteral("lbCheck") + prefix_);
  result_->setWordWrap(true);
  result_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  trust_ = MakeButton(QStringLiteral("cmTrust") + prefix_, Ui::tr("この証明書を信頼する"));
  trust_->hide();
  result_->setMinimumHeight(result_->fontMetrics().lineSpacing() * kResultLines);
  result_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  Layout().addRow(try_);
  Layout().addRow(result_);
  Layout().addRow(QString(), trust_);
  connect(try_, &QPushButton::clicked, this, &ServerPage::TryConnection);
  connect(trust_, &QPushButton::clicked, this, [this] {
    TrustedCertificates trusted(trusted_->text());
    trusted.Add(server_->text(), check_.RefusedCertificate());
    trusted_->setText(trusted.Stored());
    TryConnection();
  });
  exception_ = PlainLabel({}, this);
  exception_->setTextFormat(Qt::RichText);  // its text is ours
  exception_->setObjectName(QStringLiteral("lbTrust") + prefix_);
  exception_->setWordWrap(true);
  exception_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  Layout().addRow(exception_);
  connect(exception_, &QLabel::linkActivated, this, [this] {
    TrustedCertificates trusted(trusted_->text());
    trusted.RemoveFor(server_->text());
    trusted_->setText(trusted.Stored());
  });
  connect(trusted_, &QLineEdit::textChanged, this, &ServerPage::ShowException);
  connect(server_, &QLineEdit::textChanged, this, &ServerPage::ShowException);
  ShowException();
}

ConnectionTrial ServerPage::Trial() const {
  ConnectionTrial trial;
  trial.server.host = server_->text();
  trial.server.port = port_->text().toInt();
  trial.server.security = static_cast<Security>(security_->currentIndex());
  trial.server.who = Who();
  trial.server.trustedFingerprints = TrustedCertificates(trusted_->text()).For(server_->text());
  return trial;
}

void ServerPage::TryConnection() {
  if (const PageFault fault = Check()) {
    TellResult(fault.text);
    if (fault.field != nullptr) fault.field->setFocus();
    return;
  }
  trust_->hide();
  try_->setEnabled(false);
  TellResult(Ui::tr("接続しています…"));
  check_.Start(Trial());
}

// The exception that counts for the server as it is named now.
void ServerPage::ShowException() {
  QStringList lines;
  for (const QString& fingerprint : TrustedCertificates(trusted_->text()).For(server_->text())) {
    lines.append(fingerprint.left(kShownDigits).toUpper());
  }
  exception_->setVisible(!lines.isEmpty());
  exception_->setText(Ui::tr("確認できない証明書を信頼しています（SHA-256 %1…）。"
                             "<a href=\"#\">取り消す</a>")
                          .arg(lines.join(u'…' + Ui::tr("、"))));
}

void ServerPage::ShowResult(bool ok, const QString& text) {
  try_->setEnabled(true);
  TellResult(ShownText(text));
  trust_->setVisible(!ok && !check_.RefusedCertificate().isEmpty());
}

// Also where the page has more than there is room for.
void ServerPage::TellResult(const QString& text) {
  result_->setText(text);
  for (QWidget* above = parentWidget(); above != nullptr; above = above->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(above)) area->ensureWidgetVisible(result_);
  }
}

PageFault ServerPage::Check() {
  Narrow(*server_);
  Narrow(*port_);
  if (HasControlCharacter(server_->text()) || server_->text().contains(u' ')) {
    return {Ui::tr("サーバー名に使えない文字があります。"), server_};
  }
  if (!IsPort(port_->text())) {
    return {PortWords(), port_};
  }
  return {};
}

// --- receive -----------------------------------------------------------------------------------

ReceivePage::ReceivePage()
    : ServerPage(QStringLiteral("receive"), Ui::tr("受信(&R)"), account_key::kIn) {
  UsePorts({kPop3Ports.begin(), kPop3Ports.end()});
  protocol_ = AddChoice(control::kChoice + account_key::kIn + account_key::kProtocol,
                        Ui::tr("種類(&T)"), {QStringLiteral("POP3"), QStringLiteral("APOP")});
  AddSecurity();
  AddCredentials();
  savePassword_ = AddCheck(control::kCheck + account_key::kIn + account_key::kPasswordSave,
                           Ui::tr("パスワードを保存する(&V)"));
  savePassword_->setChecked(true);
  AddCheck(control::kCheck + account_key::kIn + account_key::kDelete,
           Ui::tr("受信したメッセージをサーバーから削除する(&X)"));
  AddCheckButton();
}

ConnectionTrial ReceivePage::Trial() const {
  ConnectionTrial trial = ServerPage::Trial();
  const auto protocol = static_cast<InProtocol>(protocol_->currentIndex());
  trial.mode = protocol == InProtocol::Apop ? kPopReceiveApop : kPopReceive;
  return trial;
}

PageFault ReceivePage::Check() {
  // An account that only sends.
  const bool isUnused = Server()->text().isEmpty() && (User()->text().isEmpty() || IsUntouched());
  if (isUnused && sending_ != nullptr && sending_->HasServer()) return ServerPage::Check();
  if (Server()->text().isEmpty()) {
    return {Ui::tr("受信サーバーが設定されていません。"), Server()};
  }
  User()->setText(User()->text().trimmed());
  if (User()->text().isEmpty() || HasControlCharacter(User()->text())) {
    return {Ui::tr("受信サーバーのユーザー名が設定されていません。"), User()};
  }
  return ServerPage::Check();
}

bool ReceivePage::SavesPassword() const {
  return savePassword_->isChecked();
}

// A password that is not to be saved is known while the program runs, by the loaded object alone.
void ReceivePage::Finish(Disk& bag) {
  if (Server()->text().isEmpty() && IsUntouched()) bag.Let(Account::UserKey(), QString());
  if (SavesPassword()) return;
  for (const QString& key : Account::AskedKeys()) bag.Let(key, QString());
}

// --- send --------------------------------------------------------------------------------------

SendPage::SendPage(const ReceivePage& receiving)
    : ServerPage(QStringLiteral("send"), Ui::tr("送信(&E)"), account_key::kOut),
      receiving_(receiving) {
  UsePorts({kSmtpPorts.begin(), kSmtpPorts.end()});
  AddChoice(control::kChoice + account_key::kOut + account_key::kProtocol, Ui::tr("種類(&T)"),
            {QStringLiteral("SMTP"), QStringLiteral("POP before SMTP")});
  AddSecurity();
  authenticate_ = AddCheck(control::kCheck + account_key::kOut + account_key::kAuth,
                           Ui::tr("送信時に認証する(&Z)"));
  AddCredentials();
  const auto follow = [this](bool on) {
    for (QLineEdit* box : CredentialBoxes()) box->setEnabled(on);
  };
  follow(false);
  connect(authenticate_, &QCheckBox::toggled, this, follow);
  connect(authenticate_, &QCheckBox::clicked, this, [this] {
    follows_ = true;
    FollowReceiving();
  });
  AddCheckButton();
}

void SendPage::Propose(const Endpoint& server) {
  ServerPage::Propose(server);
  // Who takes mail from everybody is rare.
  authenticate_->setChecked(!server.who.user.isEmpty());
  given_.user = server.who.user;
  follows_ = true;
}

void SendPage::showEvent(QShowEvent* event) {
  FollowReceiving();
  ServerPage::showEvent(event);
}

// Most providers have one login for both.
void SendPage::FollowReceiving() {
  if (!follows_) return;
  const Credentials now = receiving_.Who();
  auto box = CredentialBoxes().begin();
  for (const CredentialPart& part : kCredentialParts) {
    QLineEdit& follower = **box++;
    const bool isOwn = part.isSecret && User()->text() != now.user;
    if (isOwn || follower.text() != given_.*part.text) continue;
    // A password that is not to be stored for receiving is not stored here either.
    const bool isLeftOut = part.isAsked && !receiving_.SavesPassword();
    if (!authenticate_->isChecked() && !isLeftOut) continue;
    given_.*part.text = isLeftOut ? QString() : now.*part.text;
    follower.setText(given_.*part.text);
  }
}

ConnectionTrial SendPage::Trial() const {
  ConnectionTrial trial = ServerPage::Trial();
  if (!trial.server.who.IsKnown() && SharesAskedPassword()) trial.server.who = receiving_.Who();
  trial.mode = kPopSend;
  trial.authenticate = authenticate_->isChecked();
  return trial;
}

// Whether the login is that of receiving, whose password is not to be stored.
bool SendPage::SharesAskedPassword() const {
  return !receiving_.SavesPassword() && Who().user == receiving_.Who().user;
}

// Whenever it came here. To send, the one that is asked for is used
// (`Account::SendsByAskedPassword`).
void SendPage::Finish(Disk& bag) {
  if (!SharesAskedPassword()) return;
  const Credentials receiving = receiving_.Who();
  const Credentials sending = Who();
  for (const CredentialPart& part : kCredentialParts) {
    if (!part.isAsked || sending.*part.text != receiving.*part.text) continue;
    bag.Let(account_key::kOut + part.key, QString());
  }
}

PageFault SendPage::Check() {
  FollowReceiving();
  User()->setText(User()->text().trimmed());
  if (HasControlCharacter(User()->text())) {
    return {Ui::tr("送信サーバーのユーザー名に使えない文字があります。"), User()};
  }
  return ServerPage::Check();
}

}  // namespace vorn
