#include "objects/window/profile_page.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <utility>

#include "kit/window/plain_text.h"
#include "kit/window/progress_window.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/profile/profile_password.h"
#include "objects/window/control_names.h"
#include "objects/window/recovery_code_window.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/keys/file_key.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

constexpr int kFileNameCharacters = 8;
constexpr int kListHeight = 110;

QString ChangedAfterLogin() {
  return Ui::tr("このプロファイルにログインすると変えられます");
}

QString FileName(const QString& stored) {
  return stored.section(u'\\', -1).section(u'/', -1);
}

QTableWidget* MakeFileList(QWidget* parent) {
  auto* list = new QTableWidget(0, 2, parent);
  list->setObjectName(control::kList + ProfileBag::kHistory);
  list->setProperty("tag", QStringLiteral("text"));
  list->setHorizontalHeaderLabels({Ui::tr("ファイル"), Ui::tr("状態")});
  list->horizontalHeader()->setStretchLastSection(true);
  list->setColumnWidth(0, 200);
  list->verticalHeader()->hide();
  list->setSelectionBehavior(QAbstractItemView::SelectRows);
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  list->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list->setTabKeyNavigation(false);
  list->setFixedHeight(kListHeight);
  list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  return list;
}

}  // namespace

ProfilePage::ProfilePage(Context& context, const SerialId& serialId)
    : FormPage(object_type::kProfile, Ui::tr("プロファイル(&R)")),
      context_(context),
      serialId_(serialId) {
  txProfile_ = AddHidden(control::kText + ProfileBag::kFile);
  txMail_ = AddHidden(control::kText + ProfileBag::kMailFiles);
  lvHistory_ = MakeFileList(this);
  Layout().addRow(Ui::tr("メッセージのデータベース(&B)"), lvHistory_);

  // Nobody takes the files from a profile whose password he was not asked for.
  const bool mayChangeFiles = IsLoggedIn() || IsNew();
  auto* buttons = new QHBoxLayout;
  const auto button = [&](const QString& name, const QString& text, auto clicked) {
    QPushButton* push = MakeButton(name, text);
    push->setEnabled(mayChangeFiles);
    if (!mayChangeFiles) push->setToolTip(ChangedAfterLogin());
    connect(push, &QPushButton::clicked, this, clicked);
    buttons->addWidget(push);
  };
  button(QStringLiteral("cmNewDatabase"), Ui::tr("追加(&A)"), &ProfilePage::cmNewDatabase_Click);
  button(QStringLiteral("cmFoundDatabase"), Ui::tr("既存のファイル(&E).."),
         &ProfilePage::AddExisting);
  button(QStringLiteral("cmUseDatabase"), Ui::tr("使用する(&U)"), &ProfilePage::UseDatabase);
  button(QStringLiteral("cmDeleteDatabase"), Ui::tr("削除(&D)"), &ProfilePage::RemoveDatabase);
  buttons->addStretch();
  Layout().addRow(QString(), buttons);

  // Whoever finds the program open does not shut its user out.
  txPasswordNow_ = AddPassword(QStringLiteral("txPasswordNow"), Ui::tr("いまのパスワード(&T)"));
  txPasswordNow_->setProperty("tag", QStringLiteral("nosave"));
  txPasswordNow_->setEnabled(HasPassword());
  if (IsLoggedIn() && !HasPassword()) txPasswordNow_->setPlaceholderText(Ui::tr("ありません"));
  txPassword_ = AddPassword(QStringLiteral("txPassword"), Ui::tr("新しいパスワード(&W)"));
  txPasswordAgain_ = AddPassword(QStringLiteral("txPasswordAgain"), Ui::tr("もう一度入力(&I)"));
  for (QLineEdit* box : {txPassword_, txPasswordAgain_}) {
    box->setProperty("tag", QStringLiteral("nosave"));
    box->setEnabled(IsLoggedIn());
    box->setPlaceholderText(IsLoggedIn() ? Ui::tr("変えないときは空のまま")
                            : IsNew()    ? Ui::tr("最初のログインで決まります")
                                         : ChangedAfterLogin());
  }
  ckNoPassword_ = new QCheckBox(Ui::tr("パスワードをなくす(&N)"), this);
  ckNoPassword_->setObjectName(QStringLiteral("ckNoPassword"));
  ckNoPassword_->setProperty("tag", QStringLiteral("nosave"));
  ckNoPassword_->setEnabled(HasPassword());
  Layout().addRow(QString(), ckNoPassword_);
  connect(ckNoPassword_, &QCheckBox::toggled, this, &ProfilePage::WarnOfNoPassword);
  if (IsLoggedIn()) AddProtection();
}

QString ProfilePage::ProtectionText() const {
  if (HasPassword()) {
    return Ui::tr(
        "メールは、パスワードから作った鍵で暗号化されています。パスワードを忘れると"
        "読めません。");
  }
  if (!IsUnderCode(context_, *context_.Session)) {
    return Ui::tr(
        "パスワードがないので、このパソコンのファイルを見られる人はだれでもメールを"
        "読めます。");
  }
  if (CodeFileOf(context_, *context_.Session).NamesSecret()) {
    return Ui::tr(
        "パスワードがないので、メールは、デスクトップのキーリングにある鍵で暗号化されています。"
        "プロファイルのフォルダを手に入れた人は読めませんが、このパソコンにあなたとしてログイン"
        "した人は読めます。それも防ぐには、パスワードを決めてください。キーリングの鍵がなくなると"
        "回復コードでしか読めないので、回復コードを印刷して保管してください。パスワードを決めると、"
        "今の回復コードは使えなくなります。");
  }
  return Ui::tr(
      "パスワードがないので、メールは、プロファイルのフォルダにある鍵のファイル"
      "「profile.key」で暗号化されています。メールのファイルだけを手に入れた人は読めません"
      "が、フォルダごと手に入れた人は読めます。それも防ぐには、パスワードを決めて"
      "ください。決めると、今の回復コードは使えなくなります。");
}

// What keeps others from the mail now.
void ProfilePage::AddProtection() {
  auto* protection = PlainLabel(ProtectionText());
  protection->setObjectName(QStringLiteral("lbProtection"));
  protection->setWordWrap(true);
  Layout().addRow(QString(), protection);
  const QString code = FileKey::CodeIn(ProfileBag(*context_.Session).Password());
  if (code.isEmpty()) return;
  QPushButton* show =
      MakeButton(QStringLiteral("cmRecoveryCode"), Ui::tr("回復コードを表示(&K).."));
  connect(show, &QPushButton::clicked, this, [this, code] {
    RememberCode(context_);
    RecoveryCodeWindow(AnyObject(*context_.Session).Name(), code, this).exec();
  });
  auto* row = new QHBoxLayout;
  row->addWidget(show);
  row->addStretch();
  Layout().addRow(QString(), row);
}

void ProfilePage::WarnOfNoPassword(bool none) {
  for (QLineEdit* box : {txPassword_, txPasswordAgain_}) {
    if (none) box->clear();
    box->setEnabled(IsLoggedIn() && !none);
  }
  if (!none) return;
  const auto answer = ShowBox(
      this, QMessageBox::Warning,
      Ui::tr("パスワードをなくすと、パスワードを入力せずにメールを読めるようになります。"
             "新しい回復コードが作られます。前に印刷したコードがあっても、もう使えません。\n\n"
             "よろしいですか？"),
      QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  if (answer != QMessageBox::Yes) ckNoPassword_->setChecked(false);
}

// Whether it has no file of its own yet.
bool ProfilePage::IsNew() const {
  return !QFileInfo::exists(Folder() + QStringLiteral("/profile.mbx"));
}

QString ProfilePage::Folder() const {
  return PlatformPath(context_, QStringLiteral("/current/") + serialId_.Text());
}

bool ProfilePage::IsLoggedIn() const {
  return context_.Session->Serial() == serialId_;
}

// One of the user's own.
bool ProfilePage::HasPassword() const {
  return IsLoggedIn() && HasOwnPassword(context_);
}

QString ProfilePage::SelectedFile() const {
  const QTableWidgetItem* item = lvHistory_->item(lvHistory_->currentRow(), 0);
  return item == nullptr ? QString() : item->data(Qt::UserRole).toString();
}

void ProfilePage::Loaded(const Disk&) {
  // The object in use holds the password of the login under the boxes' key.
  for (QLineEdit* box : {txPasswordNow_, txPassword_, txPasswordAgain_}) box->clear();
  if (lvHistory_->rowCount() == 0) cmDefaultDatabase_Click();
  MarkUsed();
}

void ProfilePage::cmDefaultDatabase_Click() {
  txProfile_->setText(QStringLiteral("/current/") + serialId_.Text() +
                      QStringLiteral("\\profile.mbx"));
  cmNewDatabase_Click();
  txMail_->setText(SelectedFile());
  MarkUsed();
}

void ProfilePage::cmNewDatabase_Click() {
  AddLine(*lvHistory_, QStringLiteral("/current/") + serialId_.Text() + u'\\' +
                           context_.Data.NewSerialID().Text().left(kFileNameCharacters) +
                           QStringLiteral(".mbx"));
  lvHistory_->setCurrentCell(lvHistory_->rowCount() - 1, 0);
  MarkUsed();
}

// One that was kept when it was taken from the list, or that was copied back.
void ProfilePage::AddExisting() {
  const QString chosen = OpenFiles(this, Ui::tr("既存のファイル"), Folder(),
                                   Ui::tr("データベース (*.mbx)"), QFileDialog::ExistingFile)
                             .value(0);
  if (chosen.isEmpty()) return;
  const QFileInfo file(chosen);
  const QString stored = QStringLiteral("/current/") + serialId_.Text() + u'\\' + file.fileName();
  const QString refusal = WhyNotAdded(file, stored);
  if (!refusal.isEmpty()) {
    ShowBox(this, QMessageBox::Information, refusal);
    return;
  }
  toDelete_.removeAll(stored);
  AddLine(*lvHistory_, stored);
  lvHistory_->setCurrentCell(lvHistory_->rowCount() - 1, 0);
  MarkUsed();
}

QString ProfilePage::WhyNotAdded(const QFileInfo& file, const QString& stored) {
  if (file.dir() != QDir(Folder())) {
    return Ui::tr(
               "プロファイルのフォルダ「%1」にあるファイルだけを使えます。先にそこへコピーして"
               "ください。")
        .arg(Folder());
  }
  for (int row = 0; row < lvHistory_->rowCount(); ++row) {
    if (Line(*lvHistory_, row) == stored) return Ui::tr("このファイルは一覧にあります。");
  }
  const QString sentence = Ui::tr("メッセージのデータベースとして開けません。");
  if (file.fileName() == u"profile.mbx" || file.size() == 0) return sentence;
  const Result<> opens = OpenOrAdopt(stored);
  return opens ? QString() : opens.Error().Behind(sentence).text;
}

// One that was kept still has the password that the profile had then.
Result<> ProfilePage::OpenOrAdopt(const QString& stored) {
  const Result<> opens = Open(stored);
  if (opens) return opens;
  const QString path = PlatformPath(context_, stored);
  const Result<> fits = ResultOf(
      context_.Data, context_.Data.TestPassword(path, ProfileBag(*context_.Session).Password()));
  if (fits.Error().kind != StorageError::Kind::WrongPassword) return opens;
  for (const QString& former : FormerPasswords(context_)) {
    if (context_.Data.TestPassword(path, former)) return Adopt(stored, former);
  }
  bool answered = false;
  const QString former = QInputDialog::getText(
      this, Ui::tr("既存のファイル"),
      Ui::tr("このファイルは今のパスワードでは開けません。一覧から外したときのパスワードを"
             "入力してください。"),
      QLineEdit::Password, QString(), &answered);
  return answered ? Adopt(stored, former) : opens;
}

Result<> ProfilePage::Adopt(const QString& stored, const QString& former) {
  const Result<> adopted = AdoptMailFile(context_, PlatformPath(context_, stored), former);
  return adopted ? Open(stored) : adopted;
}

Result<> ProfilePage::Open(const QString& stored) {
  const OpenedDatabase opened(context_, DatabaseKind::MailByPath, stored);
  return opened ? Result<>() : opened.Error();
}

void ProfilePage::UseDatabase() {
  if (SelectedFile().isEmpty()) return;
  txMail_->setText(SelectedFile());
  MarkUsed();
}

void ProfilePage::RemoveDatabase() {
  const QString file = SelectedFile();
  if (file.isEmpty() || file == txMail_->text()) return;  // the one in use stays
  QMessageBox box(
      QMessageBox::Question, kApplicationTitle,
      Ui::tr("データーベースに保存されているメッセージも削除されます。よろしいですか？"),
      QMessageBox::Cancel, this);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(QMessageBox::Cancel);
  const bool exists = QFileInfo::exists(PlatformPath(context_, file));
  QPushButton* remove = box.addButton(Ui::tr("削除する"), QMessageBox::DestructiveRole);
  // The file itself may be all that is left of the messages in it.
  QPushButton* keep =
      exists ? box.addButton(Ui::tr("ファイルを残す"), QMessageBox::AcceptRole) : nullptr;
  if (exists) {
    box.setInformativeText(
        Ui::tr("ファイル「%1」は「OK」を押したときに削除します。残すときは一覧から外れるだけで、"
               "「既存のファイル」で戻せます。")
            .arg(FileName(file)));
  }
  box.exec();
  if (box.clickedButton() != remove && (keep == nullptr || box.clickedButton() != keep)) return;
  if (exists && box.clickedButton() == remove) toDelete_.append(file);
  lvHistory_->removeRow(lvHistory_->currentRow());
}

bool ProfilePage::DeleteRemoved() {
  bool deleted = true;
  for (const QString& file : std::exchange(toDelete_, {})) {
    const QString path = PlatformPath(context_, file);
    context_.Data.CloseFile(path);
    deleted = QFile::remove(path) && deleted;
    for (const char16_t* ending : {u"-wal", u"-shm", u".damaged"}) {
      QFile::remove(path + QString::fromUtf16(ending));
    }
  }
  return deleted;
}

void ProfilePage::MarkUsed() {
  for (int row = 0; row < lvHistory_->rowCount(); ++row) {
    const bool used = lvHistory_->item(row, 0)->data(Qt::UserRole).toString() == txMail_->text();
    lvHistory_->item(row, 1)->setText(used ? Ui::tr("使用中") : QString());
  }
}

PageFault ProfilePage::Check() {
  if (txPassword_->text() != txPasswordAgain_->text()) {
    return {Ui::tr("二つのパスワードが一致しません。"), txPasswordAgain_};
  }
  const bool changes = !txPassword_->text().isEmpty() || ckNoPassword_->isChecked();
  if (!changes || !HasPassword()) return {};
  if (txPasswordNow_->text() == ProfileBag(*context_.Session).Password()) return {};
  return {Ui::tr("いまのパスワードが違います。"), txPasswordNow_};
}

Result<> ProfilePage::ChangePassword(const Disk& profile) {
  if (!IsLoggedIn() || (txPassword_->text().isEmpty() && !ckNoPassword_->isChecked())) return {};
  ProgressWindow progress(window(), Ui::tr("パスワードの変更"));
  progress.Announce(Ui::tr("パスワードを変えています。メッセージが多いと、しばらくかかります。"));
  return ChangeProfilePassword(context_, profile, ProfileBag(*context_.Session).Password(),
                               txPassword_->text());
}

QString ProfilePage::Line(const QTableWidget& list, int row) const {
  return list.item(row, 0)->data(Qt::UserRole).toString();
}

void ProfilePage::AddLine(QTableWidget& list, const QString& line) {
  const int row = list.rowCount();
  list.insertRow(row);
  auto* item = new QTableWidgetItem(FileName(line));
  item->setData(Qt::UserRole, line);
  list.setItem(row, 0, item);
  list.setItem(row, 1, new QTableWidgetItem);
}

}  // namespace vorn
