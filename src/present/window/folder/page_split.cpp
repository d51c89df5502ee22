#include "present/window/folder/page_split.h"

#include <QWebEngineView>

#include "kit/window/key_frame.h"
#include "mail/window/host/message_host.h"
#include "mail/window/host/message_printing.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/placement.h"
#include "storage/context.h"
#include "storage/databases.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

constexpr int kPageShare = 42;  // percent
constexpr int kSmallestShare = 10;
constexpr int kWhole = 100;
constexpr int kLeastForBoth = 280;  // pixels

// The page's part of the two, in percent.
int ShareOf(const QSplitter& split) {
  const QList<int> shown = split.sizes();
  return kWhole * shown.value(0) / qMax(1, shown.value(0) + shown.value(1));
}

}  // namespace

PageSplit::PageSplit(Context& context, QWebEngineView* page, MessageHost& host)
    : context_(context), host_(host) {
  setObjectName(QStringLiteral("spPage"));
  setChildrenCollapsible(false);
  addWidget(page);
  connect(this, &QSplitter::splitterMoved, this, &PageSplit::KeepShare);
}

void PageSplit::SetPage(QWebEngineView* page) {
  insertWidget(0, page);
  if (HasPane()) TakeShare();
}

void PageSplit::Arrange(bool isFolder) {
  place_ = isFolder ? Settings(context_).ReadingPane() : PanePlace::Nowhere;
  Lay();
}

void PageSplit::Lay() {
  const Qt::Orientation wanted = place_ == PanePlace::Right ? Qt::Horizontal : Qt::Vertical;
  const bool isWanted = place_ != PanePlace::Nowhere && HasRoom(wanted);
  if (isWanted && pane_ == nullptr) MakePane();
  if (pane_ == nullptr || (HasPane() == isWanted && (!isWanted || orientation() == wanted))) return;
  setOrientation(wanted);
  pane_->setVisible(isWanted);
  if (!isWanted) return;
  TakeShare();
  if (pane_->ShownMessage() != row_) pane_->Show(row_, true);
}

// Before it is shown nobody knows.
bool PageSplit::HasRoom(Qt::Orientation orientation) const {
  return !isVisible() || (orientation == Qt::Vertical ? height() : width()) >= kLeastForBoth;
}

void PageSplit::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  Lay();
}

void PageSplit::MakePane() {
  pane_ = new ReadingPane(context_, host_);
  pane_->hide();
  new KeyFrame(*pane_);
  pane_->Cover(isCovered_);
  addWidget(pane_);
  Q_EMIT PaneMade(pane_);
  connect(pane_, &ReadingPane::OpenWanted, this,
          [this](OpenMode mode) { Q_EMIT OpenWanted(mode, pane_->ShownMessage()); });
  connect(pane_, &ReadingPane::Left, this, [this] { widget(0)->setFocus(); });
  connect(pane_, &ReadingPane::Marked, this, [this] { host_.MessageStored(); });
}

bool PageSplit::HasPane() const {
  return pane_ != nullptr && !pane_->isHidden();
}

void PageSplit::ShowRow(const SerialId& serialId) {
  row_ = serialId;
  NotePlace();
  if (HasPane()) pane_->Show(row_, true);
}

void PageSplit::NotePlace() {
  rowPlace_.reset();
  if (row_.IsEmpty()) return;
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (mail) rowPlace_ = MessageRows(context_.Data).PlaceOf(row_);
}

void PageSplit::RowKept(const SerialId& serialId) {
  if (serialId != row_) return ShowRow(serialId);
  if (HasPane()) pane_->FollowEdits();
}

void PageSplit::RowLeft() {
  if (row_.IsEmpty()) return;
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (!mail) return;
  if (MessageRows(context_.Data).PlaceOf(row_) != rowPlace_) return ShowNothing();
  Q_EMIT RowElsewhere(row_);
}

void PageSplit::StopMarking() {
  if (HasPane()) pane_->Show(pane_->ShownMessage(), false);
}

void PageSplit::Cover(bool covered) {
  isCovered_ = covered;
  if (pane_ != nullptr) pane_->Cover(covered);
  // The user may have moved another page's border meanwhile.
  if (!covered && HasPane() && KeptShare() != ShareOf(*this)) TakeShare();
}

void PageSplit::Print(const SerialId& serialId) {
  if (HasPane() && pane_->ShownMessage() == serialId) {
    pane_->Print();
  } else {
    PrintStoredMessage(context_, window(), host_, serialId);
  }
}

void PageSplit::KeepShare() {
  Placement::SetPageShare(*PlacementBag(context_, kMainPlacement), orientation(), ShareOf(*this));
}

int PageSplit::KeptShare() const {
  const int kept =
      Placement(*PlacementBag(context_, kMainPlacement)).PageShare(orientation(), kPageShare);
  return qBound(kSmallestShare, kept, kWhole - kSmallestShare);
}

void PageSplit::TakeShare() {
  const int share = KeptShare();
  // In parts of whatever there is.
  constexpr int kParts = 100;
  setSizes({share * kParts, (kWhole - share) * kParts});
  setStretchFactor(0, share);
  setStretchFactor(1, kWhole - share);
}

}  // namespace vorn
