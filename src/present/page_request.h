#pragma once

#include <QString>
#include <utility>

#include "objects/folder_search.h"
#include "storage/disk.h"

namespace vorn {

/// What a browser window shows and how it stands with it: the window's request, by the names that
/// the request's bag has for it.
class PageRequest {
 public:
  /// In place of a page's number: the one that a folder opens at, when it is known how many there
  /// are.
  static constexpr int kFirstShown = 0;

  explicit PageRequest(DiskPtr bag) : bag_(std::move(bag)) {}
  /// Another request takes the place of this one.
  void Take(DiskPtr bag) { bag_ = std::move(bag); }

  /// The folder's serial identifier, or that of the request itself.
  QString Folder() const { return bag_->SerialID(); }
  /// A folder's page or one of the program's own, and not a web page.
  bool IsLocal() const { return bag_->Flag(u"local"); }
  void BeLocal() { bag_->Let(QStringLiteral("local"), true); }
  /// The window was opened to print.
  bool IsForPrinting() const { return bag_->Text(u"exec") == u"print"; }

  /// Where the engine reads the page; empty when the program's own words are shown.
  QString Url() const { return bag_->Text(u"url"); }
  void SetUrl(const QString& url) { bag_->Let(QStringLiteral("url"), url); }
  bool HasUrl() const { return !Url().isEmpty(); }

  /// The page's number, from 1.
  int Page() const { return bag_->Number(u"Page", 1); }
  void SetPage(int page) { bag_->Let(QStringLiteral("Page"), page); }
  bool HasPage() const { return bag_->Get(u"Page").isValid(); }
  /// What the folder is searched for; empty when all is shown.
  FolderSearch Search() const { return {bag_->Text(u"search"), bag_->Flag(u"everywhere")}; }
  void SetSearch(const FolderSearch& search) {
    bag_->Let(QStringLiteral("search"), search.text);
    bag_->Let(QStringLiteral("everywhere"), search.isEverywhere);
  }

  /// Whether one can go back and on.
  bool HasBefore() const { return bag_->Flag(u"before"); }
  bool HasNext() const { return bag_->Flag(u"next"); }
  void SetNeighbours(bool before, bool next) {
    bag_->Let(QStringLiteral("before"), before);
    bag_->Let(QStringLiteral("next"), next);
  }
  bool IsLoading() const { return bag_->Flag(u"onLoad"); }
  void SetLoading(bool loading) { bag_->Let(QStringLiteral("onLoad"), loading); }

  /// A new window that a web page asked for, and that is not yet shown.
  bool IsNew() const { return bag_->Flag(u"init"); }
  void SetNew(bool isNew) { bag_->Let(QStringLiteral("init"), isNew); }
  /// The target name that the window answers to.
  QString WindowName() const { return bag_->Text(u"windowname"); }
  void SetWindowName(const QString& name) { bag_->Let(QStringLiteral("windowname"), name); }
  /// The window is done with.
  bool IsDust() const { return bag_->Flag(u"dust"); }
  void BeDust() { bag_->Let(QStringLiteral("dust"), true); }

 private:
  DiskPtr bag_;
};

}  // namespace vorn
