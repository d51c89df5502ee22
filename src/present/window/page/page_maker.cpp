#include "present/window/page/page_maker.h"

#include <utility>

#include "mail/codec/charset/code_page_932.h"
#include "objects/list_settings.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/shown_object.h"
#include "present/message_list_page.h"
#include "present/page_place.h"
#include "present/page_request.h"
#include "present/page_template.h"
#include "present/window/engine/search_step.h"
#include "present/window/page/condition_wait.h"
#include "present/window/page/first_use.h"
#include "present/window/page/page_reading.h"
#include "storage/engine/condition_limit.h"
#include "storage/ui.h"

namespace vorn {

PageMaker::PageMaker(Context& context, MessageListPages& pages, PageReading& reading,
                     PageRequest& request, PagePlace& place)
    : context_(context),
      pages_(pages),
      reading_(reading),
      request_(request),
      place_(place),
      counter_(pages, request),
      search_(context, pages, request) {
  connect(&search_, &LongSearch::Failed, this, &PageMaker::TellFailure);
  connect(&search_, &LongSearch::Stopped, this, &PageMaker::TellStopped);
  connect(&search_, &LongSearch::Outdated, this, &PageMaker::AnewWanted);
}

bool PageMaker::Make() {
  const DiskPtr folder = LoadObject(context_, request_.Folder());
  if (folder == nullptr) return request_.HasUrl();
  Q_EMIT Named(ShownObject(*folder).Name());
  if (search_.IsUnderWay()) {
    TellWait();
    return false;
  }
  search_.Stop();
  reading_.Drop();
  if (request_.Folder() == fixed_serial::kInbox && IsFirstUse(context_)) {
    Q_EMIT TextWanted(FirstUseText(context_));
    request_.SetPage(PageRequest::kFirstShown);
    return false;
  }
  if (request_.Page() == PageRequest::kFirstShown) ChooseFirstPage();
  if (const auto page = WriteInTime()) return Keep(*page);
  AskElsewhere([this] { Q_EMIT AnewWanted(); });
  return false;
}

void PageMaker::MakeAnew(const std::function<void()>& make) {
  follows_ = IsAtNewest();
  make();
  follows_ = false;
}

PageMaker::Written PageMaker::Write() {
  auto made = pages_.FolderPage(request_.Folder(), request_.Page(), request_.Search());
  if (!made) return {made.Error(), false, false, pages_.HasNone()};
  return {std::move(made->content), made->hasBefore, made->hasNext, pages_.HasNone()};
}

// Nothing when it takes too long to find the folder's messages here.
std::optional<PageMaker::Written> PageMaker::WriteInTime() {
  const ConditionLimit brief(kBriefMs);
  // The number of a first page that could not be counted is still to be chosen.
  if (request_.Page() == PageRequest::kFirstShown) return {};
  Written page = Write();
  if (brief.IsReached()) return {};
  // What has come begins a further page.
  if (page.next && std::exchange(follows_, false)) {
    ChooseFirstPage();
    if (request_.Page() == PageRequest::kFirstShown) return {};
    page = Write();
  }
  // The last page may have lost all its messages.
  if (!page.next && request_.Page() > 1) {
    const int last = qMax(1, pages_.CountPages(request_.Folder(), request_.Search()));
    if (request_.Page() > last) {
      request_.SetPage(last);
      if (place_.HadRow()) {
        place_.BeginAtLast();
      } else {
        place_.BeginAtEnd(true);  // nobody chose a message there
      }
      page = Write();
    }
  }
  if (brief.IsReached()) return {};
  return page;
}

bool PageMaker::Keep(const Written& page) {
  // The first page after the words that stood in its place.
  if (!request_.HasUrl() && !place_.IsOrdered()) place_.BeginAtEnd(place_.StaysAtEnd());
  const bool isVain = page.hasNone && !request_.Search().isEmpty();
  const QByteArray shown = WithDarkColors(page.bytes.ValueOr({}));
  reading_.Keep(isVain ? WithoutHit(shown) : shown);
  request_.State().SetNeighbours(page.before, page.next);
  Q_EMIT Made();
  if (page.bytes) return true;
  TellFailure(page.bytes.Error().text);
  return false;
}

// What a search without a hit says, and how it goes on, in the place of an empty folder's words.
QByteArray PageMaker::WithoutHit(QByteArray page) const {
  const FolderSearch search = request_.Search();
  const auto link = [](const QString& step, const QString& text) {
    return QStringLiteral(
               "<br><br><a href=\"vorn:%1\" style=\"color:var(--link,LinkText);"
               "text-decoration:underline\">%2</a>")
        .arg(step, text);
  };
  const bool readsTexts = request_.ReadsTexts();
  QString words =
      (readsTexts ? Ui::tr("「%1」は件名にもアドレスにもありません。本文を検索しています…")
                  : Ui::tr("「%1」に一致するメッセージはありません。"))
          .arg(search.text.toHtmlEscaped());
  if (!search.isEverywhere && request_.Folder() != fixed_serial::kDust) {
    words += link(search_step::kEverywhere, Ui::tr("すべてのフォルダを検索する"));
  }
  if (!search.hits && !readsTexts) words += link(search_step::kTexts, Ui::tr("本文も検索する"));
  words += link(search_step::kGiveUp, Ui::tr("検索をやめる"));
  const QByteArray none = ToCodePage932(Ui::tr("メッセージはありません。"));
  if (page.contains(none)) return page.replace(none, ToCodePage932(words));
  const qsizetype end = page.toLower().lastIndexOf("</body>");
  return page.insert(end < 0 ? page.size() : end, "<p>" + ToCodePage932(words) + "</p>");
}

void PageMaker::TellFailure(const QString& reason) {
  Q_EMIT TextWanted(Ui::tr("<p>フォルダを表示できません。</p><p>") + reason.toHtmlEscaped() +
                    QStringLiteral("</p>"));
}

bool PageMaker::IsNewestFirst() const {
  return ListSettings(context_).IsNewestFirst();
}

// A folder opens at its first messages, or where the setting says so at its newest.
void PageMaker::ChooseFirstPage() {
  const bool newest = ListSettings(context_).OpensNewest() && !IsNewestFirst();
  {
    const ConditionLimit brief(kBriefMs);
    const int pages = newest ? pages_.CountPages(request_.Folder(), request_.Search()) : 1;
    request_.SetPage(brief.IsReached() ? PageRequest::kFirstShown : qMax(1, pages));
  }
  if (request_.Page() != PageRequest::kFirstShown) {
    place_.BeginAtEnd(newest);
    place_.StayAtEnd(newest);
  }
  counter_.Tell();
}

// Whether the user looks at what came last and at nothing in particular.
bool PageMaker::IsAtNewest() const {
  return place_.StaysAtEnd() && place_.WasAtEnd() && request_.Search().isEmpty() &&
         !request_.State().HasNext();
}

void PageMaker::BeginAtNewest() {
  place_.BeginAtEnd(!IsNewestFirst());
}

void PageMaker::LastPage(const std::function<void(int)>& then) {
  const ConditionLimit brief(kBriefMs);
  const int last = pages_.CountPages(request_.Folder(), request_.Search());
  if (brief.IsReached()) return AskElsewhere([this, then] { LastPage(then); });
  then(qMax(1, last));
}

// A page of the folder that is in sight stays.
void PageMaker::TellWait() {
  if (request_.HasUrl()) {
    Q_EMIT PageStays();
  } else if (!request_.IsForPrinting()) {
    Q_EMIT TextWanted(Ui::tr("<p>読み込み中です。</p>"));
  }
}

void PageMaker::AskElsewhere(const std::function<void()>& then) {
  TellWait();
  search_.Begin(then);
}

void PageMaker::TellStopped() {
  if (request_.HasUrl()) return;
  Q_EMIT TextWanted(Ui::tr("<p>中止しました。もう一度探すには「更新」を押してください。</p>"));
}

}  // namespace vorn
