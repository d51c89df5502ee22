#pragma once

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QWidget>

namespace vorn {

/// A frame along the edges of a widget that is there while the widget, or something in it, has the
/// keyboard. It belongs to the widget and takes no clicks.
class KeyFrame : public QWidget {
  Q_OBJECT

 public:
  explicit KeyFrame(QWidget& around) : QWidget(&around) {
    setObjectName(QStringLiteral("frKeys"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    around.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { Show(now); });
    Show(QApplication::focusWidget());
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Resize && isVisible()) Lay();
    return false;
  }
  void paintEvent(QPaintEvent*) override {
    // At least 3 : 1 against what is beside it, in a light and in a dark scheme.
    constexpr int kMiddleGray = 128;
    const bool isDark = palette().color(QPalette::Base).lightness() < kMiddleGray;
    QPainter(this).fillRect(rect(), isDark ? QColor(0x8a, 0xb4, 0xf8) : QColor(0x0b, 0x57, 0xd0));
  }

 private:
  static constexpr int kWidth = 2;

  void Show(const QWidget* focus) {
    const QWidget* around = parentWidget();
    const bool hasKeys = focus == around || (focus != nullptr && around->isAncestorOf(focus));
    if (hasKeys) Lay();
    setVisible(hasKeys);
  }
  // What is inside stays its own; a view of the browser engine may have got another child.
  void Lay() {
    const QRect all = parentWidget()->rect();
    setGeometry(all);
    setMask(QRegion(all) - all.adjusted(kWidth, kWidth, -kWidth, -kWidth));
    raise();
  }
};

}  // namespace vorn
