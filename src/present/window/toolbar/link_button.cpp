#include "present/window/toolbar/link_button.h"

#include <QMenu>

#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMenuTextLength = 60;

}  // namespace

LinkButton::LinkButton(QWidget* parent) : QToolButton(parent) {
  setObjectName(QStringLiteral("url"));
  setText(Ui::tr("リンク▾"));
  setToolTip(Ui::tr("このページのリンク"));
  setToolButtonStyle(Qt::ToolButtonTextOnly);
}

void LinkButton::List(const QList<PageRows::Link>& links) {
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("menuUrl"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  // A page may have hundreds: one column that scrolls.
  menu->setStyleSheet(QStringLiteral("QMenu { menu-scrollable: 1; }"));
  for (const PageRows::Link& link : links) {
    QString text = link.text.simplified().left(kMenuTextLength);
    menu->addAction(text.replace(u'&', QStringLiteral("&&")), this,
                    [this, address = link.address] { Q_EMIT Followed(address); })
        ->setToolTip(ShownToolTip(link.address));
  }
  if (links.isEmpty()) {
    QAction* nothing = menu->addAction(QStringLiteral("nothing.."));
    nothing->setObjectName(QStringLiteral("nothing"));
    nothing->setEnabled(false);
  }
  menu->popup(mapToGlobal(QPoint(0, height())));
}

}  // namespace vorn
