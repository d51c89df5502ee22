#pragma once

#include <QList>
#include <QTableWidget>

#include "mail/address.h"

namespace vorn {

/// The list "lvMailaddress": a message's addresses, one a row with its kind. While it can be edited
/// its last row is empty and takes the next address.
class AddressList : public QTableWidget {
  Q_OBJECT

 public:
  explicit AddressList(QWidget* parent = nullptr);

  void Show(const QList<AddressEntry>& addresses, bool editable);
  /// The rows that hold an address.
  QList<AddressEntry> Addresses() const;

 Q_SIGNALS:
  void Edited();

 private:
  enum Column { kKind = 0, kAddress };

  void AddRow(const AddressEntry& entry);
  void KeepEmptyRow();

  bool editable_ = false;
  bool filling_ = false;
};

}  // namespace vorn
