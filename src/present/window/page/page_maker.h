#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "present/window/page/long_search.h"
#include "present/window/page/page_counter.h"

namespace vorn {

class PagePlace;
class PageReading;
class PageRequest;

/// Makes the page of a request's folder. Where it takes long to find the messages, a `LongSearch`
/// does.
class PageMaker : public QObject {
  Q_OBJECT

 public:
  PageMaker(Context& context, MessageListPages& pages, PageReading& reading, PageRequest& request,
            PagePlace& place);

  /// Makes the page that the request asks for and writes into the request which it is and what is
  /// before and after it. Whether there is a page to load; else it has told what to show, or will.
  /// A folder that is not available leaves the request as it was.
  bool Make();
  /// Has `make` call that for a page that is in sight. Who looks at what came last sees what comes
  /// next.
  void MakeAnew(const std::function<void()>& make);
  /// Gives the number of the last page, now or when the folder's messages have been found.
  void LastPage(const std::function<void(int)>& then);
  /// The page that comes begins with the newest message in sight.
  void BeginAtNewest();

  /// What finds the folder's messages where that takes long.
  LongSearch& Search() { return search_; }
  /// What counts the folder's pages.
  PageCounter& Counter() { return counter_; }

 Q_SIGNALS:
  /// The folder is called so.
  void Named(const QString& name);
  /// The request has been brought in line with a new page.
  void Made();
  /// Words are to be shown in the place of a page, as HTML.
  void TextWanted(const QString& html);
  /// The page in sight stays, since none comes in its place for now.
  void PageStays();
  /// The page can be made now and is to be made anew.
  void AnewWanted();

 private:
  struct Written {
    Result<QByteArray> bytes;
    bool before = false;
    bool next = false;
    bool hasNone = false;
  };
  Written Write();
  std::optional<Written> WriteInTime();
  bool Keep(const Written& page);
  void ChooseFirstPage();
  bool IsAtNewest() const;
  bool IsNewestFirst() const;
  void TellWait();
  void AskElsewhere(const std::function<void()>& then);
  void TellStopped();
  void TellFailure(const QString& reason);
  QByteArray WithoutHit(QByteArray page) const;

  Context& context_;
  MessageListPages& pages_;
  PageReading& reading_;
  PageRequest& request_;
  PagePlace& place_;
  PageCounter counter_;
  LongSearch search_;
  bool follows_ = false;  // the newest page, as it is made anew
};

}  // namespace vorn
