#pragma once

#include <QString>
#include <QStringList>

#include "storage/base/serial_id.h"

class QPrinter;

namespace vorn {

class MessageHost;
struct MailRequest;

/// What a user does with messages on a folder's page besides opening and answering them.
enum class MessageAction {
  ToDust,
  OutOfDust,
  File,
  MarkUnopened,
  MarkOpened,
  ToggleOpened,  ///< of one message
  ToggleStar
};

/// What a browser window asks of the program around it.
class BrowserHost {
 public:
  virtual ~BrowserHost() = default;
  /// Asks for the window of a message of the profile's mail; where that is need not be said.
  virtual void ShowMessage(const MailRequest& request) = 0;
  /// Asks for a new message as a "mailto:" address says (RFC 6068).
  virtual void WriteTo(const QString& mailto) = 0;
  /// Acts on messages of a folder, after asking the user where that is due. Returns those that have
  /// left the folder.
  virtual SerialIds ActOnMessages(MessageAction action, const SerialIds& messages,
                                  const SerialId& folder) = 0;
  /// Lets the user choose a printer and how to print what has that title; false when he declines.
  virtual bool ChoosePrinter(QPrinter& printer, const QString& title) = 0;
  /// What a message that is read beside its folder's page asks for.
  virtual MessageHost& Messages() = 0;
  /// Tells the user in passing, without a question.
  virtual void Tell(const QString& sentence) = 0;
  /// A new browser window shows itself.
  virtual void BrowserOpened() = 0;
  /// A browser window has closed.
  virtual void BrowserClosed() = 0;
};

}  // namespace vorn
