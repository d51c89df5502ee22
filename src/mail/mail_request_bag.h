#pragma once

#include <QString>

#include "mail/mail_request.h"
#include "mail/message_model.h"
#include "mail/store/mail_row.h"
#include "storage/session/data_session.h"

namespace vorn {

/// The bag of a `MailRequest`, by the names that it has for what is wanted and for what was found
/// when the message was opened. Where the message is stored and in which state is in the same bag,
/// a `MessageBag`. A view: the bag outlives it.
class MailRequestBag {
 public:
  explicit MailRequestBag(Disk& bag) : bag_(bag) {}

  /// What is asked for, as the bag has it.
  static void Begin(Disk& bag, const MailRequest& request);

  // As what it is: a request is never stored.
  OpenMode Mode() const { return bag_.Get(kMode).value<OpenMode>(); }
  /// A message that is not stored yet.
  bool IsNew() const { return bag_.Flag(kNew); }
  /// From now on it is to be opened in that way.
  void Become(OpenMode mode, bool isNew);
  /// The address that a new message begins with; empty for none.
  QString Mailto() const { return bag_.Text(kMailto); }
  /// Sent at once where nothing is missing.
  bool SendsAtOnce() const { return bag_.Flag(kAutoSend); }
  /// The event about the message that is shown with it; empty for none.
  SerialId Event() const { return SerialId(bag_.Text(kEvent)); }

  /// Takes the columns of the message's row; the state and flags among them are the bag's.
  void TakeRow(const MailRow& row);
  QString ContentIndex() const { return bag_.Text(kContent); }
  QString Subject() const { return bag_.Text(kSubject); }
  QString Timestamp() const { return bag_.Text(kTimestamp); }
  QString AddressLines() const { return bag_.Text(kAddressLines); }

  /// The message that a new one was made from; else the message itself.
  SerialId Original() const { return SerialId(bag_.Text(kOriginal, bag_.SerialID())); }
  bool HasOriginal() const { return !bag_.Text(kOriginal).isEmpty(); }
  /// Makes it a new message with that identifier, of the one that it was.
  void BecomeNew(const SerialId& serialId);

  /// Its sender asks for a receipt, and this has not been dealt with.
  bool AsksForReceipt() const { return bag_.Flag(kReceipt); }
  void SetAsksForReceipt(bool asks) { bag_.Let(kReceipt, asks); }
  /// The user has sent it.
  bool IsSent() const { return bag_.Flag(kSend); }
  void SetSent(bool isSent) { bag_.Let(kSend, isSent); }
  /// The user has deleted it.
  bool IsDeleted() const { return bag_.Flag(kDeleted); }
  void BeDeleted() { bag_.Let(kDeleted, true); }

 private:
  static inline const QString kMode = QStringLiteral("open");
  static inline const QString kNew = QStringLiteral("new");
  static inline const QString kMailto = QStringLiteral("mailto");
  static inline const QString kAutoSend = QStringLiteral("AutoSend");
  static inline const QString kEvent = QStringLiteral("event");
  static inline const QString kContent = QStringLiteral("content");
  static inline const QString kSubject = QStringLiteral("work_subject");
  static inline const QString kTimestamp = QStringLiteral("work_timestamp");
  static inline const QString kAddressLines = QStringLiteral("mailaddress");
  static inline const QString kOriginal = QStringLiteral("original");
  static inline const QString kReceipt = QStringLiteral("notice");
  static inline const QString kSend = QStringLiteral("send");
  static inline const QString kDeleted = QStringLiteral("messagedelete");

  Disk& bag_;
};

}  // namespace vorn
