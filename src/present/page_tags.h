#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <span>

#include "mail/store/mail_row.h"
#include "present/tag_pattern.h"

namespace vorn {

struct PageContent;

/// What the tags are written from.
struct PageRow {
  MailRow row;
  const PageContent& content;

  /// Only what was received can be answered or forwarded.
  bool IsReceived() const { return row.Status() == kStatusReceived; }
};

/// What a section tag does in a template.
enum class TagRole {
  Rows,  ///< begins and ends what is written once per row
  Row,   ///< becomes a text of the current row, without which the page ends
  Link,  ///< opens and closes a link to the row's message, of the kind that the child's key names
  Page,  ///< becomes a text that needs no row
};

/// How a tag stands in the list from which a user picks.
struct TagEntry {
  const char* meaning;  ///< what it becomes, a few words to translate; null: it is not in the list
  const char* sample = nullptr;  ///< what a pick writes, to translate; null: the tag alone
};

struct ChildTag {
  const char16_t* tag;
  const char16_t* key;
  QString (*write)(const PageRow& row);  ///< null: the section's text depends on the key
  TagEntry entry;
};

struct SectionTag {
  const char16_t* tag;
  TagRole role;
  /// The text of a `Row` or `Page` with these child tags behind it; null: that of the children.
  QString (*write)(const PageRow& row, const QList<const ChildTag*>& children);
  std::span<const ChildTag> children;
  TagEntry entry;
};

/// A section tag ("<+FLAG>") with the child tags that may follow it ("<NEW>").
struct PageTag {
  TagPattern section;
  QList<TagPattern> children;
  const SectionTag* definition = nullptr;
};

/// In the order in which they are tried.
using PageTagTable = QList<PageTag>;

/// The fixed table of tags.
PageTagTable CreatePageTagTable();

/// Child tags of a section that stand in a text.
struct FoundChildTags {
  QList<qsizetype> indices;  ///< in the section's table
  qsizetype end = 0;         ///< the position behind them
};

/// The section's child tags that stand one after the other at a position, in table order and each
/// at most once. A `limit` other than 0 ends the reading once more children than that were found.
FoundChildTags ReadChildTags(const QByteArray& text, const PageTag& section, qsizetype position,
                             qint32 limit = 0);

/// What a `Row` or `Page` tag becomes with these child tags behind it.
QString TagText(const SectionTag& tag, const PageRow& row, const QList<const ChildTag*>& children);

/// A tag of the template language, for the list from which a user picks.
struct LayoutTag {
  QString text;     ///< as it is written into a template
  QString meaning;  ///< what it becomes, a few words
};

/// Those of the rows first, those of the page last.
QList<LayoutTag> LayoutTags();

}  // namespace vorn
