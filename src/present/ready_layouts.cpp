#include "present/ready_layouts.h"

#include <utility>

#include "objects/object_types.h"
#include "present/link_command.h"
#include "present/page_template.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// A page without rows ends where the first one would begin, so what it says stands before.
//
// The marks of a message become classes of its row, so that a rule can show what is unopened.
constexpr char kTable[] = R"html(<!DOCTYPE html>
<html lang="ja">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=shift-jis">
<title><+FOLDER><NAME></title>
<style>
:root { color-scheme: light dark; --text: #1f2328; --soft: #656d76; --line: #e4e7eb;
        --back: #ffffff; --head: #f6f8fa; --link: #0b57d0; --mark: #0b57d0; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e6e8eb; --soft: #9aa3ad; --line: #33383f; --back: #1b1d21; --head: #24272c;
          --link: #8ab4f8; --mark: #8ab4f8; }
}
html { scroll-padding-top: 3em; } /* no row hides behind the head */
body { margin: 0; background: var(--back); color: var(--text);
       font: 10pt/1.5 "Noto Sans CJK JP", "Yu Gothic UI", "Meiryo", sans-serif; }
table { width: 100%; border-collapse: collapse; table-layout: fixed; }
th { position: sticky; top: 0; z-index: 1; background: var(--head); color: var(--soft);
     font-weight: normal; text-align: left; padding: 6px 8px; border-bottom: 1px solid var(--line); white-space: nowrap;
     overflow: hidden; }
td { padding: {pad} 8px; border-bottom: 1px solid var(--line); white-space: nowrap;
     overflow: hidden; text-overflow: ellipsis; }
a { color: var(--text); text-decoration: none; }
a:hover { color: var(--link); text-decoration: underline; }
a:focus-visible { outline: 2px solid var(--link); outline-offset: -2px; border-radius: 3px; }
.m○ .subject > a, .m○ .from { font-weight: bold; }
.m○ .marks { color: var(--mark); }
/* A ring says "all right" in Japan; what is unopened has a disc. */
.new { font-size: 0; } .m○ .new::before { content: "●"; font-size: 10pt; }
/* A click turns it on or off; what is off shows where. */
td.marks { cursor: pointer; }
td.marks:hover .new::before { content: "●"; font-size: 10pt; opacity: .4; }
{widths}
td.date { color: var(--soft); }
{sharing}
/* Pictures leave the subject its room. Their words are there for who hears the page. */
td.subject { position: relative; padding-right: 60px; }
.do { position: absolute; right: 4px; top: 0; bottom: 0; display: flex; align-items: center; }
.do a { display: block; padding: 4px; font-size: 0; line-height: 0; color: var(--soft); }
.do a:hover { color: var(--link); }
.do a::before { content: ""; display: block; width: 16px; height: 16px; background: currentColor;
                forced-color-adjust: none; }
.do a[href^="{replyLink}" i]::before {
  clip-path: path("M6.5 2.5 1 8l5.5 5.5V10c4 0 6.5 1 8.5 4-.5-5-3.5-8-8.5-8Z"); }
.do a[href^="{forwardLink}" i]::before {
  clip-path: path("M9.5 2.5 15 8l-5.5 5.5V10c-4 0-6.5 1-8.5 4 .5-5 3.5-8 8.5-8Z"); }
.place { color: var(--soft); border: 1px solid var(--line); border-radius: 4px; padding: 0 .4em;
         margin-right: .5em; font-size: 9pt; }
.place:empty { display: none; }
/* Where there is little room only the current row has pictures; its subject ends before them. */
@media (max-width: 46em) {
{narrowWidths}
  td.subject { padding-right: 8px; }
  .do { visibility: hidden; right: 2px; top: 2px; bottom: 2px; }
  .row:focus-within .do, .vorn-current .do { visibility: visible; }
  .row:focus-within .subject, .vorn-current .subject { padding-right: 60px; }
}
/* Where there is less, a row has two lines: from whom and when, and below it the subject. */
@media (max-width: 30em) {
  html { scroll-padding-top: 0; }
  table, tbody, .none, .none td { display: block; }
  tr:first-child { display: none; }
  .row { display: grid; grid-template-columns: minmax(0, 1fr) auto auto; column-gap: .5em;
         position: relative; padding: {pad} 8px {pad} 1.6em; border-bottom: 1px solid var(--line); }
  .row td { width: auto; min-width: 0; max-width: none; padding-left: 0; padding-top: 0; padding-bottom: 0; border: 0; }
  .row td:not(.subject) { padding-right: 0; }
{areas}
  .m○ .new::before { position: absolute; left: .3em; }
}
.none td { color: var(--soft); text-align: center; padding: 3em 10px; border: 0; }
.none:not(:last-child) { display: none; } /* rows follow */
</style>
</head>
<body>
<table>
<tr>{headings}</tr>
<tr class="none"><td colspan="{columns}">{none}</td></tr>
<+MAIL>
<tr class="row m<+FLAG><NEW>">{cells}</tr>
<+MAIL>
</table>
</body>
</html>
)html";

// The column of recipients is as wide as those of the page need, within bounds.
constexpr char kSharing[] = R"css(table { table-layout: auto; }
.marks, .date { min-width: var(--width); max-width: var(--width); }
.from { width: auto; min-width: var(--width); max-width: clamp(var(--width), 33vw, 24em); }
.subject { width: 100%; max-width: 0; })css";

constexpr char kCards[] = R"html(<!DOCTYPE html>
<html lang="ja">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=shift-jis">
<title><+FOLDER><NAME></title>
<style>
:root { color-scheme: light dark; --text: #1f2328; --soft: #656d76; --line: #e4e7eb;
        --back: #f2f4f7; --card: #ffffff; --link: #0b57d0; }
@media (prefers-color-scheme: dark) {
  :root { --text: #e6e8eb; --soft: #9aa3ad; --line: #33383f; --back: #17191c; --card: #22252a;
          --link: #8ab4f8; }
}
body { margin: 0; padding: 12px; background: var(--back); color: var(--text);
       font: 10pt/1.6 "Noto Sans CJK JP", "Yu Gothic UI", "Meiryo", sans-serif;
       display: grid; grid-template-columns: repeat(auto-fill, minmax(19em, 1fr)); gap: calc(6px + {pad});
       align-items: start; }
h1 { grid-column: 1 / -1; font-size: 11pt; font-weight: normal; color: var(--soft); margin: 0; }
article { background: var(--card); border: 1px solid var(--line); border-left: 4px solid var(--line);
          border-radius: 8px; padding: calc(4px + {pad}) 14px; overflow: hidden; }
article.m○ { border-left-color: var(--link); }
article header { display: flex; justify-content: space-between; gap: 1em; color: var(--soft);
                 font-size: 9pt; white-space: nowrap; }
article header span { overflow: hidden; text-overflow: ellipsis; }
article h2 { font-size: 11pt; font-weight: normal; margin: 2px 0; overflow-wrap: anywhere; }
article.m○ h2 { font-weight: bold; }
a { color: var(--text); text-decoration: none; }
a:hover { color: var(--link); text-decoration: underline; }
article p { color: var(--soft); margin: 4px 0; max-height: 4.8em; overflow: hidden;
            overflow-wrap: anywhere; }
.none:not(:last-child) { display: none; }
.none { color: var(--soft); }
.place:not(:empty)::after { content: " ― "; }
article footer a { color: var(--link); font-size: 9pt; margin-right: 1em; }
</style>
</head>
<body>
<h1><+FOLDER><NAME></h1>
<p class="none">{none}</p>
<+MAIL>
<article class="m<+FLAG><NEW>">
<header><span><+MAILADDRESS><{tag}><SHORT></span><span><+FLAG><CLIP><PRIORITY><STATE> <+TIMESTAMP></span></header>
<h2><span class="place"><+PLACE></span><+DIALOG><+SUBJECT><+DIALOG></h2>
<p><+TEXT></p>
<footer><+DIALOG><REPLAY>{reply}<+DIALOG><+DIALOG><REPLAYALL>{replyall}<+DIALOG><+DIALOG><FORWARD>{forward}<+DIALOG></footer>
</article>
<+MAIL>
</body>
</html>
)html";

// Above and below a message.
QString Padding(RowHeight rows) {
  switch (rows) {
    case RowHeight::Roomy:
      return QStringLiteral("11px");
    case RowHeight::Dense:
      return QStringLiteral("2px");
    case RowHeight::Normal:
      break;
  }
  return QStringLiteral("6px");
}

// In a folder of one's own messages all have one sender.
bool ShowsRecipients(const SerialId& folder) {
  return folder == fixed_serial::kOutbox || folder == fixed_serial::kEditWait;
}

// A column of the table; what is empty is left out.
struct Column {
  QString name;     // its class
  QString heading;  // in the language of the interface
  QString cell;     // in the template language
  QString hint;     // of the cell
  QString width;    // without one it has what the others leave
  QString narrow;   // its width where there is little room
  QString area;     // its place where a row has two lines
};

QList<Column> Columns(const SerialId& folder) {
  const bool toOthers = ShowsRecipients(folder);
  return {{.name = QStringLiteral("marks"),
           .heading = {},
           .cell = QStringLiteral("<span class=\"new\"><+FLAG><NEW></span>"
                                  "<+FLAG><CLIP><PRIORITY><STATE>"),
           .hint = Ui::tr("クリックすると未開封か開封済みになります"),
           .width = QStringLiteral("4.5em"),
           .narrow = QStringLiteral("3em"),
           .area = QStringLiteral("1 / 2")},
          {.name = QStringLiteral("from"),
           .heading = toOthers ? Ui::tr("宛先") : Ui::tr("送信者"),
           .cell = toOthers ? QStringLiteral("<+MAILADDRESS><TO><SHORT>")
                            : QStringLiteral("<+MAILADDRESS><FROM><SHORT>"),
           .hint = {},
           .width = QStringLiteral("clamp(7em, 17vw, 20em)"),
           .narrow = QStringLiteral("clamp(6em, 15vw, 20em)"),
           .area = QStringLiteral("1 / 1")},
          {.name = QStringLiteral("subject"),
           .heading = Ui::tr("件名", "heading"),
           .cell = QStringLiteral(
               "<span class=\"place\"><+PLACE></span><+DIALOG><+SUBJECT><+DIALOG>\n"
               "<span class=\"do\"><span title=\"{reply}\"><+DIALOG><REPLAY>{reply}<+DIALOG></span>"
               "<span title=\"{forward}\"><+DIALOG><FORWARD>{forward}<+DIALOG></span></span>"),
           .hint = {},
           .width = {},
           .narrow = {},
           .area = QStringLiteral("2 / 1 / 3 / -1")},
          {.name = QStringLiteral("date"),
           .heading = Ui::tr("日時", "heading"),
           .cell = QStringLiteral("<+TIMESTAMP><SHORT>"),
           .hint = QStringLiteral("<+TIMESTAMP>"),
           .width = QStringLiteral("6.6em"),
           .narrow = {},
           .area = QStringLiteral("1 / 3")}};
}

// For each column a line that says something of it.
QString Lines(const QList<Column>& columns, const QString& line, QString Column::*what) {
  QStringList lines;
  for (const Column& column : columns) {
    if (!(column.*what).isEmpty()) lines.append(line.arg(column.name, column.*what));
  }
  return lines.join(u'\n');
}

QString Cells(const QList<Column>& columns) {
  QStringList cells;
  for (const Column& column : columns) {
    const QString hint =
        column.hint.isEmpty() ? QString() : QStringLiteral(" title=\"%1\"").arg(column.hint);
    cells.append(QStringLiteral("<td class=\"") + column.name + u'"' + hint + u'>' + column.cell +
                 QStringLiteral("</td>"));
  }
  return cells.join(u'\n');
}

QString Headings(const QList<Column>& columns) {
  QString headings;
  for (const Column& column : columns) {
    headings += QStringLiteral("<th class=\"%1\">%2</th>").arg(column.name, column.heading);
  }
  return headings;
}

using Words = QList<std::pair<QString, QString>>;

// A template with what stands in the place of its marks, which may hold further ones.
QString Filled(QString html, const Words& words) {
  for (const auto& [mark, word] : words) html.replace(u'{' + mark + u'}', word);
  return html;
}

QString Table(const SerialId& folder) {
  const QList<Column> columns = Columns(folder);
  const QString width = QStringLiteral(".%1 { --width: %2; width: var(--width); }");
  return Filled(QString::fromUtf8(kTable),
                {{QStringLiteral("widths"), Lines(columns, width, &Column::width)},
                 {QStringLiteral("narrowWidths"),
                  Lines(columns, QStringLiteral("  .%1 { --width: %2; }"), &Column::narrow)},
                 {QStringLiteral("sharing"),
                  ShowsRecipients(folder) ? QString::fromUtf8(kSharing) : QString()},
                 {QStringLiteral("areas"),
                  Lines(columns, QStringLiteral("  .row .%1 { grid-area: %2; }"), &Column::area)},
                 {QStringLiteral("headings"), Headings(columns)},
                 {QStringLiteral("columns"), QString::number(columns.size())},
                 {QStringLiteral("cells"), Cells(columns)}});
}

// Without a column for each, a message tells whom it is from or to.
QString Cards(const SerialId& folder) {
  const QString tag = ShowsRecipients(folder) ? QStringLiteral("TO") : QStringLiteral("FROM");
  return Filled(QString::fromUtf8(kCards), {{QStringLiteral("tag"), tag}});
}

// With the words in the language of the interface.
QString Worded(const QString& html, RowHeight rows) {
  return Filled(html, {{QStringLiteral("reply"), Ui::tr("返信")},
                       {QStringLiteral("replyall"), Ui::tr("全員に返信")},
                       {QStringLiteral("forward"), Ui::tr("転送")},
                       {QStringLiteral("replyLink"), LinkStart(link_word::kReply)},
                       {QStringLiteral("forwardLink"), LinkStart(link_word::kForward)},
                       {QStringLiteral("none"), Ui::tr("メッセージはありません。")},
                       {QStringLiteral("pad"), Padding(rows)}})
      .replace(u'\n', QStringLiteral("\r\n"));
}

}  // namespace

QList<ReadyLayout> ReadyLayouts(const SerialId& folder, RowHeight rows) {
  return {{QStringLiteral("standard"), Ui::tr("標準"), DefaultPageTemplate()},
          {QStringLiteral("table"), Ui::tr("表"), Worded(Table(folder), rows)},
          {QStringLiteral("cards"), Ui::tr("カード"), Worded(Cards(folder), rows)}};
}

}  // namespace vorn
