#pragma once

#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// An address book, by the names that its object's bag has for what it holds. A view: the bag
/// outlives it.
class BookObject {
 public:
  explicit BookObject(const Disk& bag) : bag_(bag) {}

  /// What stands in it, one entry a line (`ParseAddressEntry`).
  QString Lines() const { return bag_.Text(kAddresses); }
  static void SetLines(Disk& bag, const QString& lines) { bag.Let(kAddresses, lines); }

  // The keys. A prefix before one makes the name of the control that edits it.
  static inline const QString kAddresses = QStringLiteral("Addressbook");

 private:
  const Disk& bag_;
};

}  // namespace vorn
