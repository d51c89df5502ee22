#pragma once

#include <QStringList>

#include "mail/window/message_host.h"
#include "storage/context.h"

class QTimer;
class QWidget;

namespace vorn {

class MailTraffic;
struct ExportOutcome;

/// The commands that import messages from files and folders and write a folder into one, with a
/// window that shows how far they are.
class ArchiveCommands {
 public:
  /// Windows stand before `window`. While messages are imported, `sessions` begins no transfer.
  ArchiveCommands(Context& context, QWidget& window, MessageHost& host, MailTraffic& traffic,
                  QTimer& sessions)
      : context_(context), window_(window), host_(host), traffic_(traffic), sessions_(sessions) {}

  void ImportFiles();
  void ImportFolder();
  /// `name` is what the user calls the folder.
  void Export(const QString& folder, const QString& name);

 private:
  void Import(const QStringList& paths);
  void TellExported(const ExportOutcome& outcome);

  Context& context_;
  QWidget& window_;
  MessageHost& host_;
  MailTraffic& traffic_;
  QTimer& sessions_;
};

}  // namespace vorn
