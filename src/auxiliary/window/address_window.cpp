#include "auxiliary/window/address_window.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSplitter>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "kit/window/tool_letter.h"
#include "mail/codec/header/address.h"
#include "objects/any_object.h"
#include "objects/book_object.h"
#include "objects/object_types.h"
#include "objects/placement.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "objects/shown_object.h"
#include "storage/bags/profile_bag.h"
#include "storage/sql/like_pattern.h"
#include "storage/ui.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

// The splitter's position is kept in the units of the window's other places, fifteenths of a pixel.
constexpr int kUnitsPerPixel = 15;
constexpr int kDefaultSplit = 2400;

// The request for the window, by the names that its bag has.
class AddressRequest {
 public:
  explicit AddressRequest(Disk& bag) : bag_(bag) {}

  // Which objects the tree shows (see `SelectObjects`).
  QString Types() const { return bag_.Text(kTypes); }
  void SetTypes(const QString& types) { bag_.Let(kTypes, types); }
  // What is looked for, and in which book; empty for all.
  void NoteSearch(const QString& text, const SerialId& book) {
    bag_.Let(kText, text);
    bag_.Let(kBook, book.Text());
  }

 private:
  static inline const QString kTypes = QStringLiteral("draw");
  static inline const QString kText = QStringLiteral("string");
  static inline const QString kBook = QStringLiteral("serialiD");

  Disk& bag_;
};

}  // namespace

AddressWindow::AddressWindow(Context& context, QWidget* parent)
    : QDialog(parent),
      context_(context),
      tvObject_(new QTreeWidget),
      lvCandidacy_(new QListWidget),
      txString_(new QLineEdit),
      piSplit_(new QSplitter) {
  setObjectName(QStringLiteral("address"));
  setWindowTitle(Ui::tr("アドレスの選択"));
  BuildControls();
  RestoreWindowPlacement(context_, *this, objectName());
  const Placement place(*PlacementBag(context_, objectName()));
  const int split = place.AddressSplit(kDefaultSplit) / kUnitsPerPixel;
  piSplit_->setSizes({split, qMax(width() - split, split)});
}

AddressWindow::~AddressWindow() {
  KeepWindowPlacement(context_, *this, objectName());
  Placement::SetAddressSplit(*PlacementBag(context_, objectName()),
                             piSplit_->sizes().value(0) * kUnitsPerPixel);
}

void AddressWindow::BuildControls() {
  txString_->setObjectName(QStringLiteral("txString"));
  txString_->setClearButtonEnabled(true);
  auto* label = PlainLabel(Ui::tr("検索する文字(&T)"));
  label->setBuddy(txString_);
  auto* tbSeek = new QToolBar;
  tbSeek->setObjectName(QStringLiteral("tbSeek"));
  tbSeek->setToolButtonStyle(Qt::ToolButtonTextOnly);
  ObeyLetter(tbSeek->addAction(Ui::tr("検索(&K)"), this, &AddressWindow::Seek))
      ->setObjectName(QStringLiteral("seek"));
  ObeyLetter(tbSeek->addAction(Ui::tr("選択(&S)"), this, &AddressWindow::Select))
      ->setObjectName(QStringLiteral("select"));
  connect(txString_, &QLineEdit::returnPressed, this, &AddressWindow::Seek);
  // The list is always that of the text above it, so that what is chosen in it is what counts.
  connect(txString_, &QLineEdit::textChanged, this, &AddressWindow::Seek);

  tvObject_->setObjectName(QStringLiteral("tvObject"));
  tvObject_->setAccessibleName(Ui::tr("アドレスブック"));
  tvObject_->setHeaderHidden(true);
  connect(tvObject_, &QTreeWidget::itemSelectionChanged, this, &AddressWindow::Seek);
  lvCandidacy_->setObjectName(QStringLiteral("lvCandidacy"));
  lvCandidacy_->setAccessibleName(Ui::tr("見つかったアドレス"));
  lvCandidacy_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  connect(lvCandidacy_, &QListWidget::itemDoubleClicked, this, &AddressWindow::Select);
  piSplit_->setObjectName(QStringLiteral("piSplit"));
  piSplit_->addWidget(tvObject_);
  piSplit_->addWidget(lvCandidacy_);
  piSplit_->setStretchFactor(1, 1);

  auto* top = new QHBoxLayout;
  top->addWidget(label);
  top->addWidget(txString_, 1);
  top->addWidget(tbSeek);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addWidget(piSplit_, 1);
}

void AddressWindow::LoadDefaultProperty(const DiskPtr& request) {
  request_ = request;
  FillTree(AddressRequest(*request).Types());
  Seek();
  txString_->setFocus();
}

void AddressWindow::FillTree(const QString& draw) {
  auto* all = new QTreeWidgetItem(tvObject_, {Ui::tr("すべてのアドレスブック")});
  all->setIcon(0, Icon(object_type::kBook));
  const DiskCollectionPtr objects = SelectObjects(context_.Objects, *context_.Session, draw);
  for (const DiskPtr& object : *objects) {
    auto* item = new QTreeWidgetItem(all, {ShownObject(*object).Name()});
    item->setIcon(0, Icon(AnyObject(*object).Draw()));
    item->setData(0, Qt::UserRole, object->SerialID());
  }
  tvObject_->expandAll();
}

void AddressWindow::Seek() {
  const QString text = txString_->text();
  const QTreeWidgetItem* node = tvObject_->currentItem();
  const SerialId key = node == nullptr ? SerialId() : SerialIdOf(node->data(0, Qt::UserRole));
  const DiskPtr chosen = context_.Objects.Find(key);
  const bool isBook = chosen != nullptr && AnyObject(*chosen).Is(object_type::kBook);
  AddressRequest(*request_).NoteSearch(text, isBook ? key : SerialId());

  const LikePattern pattern(QString(u'*' + text + u'*'), LetterCase::Exact);
  // Without a search "select" would take whole books, which nobody means.
  const bool selects = !text.isEmpty() || !Settings(context_).SearchesAddresses();
  lvCandidacy_->clear();
  for (const DiskPtr& object : context_.Objects) {
    if (!AnyObject(*object).Is(object_type::kBook)) continue;
    if (isBook && object->Serial() != key) continue;
    for (const QString& line : BookObject(*object).Lines().split(kLineBreak, Qt::SkipEmptyParts)) {
      const AddressEntry entry = ParseAddressEntry(line);
      if (entry.address.isEmpty()) continue;
      if (!text.isEmpty() && !pattern.Matches(entry.address) &&
          !pattern.Matches(entry.displayName)) {
        continue;
      }
      auto* item = new QListWidgetItem(ShownText(PresentableAddress(entry)), lvCandidacy_);
      item->setData(Qt::UserRole, CanonicalLine(entry));
      item->setSelected(selects);
    }
  }
}

void AddressWindow::Select() {
  QStringList lines;
  for (int row = 0; row < lvCandidacy_->count(); ++row) {
    const QListWidgetItem* item = lvCandidacy_->item(row);
    if (item->isSelected()) lines.append(item->data(Qt::UserRole).toString());
  }
  ProfileBag::SetAnswer(*context_.Session, lines.join(kLineBreak));
  accept();
}

QString SelectAddresses(Context& context, QWidget* parent, const QString& types) {
  auto request = std::make_shared<Disk>(context.Data.NewSerialID());
  AddressRequest(*request).SetTypes(types);
  ProfileBag::SetAnswer(*context.Session, QString());
  AddressWindow window(context, parent);
  window.LoadDefaultProperty(request);
  window.exec();
  const QString chosen = ProfileBag(*context.Session).Answer();
  ProfileBag::SetAnswer(*context.Session, QString());
  return chosen;
}

}  // namespace vorn
