#pragma once

#include <QtNetwork/QtNetwork>
#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>
#include <functional>
#include <tuple>
#include <type_traits>

#include "support/test_profile.h"

namespace vorn::test {

/// The visible top-level windows of a class.
template <typename Window>
QList<Window*> TopLevels() {
  QList<Window*> windows;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* window = qobject_cast<Window*>(widget);
    if (window != nullptr && window->isVisible()) windows.append(window);
  }
  return windows;
}

/// The first of them, or null.
template <typename Window>
Window* TopLevel() {
  return TopLevels<Window>().value(0);
}

/// Runs `cause` and then, inside the modal window of that class which it brings up, `act`. Returns
/// whether the window came and closed.
template <typename Window>
bool InModal(const std::function<void()>& cause, const std::function<void(Window&)>& act) {
  constexpr int kMostLooks = 100;
  bool seen = false;
  int looks = 0;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
    if (window == nullptr || seen) return;
    // Until it is active, keys are looked for among the shortcuts of the window before it. Not all
    // become so without a window manager.
    if (!window->isActiveWindow() && ++looks < kMostLooks) return;
    seen = true;
    watch.stop();
    act(*window);
  });
  watch.start(20);
  cause();
  return WaitFor([&seen] { return seen && TopLevel<Window>() == nullptr; });
}

/// Answers the next message box by that button and gives its text.
inline QString AnswerBox(const std::function<void()>& cause, QMessageBox::StandardButton answer) {
  QString text;
  EXPECT_TRUE(InModal<QMessageBox>(cause, [&](QMessageBox& box) {
    text = box.text();
    box.button(answer)->click();
  }));
  return text;
}

/// Runs an act while each menu or modal window that comes up is answered by what is given for its
/// class.
template <typename... Windows>
void Answering(const std::function<void()>& act,
               const std::type_identity_t<std::function<void(Windows&)>>&... answers) {
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    QWidget* popup = QApplication::activePopupWidget();
    QWidget* shown = popup == nullptr ? QApplication::activeModalWidget() : popup;
    const auto answer = [shown](auto* window, const auto& with) {
      window = qobject_cast<decltype(window)>(shown);
      if (window != nullptr) with(*window);
      return window != nullptr;
    };
    std::ignore = (answer(static_cast<Windows*>(nullptr), answers) || ...);
  });
  watch.start(20);
  act();
}

/// Takes what a dialog for files or folders offers in a folder, or a path that is typed.
inline void AcceptIn(QFileDialog& dialog, const QString& folder) {
  dialog.setDirectory(folder);
  QMetaObject::invokeMethod(&dialog, "accept");
}

/// Answers the next message box with a key and gives its text.
inline QString NextMessageBox(const std::function<void()>& cause, int key = Qt::Key_Return) {
  QString text;
  InModal<QMessageBox>(cause, [&](QMessageBox& box) {
    text = box.text();
    QTest::keyClick(&box, static_cast<Qt::Key>(key));
  });
  return text;
}

/// Presses the button of a box that bears that text.
inline void PressNamed(QMessageBox& box, const QString& text) {
  for (QAbstractButton* button : box.buttons()) {
    if (button->text() == text) return button->click();
  }
  qFatal("no button %s", qPrintable(text));
}

/// The named child, which must be there.
template <typename Control>
Control& Child(const QWidget& window, const char16_t* name) {
  auto* control = window.findChild<Control*>(QString::fromUtf16(name));
  if (control == nullptr) qFatal("no control %s", qPrintable(QString::fromUtf16(name)));
  return *control;
}

/// Types a text, Japanese included, into the widget that has the focus.
inline void TypeText(QWidget& widget, const QString& text) {
  for (const uint code : text.toUcs4()) {
    const char32_t character = code;
    QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, QString::fromUcs4(&character, 1),
                        Qt::NoModifier);
  }
}

/// Replaces a text box's text by typing.
template <typename Box>
void Type(Box& box, const QString& text) {
  box.setFocus();
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_Delete);
  TypeText(box, text);
}

/// A place inside a row of a tree or list, which is scrolled to where it can be clicked.
template <typename View, typename Item>
QPoint PlaceOf(View& view, Item* item) {
  view.scrollToItem(item);
  const QRect row = view.visualItemRect(item) & view.viewport()->rect();
  if (row.isEmpty()) qFatal("a row of %s cannot be seen", qPrintable(view.objectName()));
  return row.center();
}

/// Clicks a row.
template <typename View, typename Item>
void ClickRow(View& view, Item* item, Qt::MouseButton button = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::mouseClick(view.viewport(), button, modifiers, PlaceOf(view, item));
}

inline void Press(QWidget& button) {
  QTest::mouseClick(&button, Qt::LeftButton);
}

}  // namespace vorn::test
