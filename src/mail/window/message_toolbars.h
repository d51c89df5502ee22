#pragma once

#include <QObject>
#include <QStyle>

#include "mail/window/message_command.h"

class QAction;
class QMainWindow;
class QMenu;
class QToolBar;

namespace vorn {

class AttachmentList;

/// The toolbars of a message window: of every message, and of one that is read.
class MessageToolbars : public QObject {
  Q_OBJECT

 public:
  /// The menus can be opened from there as well. Attaching acts on `clips` itself.
  MessageToolbars(QMainWindow& window, QMenu* file, QMenu* edit, AttachmentList& clips);

  /// Shows what can be done.
  void Show(const MessageState& state);
  /// Shows icons without words, or both.
  void ShowIconsAlone(bool alone);

 Q_SIGNALS:
  void Wanted(vorn::MessageCommand command);

 private:
  QToolBar* NewToolbar(const QString& name, const QString& text);
  void BuildCommands(QMenu* file, QMenu* edit, AttachmentList& clips);
  void BuildReading();
  QAction* Add(QToolBar* bar, const QString& key, const QIcon& icon, const QString& text,
               MessageCommand command);
  QAction* AddMenu(const QString& key, const QString& text, QMenu* menu,
                   QStyle::StandardPixmap icon);

  QMainWindow& window_;
  QToolBar* tbMenu_;
  QToolBar* tbReading_;
  QAction* send_ = nullptr;
  QAction* cancel_ = nullptr;
  QAction* reply_ = nullptr;
  QAction* clip_ = nullptr;
  QAction* edit_ = nullptr;
  QAction* star_ = nullptr;
};

}  // namespace vorn
