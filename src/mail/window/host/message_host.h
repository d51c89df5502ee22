#pragma once

#include <QString>

#include "mail/mail_request.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// What a message window asks of the program around it.
class MessageHost {
 public:
  virtual ~MessageHost() = default;
  /// Plans the sending of a message that waits.
  virtual void SendMessage(const SerialId& serialId) = 0;
  /// Whether it is known which account sends a message with these address lines, if need be by
  /// asking the user. False when he chose none.
  virtual bool ChooseSender(const SerialId& serialId, const QString& addressLines,
                            const QString& subject) = 0;
  /// A message was stored or changed; pages that show it are out of date.
  virtual void MessageStored() = 0;
  /// A window has put a message into the dust bin or taken it out, which can be taken back.
  virtual void DustChanged(const SerialId& serialId, bool dust) = 0;
  /// Whether the user has last chosen the HTML, where a message in a reading pane has both HTML and
  /// a text of its own.
  virtual bool PrefersHtml() const = 0;
  virtual void PreferHtml(bool html) = 0;
  /// Asks for another message window.
  virtual void PostMail(const MailRequest& request) = 0;
  /// Opens a file that holds a message in a window of its own.
  virtual void OpenMessageFile(const QString& path) = 0;
  /// Prints a page file, which is deleted afterwards. `title` names what is made of it.
  virtual void PrintPageFile(const QString& path, const QString& title) = 0;
  /// The message before (`step` -1) or after (1) another one in the folder that is being looked
  /// at; empty when there is none.
  virtual SerialId NeighbourOf(const SerialId& serialId, int step) = 0;
  /// Opens the window of a new folder with a condition that finds messages like this one. Nothing
  /// is stored before the user agrees.
  virtual void GatherAlike(const SerialId& serialId) = 0;
  /// The same with the window of the receive-stop rules.
  virtual void StopAlike(const SerialId& serialId) = 0;
  /// The addresses that are offered while the user types one (`KnownAddresses`).
  virtual QStringList OfferedAddresses() = 0;
  /// Puts those with whom messages were exchanged into an address book.
  virtual void AddToBook(const SerialIds& serialIds) = 0;
  /// Opens the window of a new account.
  virtual void MakeAccount() = 0;
  /// Whether the program is about to end, so that a question must not keep a window open.
  virtual bool IsClosing() const = 0;
};

}  // namespace vorn
