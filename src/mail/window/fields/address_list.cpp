#include "mail/window/fields/address_list.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyle>
#include <algorithm>

#include "kit/window/plain_text.h"
#include "mail/codec/header/list_splitting.h"
#include "mail/window/fields/kind_box.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr QRgb kFaultColor = 0xC62828;  // told apart on light and dark backgrounds

struct KindText {
  const char16_t* kind;
  const char* text;
};

constexpr KindText kKinds[] = {{u"TO", QT_TRANSLATE_NOOP("vorn::Ui", "宛先")},
                               {u"CC", "CC"},
                               {u"BC", "BCC"},
                               {u"FROM", QT_TRANSLATE_NOOP("vorn::Ui", "差出人")},
                               {u"RE", QT_TRANSLATE_NOOP("vorn::Ui", "返信先")},
                               {u"NO", QT_TRANSLATE_NOOP("vorn::Ui", "開封通知先")}};

QString TextOf(const QString& kind) {
  for (const KindText& entry : kKinds) {
    if (kind.compare(QStringView(entry.kind), Qt::CaseInsensitive) == 0) {
      return Ui::tr(entry.text);
    }
  }
  return kind;
}

// Marks within an address stay, to be seen as its fault: without them it would be another one.
AddressEntry WithPlainName(AddressEntry entry) {
  entry.displayName = WithoutDirectionMarks(entry.displayName);
  return entry;
}

// What keeps a row's text from being sent to; empty when nothing does.
QString FaultOf(const QString& text) {
  for (const AddressEntry& entry : ReadTypedAddresses(text)) {
    if (!IsMailAddress(entry.address)) {
      return Ui::tr("「%1」はメールアドレスではありません。").arg(text.simplified());
    }
  }
  return {};
}

}  // namespace

AddressList::AddressList(std::function<QStringList()> offers, QWidget* parent)
    : RowList(2, kAddress, QStringLiteral("txMailaddress"), std::move(offers), parent) {
  setObjectName(QStringLiteral("lvMailaddress"));
  setHorizontalHeaderLabels({Ui::tr("種類"), Ui::tr("アドレス")});
  setColumnWidth(kKind, 110);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  connect(this, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* changed) {
    if (filling_) return;
    SplitRow(changed->row());
    MarkFault(changed->row());
    KeepEmptyRow();
    Q_EMIT Edited();
  });
}

void AddressList::MarkNamed(const QString& text) {
  const QScopedValueRollback<bool> quiet(filling_, true);
  for (int row = 0; row < rowCount(); ++row) {
    const QString line = LineNaming(row, text);
    if (line.isEmpty()) continue;
    QTableWidgetItem* cell = item(row, kAddress);
    cell->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
    cell->setToolTip(ShownToolTip(line));
    cell->setData(Qt::AccessibleDescriptionRole, line);
  }
}

bool AddressList::GoToNamed(const QString& text) {
  for (int row = 0; row < rowCount(); ++row) {
    if (LineNaming(row, text).isEmpty()) continue;
    GoTo(row);
    if (auto* box = qobject_cast<QLineEdit*>(indexWidget(currentIndex()))) box->selectAll();
    return true;
  }
  return false;
}

// The last line of `text` that begins with an address of the row; empty when there is none.
QString AddressList::LineNaming(int row, const QString& text) const {
  QString naming;
  const QList<AddressEntry> entries = ReadTypedAddresses(RowText(row));
  for (const QString& line : text.split(u'\n')) {
    const bool names = std::any_of(entries.begin(), entries.end(), [&](const AddressEntry& entry) {
      return line.startsWith(entry.address + QStringLiteral(": "));
    });
    if (names) naming = line.trimmed();
  }
  return naming;
}

void AddressList::Show(const QList<AddressEntry>& addresses, bool editable) {
  editable_ = editable;
  shown_ = addresses;
  setEditTriggers(editable ? kRowTriggers : QAbstractItemView::NoEditTriggers);
  setRowCount(0);
  for (const AddressEntry& entry : addresses) AddRow(entry);
  KeepEmptyRow();
}

void AddressList::AddRow(const AddressEntry& entry) {
  filling_ = true;
  const int row = rowCount();
  insertRow(row);
  if (editable_) {
    auto* kinds = new KindBox;
    for (const KindText& kind : kKinds) {
      kinds->addItem(Ui::tr(kind.text), QString::fromUtf16(kind.kind));
    }
    kinds->setCurrentIndex(qMax(0, kinds->findData(entry.kind)));
    connect(kinds, &QComboBox::currentIndexChanged, this, &AddressList::Edited);
    // Who has chosen a kind types an address next.
    connect(kinds, &KindBox::Chosen, this, [this, kinds] { GoToTextOf(kinds); });
    connect(kinds, &KindBox::Typed, this, [this, kinds](const QString& text) {
      // Behind an address that is done letters would make another one of it.
      if (!RowText(RowOf(kinds)).isEmpty()) return;
      GoToTextOf(kinds);
      if (auto* box = qobject_cast<QLineEdit*>(indexWidget(currentIndex()))) box->insert(text);
    });
    setCellWidget(row, kKind, kinds);
  } else {
    setItem(row, kKind, new QTableWidgetItem(TextOf(entry.kind)));
  }
  setItem(row, kAddress,
          new QTableWidgetItem(editable_ ? TypedForm(WithPlainName(entry))
                                         : ShownInLine(PresentableAddress(entry))));
  filling_ = false;
  MarkFault(row);
}

int AddressList::RowOf(const QComboBox* kinds) const {
  int row = 0;
  while (row < rowCount() - 1 && cellWidget(row, kKind) != kinds) ++row;
  return row;
}

void AddressList::GoToTextOf(const QComboBox* kinds) {
  const int row = RowOf(kinds);
  setFocus();
  setCurrentCell(row, kAddress);
  if (!IsEditing()) editItem(item(row, kAddress));
  if (auto* box = qobject_cast<QLineEdit*>(indexWidget(currentIndex()))) box->end(false);
}

void AddressList::KeepEmptyRow() {
  if (editable_ && !EndsEmpty()) AddRow({});
}

// Several addresses in one row become rows of the same kind. An address in wide forms is shown as
// it will be sent.
void AddressList::SplitRow(int row) {
  const QString typed = item(row, kAddress)->text();
  const QList<AddressEntry> entries = ReadTypedAddresses(typed);
  if (entries.isEmpty() || (entries.size() == 1 && typed.contains(entries[0].address))) return;
  const QString kind = KindOf(row);
  filling_ = true;
  item(row, kAddress)->setText(TypedForm(entries[0]));
  filling_ = false;
  for (AddressEntry entry : entries.mid(1)) {
    entry.kind = kind;
    Append(entry);  // who has gone on to another field stays there
  }
}

QString AddressList::KindOf(int row) const {
  const auto* kinds = qobject_cast<const QComboBox*>(cellWidget(row, kKind));
  return kinds == nullptr ? QStringLiteral("TO") : kinds->currentData().toString();
}

// A row that holds no address is shown as such, once it is no longer being typed in.
void AddressList::MarkFault(int row) {
  const QScopedValueRollback<bool> quiet(filling_, true);
  QTableWidgetItem* cell = item(row, kAddress);
  const bool isFault = editable_ && !FaultOf(cell->text()).isEmpty();
  cell->setData(Qt::ForegroundRole, isFault ? QVariant(QColor(kFaultColor)) : QVariant());
  cell->setIcon(isFault ? style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
  cell->setToolTip(ShownToolTip(FaultOf(cell->text())));
}

int AddressList::FaultRow() const {
  for (int row = 0; editable_ && row < rowCount(); ++row) {
    if (!FaultOf(RowText(row)).isEmpty()) return row;
  }
  return -1;
}

QString AddressList::FirstFault() const {
  const int row = FaultRow();
  return row < 0 ? QString() : FaultOf(RowText(row));
}

void AddressList::GoToFault() {
  if (const int row = FaultRow(); row >= 0) GoTo(row);
}

// First the row: a list without a current one would go to its last.
void AddressList::GoTo(int row) {
  setCurrentCell(row, kAddress);
  setFocus();
  // What is typed next corrects it, from its first letter; a row that Enter has opened may be open
  // still.
  if (Box(row) == nullptr) editItem(item(row, kAddress));
  if (QLineEdit* box = Box(row)) box->setFocus();
}

void AddressList::Append(const AddressEntry& entry) {
  const int last = rowCount() - 1;
  if (last >= 0 && item(last, kAddress)->text().trimmed().isEmpty()) removeRow(last);
  AddRow(entry);
  KeepEmptyRow();
}

void AddressList::Add(const AddressEntry& entry) {
  if (!editable_ || entry.address.isEmpty()) return;
  Append(entry);
  // What is typed next is for the empty row, and not for one that the list made the current one.
  setCurrentCell(rowCount() - 1, kAddress);
  Q_EMIT Edited();
}

bool AddressList::HasRecipient() const {
  const QList<AddressEntry> addresses = Addresses();
  return std::any_of(addresses.begin(), addresses.end(), [](const AddressEntry& entry) {
    return entry.kind == u"TO" || entry.kind == u"CC" || entry.kind == u"BC";
  });
}

void AddressList::keyPressEvent(QKeyEvent* event) {
  const int row = currentRow();
  const bool begins = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (editable_ && event->key() == Qt::Key_Delete && row >= 0 && row < rowCount() - 1) {
    RemoveCurrentRow();
    Q_EMIT Edited();
  } else if (editable_ && begins && row >= 0 && !IsEditing()) {
    auto* kinds = qobject_cast<QComboBox*>(cellWidget(row, kKind));
    if (currentColumn() == kKind && kinds != nullptr) {
      kinds->setFocus();
      kinds->showPopup();
      return;
    }
    editItem(item(row, kAddress));
  } else {
    RowList::keyPressEvent(event);
  }
}

QList<AddressEntry> AddressList::Addresses() const {
  if (!editable_) return shown_;
  QList<AddressEntry> addresses;
  for (int row = 0; row < rowCount(); ++row) {
    QList<AddressEntry> entries = ReadTypedAddresses(RowText(row));
    // What is no address yet is kept as it was typed.
    if (!FaultOf(RowText(row)).isEmpty()) {
      entries = {{{}, kNoAddress, MimeCodec::OneLine(RowText(row))}};
    }
    for (AddressEntry entry : std::as_const(entries)) {
      entry.kind = KindOf(row);
      addresses.append(entry);
    }
  }
  return addresses;
}

}  // namespace vorn
