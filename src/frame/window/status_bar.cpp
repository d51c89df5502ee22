#include "frame/window/status_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPanelWidth = 220;

}  // namespace

MainStatusBar::MainStatusBar(QWidget* parent)
    : QStatusBar(parent), icon_(PlainLabel()), text_(PlainLabel()), cancel_(new QToolButton) {
  setObjectName(QStringLiteral("sbStatus"));
  text_->setObjectName(QStringLiteral("panelSession"));
  cancel_->setText(Ui::tr("中止"));
  cancel_->setToolTip(Ui::tr("送受信を中止します。"));
  cancel_->setAutoRaise(true);
  cancel_->hide();
  connect(cancel_, &QToolButton::clicked, this, &MainStatusBar::CancelClicked);

  auto* panel = new QWidget;
  panel->setMinimumWidth(kPanelWidth);
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(4, 0, 4, 0);
  layout->addWidget(icon_);
  layout->addWidget(text_, 1);
  layout->addWidget(cancel_);
  addPermanentWidget(panel);
  panel->hide();
}

void MainStatusBar::ShowStatus(const QString& text, const QString& icon) {
  text_->setText(ShownText(text, kMostInTitle));
  icon_->setPixmap(icon.isEmpty() ? QPixmap() : Icon(icon).pixmap(16, 16));
  cancel_->setVisible(!icon.isEmpty());
  // While nothing goes on, sentences have all of the bar.
  text_->parentWidget()->setVisible(!text.isEmpty() || !icon.isEmpty());
}

}  // namespace vorn
