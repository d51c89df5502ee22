#pragma once

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include "storage/ui.h"

namespace vorn {

/// Says below a password's box that the capital lock seems to be on. The toolkit does not tell the
/// lock's state, but the letters that come do: a capital without the Shift key, or a small one with
/// it.
class CapsLockHint : public QLabel {
 public:
  explicit CapsLockHint(QLineEdit& box) {
    setObjectName(QStringLiteral("lbCapsLock"));
    setTextFormat(Qt::PlainText);
    setText(Ui::tr("Caps Lock がオンになっています。"));
    hide();
    box.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) {
      const auto& key = static_cast<const QKeyEvent&>(*event);
      const QChar letter = key.text().size() == 1 ? key.text()[0] : QChar();
      if (key.key() == Qt::Key_CapsLock) setVisible(false);  // what it is now shows the next letter
      if (letter.isUpper() || letter.isLower()) {
        setVisible(letter.isUpper() != key.modifiers().testFlag(Qt::ShiftModifier));
      }
    }
    return QLabel::eventFilter(watched, event);
  }
};

}  // namespace vorn
