#pragma once

#include <QString>
#include <utility>

#include "mail/search/folder_search.h"
#include "present/page_state.h"
#include "storage/bags/disk.h"

namespace vorn {

/// What a browser window shows: the window's request, by the names that the request's bag has for
/// it.
class PageRequest {
 public:
  /// In place of a page's number: the one that a folder opens at, when it is known how many there
  /// are.
  static constexpr int kFirstShown = 0;
  /// Opened to print, not to be shown.
  static inline const QString kPrint = QStringLiteral("print");

  explicit PageRequest(DiskPtr bag) : bag_(std::move(bag)) {}
  /// Fills the bag of a new one: an address, whether it is the program's own, and what is done
  /// there: `kPrint`, or nothing more.
  static void Begin(Disk& bag, const QString& url, bool isLocal, const QString& exec);
  /// Another request takes the place of this one.
  void Take(DiskPtr bag) { bag_ = std::move(bag); }

  /// The folder's serial identifier, or that of the request itself.
  SerialId Folder() const { return bag_->Serial(); }
  /// A folder's page or one of the program's own, and not a web page.
  bool IsLocal() const { return bag_->Flag(kLocal); }
  void BeLocal() { bag_->Let(kLocal, true); }
  /// The window was opened to print.
  bool IsForPrinting() const { return IsForPrinting(*bag_); }
  static bool IsForPrinting(const Disk& bag) { return bag.Text(kExec) == kPrint; }

  /// What names a file that is printed to.
  QString Title() const { return bag_->Text(kTitle); }
  static void SetTitle(Disk& bag, const QString& title);

  /// Where the engine reads the page; empty when the program's own words are shown.
  QString Url() const { return bag_->Text(kUrl); }
  void SetUrl(const QString& url) { bag_->Let(kUrl, url); }
  bool HasUrl() const { return !Url().isEmpty(); }

  /// The page's number, from 1.
  int Page() const { return bag_->Number(kPage, 1); }
  void SetPage(int page) { bag_->Let(kPage, page); }
  bool HasPage() const { return bag_->Get(kPage).isValid(); }
  /// What the folder is searched for; empty when all is shown.
  FolderSearch Search() const {
    FolderSearch search(bag_->Text(kSearch), bag_->Flag(kEverywhere));
    if (bag_->Flag(kInTexts)) {
      search.hits = SerialIdsOf(bag_->Text(kHits).split(u' ', Qt::SkipEmptyParts));
    }
    search.hasMore = bag_->Flag(kHasMore);
    return search;
  }
  void SetSearch(const FolderSearch& search) {
    bag_->Let(kSearch, search.text);
    bag_->Let(kEverywhere, search.isEverywhere);
    bag_->Let(kInTexts, search.hits.has_value());
    bag_->Let(kHits, TextsOf(search.hits.value_or(SerialIds())).join(u' '));
    bag_->Let(kHasMore, search.hasMore);
  }
  /// Whether texts are being read for the search.
  bool ReadsTexts() const { return bag_->Flag(kReadsTexts); }
  void SetReadsTexts(bool reads) { bag_->Let(kReadsTexts, reads); }

  /// How it stands with what is shown.
  PageState State() const { return PageState(bag_); }

 private:
  static inline const QString kUrl = QStringLiteral("url");
  static inline const QString kLocal = QStringLiteral("local");
  static inline const QString kExec = QStringLiteral("exec");
  static inline const QString kTitle = QStringLiteral("title");
  static inline const QString kPage = QStringLiteral("Page");
  static inline const QString kSearch = QStringLiteral("search");
  static inline const QString kEverywhere = QStringLiteral("everywhere");
  static inline const QString kInTexts = QStringLiteral("inTexts");
  static inline const QString kHits = QStringLiteral("hits");
  static inline const QString kHasMore = QStringLiteral("hasMore");
  static inline const QString kReadsTexts = QStringLiteral("readsTexts");

  DiskPtr bag_;
};

inline void PageRequest::Begin(Disk& bag, const QString& url, bool isLocal, const QString& exec) {
  bag.Let(kUrl, url);
  bag.Let(kLocal, isLocal);
  bag.Let(kExec, exec);
}

inline void PageRequest::SetTitle(Disk& bag, const QString& title) {
  bag.Let(kTitle, title);
}

}  // namespace vorn
