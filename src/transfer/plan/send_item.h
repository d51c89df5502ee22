#pragma once

#include <QString>
#include <optional>
#include <utility>

#include "objects/account.h"
#include "storage/context.h"

namespace vorn {

struct WaitingMessage;

/// A message of a send job, by the names that its bag has for what it holds: the row as it was when
/// the message was planned, who sends it and the envelope. The store takes the bag for the message
/// (`MessageBag`). The bag of any such message is one.
class SendItem {
 public:
  SendItem(DiskPtr bag) : bag_(std::move(bag)) {}
  /// A message that waits in the mail database of the stored path `file`.
  SendItem(const SerialId& serial, const QString& file, const QString& password,
           const QString& addressLines, const QString& subject);

  const DiskPtr& Bag() const { return bag_; }
  SerialId Serial() const { return bag_->Serial(); }
  QString File(const Context& context) const;
  QString AddressLines() const { return bag_->Text(kAddressLines); }
  QString Subject() const { return bag_->Text(kSubject); }

  /// The account that sends it, if there is one.
  std::optional<Account> Sender() const;
  void SetSender(const DiskPtr& account);
  /// How that account sends; empty without one. Whoever changes it expects another answer.
  QString Route() const;
  /// An account that none of its senders names sends it, and becomes its sender.
  void SendFrom(const DiskPtr& account);
  bool IsFromAnother() const { return bag_->Flag(kFromAnother); }

  /// Reads the envelope from the address lines: recipients and senders, one address a line.
  void FillEnvelope();
  QString Recipients() const { return bag_->Text(kTo); }
  QString From() const { return bag_->Text(kFrom); }
  /// The address lines of the senders.
  QString FromLines() const { return bag_->Text(kFromLines); }

  /// Takes what it keeps when it is stored as sent.
  void Take(const WaitingMessage& waiting);
  /// The version that the session sends; empty before one has begun.
  QString Version() const { return bag_->Text(kVersion); }

 private:
  static inline const QString kPassword = QStringLiteral("Password");
  static inline const QString kAddressLines = QStringLiteral("Mailaddress");
  static inline const QString kSubject = QStringLiteral("Subject");
  static inline const QString kAccount = QStringLiteral("account");
  static inline const QString kTo = QStringLiteral("mailaddress_to");
  static inline const QString kFrom = QStringLiteral("mailaddress_from");
  static inline const QString kFromAnother = QStringLiteral("update_from");
  static inline const QString kFromLines = QStringLiteral("update_from_list");
  static inline const QString kVersion = QStringLiteral("Version");

  DiskPtr bag_;
};

}  // namespace vorn
