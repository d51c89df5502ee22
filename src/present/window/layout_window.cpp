#include "present/window/layout_window.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSplitter>
#include <QTableWidget>
#include <QTextCursor>
#include <QVBoxLayout>
#include <QWebEngineScript>
#include <QWebEngineView>

#include "kit/window/ok_cancel.h"
#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "objects/layouts_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "objects/shown_object.h"
#include "present/folder_layout.h"
#include "present/page_tags.h"
#include "present/page_template.h"
#include "present/ready_layouts.h"
#include "present/window/engine/link_page.h"
#include "present/window/engine/page_source.h"
#include "storage/engine/condition_limit.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr QSize kLayoutSize(1000, 680);
constexpr int kTypingPauseMs = 300;
constexpr int kShownMs = 1000;  // the window stands still meanwhile

// Enter inserts a tag here; passed on, it would press OK as well.
class TagList : public QTableWidget {
 public:
  using QTableWidget::QTableWidget;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter) return QTableWidget::keyPressEvent(event);
    event->accept();
    if (currentRow() >= 0) Q_EMIT cellActivated(currentRow(), currentColumn());
  }
};

}  // namespace

LayoutWindow::LayoutWindow(Context& context, MessageListPages& pages,
                           const BrowserProfiles& profiles, const SerialId& folder, QWidget* parent)
    : QDialog(parent),
      context_(context),
      pages_(pages),
      folder_(folder),
      cbLayout_(new QComboBox),
      txHtml_(new TextBox),
      lvTag_(new TagList(0, 2)),
      txPath_(new QLineEdit),
      lbError_(PlainLabel()),
      wbPreview_(new QWebEngineView),
      source_(profiles.Pages()),
      page_(new LinkPage(profiles.Local(), wbPreview_)) {
  setObjectName(QStringLiteral("layout"));
  resize(kLayoutSize);
  cbLayout_->setObjectName(QStringLiteral("cbLayout"));
  txHtml_->setObjectName(QStringLiteral("txHtml"));
  lvTag_->setObjectName(QStringLiteral("lvTag"));
  txPath_->setObjectName(QStringLiteral("txPath"));
  lbError_->setObjectName(QStringLiteral("lbError"));
  wbPreview_->setObjectName(QStringLiteral("wbPreview"));
  wbPreview_->setPage(page_);
  wbPreview_->setContextMenuPolicy(Qt::NoContextMenu);
  wbPreview_->setFocusPolicy(Qt::NoFocus);

  auto* split = new QSplitter;
  split->addWidget(BuildEditor());
  split->addWidget(wbPreview_);
  split->setSizes({kLayoutSize.width() / 2, kLayoutSize.width() / 2});
  auto* buttons = OkCancelBox();
  connect(buttons, &QDialogButtonBox::accepted, this, &LayoutWindow::cmOk_Click);
  connect(buttons, &QDialogButtonBox::rejected, this, &LayoutWindow::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(split, 1);
  layout->addWidget(lbError_);
  layout->addWidget(buttons);

  typing_.setSingleShot(true);
  connect(&typing_, &QTimer::timeout, this, &LayoutWindow::Preview);
  connect(wbPreview_, &QWebEngineView::loadFinished, this, [this] {
    RemoveReadPage();
    Q_EMIT Previewed();
  });
  Fill();
}

LayoutWindow::~LayoutWindow() {
  // The engine reports the end of its page as the end of a loading.
  wbPreview_->disconnect(this);
  delete wbPreview_;
  RemovePage();
}

QWidget* LayoutWindow::BuildEditor() {
  for (const ReadyLayout& ready : ReadyLayouts(folder_)) cbLayout_->addItem(ready.name);
  cbLayout_->addItem(Ui::tr("このフォルダのレイアウト"));
  connect(cbLayout_, &QComboBox::activated, this, &LayoutWindow::TakeReady);
  txHtml_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  txHtml_->setLineWrapMode(QPlainTextEdit::NoWrap);
  txHtml_->setTabChangesFocus(true);
  connect(txHtml_, &QPlainTextEdit::textChanged, this, [this] { typing_.start(kTypingPauseMs); });
  BuildTags();
  txPath_->setPlaceholderText(context_.TempFolder);

  auto* editor = new QWidget;
  auto* form = new QFormLayout(editor);
  form->setContentsMargins(0, 0, 0, 0);
  form->addRow(Ui::tr("ひな形(&L):"), cbLayout_);
  const auto labelled = [form](const QString& text, QWidget* control) {
    auto* label = PlainLabel(text);
    label->setBuddy(control);
    form->addRow(label);
    form->addRow(control);
  };
  labelled(QStringLiteral("HTML(&H):"), txHtml_);
  labelled(Ui::tr("タグ（ダブルクリックまたはEnterで挿入）(&T):"), lvTag_);
  form->addRow(Ui::tr("ページのフォルダ(&P):"), txPath_);
  return editor;
}

void LayoutWindow::BuildTags() {
  const QList<LayoutTag> tags = LayoutTags();
  lvTag_->setRowCount(static_cast<int>(tags.size()));
  for (int row = 0; row < lvTag_->rowCount(); ++row) {
    lvTag_->setItem(row, 0, new QTableWidgetItem(tags[row].meaning));
    lvTag_->setItem(row, 1, new QTableWidgetItem(tags[row].text));
  }
  lvTag_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lvTag_->setSelectionBehavior(QAbstractItemView::SelectRows);
  lvTag_->setSelectionMode(QAbstractItemView::SingleSelection);
  lvTag_->setTabKeyNavigation(false);
  lvTag_->verticalHeader()->hide();
  lvTag_->horizontalHeader()->hide();
  lvTag_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  lvTag_->horizontalHeader()->setStretchLastSection(true);
  lvTag_->setCurrentCell(0, 0);
  connect(lvTag_, &QTableWidget::cellActivated, this, &LayoutWindow::InsertTag);
  connect(lvTag_, &QTableWidget::cellDoubleClicked, this, &LayoutWindow::InsertTag);
}

void LayoutWindow::Fill() {
  const DiskPtr folder = LoadObject(context_, folder_);
  const QString name = folder == nullptr ? folder_.Text() : ShownObject(*folder).Name();
  setWindowTitle(Ui::tr("フォルダのレイアウト - ") + name);
  const QList<ReadyLayout> ready = ReadyLayouts(folder_, Settings(context_).Rows());
  stored_ = GetFolderLayout(context_, folder_, ready.first().html).html;
  int index = 0;
  while (index < ready.size() && ready[index].html != stored_) ++index;
  cbLayout_->setCurrentIndex(index);
  txHtml_->setPlainText(stored_);
  if (const DiskPtr own = LoadObject(context_, fixed_serial::kLayout)) {
    txPath_->setText(LayoutsObject(*own).Path(folder_));
  }
  txHtml_->document()->setModified(false);
  txHtml_->setFocus();
  typing_.start(0);
}

void LayoutWindow::TakeReady(int index) {
  const QList<ReadyLayout> ready = ReadyLayouts(folder_, Settings(context_).Rows());
  // One's own comes back with the last choice.
  const QString now = txHtml_->toPlainText().replace(u'\n', QStringLiteral("\r\n"));
  if (std::none_of(ready.begin(), ready.end(),
                   [&now](const ReadyLayout& layout) { return layout.html == now; })) {
    stored_ = now;
  }
  // As an edit, so that it can be undone.
  QTextCursor all(txHtml_->document());
  all.select(QTextCursor::Document);
  all.insertText(index < ready.size() ? ready[index].html : stored_);
}

void LayoutWindow::InsertTag(int row) {
  txHtml_->insertPlainText(lvTag_->item(row, 1)->text());
  txHtml_->setFocus();
}

void LayoutWindow::Preview() {
  RemovePage();
  const ConditionLimit brief(kShownMs);
  const Result<QByteArray> made = pages_.Preview(folder_, txHtml_->toPlainText());
  const QByteArray page = WithDarkColors(made.ValueOr({}));
  const QString nothing = Ui::tr("このレイアウトは何も表示しません。");
  lbError_->setText(!made ? made.Error().text : page.isEmpty() ? nothing : QString());
  if (page.isEmpty()) return;
  shownPage_ = source_.Keep(page);
  const QUrl url(shownPage_);
  page_->SetLocalPage(url);
  wbPreview_->load(url);
}

void LayoutWindow::RemovePage() {
  source_.Forget(shownPage_);
  shownPage_.clear();
}

// The end of a loading may be that of the page before this one, which must not take away this
// one: the document itself says which it is.
void LayoutWindow::RemoveReadPage() {
  page_->runJavaScript(QStringLiteral("location.href"), QWebEngineScript::ApplicationWorld,
                       [self = QPointer<LayoutWindow>(this)](const QVariant& address) {
                         if (self == nullptr) return;
                         if (address.toString() == self->shownPage_) self->RemovePage();
                       });
}

Result<> LayoutWindow::Save() {
  // Lines end in a page as they do in the default template.
  const QString html = txHtml_->toPlainText().replace(u'\n', QStringLiteral("\r\n"));
  DiskPtr layouts = LoadObject(context_, fixed_serial::kLayout);
  if (layouts == nullptr) layouts = std::make_shared<Disk>(fixed_serial::kLayout);
  const bool isShared = html == SharedTemplate(context_, folder_, DefaultPageTemplate());
  LayoutsObject::SetHtml(*layouts, folder_, isShared ? QString() : html);
  const QString path = txPath_->text().trimmed();
  if (!path.isEmpty() && !QDir(path).exists()) {
    txPath_->setFocus();
    return StorageError{StorageError::Kind::Other, Ui::tr("ページのフォルダが見つかりません。")};
  }
  LayoutsObject::SetPath(*layouts, folder_, path);
  const Result<> saved = SaveObject(context_, DatabaseKind::Profile, *layouts);
  if (!saved) return saved.Error().Behind(Ui::tr("保存できませんでした。"));
  if (context_.Objects.Find(fixed_serial::kLayout) == nullptr) context_.Objects.Add(layouts);
  return {};
}

void LayoutWindow::cmOk_Click() {
  const Result<> saved = Save();
  if (saved) {
    accept();
  } else {
    lbError_->setText(ShownText(saved.Error().text));
  }
}

void LayoutWindow::reject() {
  if (txHtml_->document()->isModified()) {
    const std::optional<bool> saves = AskToSave(this);
    if (!saves) return;
    if (*saves) return cmOk_Click();
  }
  QDialog::reject();
}

}  // namespace vorn
