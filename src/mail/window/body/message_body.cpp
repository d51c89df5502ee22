#include "mail/window/body/message_body.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBlock>
#include <QVBoxLayout>
#include <cmath>
#include <initializer_list>

#include "kit/window/open_outside.h"
#include "kit/window/plain_text.h"
#include "mail/codec/text/line_wrapping.h"
#include "mail/window/body/find_bar.h"
#include "mail/window/body/html_view.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr double kZoomStep = 1.1;
constexpr int kHtmlTab = 1;
constexpr int kLineMargin = 6;
constexpr int kLongestLine = 4000;  // what is longer is no line that anybody reads

// What the tabs leave of their row.
class RowRest : public QWidget {
 public:
  explicit RowRest(QTabWidget& tabs) : tabs_(tabs) {}
  QSize sizeHint() const override {
    const QSize bar = tabs_.tabBar()->sizeHint();
    return {qMax(0, tabs_.width() - bar.width()), bar.height()};
  }
  QSize minimumSizeHint() const override { return {0, 0}; }

 private:
  QTabWidget& tabs_;
};

}  // namespace

MessageBody::MessageBody(MemoBox::Taker taker, QString htmlName)
    : htmlName_(std::move(htmlName)),
      tsBody_(new QTabWidget),
      txMemo_(new MemoBox(std::move(taker))),
      lbLine_(PlainLabel()),
      htmlPage_(new QWidget),
      find_(new FindBar) {
  txMemo_->setObjectName(QStringLiteral("txMemo"));
  txMemo_->setAccessibleName(Ui::tr("本文"));
  UseFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  lbLine_->setObjectName(QStringLiteral("lbLine"));
  lbLine_->setAlignment(Qt::AlignRight);
  lbLine_->setContentsMargins(kLineMargin, 0, kLineMargin, 0);
  lbLine_->hide();
  connect(txMemo_, &QPlainTextEdit::cursorPositionChanged, this, &MessageBody::ShowLine);
  connect(txMemo_, &QPlainTextEdit::textChanged, this, [this] {
    ShowLine();
    if (!txMemo_->isReadOnly()) Q_EMIT TextEdited();
  });
  auto* htmlLayout = new QVBoxLayout(htmlPage_);
  htmlLayout->setContentsMargins(0, 0, 0, 0);
  connect(txMemo_, &MemoBox::LinkClicked, this, [this](const QUrl& url) {
    if (url.scheme() == u"mailto") {  // nothing leaves before the user sends it
      Q_EMIT MessageWanted(url.toString(QUrl::FullyEncoded));
    } else {
      AskToOpenOutside(this, url);
    }
  });
  tsBody_->setObjectName(QStringLiteral("tsBody"));
  tsBody_->setDocumentMode(true);
  tsBody_->addTab(txMemo_, Ui::tr("テキスト"));
  tsBody_->addTab(htmlPage_, QString());
  connect(tsBody_, &QTabWidget::currentChanged, this, [this](int index) {
    index == kHtmlTab ? ShowHtml() : ShowText();
    if (index != kHtmlTab && wbHtml_ != nullptr) wbHtml_->PutAside();
    Q_EMIT FrontChanged(index == kHtmlTab);
    if (!isFilling_) Q_EMIT FrontChosen(index == kHtmlTab);
  });
  connect(find_, &FindBar::FindWanted, this, &MessageBody::Find);
  connect(find_, &FindBar::Closed, this, [this] { InFront()->setFocus(); });
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(tsBody_, 1);
  layout->addWidget(lbLine_);
  layout->addWidget(find_);
}

void MessageBody::GiveKeys() {
  for (QWidget* part : std::initializer_list<QWidget*>{txMemo_, htmlPage_}) {
    const auto give = [this, part](Qt::Key key, auto run) {
      new QShortcut(key, part, this, run, Qt::WidgetWithChildrenShortcut);
    };
    give(Qt::Key_Return, &MessageBody::Enter);
    give(Qt::Key_Enter, &MessageBody::Enter);
    give(Qt::Key_Escape, &MessageBody::Left);
  }
}

void MessageBody::Enter() {
  if (wbHtml_ == nullptr || InFront() != htmlPage_) {
    Q_EMIT Entered();
  } else {
    wbHtml_->FollowLink([this] { Q_EMIT Entered(); });
  }
}

void MessageBody::Show(const LazyText& text, bool editable, const HtmlPart& html) {
  const QScopedValueRollback<bool> filling(isFilling_, true);
  html_ = html.make;
  txMemo_->setReadOnly(!editable);
  txMemo_->setTextInteractionFlags(editable
                                       ? Qt::TextEditorInteraction
                                       : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  lbLine_->setVisible(editable);
  tsBody_->setCurrentIndex(0);
  const bool hasHtml = static_cast<bool>(html_);
  text_ = text;
  if (!hasHtml || !html.isFirst) ShowText();
  // Made before the window is shown: the first one would make the system's window anew.
  if (hasHtml) MakeHtmlView();
  tsBody_->setTabText(kHtmlTab, html.title);
  tsBody_->setTabVisible(kHtmlTab, hasHtml);
  tsBody_->setTabEnabled(kHtmlTab, hasHtml);  // else the keys reach it
  ShowRow();
  if (hasHtml && html.isFirst) tsBody_->setCurrentIndex(kHtmlTab);
}

void MessageBody::PutBeside(QWidget* widget) {
  if (beside_ == nullptr) {
    auto* rest = new RowRest(*tsBody_);
    beside_ = new QHBoxLayout(rest);
    beside_->setContentsMargins(kLineMargin, 0, 0, 0);
    tsBody_->setCornerWidget(rest);
    rest->show();
  }
  beside_->addWidget(widget, 1);
}

void MessageBody::ShowRow() {
  bool isWanted = tsBody_->isTabVisible(kHtmlTab);
  for (int i = 0; beside_ != nullptr && i < beside_->count(); ++i) {
    isWanted = isWanted || !beside_->itemAt(i)->widget()->isHidden();
  }
  tsBody_->tabBar()->setVisible(isWanted);
}

MemoBox* MessageBody::Text() {
  ShowText();
  return txMemo_;
}

void MessageBody::ShowText() {
  if (!text_) return;
  txMemo_->setPlainText(std::exchange(text_, std::nullopt)->Get());
}

QWidget* MessageBody::InFront() const {
  return tsBody_->currentWidget();
}

QString MessageBody::HtmlInFront() const {
  return InFront() == htmlPage_ && html_ ? html_() : QString();
}

void MessageBody::OpenFind() {
  find_->Open();
}

void MessageBody::MakeHtmlView() {
  if (wbHtml_ != nullptr) return;
  wbHtml_ = new HtmlView(htmlName_);
  htmlPage_->layout()->addWidget(wbHtml_);
  connect(wbHtml_, &HtmlView::MessageWanted, this, &MessageBody::MessageWanted);
  wbHtml_->Zoom(std::pow(kZoomStep, zoom_));
  if (beside_ != nullptr) beside_->insertWidget(0, wbHtml_->TakeButton());
}

void MessageBody::ShowHtml() {
  MakeHtmlView();
  if (html_) wbHtml_->Show(html_());
}

void MessageBody::ShowLine() {
  if (txMemo_->isReadOnly()) return;
  const QTextBlock block = txMemo_->textCursor().block();
  if (block.length() > kLongestLine) return lbLine_->clear();
  const QString line = block.text();
  const auto letters = line.toUcs4().size();
  lbLine_->setText(Ui::tr("この行は%1文字、%2桁").arg(letters).arg(ColumnsOf(line)));
}

void MessageBody::UseFont(const QFont& font) {
  if (font == font_) return;
  font_ = font;
  txMemo_->setFont(font);
  txMemo_->zoomIn(zoom_);
}

void MessageBody::ZoomBy(int steps) {
  zoom_ += steps;
  txMemo_->zoomIn(steps);
  if (wbHtml_ != nullptr) wbHtml_->Zoom(std::pow(kZoomStep, zoom_));
}

void MessageBody::Find(const QString& text, bool backward) {
  if (wbHtml_ == nullptr || InFront() != htmlPage_) {
    find_->ShowFound(FindInText(text, backward));
    return;
  }
  wbHtml_->Find(text, backward, [find = QPointer<FindBar>(find_)](bool found) {
    if (find != nullptr) find->ShowFound(found);
  });
}

// At the end it goes on from the other one.
bool MessageBody::FindInText(const QString& text, bool backward) {
  const QTextDocument::FindFlags flags =
      backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  if (txMemo_->find(text, flags)) return true;
  QTextCursor cursor = txMemo_->textCursor();
  const QTextCursor place = cursor;
  cursor.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
  txMemo_->setTextCursor(cursor);
  const bool found = txMemo_->find(text, flags);
  if (!found) txMemo_->setTextCursor(place);
  return found;
}

}  // namespace vorn
