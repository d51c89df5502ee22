#include "frame/window/commands/bookmark_menu.h"

#include "frame/window/panes/opener.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/bookmark_object.h"
#include "objects/object_types.h"
#include "objects/shown_object.h"
#include "storage/ui.h"

namespace vorn {

BookmarkMenu::BookmarkMenu(const Context& context, Opener& opener, QWidget* parent)
    : QMenu(Ui::tr("お気に入り(&A)"), parent), context_(context), opener_(opener) {
  setObjectName(QStringLiteral("menuBookmarks"));
  connect(this, &QMenu::aboutToShow, this, &BookmarkMenu::Fill);
  Fill();
}

void BookmarkMenu::Fill() {
  clear();
  for (const DiskPtr& object : context_.Objects) {
    if (!AnyObject(*object).Is(object_type::kBookmark)) continue;
    addSection(ShownObject(*object).Name());
    for (const QString& line : BookmarkObject(*object).Lines()) {
      const QString url = line.section(u' ', 0, 0);
      QString title = line.section(u' ', 1);
      if (title.isEmpty()) title = url;
      addAction(title.replace(u'&', QStringLiteral("&&")), this, [this, url] {
        opener_.OpenWebPage(url);
      })->setToolTip(ShownToolTip(url));
    }
  }
  if (isEmpty()) addAction(Ui::tr("（なし）"))->setEnabled(false);
}

}  // namespace vorn
