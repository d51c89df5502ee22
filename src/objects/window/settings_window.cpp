#include "objects/window/settings_window.h"
#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "objects/reply_line.h"
#include "objects/setting_keys.h"
#include "objects/window/control_names.h"
#include "objects/window/page_search.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QShortcut>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

namespace vorn {
namespace {

constexpr QSize kSettingsSize(520, 420);
constexpr int kMaxRows = 10000;
constexpr int kMaxMinutes = 1440;
constexpr int kTypesHeight = 90;
constexpr int kMostPoints = 48;

// The kinds of controls, by which names of theirs begin; the key of what they hold follows.

// A whole number.
QSpinBox* AddNumber(FormPage& page, const QString& name, const QString& label, int first, int last,
                    const QString& unit) {
  auto* box = new QSpinBox(&page);
  box->setObjectName(name);
  box->setRange(first, last);
  box->setSuffix(unit);
  static_cast<QFormLayout*>(page.layout())->addRow(label, box);
  return box;
}

// Lets controls be used with all of these choices alone, and say which one is missing.
void UseWith(const QList<QCheckBox*>& choices, const QList<QWidget*>& controls) {
  const auto follow = [choices, controls] {
    const auto missing = std::find_if_not(choices.begin(), choices.end(),
                                          [](const QCheckBox* box) { return box->isChecked(); });
    const bool isUsed = missing == choices.end();
    QString name = isUsed ? QString() : (*missing)->text();
    name.remove(QRegularExpression(QStringLiteral("\\(&.\\)$"))).remove(u'&');
    const QString reason = isUsed ? QString() : Ui::tr("「%1」を選ぶと使えます。").arg(name);
    for (QWidget* control : controls) {
      control->setEnabled(isUsed);
      control->setToolTip(ShownToolTip(reason));
    }
  };
  for (QCheckBox* choice : choices) QObject::connect(choice, &QCheckBox::toggled, choice, follow);
  follow();
}

class ViewPage : public FormPage {
 public:
  ViewPage() : FormPage(QStringLiteral("view"), Ui::tr("表示(&V)")) {
    QCheckBox* paging =
        AddCheck(control::kCheck + setting::kPages, Ui::tr("一覧をページに分ける(&P)"));
    QSpinBox* rows = AddNumber(*this, control::kNumber + setting::kRows,
                               Ui::tr("1ページの行数(&N)"), 1, kMaxRows, Ui::tr(" 通"));
    rows->setValue(100);
    UseWith({paging}, {rows});
    AddCheck(control::kCheck + setting::kOpensNewest, Ui::tr("フォルダを最新のページで開く(&W)"));
    AddCheck(control::kCheck + setting::kNewestFirst, Ui::tr("新しいメッセージを上に表示する(&U)"));
    AddCheck(control::kCheck + setting::kShownOnce,
             Ui::tr("フォルダに入れたものを受信に表示しない(&F)"));
    AddCheck(control::kCheck + setting::kPageEscape,
             Ui::tr("メッセージの内容をHTMLとして扱わない（安全）(&H)"));
    AddChoice(control::kChoice + setting::kReadingPane, Ui::tr("選んだメッセージの表示(&R)"),
              {Ui::tr("しない"), Ui::tr("一覧の下"), Ui::tr("一覧の右")})
        ->setCurrentIndex(0);
    AddChoice(control::kChoice + setting::kRowHeight, Ui::tr("行の高さ（表、カード）(&D)"),
              {Ui::tr("普通"), Ui::tr("広い"), Ui::tr("狭い")})
        ->setCurrentIndex(0);
    AddCheck(control::kCheck + setting::kHtmlFirst, Ui::tr("HTMLだけのメッセージはHTMLで開く(&G)"));
    AddCheck(control::kCheck + setting::kToolbarIcon, Ui::tr("ツールバーをアイコンだけにする(&I)"));
    AddCheck(control::kCheck + setting::kStatusBar, Ui::tr("ステータスバーを表示する(&S)"))
        ->setChecked(true);
    AddCheck(control::kCheck + setting::kTaskTray, Ui::tr("通知領域にアイコンを表示する(&T)"));
    AddCheck(control::kCheck + setting::kComesForward,
             Ui::tr("もう一度起動されたら手前に出る(&Q)"));
    AddCheck(control::kCheck + setting::kWebOutside,
             Ui::tr("お気に入りのページを標準のブラウザーで開く(&B)"));
    AddCheck(control::kCheck + setting::kScriptsAsked,
             Ui::tr("Webページのスクリプトは許可したサイトだけで動かす(&J)"));
    QComboBox* language = AddChoice(
        control::kChoice + setting::kLanguage, Ui::tr("表示の言語（次の起動から）(&L)"),
        {Ui::tr("システムに合わせる"), QStringLiteral("日本語"), QStringLiteral("English")});
    language->setCurrentIndex(0);
  }
};

class CheckingPage : public FormPage {
 public:
  CheckingPage() : FormPage(QStringLiteral("check"), Ui::tr("受信(&O)")) {
    QCheckBox* check =
        AddCheck(control::kCheck + setting::kChecks, Ui::tr("自動的に送受信する(&A)"));
    QSpinBox* minutes = AddNumber(*this, control::kNumber + setting::kCheckMinutes,
                                  Ui::tr("間隔(&N)"), 1, kMaxMinutes, Ui::tr(" 分"));
    minutes->setValue(10);
    UseWith({check}, {minutes});
    QCheckBox* receipt =
        AddCheck(control::kCheck + setting::kReceipts, Ui::tr("受信したことを通知(&R)"));
    receipt->setToolTip(Ui::tr("開封通知を求められたときに、送るかどうかを尋ねます。"));
    UseWith({receipt},
            {AddCheck(control::kCheck + setting::kEditReceipts, Ui::tr("編集してから送信(&E)"))});
    AddCheck(control::kCheck + setting::kEventsFolded,
             Ui::tr("イベントはアカウントごとに1行にまとめる(&L)"));
    AddCheck(control::kCheck + setting::kReceivedTime,
             Ui::tr("日時はサーバーに届いた時刻にする(&J)"));
    AddNotices();
  }

  PageFault Check() override {
    const auto* sound = findChild<QCheckBox*>(control::kCheck + setting::kNoticeSound);
    const bool isUsed = sound->isChecked() && sound->isEnabled();
    if (!isUsed || QFileInfo::exists(file_->text())) return {};
    return {Ui::tr("音のファイルがありません。"), file_};
  }

 private:
  // How new messages are announced.
  void AddNotices() {
    QCheckBox* notice =
        AddCheck(control::kCheck + setting::kNotice, Ui::tr("新着メッセージを知らせる(&M)"));
    QCheckBox* dialog =
        AddCheck(control::kCheck + setting::kNoticeDialog, Ui::tr("開くかどうかを尋ねる(&D)"));
    QCheckBox* desktop =
        AddCheck(control::kCheck + setting::kNoticeDesktop, Ui::tr("デスクトップの通知に出す(&G)"));
    QCheckBox* sound = AddCheck(control::kCheck + setting::kNoticeSound, Ui::tr("音を鳴らす(&S)"));
    QCheckBox* alone =
        AddCheck(control::kCheck + setting::kNoticeSoundAlone, Ui::tr("尋ねないときも鳴らす(&P)"));
    file_ = AddText(control::kText + setting::kNoticeSoundFile, Ui::tr("音のファイル(&F)"));
    QPushButton* browse = MakeButton(QStringLiteral("cmSoundFile"), Ui::tr("参照(&B).."));
    Layout().addRow(QString(), browse);
    UseWith({notice}, {dialog, desktop, sound});
    UseWith({notice, sound}, {alone, file_, browse});
    connect(browse, &QPushButton::clicked, this, [this] {
      const QString chosen =
          OpenFiles(this, Ui::tr("音のファイル"), file_->text(),
                    Ui::tr("WAVE (*.wav);;すべてのファイル (*)"), QFileDialog::ExistingFile)
              .value(0);
      if (!chosen.isEmpty()) file_->setText(chosen);
    });
  }

  QLineEdit* file_;
};

class EditPage : public FormPage {
 public:
  EditPage() : FormPage(QStringLiteral("edit"), Ui::tr("作成(&K)")) {
    AddCheck(control::kCheck + setting::kEditMode, Ui::tr("返信、転送を編集(&S)"))
        ->setToolTip(Ui::tr("返信と転送で、件名に印を付け、もとの本文を引用します。"));
    AddText(control::kText + setting::kSubjectReply, Ui::tr("返信の件名(&Y)"));
    AddText(control::kText + setting::kSubjectForward, Ui::tr("転送の件名(&F)"));
    AddText(control::kText + setting::kQuoteSign, Ui::tr("引用の記号(&Q)"));
    line_ = AddText(control::kText + setting::kReplyLine, Ui::tr("引用の前の行(&D)"));
    line_->setToolTip(Ui::tr("%dは日時、%nは名前、%aはアドレスです。"));
    AddCheck(control::kCheck + setting::kSignatureAbove, Ui::tr("署名を引用の上に入れる(&G)"));
    AddCheck(control::kCheck + setting::kWrapLines, Ui::tr("本文を72桁で折り返して送信する(&W)"))
        ->setToolTip(Ui::tr("全角の文字は2桁です。引用した行とアドレスは折り返しません。"));
    AddChoice(
        control::kChoice + setting::kMimeEncode, Ui::tr("MIME形式(&M) :"),
        {QStringLiteral("Base64"), QStringLiteral("QuotedPrintable"), QStringLiteral("UUencode")});
    AddCheck(control::kCheck + setting::kMimeText, Ui::tr("本文もMIME形式にする(&T)"));
    AddCheck(control::kCheck + setting::kStandardHeaders,
             Ui::tr("標準のヘッダと開封通知を使う(&H)"));
    AddNote(Ui::tr("Reply-To、In-Reply-To などです。"));
    AddCheck(control::kCheck + setting::kUsualReplies, Ui::tr("いまの習慣で返信する(&U)"));
    AddNote(Ui::tr("関係者に宛先の人も含め、引用の1行目にも記号を付けます。"));
    AddCheck(control::kCheck + setting::kAddressSearch,
             Ui::tr("アドレスの選択では検索するまで何も選ばない(&L)"));
    AddCheck(control::kCheck + setting::kCareful, Ui::tr("うっかりを防ぐ(&C)"));
    AddNote(
        Ui::tr("再送の前に確かめます。サーバーに断られたものは送り直さず、\n"
               "捨てたメッセージはフォルダに表示せず、\n"
               "消したものは受信し直しません。"));
  }

  void Loaded(const Disk&) override { line_->setText(ShownReplyLine(line_->text())); }

 private:
  // What the choice above it does. Its lines are short, for the window would be as wide as they
  // are.
  void AddNote(const QString& text) { Layout().addRow(QString(), PlainLabel(text, this)); }

  QLineEdit* line_;
};

class ReadPage : public FormPage {
 public:
  ReadPage() : FormPage(QStringLiteral("read"), Ui::tr("本文(&X)")) {
    types_ = new TextBox(this);
    types_->setObjectName(control::kText + setting::kTextTypes);
    types_->setFixedHeight(kTypesHeight);
    types_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    types_->setTabChangesFocus(true);
    Layout().addRow(Ui::tr("本文として表示する形式(&M)"), types_);
  }

  PageFault Check() override {
    if (!types_->toPlainText().trimmed().isEmpty()) return {};
    return {Ui::tr("本文として表示する形式（text/plain など）を一つ以上書いてください。"), types_};
  }

 private:
  QPlainTextEdit* types_;
};

class FontPage : public FormPage {
 public:
  FontPage() : FormPage(QStringLiteral("font"), Ui::tr("フォント(&Z)")) {
    AddFont(setting::kListFont, Ui::tr("一覧(&L)"), Ui::tr("一覧の大きさ(&I)"));
    AddFont(setting::kMessageFont, Ui::tr("メッセージ(&M)"), Ui::tr("メッセージの大きさ(&E)"));
    AddFont(setting::kEditFont, Ui::tr("作成中の本文(&W)"), Ui::tr("作成中の大きさ(&N)"));
  }

 private:
  // The family is kept by its name, which a hidden box holds.
  void AddFont(const QString& key, const QString& label, const QString& sizeLabel) {
    QLineEdit* family = AddHidden(control::kText + key);
    QComboBox* families = AddChoice(control::kChoice + key, label, {Ui::tr("標準")});
    families->setProperty("tag", QStringLiteral("nosave"));
    families->addItems(QFontDatabase::families());
    families->setCurrentIndex(0);
    connect(families, &QComboBox::activated, family, [family, families](int chosen) {
      family->setText(chosen == 0 ? QString() : families->itemText(chosen));
    });
    connect(family, &QLineEdit::textChanged, families, [families](const QString& name) {
      if (!name.isEmpty() && families->findText(name) < 0) families->addItem(name);
      families->setCurrentIndex(qMax(0, name.isEmpty() ? 0 : families->findText(name)));
    });
    QSpinBox* size = AddNumber(*this, control::kNumber + key + QStringLiteral("Size"), sizeLabel, 0,
                               kMostPoints, Ui::tr(" ポイント"));
    size->setSpecialValueText(Ui::tr("標準"));
  }
};

}  // namespace

SettingsWindow::SettingsWindow(Context& context, QWidget* parent)
    : EditingWindow(context, QStringLiteral("logo"), parent) {
  setWindowTitle(Ui::tr("設定"));
  AddPage(new ViewPage);
  AddPage(new CheckingPage);
  AddPage(new EditPage);
  AddPage(new ReadPage);
  AddPage(new FontPage);
  auto* search = new PageSearch(Pages().Tabs());
  static_cast<QVBoxLayout*>(layout())->insertWidget(0, search);
  auto* find = new QShortcut(QKeySequence::Find, this);
  connect(find, &QShortcut::activated, search, qOverload<>(&QWidget::setFocus));
  setTabOrder(search, &Pages().Tabs());
  Pages().Tabs().setFocus();
  resize(kSettingsSize.expandedTo(sizeHint()));
}

bool SettingsWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  TakeRequest(request);
  FillPages();
  return true;
}

bool SettingsWindow::Save() {
  const DiskPtr bag = Edited();
  bag->Let(setting::kInstalled, GetContext().VersionText);
  return SaveEdited(bag);
}

}  // namespace vorn
