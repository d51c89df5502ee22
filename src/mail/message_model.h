#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "mail/codec/header/address.h"
#include "mail/codec/mime/content_index.h"
#include "mail/edit_settings.h"
#include "mail/lazy_text.h"
#include "mail/open_mode.h"
#include "storage/bags/disk.h"

namespace vorn {

/// An attachment of a message window.
struct ModelAttachment {
  QString name;
  QString type;
  bool isNew = false;               ///< a file the user added, else a part of the stored message
  QString path;                     ///< of the file, for a new one
  MimeCodec::ContentRecord record;  ///< where an old one stands in the source
  QByteArray charset = {};          ///< what an old one declares
  /// The contents of a file from the package that `record` is (see `ReadTnef`); such a file is
  /// shown beside it and goes nowhere without it.
  std::optional<QByteArray> inner = std::nullopt;
  /// The contents of a file that stands for an attachment and others that belong to it.
  std::optional<QByteArray> made = std::nullopt;
};

/// What a read receipt tells programs (RFC 8098).
struct ReceiptReport {
  QString recipient;
  QString messageId;
};

/// What a message window holds, without the window.
struct MessageModel {
  QString subject;
  QList<AddressEntry> addresses;  ///< kinds FROM, TO, CC, BC, RE, NO
  QString references;             ///< identifiers separated by blanks
  QString inReplyTo;
  LazyText text;
  bool isTextOfHtml = false;  ///< the text is that of the HTML part, for want of another
  QString signature;          ///< of the sender of a new message, as it stands in the text
  QStringList headerRows;     ///< extension headers such as "X-Priority: 3"
  std::vector<ModelAttachment> attachments;
  /// Of a read receipt: the identifier of the message that was read and whose address got it.
  std::optional<ReceiptReport> report;
  /// Of an answer to an invitation: what it says to calendars (see `ReplyCalendar`).
  std::optional<QByteArray> calendarReply;
};

/// The account that a new message is from, and the addresses of all the user's accounts.
struct Sender {
  QString address;
  QString display;
  QStringList own;
  QHash<QString, QString> signatures;  ///< by the account's address, in small letters

  QString SignatureFor(const QString& from) const { return signatures.value(from.toLower()); }
  bool IsOwn(const QString& other) const { return own.contains(other, Qt::CaseInsensitive); }
};

/// A stored message and its index columns, as `OpenSource` reads them.
struct StoredMessage {
  QByteArray source;
  QString contentIndex;
  QString addressLines;
  QString timestamp;       ///< as it is stored (see `StoredTime`)
  bool isWritten = false;  ///< by the user: edited, waiting or sent
  ReadingCode charset;
};

/// The state in which a message window opens a stored message: unchanged, or as the beginning of a
/// reply, forward, resend or receipt. `isNew` leaves its extension headers out; `programLine` is
/// the text of the X-Mailer field of new messages. Never fails.
MessageModel OpenSource(const StoredMessage& message, OpenMode mode, bool isNew,
                        const EditSettings& settings, const Sender& sender,
                        const QString& programLine);

}  // namespace vorn
