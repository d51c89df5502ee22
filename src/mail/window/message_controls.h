#pragma once

#include <QHash>
#include <QObject>

#include "mail/window/message_commands.h"

class QAction;
class QMenu;
class QToolBar;

namespace vorn {

/// The menus and toolbars of a message window, made from the table of its commands.
class MessageControls : public QObject {
  Q_OBJECT

 public:
  explicit MessageControls(const MessageParts& parts);

  /// Shows what can be chosen, and what is chosen.
  void Show();
  /// Shows icons without words, or both.
  void ShowIconsAlone(bool alone);

 Q_SIGNALS:
  /// A menu opens; the state may be another one than was shown.
  void Opening();

 private:
  QToolBar* NewToolbar(const QString& name, const QString& text);
  QAction* Add(const MessageCommand& command);
  QAction* NewAction(QWidget& place, const MessageCommand& command);
  QAction* NewMenu(QWidget& place, const MessageCommand& command);
  QAction* NewMenuButton(const MessageCommand& command);
  void Run(const MessageCommand& command);

  MessageParts parts_;
  QToolBar* tbMenu_;
  QToolBar* tbReading_;
  QHash<CommandPlace, QWidget*> places_;
  const QList<MessageCommand> commands_;
  QList<QAction*> actions_;  // of the commands, in their order
};

}  // namespace vorn
