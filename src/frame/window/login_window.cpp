#include "frame/window/login_window.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/window/icons.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kWidth = 360;

}  // namespace

LoginWindow::LoginWindow(Context& context, QWidget* parent)
    : QDialog(parent), context_(context), cbProfile_(new QComboBox), txPassword_(new QLineEdit) {
  setObjectName(QStringLiteral("login"));
  setWindowTitle(Ui::tr("プロファイルの選択(&L)").remove(QStringLiteral("(&L)")));
  setWindowIcon(Icon(QStringLiteral("mail")));
  cbProfile_->setObjectName(QStringLiteral("cbProfile"));
  txPassword_->setObjectName(QStringLiteral("txPassword"));
  txPassword_->setEchoMode(QLineEdit::Password);

  auto* picture = new QLabel;
  picture->setObjectName(QStringLiteral("piObject"));
  picture->setPixmap(Icon(object_type::kProfile).pixmap(48, 48));
  auto* product =
      new QLabel(kApplicationTitle + QStringLiteral(" version. ") + context_.VersionText);
  product->setObjectName(QStringLiteral("Label3"));

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmOk"));
  buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("OK"));
  buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmCancel"));
  buttons->button(QDialogButtonBox::Cancel)->setText(Ui::tr("キャンセル"));
  connect(buttons, &QDialogButtonBox::accepted, this, &LoginWindow::cmOk_Click);
  connect(buttons, &QDialogButtonBox::rejected, this, &LoginWindow::reject);

  setMinimumWidth(kWidth);
  auto* form = new QFormLayout(this);
  form->addRow(picture, product);
  form->addRow(Ui::tr("プロファイル(&L)"), cbProfile_);
  form->addRow(Ui::tr("パスワード(&P)"), txPassword_);
  form->addRow(buttons);
  txPassword_->setFocus();
}

void LoginWindow::LoadDefaultProperty(const DiskPtr& request) {
  const QString only = request == nullptr ? QString() : request->Text(u"login");
  cbProfile_->clear();
  const DiskCollectionPtr profiles =
      SelectObjects(context_.Objects, *context_.Session, object_type::kProfile);
  for (const DiskPtr& profile : *profiles) {
    const QString name = profile->Text(u"Object");
    if (only.isEmpty() || name == only) cbProfile_->addItem(name);
  }
  cbProfile_->setCurrentIndex(0);
}

void LoginWindow::cmOk_Click() {
  const DiskPtr profile = FindProfile(context_, cbProfile_->currentText());
  if (profile == nullptr) return;
  const QString password = txPassword_->text();
  if (!TestProfilePassword(context_, *profile, password)) {
    const StorageError& reason = context_.Data.LastError();
    QString text = Ui::tr("ログインできませんでした。入力したプロファイル情報を確認してください。");
    // Any other reason than a wrong password the user has to know.
    if (reason.kind != StorageError::Kind::WrongPassword) text += kLineBreak + reason.text;
    QMessageBox::information(this, kApplicationTitle, text);
    txPassword_->selectAll();
    txPassword_->setFocus();
    return;
  }
  BeginLogin(context_, *profile, password);
  accept();
  Q_EMIT LoggedIn();
}

void LoginWindow::reject() {
  context_.Session->Let(QStringLiteral("status"), QString());
  QDialog::reject();
  Q_EMIT Cancelled();
}

}  // namespace vorn
