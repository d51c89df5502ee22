#pragma once

#include <QList>
#include <QSet>
#include <QStringList>

#include "mail/codec/header/address.h"
#include "storage/context.h"

namespace vorn {

/// The addresses a user may want to write to. The sent messages are read once, and from then on
/// only what was sent since; what is imported with an earlier date counts from the next start on.
class KnownAddresses {
 public:
  explicit KnownAddresses(Context& context) : context_(context) {}

  /// "name <address>" or the address alone, without repetitions: the entries of the address books
  /// first, then the recipients of the messages sent last, then the own accounts.
  QStringList Offers();

 private:
  void ReadSent();

  Context& context_;
  QList<AddressEntry> recipients_;  // those used last first
  QSet<QString> read_;              // messages, by time and identifier: one may be sent again
  QString readTo_;                  // the time of the message that was sent last
};

}  // namespace vorn
