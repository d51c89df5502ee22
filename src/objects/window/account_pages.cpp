#include "objects/window/account_pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "storage/ui.h"
#include "transfer/trusted_certificates.h"

namespace vorn {
namespace {

// Ports by security: none, STARTTLS, TLS from the start.
const QList<int> kPop3Ports = {110, 110, 995};
const QList<int> kSmtpPorts = {25, 587, 465};

constexpr int kResultLines = 3;
constexpr int kSignatureLines = 5;
constexpr qsizetype kShownDigits = 16;

bool HasControlCharacter(const QString& text) {
  return std::any_of(text.begin(), text.end(),
                     [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; });
}

// As it is typed while an input method is on: in full-width characters, with blanks around.
void Narrow(QLineEdit& box) {
  box.setText(box.text().normalized(QString::NormalizationForm_KC).trimmed());
}

}  // namespace

// --- account -----------------------------------------------------------------------------------

AccountPage::AccountPage() : FormPage(object_type::kAccount, Ui::tr("アカウント(&A)")) {
  txMailaddress_ = AddText(QStringLiteral("txMailaddress"), Ui::tr("メールアドレス(&M)"));
  txDisplay_ = AddText(QStringLiteral("txDisplay"), Ui::tr("表示名(&D)"));
  auto* signature = new TextBox(this);
  signature->setObjectName(QStringLiteral("txSignature"));
  signature->setTabChangesFocus(true);
  signature->setFixedHeight(signature->fontMetrics().lineSpacing() * (kSignatureLines + 1));
  signature->setToolTip(Ui::tr("新しいメッセージと返信の本文に入ります。空なら入れません。"));
  Layout().addRow(Ui::tr("署名(&B)"), signature);
  AddCheck(QStringLiteral("ckEventLog"), Ui::tr("送受信の結果をイベントに記録する(&L)"))
      ->setChecked(true);
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
  server_ = AddText(QStringLiteral("tx") + prefix, Ui::tr("サーバー(&S)"));
  trusted_ = AddHidden(QStringLiteral("tx") + prefix + QStringLiteral("Certificates"));
  connect(&check_, &ConnectionCheck::Finished, this, &ServerPage::ShowResult);
}

void ServerPage::AddSecurity() {
  security_ = AddChoice(QStringLiteral("cb") + prefix_ + QStringLiteral("Security"),
                        Ui::tr("セキュリティ(&Y)"),
                        {Ui::tr("なし"), QStringLiteral("STARTTLS"), QStringLiteral("TLS")});
  port_ =
      AddText(QStringLiteral("tx") + prefix_ + QStringLiteral("Port"), Ui::tr("ポート番号(&P)"));
  port_->setText(QString::number(ports_[0]));
  connect(security_, &QComboBox::currentIndexChanged, this, &ServerPage::FollowSecurity);
}

// The port follows the security unless the user gave another one.
void ServerPage::FollowSecurity() {
  if (port_->text().isEmpty() || ports_.contains(port_->text().toInt())) {
    port_->setText(QString::number(ports_[security_->currentIndex()]));
  }
}

void ServerPage::Loaded(const Disk&) {
  trust_->hide();
  result_->clear();
}

void ServerPage::AddCheckButton() {
  try_ = new QPushButton(Ui::tr("接続を確認(&K)"), this);
  try_->setObjectName(QStringLiteral("cmCheck") + prefix_);
  try_->setAutoDefault(false);
  result_ = PlainLabel({}, this);
  result_->setObjectName(QStringLiteral("lbCheck") + prefix_);
  result_->setWordWrap(true);
  result_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  trust_ = new QPushButton(Ui::tr("この証明書を信頼する"), this);
  trust_->setObjectName(QStringLiteral("cmTrust") + prefix_);
  trust_->setAutoDefault(false);
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
  trial.server = server_->text();
  trial.port = port_->text().toInt();
  trial.security = static_cast<Security>(security_->currentIndex());
  trial.trustedFingerprints = TrustedCertificates(trusted_->text()).For(trial.server);
  return trial;
}

void ServerPage::TryConnection() {
  if (const PageFault fault = Check()) {
    result_->setText(fault.text);
    if (fault.field != nullptr) fault.field->setFocus();
    return;
  }
  trust_->hide();
  try_->setEnabled(false);
  result_->setText(Ui::tr("接続しています…"));
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
                          .arg(lines.join(QStringLiteral("…、"))));
}

void ServerPage::ShowResult(bool ok, const QString& text) {
  try_->setEnabled(true);
  result_->setText(ShownText(text));
  trust_->setVisible(!ok && !check_.RefusedCertificate().isEmpty());
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

void ServerPage::Finish(Disk&) {}

// --- receive -----------------------------------------------------------------------------------

ReceivePage::ReceivePage()
    : ServerPage(QStringLiteral("receive"), Ui::tr("受信(&R)"), QStringLiteral("InMailServer")) {
  UsePorts(kPop3Ports);
  protocol_ = AddChoice(QStringLiteral("cbInMailServerProtocol"), Ui::tr("種類(&T)"),
                        {QStringLiteral("POP3"), QStringLiteral("APOP")});
  AddSecurity();
  user_ = AddText(QStringLiteral("txInMailServerUser"), Ui::tr("ユーザー名(&U)"));
  password_ = AddPassword(QStringLiteral("txInMailServerPassword"), Ui::tr("パスワード(&W)"));
  savePassword_ =
      AddCheck(QStringLiteral("ckInMailServerPasswordSave"), Ui::tr("パスワードを保存する(&V)"));
  savePassword_->setChecked(true);
  AddCheck(QStringLiteral("ckInMailServerDelete"),
           Ui::tr("受信したメッセージをサーバーから削除する(&X)"));
  AddCheckButton();
}

ConnectionTrial ReceivePage::Trial() const {
  ConnectionTrial trial = ServerPage::Trial();
  trial.apop = protocol_->currentIndex() == 1;
  trial.user = user_->text();
  trial.password = password_->text();
  return trial;
}

PageFault ReceivePage::Check() {
  // An account that only sends.
  const auto* sends = window()->findChild<QLineEdit*>(QStringLiteral("txOutMailServer"));
  const bool isUnused = Server()->text().isEmpty() && user_->text().isEmpty();
  if (isUnused && sends != nullptr && !sends->text().isEmpty()) return ServerPage::Check();
  if (Server()->text().isEmpty()) {
    return {Ui::tr("受信サーバーが設定されていません。"), Server()};
  }
  user_->setText(user_->text().trimmed());
  if (user_->text().isEmpty() || HasControlCharacter(user_->text())) {
    return {Ui::tr("受信サーバーのユーザー名が設定されていません。"), user_};
  }
  return ServerPage::Check();
}

// A password that is not to be saved is known while the program runs, by the loaded object alone.
void ReceivePage::Finish(Disk& bag) {
  if (!savePassword_->isChecked()) bag.Let(QStringLiteral("InMailServerPassword"), QString());
}

// --- send --------------------------------------------------------------------------------------

SendPage::SendPage()
    : ServerPage(QStringLiteral("send"), Ui::tr("送信(&E)"), QStringLiteral("OutMailServer")) {
  UsePorts(kSmtpPorts);
  AddChoice(QStringLiteral("cbOutMailServerProtocol"), Ui::tr("種類(&T)"),
            {QStringLiteral("SMTP"), QStringLiteral("POP before SMTP")});
  AddSecurity();
  authenticate_ = AddCheck(QStringLiteral("ckOutMailServerAuth"), Ui::tr("送信時に認証する(&Z)"));
  user_ = AddText(QStringLiteral("txOutMailServerUser"), Ui::tr("ユーザー名(&U)"));
  password_ = AddPassword(QStringLiteral("txOutMailServerPassword"), Ui::tr("パスワード(&W)"));
  const auto follow = [this](bool on) {
    user_->setEnabled(on);
    password_->setEnabled(on);
  };
  follow(false);
  connect(authenticate_, &QCheckBox::toggled, this, follow);
  AddCheckButton();
}

ConnectionTrial SendPage::Trial() const {
  ConnectionTrial trial = ServerPage::Trial();
  trial.isSmtp = true;
  trial.authenticate = authenticate_->isChecked();
  trial.user = user_->text();
  trial.password = password_->text();
  return trial;
}

PageFault SendPage::Check() {
  user_->setText(user_->text().trimmed());
  if (HasControlCharacter(user_->text())) {
    return {Ui::tr("送信サーバーのユーザー名に使えない文字があります。"), user_};
  }
  return ServerPage::Check();
}

}  // namespace vorn
