#pragma once

class QMainWindow;

namespace vorn {

/// A command of the box of a window that has the keyboard, by its slot's name; of no other control.
void InFocusedBox(QMainWindow& window, const char* slot);

/// Deletes what is marked in that box, or the character behind the caret.
void DeleteInFocusedBox(const QMainWindow& window);

}  // namespace vorn
