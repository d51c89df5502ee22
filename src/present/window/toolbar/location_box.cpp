#include "present/window/toolbar/location_box.h"

#include <QTimer>

#include "storage/ui.h"

namespace vorn {

LocationBox::LocationBox(QWidget* parent) : QLineEdit(parent) {
  setObjectName(QStringLiteral("txLocation"));
  setAccessibleName(Ui::tr("アドレス"));
  connect(this, &QLineEdit::returnPressed, this, [this] { Q_EMIT Typed(text()); });
}

void LocationBox::Show(const QString& text, bool isEditable) {
  setReadOnly(!isEditable);
  setText(text);
}

void LocationBox::Follow(const QString& address) {
  if (!hasFocus()) setText(address);
}

// An address is there to be replaced.
void LocationBox::focusInEvent(QFocusEvent* event) {
  QTimer::singleShot(0, this, &QLineEdit::selectAll);
  QLineEdit::focusInEvent(event);
}

void LocationBox::focusOutEvent(QFocusEvent* event) {
  deselect();
  QLineEdit::focusOutEvent(event);
}

}  // namespace vorn
