#pragma once

#include <QSet>
#include <QString>
#include <optional>

#include "mail/message_model.h"
#include "storage/context.h"
#include "storage/session/file_check.h"

namespace vorn {

/// A stored message as a message window opens it.
struct OpenedMessage {
  bool found = false;
  /// It is stored and cannot be read: what is left of its name. The model is empty then, and the
  /// request stays as it was.
  std::optional<UnreadableMessage> unreadable;
  StorageError reason;  ///< why it cannot be read
  bool first = false;   ///< it had not been opened before
  MessageModel model;
  /// The code in use: that of reading, and of writing for a message that is edited.
  CharsetChoice charset = CharsetChoice::Automatic;
  QString html;                 ///< the HTML as it was written; null when there is none
  QSet<qsizetype> htmlParts;    ///< where its parts begin in the source
  QSet<qsizetype> shownImages;  ///< those that it shows (`ShownImages`)
  QString calendar;   ///< of a received message, what appointment it holds; null when it has none
  QString signature;  ///< of a received message, how it is signed, in words; empty when it is not
  QByteArray source;  ///< as stored, for the attachments that are taken over
};

/// Reads the message that the request (`MailRequestBag`) names and opens it in the request's mode.
/// The request takes the index columns, and whether the sender asked for a receipt and this is the
/// first time. A message that is opened for the first time is marked as opened. In any mode but the
/// first the request becomes a new message with an identifier of its own.
///
/// A new message begins with what the request's address says (`WithMailto`).
///
/// With `applyStoredCharset` the text is read with the stored code, otherwise with `code`. A
/// message that cannot be read gives an empty model; one that is not there any more is made from
/// `shown`, its source where that is known, with what the request tells of it.
OpenedMessage OpenMessage(Context& context, Disk& request, bool applyStoredCharset = true,
                          const ReadingCode& code = {}, const QByteArray& shown = {});

/// The same for somebody who looks at a message without opening it: it keeps its mark.
OpenedMessage LookAtMessage(Context& context, Disk& request);

/// Marks the message that a request was read for as opened; gives whether it was not so already.
Result<bool> MarkOpened(Context& context, Disk& request);

/// Whether a message's HTML part comes to the front when it is read: where there is no other text,
/// and the setting "HtmlFirst" says so.
bool OpensAsHtml(Context& context, const MessageModel& model);

/// Whether any account sends messages; and the address line ("FROM: address name") of the one that
/// sends those that name none, empty without one.
bool HasEnabledAccount(Context& context);
QString SenderLine(Context& context);

/// The signature of the account with that address.
QString SignatureOf(Context& context, const QString& address);

/// The first of these addresses that is one of the user's accounts; empty when none is.
QString OwnAddress(Context& context, const QStringList& addresses);

}  // namespace vorn
