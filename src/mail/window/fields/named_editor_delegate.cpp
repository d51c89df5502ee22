#include "mail/window/fields/named_editor_delegate.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <functional>

#include "storage/base/shown_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kRowMargin = 6;

// Draws an offer as the row will that takes it.
class OfferDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QString displayText(const QVariant& value, const QLocale& locale) const override {
    return IsolatedAddress(ShownInLine(QStyledItemDelegate::displayText(value, locale)));
  }
};

// In the list of offers Enter and Tab take one and end the edit.
// The toolkit's completer keeps both for itself.
class OfferKeys : public QObject {
 public:
  using Done = std::function<void(QLineEdit*, QAbstractItemDelegate::EndEditHint)>;

  OfferKeys(QLineEdit& box, Done done) : QObject(&box), box_(box), done_(std::move(done)) {
    // After the completer's own filter, to be asked before it.
    box.completer()->popup()->installEventFilter(this);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonPress)
      return ClickBeside(*static_cast<QMouseEvent*>(event));
    if (event->type() != QEvent::KeyPress) return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Tab) return false;
    QAbstractItemView* popup = box_.completer()->popup();
    const QString taken = Taken();
    if (!taken.isEmpty()) box_.setText(taken);
    popup->hide();
    done_(&box_, key == Qt::Key_Tab ? QAbstractItemDelegate::EditNextItem
                                    : QAbstractItemDelegate::SubmitModelCache);
    return true;
  }

 private:
  // What is highlighted, or the only offer when what was typed is no address by itself.
  QString Taken() const {
    const QCompleter& completer = *box_.completer();
    const QModelIndex chosen = completer.popup()->currentIndex();
    if (chosen.isValid()) return chosen.data().toString();
    const bool isOnlyOne = completer.completionCount() == 1 && !box_.text().contains(u'@');
    return isOnlyOne ? completer.completionModel()->index(0, 0).data().toString() : QString();
  }

  // A click beside the list closes it and is for what lies there; the completer would swallow it,
  // and what is typed next would go on with the address.
  bool ClickBeside(const QMouseEvent& click) {
    QAbstractItemView* popup = box_.completer()->popup();
    const QPoint at = click.globalPosition().toPoint();
    if (popup->geometry().contains(at)) return false;
    popup->hide();
    QWidget* below = QApplication::widgetAt(at);
    if (below == nullptr) return true;
    below->window()->activateWindow();
    FocusByClick(below);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QApplication::postEvent(
          below,
          new QMouseEvent(type, below->mapFromGlobal(QPointF(at)), QPointF(at), click.button(),
                          type == QEvent::MouseButtonPress ? click.buttons() : Qt::NoButton,
                          click.modifiers()));
    }
    return true;
  }

  // As the toolkit does it: the nearest that takes the keyboard, such as the box around a viewport.
  static void FocusByClick(QWidget* widget) {
    while (widget != nullptr && (widget->focusPolicy() & Qt::ClickFocus) == 0) {
      widget = widget->isWindow() ? nullptr : widget->parentWidget();
    }
    if (widget != nullptr) widget->setFocus(Qt::MouseFocusReason);
  }

  QLineEdit& box_;
  Done done_;
};

}  // namespace

NamedEditorDelegate::NamedEditorDelegate(const QString& editorName,
                                         std::function<QStringList()> offers, QObject* parent)
    : QStyledItemDelegate(parent), editorName_(editorName), offers_(std::move(offers)) {}

QWidget* NamedEditorDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                           const QModelIndex&) const {
  auto* box = new QLineEdit(parent);
  box->setObjectName(editorName_);
  box->setFrame(false);
  box->setAcceptDrops(false);  // files belong to the window
  connect(box, &QLineEdit::textEdited, this, &NamedEditorDelegate::Typed);
  if (offers_) {
    auto* completer = new QCompleter(offers_(), box);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    box->setCompleter(completer);
    completer->popup()->setItemDelegate(new OfferDelegate(completer->popup()));
    // The signals belong to the list that asked for the box, which may change nothing here.
    auto* self = const_cast<NamedEditorDelegate*>(this);
    const auto done = [self](QLineEdit* edited, EndEditHint hint) {
      Q_EMIT self->commitData(edited);
      Q_EMIT self->closeEditor(edited, hint);
    };
    new OfferKeys(*box, done);
    connect(completer, qOverload<const QString&>(&QCompleter::activated), self,
            [done, box](const QString& taken) {
              box->setText(taken);
              done(box, SubmitModelCache);
            });
  }
  return box;
}

QString NamedEditorDelegate::displayText(const QVariant& value, const QLocale& locale) const {
  return IsolatedAddress(ShownInLine(QStyledItemDelegate::displayText(value, locale)));
}

QSize NamedEditorDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  size.setHeight(qMax(size.height(), option.fontMetrics.height() + kRowMargin));
  return size;
}

// A menu takes the keyboard for a moment; what is being typed goes on afterwards.
bool NamedEditorDelegate::eventFilter(QObject* editor, QEvent* event) {
  if (event->type() == QEvent::FocusOut) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    if (reason == Qt::MenuBarFocusReason || reason == Qt::PopupFocusReason) return false;
  }
  return QStyledItemDelegate::eventFilter(editor, event);
}

void NamedEditorDelegate::initStyleOption(QStyleOptionViewItem* option,
                                          const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (!option->text.isEmpty()) return;
  option->text = Ui::tr("($追加)");
  option->palette.setColor(QPalette::Text, option->palette.color(QPalette::PlaceholderText));
}

}  // namespace vorn
