#include "mail/window/named_editor_delegate.h"
#include "storage/ui.h"

#include <QCompleter>
#include <QLineEdit>

namespace vorn {
namespace {

constexpr int kRowMargin = 6;

}  // namespace

NamedEditorDelegate::NamedEditorDelegate(const QString& editorName,
                                         std::function<QStringList()> offers, QObject* parent)
    : QStyledItemDelegate(parent), editorName_(editorName), offers_(std::move(offers)) {}

QWidget* NamedEditorDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                           const QModelIndex&) const {
  auto* box = new QLineEdit(parent);
  box->setObjectName(editorName_);
  box->setFrame(false);
  connect(box, &QLineEdit::textEdited, this, &NamedEditorDelegate::Typed);
  if (offers_) {
    auto* completer = new QCompleter(offers_(), box);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    box->setCompleter(completer);
  }
  return box;
}

QSize NamedEditorDelegate::sizeHint(const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const {
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  size.setHeight(qMax(size.height(), option.fontMetrics.height() + kRowMargin));
  return size;
}

void NamedEditorDelegate::initStyleOption(QStyleOptionViewItem* option,
                                          const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (!option->text.isEmpty()) return;
  option->text = Ui::tr("($追加)");
  option->palette.setColor(QPalette::Text, option->palette.color(QPalette::PlaceholderText));
}

}  // namespace vorn
