#pragma once

#include <QObject>

#include "mail/window/message_command.h"

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;

namespace vorn {

class AttachmentList;
class MessageBody;

/// The menus of a message window.
class MessageMenus : public QObject {
  Q_OBJECT

 public:
  /// They act on `clips` and `body` themselves where that is all there is to do.
  MessageMenus(QMainWindow& window, AttachmentList& clips, MessageBody& body);

  /// Shows what can be chosen, and what is chosen.
  void Show(const MessageState& state);
  QMenu* File() const { return file_; }
  QMenu* Edit() const { return edit_; }

 Q_SIGNALS:
  void Wanted(vorn::MessageCommand command);
  void CharsetChosen(vorn::CharsetChoice charset);
  /// As the state has it.
  void PriorityChosen(Priority priority);
  /// A menu opens; the state may be another one than was shown.
  void Opening();

 private:
  void BuildFile();
  QMenu* BuildMessages();
  void BuildEdit();
  void BuildEditing();
  void BuildView();
  void BuildCharsets(QMenu* menu);
  void BuildPriorities(QMenu* menu);
  QAction* Add(QMenu* menu, const QString& text, MessageCommand command);
  void DeleteInFocusedBox();
  void InFocusedBox(const char* slot);

  QMainWindow& window_;
  AttachmentList& clips_;
  MessageBody& body_;
  QMenu* file_;
  QMenu* edit_;
  QAction* send_ = nullptr;
  QList<QAction*> answers_;
  QList<QAction*> ofReceived_;
  QAction* delete_ = nullptr;
  QAction* dust_ = nullptr;
  QAction* readAs_ = nullptr;
  QActionGroup* charsets_;
  QActionGroup* priorities_;
  QMenu* attachments_ = nullptr;
};

}  // namespace vorn
