#pragma once

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>

namespace vorn {

/// Keeps the mouse wheel, which scrolls what the pointer happens to be over, from changing values:
/// closed lists of choices and numbers are changed by who opens or types in them. For the
/// application.
class WheelGuard : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel) return false;
    const bool isValue = qobject_cast<QComboBox*>(watched) != nullptr ||
                         qobject_cast<QAbstractSpinBox*>(watched) != nullptr;
    if (isValue) event->ignore();  // for the window behind it, which may scroll
    return isValue;
  }
};

}  // namespace vorn
