#pragma once

#include "objects/settings.h"

namespace vorn {

/// How folders are listed on their pages, by the names that the object of settings has for it.
class ListSettings {
 public:
  explicit ListSettings(Context& context) : bag_(Settings(context).Bag()) {}

  /// The rows of a folder's page; 0 where folders are not divided into pages.
  qint32 RowsPerPage() const;
  /// Whether a folder opens at its newest page.
  bool OpensNewest() const { return bag_->Flag(setting::kOpensNewest); }
  bool IsNewestFirst() const { return bag_->Flag(setting::kNewestFirst); }
  /// Whether what is filed into a folder by hand is no longer shown in the inbox.
  bool ShowsFiledOnce() const { return bag_->Flag(setting::kShownOnce); }
  /// Whether what messages say is shown as text on pages, and not taken for HTML.
  bool EscapesPages() const { return bag_->Flag(setting::kPageEscape); }

 private:
  static constexpr qint32 kDefaultRows = 100;

  DiskPtr bag_;
};

inline qint32 ListSettings::RowsPerPage() const {
  return bag_->Flag(setting::kPages) ? bag_->Number(setting::kRows, kDefaultRows) : 0;
}

}  // namespace vorn
