#include "frame/window/login_window.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include "frame/profile_login.h"
#include "kit/window/caps_lock_hint.h"
#include "kit/window/icons.h"
#include "kit/window/ok_cancel.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/profile/lost_files.h"
#include "objects/profile/profile_password.h"
#include "objects/select_objects.h"
#include "storage/bags/profile_bag.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

constexpr int kWidth = 360;
// Of the request for this window, which nobody else reads: the one profile that may log in.
const QString kOnlyProfile = QStringLiteral("login");

// Making the key of a password takes up to a second or two, in which the window stands still.
class BusySign {
 public:
  explicit BusySign(QPushButton& button) : button_(button) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    button_.setDown(true);
    button_.repaint();
  }
  ~BusySign() {
    button_.setDown(false);
    QApplication::restoreOverrideCursor();
  }
  Q_DISABLE_COPY_MOVE(BusySign)

 private:
  QPushButton& button_;
};

}  // namespace

LoginWindow::LoginWindow(Context& context, QWidget* parent)
    : QDialog(parent), context_(context), cbProfile_(new QComboBox), txPassword_(new QLineEdit) {
  setObjectName(QStringLiteral("login"));
  setWindowTitle(Ui::tr("プロファイルの選択(&L)").remove(QStringLiteral("(&L)")).trimmed());
  setWindowIcon(Icon(QStringLiteral("mail")));
  cbProfile_->setObjectName(QStringLiteral("cbProfile"));
  txPassword_->setObjectName(QStringLiteral("txPassword"));
  txPassword_->setEchoMode(QLineEdit::Password);

  auto* picture = PlainLabel();
  picture->setObjectName(QStringLiteral("piObject"));
  picture->setPixmap(Icon(object_type::kProfile).pixmap(48, 48));
  auto* product =
      PlainLabel(kApplicationTitle + QStringLiteral(" version. ") + context_.VersionText);
  product->setObjectName(QStringLiteral("Label3"));

  auto* buttons = OkCancelBox();
  connect(buttons, &QDialogButtonBox::accepted, this, &LoginWindow::cmOk_Click);
  connect(buttons, &QDialogButtonBox::rejected, this, &LoginWindow::reject);

  setMinimumWidth(kWidth);
  auto* form = new QFormLayout(this);
  form->addRow(picture, product);
  form->addRow(Ui::tr("プロファイル(&L)"), cbProfile_);
  form->addRow(Ui::tr("パスワード(&P)"), txPassword_);
  form->addRow(QString(), new CapsLockHint(*txPassword_));
  form->addRow(buttons);
  txPassword_->setFocus();
}

void LoginWindow::LoadDefaultProperty(const DiskPtr& request) {
  const QString only = request == nullptr ? QString() : request->Text(kOnlyProfile);
  cbProfile_->clear();
  const DiskCollectionPtr profiles =
      SelectObjects(context_.Objects, *context_.Session, object_type::kProfile);
  for (const DiskPtr& profile : *profiles) {
    const QString name = AnyObject(*profile).Name();
    if (only.isEmpty() || name == only) cbProfile_->addItem(name);
  }
  cbProfile_->setCurrentIndex(0);
}

void LoginWindow::ChooseLast() {
  const DiskPtr last = DefaultProfile(context_);
  const int at = last == nullptr ? -1 : cbProfile_->findText(AnyObject(*last).Name());
  if (at >= 0) cbProfile_->setCurrentIndex(at);
}

void LoginWindow::cmOk_Click() {
  const DiskPtr profile = FindProfile(context_, cbProfile_->currentText());
  if (profile == nullptr) return;
  const QString password = txPassword_->text();
  if (!ConfirmFirst(*profile, password)) return;
  const auto checked = [&] {
    const BusySign sign(*findChild<QPushButton*>(QStringLiteral("cmOk")));
    return CheckLogin(context_, profile, password);
  };
  Result<LoginCheck> check = checked();
  while (check == LoginCheck::FilesLost) {
    if (!AskAboutLostFiles(profile, password)) return;
    check = checked();
  }
  if (!check) {
    ShowBox(this, QMessageBox::Information, LoginRefusal(check.Error()));
    txPassword_->selectAll();
    txPassword_->setFocus();
    return;
  }
  BeginLogin(context_, *profile, password);
  accept();
  Q_EMIT LoggedIn();
}

// The first login makes the profile's files with the password that is typed: a slip of the fingers
// would lock its user out for ever.
bool LoginWindow::ConfirmFirst(const Disk& profile, const QString& password) {
  if (password.isEmpty() || HasContent(PlatformPath(context_, ProfileBag(profile).File())))
    return true;
  if (!LostFiles(context_, profile).isEmpty()) return true;  // not the first one
  bool given = false;
  const QString again = QInputDialog::getText(
      this, kApplicationTitle,
      Ui::tr("このプロファイルは初めて使われます。パスワードをもう一度入力してください。"),
      QLineEdit::Password, {}, &given);
  if (given && again == password) return true;
  if (given) {
    ShowBox(this, QMessageBox::Information, Ui::tr("二つのパスワードが一致しません。"));
  }
  txPassword_->selectAll();
  txPassword_->setFocus();
  return false;
}

// What becomes of the files that are missing is for the user alone to say.
bool LoginWindow::AskAboutLostFiles(const DiskPtr& profile, const QString& password) {
  const QList<LostFile> lost =
      LostFiles(context_, *profile, PasswordFor(context_, *profile, password));
  LostFileChoice choice;
  for (const LostFile& file : lost) choice.reconnect += file.found;
  QMessageBox question(QMessageBox::Warning, kApplicationTitle, LostFilesText(lost),
                       QMessageBox::NoButton, this);
  question.setTextFormat(Qt::PlainText);
  const auto button = [&question](const QString& name, const QString& text) {
    QPushButton* added = question.addButton(text, QMessageBox::ActionRole);
    added->setObjectName(name);
    return added;
  };
  QPushButton* found = choice.reconnect.isEmpty()
                           ? nullptr
                           : button(QStringLiteral("cmReconnect"), Ui::tr("つなぎ直す(&R)"));
  QPushButton* chosen = button(QStringLiteral("cmChoose"), Ui::tr("ファイルを選ぶ(&F)..."));
  QPushButton* created = button(QStringLiteral("cmCreate"), Ui::tr("新しい空のファイルを作る(&N)"));
  QPushButton* cancel = question.addButton(Ui::tr("キャンセル"), QMessageBox::RejectRole);
  question.setDefaultButton(found != nullptr ? found : cancel);
  question.setEscapeButton(cancel);
  question.exec();
  const QAbstractButton* clicked = question.clickedButton();
  if (clicked == chosen) {
    choice.reconnect =
        OpenFiles(this, Ui::tr("なくなったファイルを選ぶ"), QFileInfo(lost.first().path).path(), {},
                  QFileDialog::ExistingFiles);
    if (choice.reconnect.isEmpty()) return true;  // asked again
  } else if (clicked == created) {
    choice = {true, {}};
  } else if (found == nullptr || clicked != found) {
    context_.Lock.reset();
    return false;
  }
  while (true) {
    const Result<> resolved = ResolveLostFiles(context_, profile, password, choice);
    if (resolved) break;
    const StorageError& reason = resolved.Error();
    const bool isShut =
        !choice.reconnect.isEmpty() && reason.kind == StorageError::Kind::WrongPassword;
    if (!isShut) ShowBox(this, QMessageBox::Warning, reason.text);
    if (!isShut || !AskFormerPassword(reason.text, choice)) break;
  }
  return true;
}

// A password that the user typed is remembered nowhere; only they can say what it was.
bool LoginWindow::AskFormerPassword(const QString& reason, LostFileChoice& choice) {
  bool given = false;
  const QString former = QInputDialog::getText(
      this, kApplicationTitle,
      reason + u'\n' +
          Ui::tr("このファイルのときのパスワード、または回復コードを入力してください。"),
      QLineEdit::Password, {}, &given);
  if (!given) return false;
  choice.former = {former};
  return true;
}

void LoginWindow::reject() {
  ProfileBag::SetAnswer(*context_.Session, QString());
  QDialog::reject();
  Q_EMIT Cancelled();
}

}  // namespace vorn
