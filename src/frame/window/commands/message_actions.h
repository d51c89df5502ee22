#pragma once

#include <QStringList>
#include <functional>

#include "mail/store/message_filing.h"
#include "mail/window/host/message_host.h"
#include "present/window/page/browser_host.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

/// What is done with messages of the folders' pages: filed, thrown away, taken back, deleted. The
/// user is asked before what cannot be undone, and told of what did not work.
class MessageActions {
 public:
  /// Boxes stand before `window`; `host` learns of every change.
  MessageActions(Context& context, QWidget& window, MessageHost& host)
      : context_(context), window_(window), host_(host) {}

  /// Gets what was done and how it is taken back, where it can be.
  using Undoable = std::function<void(const QString& done, std::function<void()> undo)>;
  void OnDone(Undoable told) { told_ = std::move(told); }

  /// Gets a message that came back where it was.
  void OnReturned(std::function<void(const QStringList&)> told) { returned_ = std::move(told); }

  /// Called when messages were deleted, which cannot be taken back, nor can what was done to them.
  void OnDeleted(std::function<void()> told) { deleted_ = std::move(told); }

  /// Gets the serial identifier of a folder that the user made on the way.
  void OnFolderMade(std::function<void(const QString&)> told) { folderMade_ = std::move(told); }

  /// On messages that are shown in `folder`, which is empty where messages of all folders are;
  /// returns those that have left it.
  QStringList Act(MessageAction action, const QStringList& messages, const QString& folder);
  /// The same messages were dropped on a folder of the tree.
  QStringList Drop(const QStringList& messages, const QString& folder, const QString& from);
  /// Deletes all that was thrown away, after a question.
  void EmptyDustBin();

 private:
  QStringList ChooseFolder(const QStringList& messages, const QString& folder);
  QString AskFolder();
  QString MakeFolder(const QString& caption, QString name = {});
  QStringList File(const QStringList& messages, const QString& into, const QString& shownIn);
  QStringList PutIntoInbox(const QStringList& messages, const QString& from);
  Filed AllFolders(const QStringList& messages);
  QStringList ChangeDust(const QStringList& messages, bool dust);
  QStringList Carry(const Move& move, const QStringList& messages,
                    const std::function<QString(qsizetype)>& words);
  void CarryBack(const Move& move);
  using Marking = std::function<Result<>(const QStringList&)>;
  void Mark(const QStringList& messages, const Marking& mark, const Marking& back,
            const std::function<QString(qsizetype)>& words);
  QString NameOf(const QString& folder) const;
  QStringList Delete(const QStringList& messages);
  bool IsFilledByHand(const QString& folder) const;
  QStringList EndMove(const Result<Moved>& moved, const QStringList& messages);
  QStringList End(const Result<>& done, const QStringList& messages, const UnderWay& underWay = {});

  Context& context_;
  QWidget& window_;
  MessageHost& host_;
  Undoable told_;
  std::function<void()> deleted_;
  std::function<void(const QStringList&)> returned_;
  std::function<void(const QString&)> folderMade_;
  QString lastFolder_;  // into which messages were filed
};

}  // namespace vorn
