#pragma once

#include <QList>
#include <QStringList>
#include <functional>

#include "mail/codec/header/address.h"
#include "mail/window/fields/row_list.h"

class QComboBox;

namespace vorn {

/// The list "lvMailaddress": a message's addresses, one a row with its kind. While it can be edited
/// its last row, "($追加)", takes the next address; several that are typed or pasted into one row
/// become rows of their own.
class AddressList : public RowList {
  Q_OBJECT

 public:
  /// `offers` gives the addresses that are offered while the user types.
  explicit AddressList(std::function<QStringList()> offers, QWidget* parent = nullptr);

  void Show(const QList<AddressEntry>& addresses, bool editable);
  /// The rows that hold an address.
  QList<AddressEntry> Addresses() const;
  bool HasRecipient() const;
  /// What is wrong with the first row that holds no address; empty when there is none.
  QString FirstFault() const;
  /// Puts the cursor into that row.
  void GoToFault();
  /// Marks the rows whose addresses begin a line of `text`, as the refused ones do in an event.
  void MarkNamed(const QString& text);
  /// Opens the first of these rows with all of it selected, to be written over; false without any.
  bool GoToNamed(const QString& text);
  /// Adds an address to a list that can be edited.
  void Add(const AddressEntry& entry);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum Column { kKind = 0, kAddress };

  void AddRow(const AddressEntry& entry);
  void Append(const AddressEntry& entry);
  void KeepEmptyRow();
  int RowOf(const QComboBox* kinds) const;
  /// Opens the row of that kind box.
  void GoToTextOf(const QComboBox* kinds);
  void SplitRow(int row);
  QString KindOf(int row) const;
  void MarkFault(int row);
  int FaultRow() const;
  void GoTo(int row);
  QString LineNaming(int row, const QString& text) const;

  QList<AddressEntry> shown_;  // what a list that cannot be edited shows
  bool editable_ = false;
  bool filling_ = false;
};

}  // namespace vorn
