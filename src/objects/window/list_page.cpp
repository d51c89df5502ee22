#include "objects/window/list_page.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QShortcut>
#include <QTableWidget>
#include <QUrl>

#include "kit/window/access_names.h"
#include "mail/codec/header/address.h"
#include "mail/codec/header/list_splitting.h"
#include "objects/book_object.h"
#include "objects/bookmark_object.h"
#include "objects/object_types.h"
#include "objects/window/control_names.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLineRole = Qt::UserRole;
constexpr int kCellsRole = Qt::UserRole + 1;
const QString kMailto = QStringLiteral("mailto:");

// Enter goes on to the next row: what is typed after it would replace the cell that is done.
class EntryTable : public QTableWidget {
 public:
  using QTableWidget::QTableWidget;

  // Takes what is being typed; a button's letter pressed with Alt leaves the keyboard in its cell.
  void FinishEditing() {
    for (int cell = 0; cell < rowCount() * columnCount(); ++cell) {
      QWidget* editor = indexWidget(model()->index(cell / columnCount(), cell % columnCount()));
      if (editor == nullptr) continue;
      commitData(editor);
      closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
  }

 protected:
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override {
    QTableWidget::closeEditor(editor, hint);
    if (hint != QAbstractItemDelegate::SubmitModelCache) return;
    if (currentRow() < rowCount() - 1) setCurrentCell(currentRow() + 1, 0);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (!event->matches(QKeySequence::Paste) || currentRow() < 0) {
      return QTableWidget::keyPressEvent(event);
    }
    Paste(QApplication::clipboard()->text());
  }

 private:
  // Lines with tabs, as spreadsheets give them, fill rows; the last row makes the next one.
  void Paste(QString text) {
    while (text.endsWith(u'\n') || text.endsWith(u'\r')) text.chop(1);
    const QStringList lines = text.split(u'\n');
    const int first = currentRow();
    for (int line = 0; line < lines.size() && first + line < rowCount(); ++line) {
      const QStringList cells = lines[line].split(u'\t');
      for (int cell = 0; cell < cells.size() && currentColumn() + cell < columnCount(); ++cell) {
        item(first + line, currentColumn() + cell)->setText(cells[cell].trimmed());
      }
    }
  }
};

}  // namespace

ListPage::ListPage(const QString& page, const QString& title, const QString& listName,
                   const QStringList& columns)
    : FormPage(page, title), list_(new EntryTable(0, static_cast<int>(columns.size()), this)) {
  list_->setObjectName(listName);
  list_->setAccessibleName(WithoutKey(title));
  list_->setProperty("tag", QStringLiteral("text"));
  list_->setHorizontalHeaderLabels(columns);
  list_->horizontalHeader()->setStretchLastSection(true);
  list_->horizontalHeader()->setDefaultSectionSize(220);
  list_->verticalHeader()->hide();
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setTabKeyNavigation(true);
  Layout().addRow(list_);
  connect(list_, &QTableWidget::itemChanged, this, &ListPage::KeepEmptyRow);

  auto* buttons = new QHBoxLayout;
  const auto button = [&](const QString& name, const QString& text, auto clicked) {
    QPushButton* push = MakeButton(name, text);
    connect(push, &QPushButton::clicked, this, [this, clicked] {
      static_cast<EntryTable*>(list_)->FinishEditing();
      clicked();
    });
    buttons->addWidget(push);
  };
  button(QStringLiteral("cmRemove"), Ui::tr("削除(&D)"), [this] { RemoveRows(); });
  button(QStringLiteral("cmUp"), Ui::tr("上へ(&U)"), [this] { MoveRow(-1); });
  button(QStringLiteral("cmDown"), Ui::tr("下へ(&W)"), [this] { MoveRow(1); });
  buttons->addStretch();
  Layout().addRow(buttons);
  KeepEmptyRow();
}

void ListPage::Loaded(const Disk&) {
  KeepEmptyRow();
}

PageFault ListPage::Check() {
  static_cast<EntryTable*>(list_)->FinishEditing();
  return {};
}

QString ListPage::FirstLine(int row) const {
  const QTableWidgetItem* item = list_->item(row, 0);
  return item == nullptr ? QString() : item->data(kLineRole).toString();
}

QString ListPage::Line(const QTableWidget&, int row) const {
  const QTableWidgetItem* first = list_->item(row, 0);
  bool isUntouched = first != nullptr && !FirstLine(row).isEmpty();
  const QStringList cells = isUntouched ? first->data(kCellsRole).toStringList() : QStringList();
  for (int column = 0; isUntouched && column < list_->columnCount(); ++column) {
    const QTableWidgetItem* item = list_->item(row, column);
    isUntouched = item != nullptr && item->text() == cells.value(column);
  }
  return isUntouched ? FirstLine(row) : EditedLine(row);
}

QString ListPage::Cell(int row, int column) const {
  const QTableWidgetItem* item = list_->item(row, column);
  return item == nullptr ? QString() : MimeCodec::OneLine(item->text());
}

// With the line that it was read from, and its cells as they were then.
void ListPage::AppendRow(const QStringList& cells, const QString& line) {
  changing_ = true;
  const int row = list_->rowCount();
  list_->insertRow(row);
  for (int column = 0; column < list_->columnCount(); ++column) {
    list_->setItem(row, column, new QTableWidgetItem(cells.value(column)));
  }
  list_->item(row, 0)->setData(kLineRole, line);
  list_->item(row, 0)->setData(kCellsRole, cells);
  changing_ = false;
}

void ListPage::KeepEmptyRow() {
  if (changing_) return;
  const int last = list_->rowCount() - 1;
  bool lastIsEmpty = last >= 0;
  for (int column = 0; lastIsEmpty && column < list_->columnCount(); ++column) {
    lastIsEmpty = Cell(last, column).isEmpty();
  }
  if (!lastIsEmpty) AppendRow({}, {});
}

void ListPage::RemoveRows() {
  const QModelIndexList selected = list_->selectionModel()->selectedRows();
  QList<int> rows;
  for (const QModelIndex& index : selected) rows.append(index.row());
  std::sort(rows.begin(), rows.end(), std::greater<>());
  for (const int row : rows) list_->removeRow(row);
  KeepEmptyRow();
}

void ListPage::MoveRow(int step) {
  const int row = list_->currentRow();
  const int target = row + step;
  if (row < 0 || target < 0 || target >= list_->rowCount() - 1 || row == list_->rowCount() - 1) {
    return;
  }
  for (int column = 0; column < list_->columnCount(); ++column) {
    QTableWidgetItem* moving = list_->takeItem(row, column);
    QTableWidgetItem* other = list_->takeItem(target, column);
    list_->setItem(target, column, moving);
    list_->setItem(row, column, other);
  }
  list_->setCurrentCell(target, list_->currentColumn());
}

// --- address book ------------------------------------------------------------------------------

BookPage::BookPage()
    : ListPage(object_type::kBook, Ui::tr("アドレス(&A)"), control::kList + BookObject::kAddresses,
               {Ui::tr("メールアドレス"), Ui::tr("表示名")}) {}

// The kind, which is not shown, stays that of the line.
QString BookPage::EditedLine(int row) const {
  const QString address = Cell(row, 0);
  if (address.isEmpty()) return {};
  const QString name = Cell(row, 1);
  const QString kind = ParseAddressEntry(FirstLine(row)).kind.toUpper();
  return CanonicalLine({kind, address, name});
}

void BookPage::AddLine(QTableWidget&, const QString& line) {
  const AddressEntry entry = ParseAddressEntry(line);
  AppendRow({entry.address, entry.displayName}, line);
}

// What was typed or pasted as an address with a name gives both; a name loses the quotes that it is
// written in elsewhere.
bool BookPage::TakeTyped(int row) {
  QString typed = Cell(row, 0);
  if (typed.startsWith(kMailto, Qt::CaseInsensitive)) typed.remove(0, kMailto.size());
  const QList<AddressEntry> read = ReadTypedAddresses(typed);
  if (read.size() != 1 || !IsMailAddress(read[0].address)) return false;
  const QString name = Cell(row, 1);
  const QList<AddressEntry> whole = ReadTypedAddresses(PresentableAddress(name, read[0].address));
  const bool isName = !name.isEmpty() && whole.size() == 1 && whole[0].address == read[0].address;
  List().item(row, 0)->setText(read[0].address);
  List().item(row, 1)->setText(isName           ? whole[0].displayName
                               : name.isEmpty() ? read[0].displayName
                                                : name);
  return true;
}

// An entry that was there before keeps nobody from saving the others.
PageFault BookPage::Check() {
  ListPage::Check();
  for (int row = 0; row < List().rowCount(); ++row) {
    const bool isEmpty = Cell(row, 0).isEmpty() && Cell(row, 1).isEmpty();
    const bool isUntouched = !FirstLine(row).isEmpty() && Line(List(), row) == FirstLine(row);
    if (isEmpty || isUntouched || TakeTyped(row)) continue;
    List().setCurrentCell(row, 0);
    return {Ui::tr("メールアドレスは「名前@ドメイン」の形で入力してください。"), &List()};
  }
  return {};
}

// --- bookmark ----------------------------------------------------------------------------------

BookmarkPage::BookmarkPage()
    : ListPage(object_type::kBookmark, Ui::tr("お気に入り(&A)"),
               control::kList + BookmarkObject::kLines, {Ui::tr("アドレス"), Ui::tr("タイトル")}) {}

QString BookmarkPage::EditedLine(int row) const {
  QString url = Cell(row, 0);
  if (url.isEmpty()) return {};
  url.replace(u' ', QStringLiteral("%20"));
  const QString title = Cell(row, 1);
  return title.isEmpty() ? url : url + u' ' + title;
}

PageFault BookmarkPage::Check() {
  ListPage::Check();
  for (int row = 0; row < List().rowCount(); ++row) {
    if (!Cell(row, 0).isEmpty() || Cell(row, 1).isEmpty()) continue;
    List().setCurrentCell(row, 0);
    return {Ui::tr("お気に入りのアドレスを入力してください。"), &List()};
  }
  return {};
}

void BookmarkPage::AddLine(QTableWidget&, const QString& line) {
  AppendRow({line.section(u' ', 0, 0), line.section(u' ', 1)}, line);
}

}  // namespace vorn
