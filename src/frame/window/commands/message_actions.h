#pragma once

#include <QStringList>
#include <functional>

#include "mail/store/message_filing.h"
#include "mail/window/host/message_host.h"
#include "present/window/page/browser_host.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

/// That so many messages were put into the dust bin, or taken out of it.
QString DustWords(bool dust, qsizetype count);

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
  void OnReturned(std::function<void(const SerialIds&)> told) { returned_ = std::move(told); }

  /// Gets how many messages were deleted, in words. That cannot be taken back, nor can what was
  /// done to them.
  void OnDeleted(std::function<void(const QString& done)> told) { deleted_ = std::move(told); }

  /// Gets a folder that the user made on the way.
  void OnFolderMade(std::function<void(const SerialId&)> told) { folderMade_ = std::move(told); }

  /// On messages that are shown in `folder`, which is empty where messages of all folders are;
  /// returns those that have left it.
  SerialIds Act(MessageAction action, const SerialIds& messages, const SerialId& folder);
  /// The same messages were dropped on a folder of the tree.
  SerialIds Drop(const SerialIds& messages, const SerialId& folder, const SerialId& from);
  /// Deletes all that was thrown away, after a question.
  void EmptyDustBin();

 private:
  SerialIds ChooseFolder(const SerialIds& messages, const SerialId& folder);
  SerialId AskForFolder();
  SerialId MakeFolder(const QString& caption, QString name = {});
  SerialIds File(const SerialIds& messages, const SerialId& into, const SerialId& shownIn);
  SerialIds PutIntoInbox(const SerialIds& messages, const SerialId& from);
  Filed AllFolders(const SerialIds& messages);
  SerialIds ChangeDust(const SerialIds& messages, bool dust);
  SerialIds Carry(const Move& move, const SerialIds& messages,
                  const std::function<QString(qsizetype)>& words);
  void CarryBack(const Move& move);
  MovedSome MoveAll(const Move& move);
  using Marking = std::function<Result<>(const SerialIds&)>;
  void Mark(const SerialIds& messages, const Marking& mark, const Marking& back,
            const std::function<QString(qsizetype)>& words);
  QString NameOf(const SerialId& folder) const;
  SerialIds Delete(const SerialIds& messages);
  bool IsFilledByHand(const SerialId& folder) const;
  void TellEnd(const Result<>& done, const UnderWay& underWay);
  SerialIds End(const Result<>& done, const SerialIds& messages, const UnderWay& underWay = {});

  Context& context_;
  QWidget& window_;
  MessageHost& host_;
  Undoable told_;
  std::function<void(const QString&)> deleted_;
  std::function<void(const SerialIds&)> returned_;
  std::function<void(const SerialId&)> folderMade_;
  SerialId lastFolder_;  // into which messages were filed
};

}  // namespace vorn
