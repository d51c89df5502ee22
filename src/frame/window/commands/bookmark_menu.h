#pragma once

#include <QMenu>

#include "storage/context.h"

namespace vorn {

class Opener;

/// The menu "menuBookmarks": the bookmarks' places, read anew whenever it opens.
class BookmarkMenu : public QMenu {
  Q_OBJECT

 public:
  BookmarkMenu(const Context& context, Opener& opener, QWidget* parent);

 private:
  void Fill();

  const Context& context_;
  Opener& opener_;
};

}  // namespace vorn
