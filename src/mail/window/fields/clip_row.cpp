#include "mail/window/fields/clip_row.h"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QToolButton>

#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLines = 4;
constexpr int kClipIconSize = 16;
constexpr int kGap = 6;

}  // namespace

ClipRow::ClipRow(Context& context)
    : clips_(new AttachmentList(context)), all_(new QToolButton), lines_(new QWidget) {
  clips_->setFrameShape(QFrame::NoFrame);
  clips_->setIconSize({kClipIconSize, kClipIconSize});
  clips_->setSpacing(0);
  clips_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  all_->setObjectName(QStringLiteral("cmAllClips"));
  all_->setText(Ui::tr("すべて"));
  all_->setToolTip(Ui::tr("添付ファイルをすべて見せます。"));
  all_->setCheckable(true);
  all_->setAutoRaise(true);
  all_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  all_->setArrowType(Qt::DownArrow);
  all_->hide();
  connect(all_, &QToolButton::toggled, this, &ClipRow::Open);
  // Where not all are seen, that is what it is for.
  connect(clips_->verticalScrollBar(), &QScrollBar::rangeChanged, this,
          [this](int, int rest) { all_->setVisible(rest > 0 || all_->isChecked()); });
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kGap);
  row->addWidget(clips_, 1);
  row->addWidget(all_, 0, Qt::AlignRight);
  auto* lines = new QHBoxLayout(lines_);
  lines->setContentsMargins(0, 0, 0, 0);
  lines_->hide();
}

void ClipRow::Show(const std::vector<ModelAttachment>& attachments, const QByteArray& source,
                   const QSet<qsizetype>& shownImages) {
  clips_->Show(attachments, source, false, shownImages);
  all_->setText(Ui::tr("すべて") + Ui::tr("（") + QString::number(attachments.size()) +
                Ui::tr("）"));
  all_->setChecked(false);
  clips_->setFixedHeight(qMax(1, clips_->sizeHintForRow(0)));
  setVisible(!attachments.empty());
}

void ClipRow::Open(bool open) {
  all_->setArrowType(open ? Qt::UpArrow : Qt::DownArrow);
  clips_->setVerticalScrollBarPolicy(open ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  clips_->setFixedHeight(clips_->sizeHintForRow(0) * (open ? kLines : 1));
  static_cast<QHBoxLayout*>((open ? lines_ : this)->layout())->insertWidget(0, clips_, 1);
  lines_->setVisible(open);
}

}  // namespace vorn
