#include "present/page_tags.h"

#include <algorithm>

#include "mail/codec/header/address.h"
#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/shown_addresses.h"
#include "mail/store/mail_store.h"
#include "objects/any_object.h"
#include "objects/shown_object.h"
#include "present/link_command.h"
#include "present/page_content.h"
#include "storage/base/shown_text.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

using ChildTags = QList<const ChildTag*>;

QString NameOf(const AddressEntry& entry) {
  return entry.displayName.isEmpty() ? PresentableAddress(entry) : entry.displayName;
}

QString Unreadable() {
  return Ui::tr("【読み込めません】");
}
constexpr qsizetype kPreviewBytes = 100;

// The marks that turn letters round, whichever they are, as visible signs.
QString WithoutTurns(const QString& text) {
  const bool turns = std::any_of(text.begin(), text.end(), [](QChar c) {
    return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
  });
  return turns ? ShownInLine(text) : text;
}

// Escaped, and where its letters or marks run from right to left for itself: nothing around it is
// turned round with it. An address always begins at the left.
QString Isolated(const QString& text) {
  const bool runsBack = std::any_of(text.begin(), text.end(), [](QChar c) {
    return c.direction() == QChar::DirR || c.direction() == QChar::DirAL ||
           (c.category() == QChar::Other_Format && c.direction() != QChar::DirBN);
  });
  if (!runsBack) return text.toHtmlEscaped();
  return (HasAt(text) ? QStringLiteral("<bdi dir=\"ltr\">") : QStringLiteral("<bdi>")) +
         text.toHtmlEscaped() + QStringLiteral("</bdi>");
}

QString OfMail(const PageRow& page, const QString& text) {
  return page.content.escape ? WithoutTurns(text).toHtmlEscaped() : text;
}

QString SubjectText(const PageRow& page, const ChildTags&) {
  const bool escape = page.content.escape;
  const QString stored = page.row.Subject();
  const QString subject = !escape || HasVisible(stored) ? stored : QString();
  QString text;
  if (page.content.doubtful.contains(page.row.Serial())) text += Ui::tr("【送信を確認】");
  if (page.content.refused.contains(page.row.Serial())) text += Ui::tr("【断られました】");
  if (page.row.IsDamaged()) text += Unreadable();
  if (subject.isEmpty()) return text + OfMail(page, Ui::tr("(件名なし)"));
  return text + (escape ? Isolated(WithoutTurns(WithoutHidden(subject))) : subject);
}

QString TimeStampText(const PageRow& page, const ChildTags& children) {
  const QString time = page.row.Timestamp();
  return children.isEmpty() ? ShownTimeText(time) : ShortTimeText(time, page.content.today);
}

// Of the kinds that the children name; the one without a kind asks for the first of them alone.
QString AddressText(const PageRow& page, const ChildTags& children) {
  QStringList kinds;
  bool isShort = false;
  for (const ChildTag* child : children) {
    const QString kind = QString::fromUtf16(child->key);
    kind.isEmpty() ? void(isShort = true) : kinds.append(kind);
  }
  QStringList shown;
  const QString lines = page.row.AddressLines();
  for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (!kinds.isEmpty() && !kinds.contains(entry.kind)) continue;
    shown.append(page.content.escape ? Isolated(WithoutTurns(ShownSender(WithWholeAddress(entry))))
                                     : NameOf(entry));
  }
  const qsizetype more = shown.size() - 1;
  if (isShort && more > 0) return shown.first() + Ui::tr(" 他%1名").arg(more);
  return shown.join(QStringLiteral("<BR>"));
}

// The mark, where a flag has the value.
QString Mark(const PageRow& page, FlagPosition flag, QStringView value, const QString& mark) {
  return page.row.Flags().At(flag) == value ? mark : QString();
}

QString NewMark(const PageRow& page) {
  return Mark(page, kFlagNew, u"1", QStringLiteral("○"));
}

QString ClipMark(const PageRow& page) {
  return Mark(page, kFlagAttachment, u"1", QStringLiteral("＠"));
}

QString PriorityMark(const PageRow& page) {
  return Mark(page, kFlagPriority, u"1", QStringLiteral("↑")) +
         Mark(page, kFlagPriority, u"3", QStringLiteral("↓"));
}

QString StateMarks(const PageRow& page) {
  const bool isEdited = page.row.Status() == kStatusEdit;
  return (isEdited ? QStringLiteral("✎") : QString()) +
         Mark(page, kFlagStar, u"1", QStringLiteral("★")) +
         Mark(page, kFlagAnswered, u"1", QStringLiteral("↩")) +
         Mark(page, kFlagForwarded, u"1", QStringLiteral("→"));
}

QString SizeText(const PageRow& page, const ChildTags&) {
  const qint64 bytes = page.row.SourceBytes();
  if (bytes < 0) return Unreadable();
  const auto highestIndex = static_cast<double>(bytes - 1);
  return QString::number(highestIndex / 1024.0, 'f', 2);
}

QString PreviewText(const PageRow& page, const ChildTags&) {
  TextRequest request;
  request.charset = StoredCharset(page.row.Flags());
  request.maximum = kPreviewBytes;
  request.textTypes = page.content.textTypes;
  request.withReports = page.IsReceived();
  request.withHtml = page.content.withHtml && page.IsReceived();
  const std::optional<QByteArray> source = page.row.Source();
  if (!source) return Unreadable();
  const MessageText preview = GetMessageText(*source, page.row.ContentIndex(), request);
  return preview.produced ? OfMail(page, preview.text) : QString();
}

QString PlaceText(const PageRow& page, const ChildTags&) {
  if (!page.content.placeOf) return {};
  return OfMail(page, page.content.placeOf(page.row.Serial(), page.row.State()));
}

QString FolderName(const PageRow& page) {
  return OfMail(page, ShownObject(*page.content.folder).Name());
}

QString FolderToolTip(const PageRow& page) {
  return OfMail(page, AnyObject(*page.content.folder).ToolTip());
}

// Children are tried in the order in which they stand here.
constexpr ChildTag kLinkTags[] = {
    {u"<REPLAY>",
     link_word::kReply,
     nullptr,
     {QT_TRANSLATE_NOOP("vorn::Ui", "返信するリンク"),
      QT_TRANSLATE_NOOP("vorn::Ui", "<+DIALOG><REPLAY>返信<+DIALOG>")}},
    {u"<REPLAYALL>",
     link_word::kReplyAll,
     nullptr,
     {QT_TRANSLATE_NOOP("vorn::Ui", "全員に返信するリンク"),
      QT_TRANSLATE_NOOP("vorn::Ui", "<+DIALOG><REPLAYALL>全員に返信<+DIALOG>")}},
    {u"<FORWARD>",
     link_word::kForward,
     nullptr,
     {QT_TRANSLATE_NOOP("vorn::Ui", "転送するリンク"),
      QT_TRANSLATE_NOOP("vorn::Ui", "<+DIALOG><FORWARD>転送<+DIALOG>")}},
};

constexpr ChildTag kTimeTags[] = {
    {u"<SHORT>",
     u"SHORT",
     nullptr,
     {QT_TRANSLATE_NOOP("vorn::Ui", "短い日時（きょうは時刻だけ）")}},
};

// Blind copies are stored under the kind "BC".
constexpr ChildTag kAddressTags[] = {
    {u"<FROM>", u"FROM", nullptr, {QT_TRANSLATE_NOOP("vorn::Ui", "送信者")}},
    {u"<TO>", u"TO", nullptr, {QT_TRANSLATE_NOOP("vorn::Ui", "宛先")}},
    {u"<CC>", u"CC", nullptr, {QT_TRANSLATE_NOOP("vorn::Ui", "写し")}},
    {u"<BCC>", u"BC", nullptr, {QT_TRANSLATE_NOOP("vorn::Ui", "隠し写し")}},
    {u"<SHORT>", u"", nullptr, {nullptr}},
};

constexpr ChildTag kFlagTags[] = {
    {u"<NEW>", u"", NewMark, {QT_TRANSLATE_NOOP("vorn::Ui", "未開封の印 ○")}},
    {u"<CLIP>", u"", ClipMark, {QT_TRANSLATE_NOOP("vorn::Ui", "添付ファイルの印 ＠")}},
    {u"<PRIORITY>", u"", PriorityMark, {QT_TRANSLATE_NOOP("vorn::Ui", "優先度の印 ↑ ↓")}},
    {u"<STATE>",
     u"",
     StateMarks,
     {QT_TRANSLATE_NOOP("vorn::Ui", "スター ★、返信済み ↩、転送済み →の印")}},
};

constexpr ChildTag kFolderTags[] = {
    {u"<NAME>", u"NAME", FolderName, {QT_TRANSLATE_NOOP("vorn::Ui", "フォルダの名前")}},
    {u"<TOOLTIPTEXT>",
     u"TOOLTIPTEXT",
     FolderToolTip,
     {QT_TRANSLATE_NOOP("vorn::Ui", "フォルダの説明")}},
};

constexpr SectionTag kTags[] = {
    {u"<+SUBJECT>", TagRole::Row, SubjectText, {}, {QT_TRANSLATE_NOOP("vorn::Ui", "件名")}},
    {u"<+DIALOG>",
     TagRole::Link,
     nullptr,
     kLinkTags,
     {QT_TRANSLATE_NOOP("vorn::Ui", "メッセージを開くリンク"),
      QT_TRANSLATE_NOOP("vorn::Ui", "<+DIALOG>開く<+DIALOG>")}},
    {u"<+TIMESTAMP>",
     TagRole::Row,
     TimeStampText,
     kTimeTags,
     {QT_TRANSLATE_NOOP("vorn::Ui", "日時")}},
    {u"<+MAILADDRESS>",
     TagRole::Row,
     AddressText,
     kAddressTags,
     {QT_TRANSLATE_NOOP("vorn::Ui", "すべてのアドレス")}},
    {u"<+FLAG>", TagRole::Row, nullptr, kFlagTags, {nullptr}},
    {u"<+SIZE>",
     TagRole::Row,
     SizeText,
     {},
     {QT_TRANSLATE_NOOP("vorn::Ui", "大きさ（キロバイト）")}},
    {u"<+TEXT>", TagRole::Row, PreviewText, {}, {QT_TRANSLATE_NOOP("vorn::Ui", "本文の始め")}},
    {u"<+PLACE>",
     TagRole::Row,
     PlaceText,
     {},
     {QT_TRANSLATE_NOOP("vorn::Ui", "入っているフォルダ（すべてのフォルダの検索だけ）")}},
    {u"<+FOLDER>", TagRole::Page, nullptr, kFolderTags, {nullptr}},
    {u"<+MAIL>",
     TagRole::Rows,
     nullptr,
     {},
     {QT_TRANSLATE_NOOP("vorn::Ui", "メッセージ1通分の始まりと終わり")}},
};

// By itself or by each of its children.
constexpr bool IsWritten(const SectionTag& tag) {
  if (tag.role != TagRole::Row && tag.role != TagRole::Page) return true;
  return tag.write != nullptr ||
         std::ranges::all_of(tag.children, [](const ChildTag& c) { return c.write != nullptr; });
}
static_assert(std::ranges::all_of(kTags, IsWritten));

void List(const QString& tag, const TagEntry& entry, QList<LayoutTag>& list) {
  if (entry.meaning == nullptr) return;
  list.append({entry.sample == nullptr ? tag : Ui::tr(entry.sample), Ui::tr(entry.meaning)});
}

}  // namespace

PageTagTable CreatePageTagTable() {
  PageTagTable table;
  for (const SectionTag& tag : kTags) {
    table.append({CreateTagPattern(QString::fromUtf16(tag.tag), 0), {}, &tag});
    PageTag& section = table.last();
    for (const ChildTag& child : tag.children) {
      section.children.append(
          CreateTagPattern(QString::fromUtf16(child.tag), QString::fromUtf16(child.key)));
    }
  }
  return table;
}

FoundChildTags ReadChildTags(const QByteArray& text, const PageTag& section, qsizetype position,
                             qint32 limit) {
  FoundChildTags found{{}, position};
  for (qsizetype i = 0; i < section.children.size(); ++i) {
    if (!MatchTagPattern(text, section.children[i], found.end)) continue;
    found.indices.append(i);
    found.end += section.children[i].length;
    if (limit != 0 && found.indices.size() > limit) break;
  }
  return found;
}

QString TagText(const SectionTag& tag, const PageRow& row, const ChildTags& children) {
  if (tag.write != nullptr) return tag.write(row, children);
  QString text;
  for (const ChildTag* child : children) text += child->write(row);
  return text;
}

QList<LayoutTag> LayoutTags() {
  QList<LayoutTag> list;
  for (const TagRole role : {TagRole::Rows, TagRole::Row, TagRole::Link, TagRole::Page}) {
    for (const SectionTag& tag : kTags) {
      if (tag.role != role) continue;
      const QString section = QString::fromUtf16(tag.tag);
      List(section, tag.entry, list);
      for (const ChildTag& child : tag.children) {
        List(section + QString::fromUtf16(child.tag), child.entry, list);
      }
    }
  }
  return list;
}

}  // namespace vorn
