#include "kit/window/unasked_question.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPushButton>
#include <utility>

#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPauseMs = 1000;

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// Stands between the keyboard and a box.
class TypingGuard : public QObject {
 public:
  explicit TypingGuard(QMessageBox& box) {
    box.installEventFilter(this);
    for (QAbstractButton* button : box.buttons()) button->installEventFilter(this);
    shown_.start();
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if ((key.modifiers() & (Qt::AltModifier | Qt::ControlModifier)) != 0) return false;
    if (IsEnter(key)) return shown_.elapsed() < kPauseMs;
    return !key.text().isEmpty() && key.text().at(0).isPrint();
  }

 private:
  QElapsedTimer shown_;
};

}  // namespace

TypingPause::TypingPause(QObject* parent, std::function<void()> then) : QObject(parent) {
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, [this, then = std::move(then)] {
    qApp->removeEventFilter(this);
    deleteLater();
    then();
  });
  qApp->installEventFilter(this);
  pause_.start(kPauseMs);
}

bool TypingPause::eventFilter(QObject*, QEvent* event) {
  const bool isTyping = event->type() == QEvent::KeyPress || event->type() == QEvent::InputMethod;
  if (isTyping && pause_.isActive()) pause_.start(kPauseMs);
  return false;
}

QMessageBox::StandardButton ShowUnaskedBox(QWidget* parent, QMessageBox::Icon icon,
                                           const QString& text,
                                           QMessageBox::StandardButtons buttons,
                                           QMessageBox::StandardButton standard) {
  QMessageBox box(icon, kApplicationTitle, ShownText(text), buttons, parent);
  box.setTextFormat(Qt::PlainText);
  box.setDefaultButton(standard);
  const TypingGuard guard(box);
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace vorn
