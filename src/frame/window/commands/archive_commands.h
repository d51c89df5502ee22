#pragma once

#include <QStringList>

#include "mail/store/message_filing.h"
#include "mail/window/host/message_host.h"
#include "storage/base/result.h"
#include "storage/context.h"

class QTimer;
class QWidget;

namespace vorn {

class MailTraffic;
class PageActions;
struct ExportOutcome;
struct ImportCounts;

/// The commands that import messages from files and folders and write a folder into one, with a
/// window that shows how far they are.
class ArchiveCommands {
 public:
  /// Windows stand before `window`; `actions` offers to take an import back. While messages are
  /// imported, `sessions` begins no transfer.
  ArchiveCommands(Context& context, QWidget& window, MessageHost& host, PageActions& actions,
                  MailTraffic& traffic, QTimer& sessions)
      : context_(context),
        window_(window),
        host_(host),
        actions_(actions),
        traffic_(traffic),
        sessions_(sessions) {}

  /// Into a folder that the user chooses; `current`, the one that he looks at, is chosen already
  /// where it can hold messages.
  void ImportFiles(const SerialId& current);
  void ImportFolder(const SerialId& current);
  /// `name` is what the user calls the folder.
  void Export(const SerialId& folder, const QString& name);

 private:
  void Import(const QStringList& paths, const SerialId& current);
  SerialId AskTarget(const SerialId& current);
  QString NameOf(const SerialId& folder) const;
  void TellImported(const Result<>& imported, const ImportCounts& counts, const SerialId& folder,
                    const QString& read);
  void OfferUndo(const QString& done, const Move& back, const SerialId& folder);
  void TakeBack(const Move& back, const MessageFlags& flags, const SerialId& folder);
  void TellExported(const ExportOutcome& outcome);

  Context& context_;
  QWidget& window_;
  MessageHost& host_;
  PageActions& actions_;
  MailTraffic& traffic_;
  QTimer& sessions_;
};

}  // namespace vorn
