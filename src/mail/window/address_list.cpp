#include "mail/window/address_list.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QStyle>

#include "storage/ui.h"

namespace vorn {
namespace {

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

// "name <address>" or an address alone, as users type it.
AddressEntry ReadTyped(const QString& kind, const QString& typed) {
  AddressEntry entry;
  entry.kind = kind;
  const QString text = typed.simplified();
  const qsizetype bracket = text.lastIndexOf(u'<');
  if (bracket >= 0 && text.endsWith(u'>')) {
    entry.address = text.mid(bracket + 1).chopped(1).trimmed();
    entry.displayName = text.left(bracket).trimmed();
  } else {
    entry.address = text;
  }
  return entry;
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
    KeepEmptyRow();
    Q_EMIT Edited();
  });
}

void AddressList::MarkNamed(const QString& text) {
  const QScopedValueRollback<bool> quiet(filling_, true);
  const QStringList lines = text.split(u'\n');
  for (int row = 0; row < rowCount(); ++row) {
    QTableWidgetItem* cell = item(row, kAddress);
    if (cell == nullptr || cell->text().isEmpty()) continue;
    const QString address = ReadTyped(QString(), cell->text()).address;
    for (const QString& line : lines) {
      if (!line.startsWith(address + QStringLiteral(": "))) continue;
      cell->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning));
      cell->setToolTip(line.trimmed().toHtmlEscaped());
      cell->setData(Qt::AccessibleDescriptionRole, line.trimmed());
    }
  }
}

void AddressList::Show(const QList<AddressEntry>& addresses, bool editable) {
  editable_ = editable;
  shown_ = addresses;
  setEditTriggers(editable ? QAbstractItemView::AllEditTriggers
                           : QAbstractItemView::NoEditTriggers);
  setRowCount(0);
  for (const AddressEntry& entry : addresses) AddRow(entry);
  KeepEmptyRow();
}

void AddressList::AddRow(const AddressEntry& entry) {
  filling_ = true;
  const int row = rowCount();
  insertRow(row);
  if (editable_) {
    auto* kinds = new QComboBox;
    for (const KindText& kind : kKinds) {
      kinds->addItem(Ui::tr(kind.text), QString::fromUtf16(kind.kind));
    }
    kinds->setCurrentIndex(qMax(0, kinds->findData(entry.kind)));
    connect(kinds, &QComboBox::currentIndexChanged, this, &AddressList::Edited);
    setCellWidget(row, kKind, kinds);
  } else {
    setItem(row, kKind, new QTableWidgetItem(TextOf(entry.kind)));
  }
  setItem(row, kAddress, new QTableWidgetItem(entry.presentable));
  filling_ = false;
}

void AddressList::KeepEmptyRow() {
  if (!editable_) return;
  const int last = rowCount() - 1;
  if (last < 0 || !item(last, kAddress)->text().trimmed().isEmpty()) AddRow({});
}

// Several addresses in one row, separated as in a header, become rows of the same kind.
void AddressList::SplitRow(int row) {
  QString typed = item(row, kAddress)->text();
  typed.replace(u';', u',').replace(u'\n', u',');
  if (typed.count(u'@') < 2) return;
  const QString lines = ParseAddressList(QStringLiteral("TO: ") + typed);
  const QStringList entries = lines.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
  if (entries.size() < 2) return;
  const auto* kinds = qobject_cast<const QComboBox*>(cellWidget(row, kKind));
  const QString kind = kinds == nullptr ? QStringLiteral("TO") : kinds->currentData().toString();
  filling_ = true;
  item(row, kAddress)->setText(ParseAddressEntry(entries[0]).presentable);
  filling_ = false;
  for (const QString& line : entries.mid(1)) {
    AddressEntry entry = ParseAddressEntry(line);
    entry.kind = kind;
    Add(entry);
  }
}

void AddressList::Add(const AddressEntry& entry) {
  if (!editable_ || entry.address.isEmpty()) return;
  const int last = rowCount() - 1;
  if (last >= 0 && item(last, kAddress)->text().trimmed().isEmpty()) removeRow(last);
  AddRow(entry);
  KeepEmptyRow();
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
    removeRow(row);
    Q_EMIT Edited();
  } else if (editable_ && begins && row >= 0 && state() != EditingState) {
    editItem(item(row, kAddress));
  } else {
    RowList::keyPressEvent(event);
  }
}

QList<AddressEntry> AddressList::Addresses() const {
  if (!editable_) return shown_;
  QList<AddressEntry> addresses;
  for (int row = 0; row < rowCount(); ++row) {
    const QString typed = RowText(row);
    const auto* kinds = qobject_cast<const QComboBox*>(cellWidget(row, kKind));
    if (kinds == nullptr || typed.trimmed().isEmpty()) continue;
    addresses.append(ReadTyped(kinds->currentData().toString(), typed));
  }
  return addresses;
}

}  // namespace vorn
