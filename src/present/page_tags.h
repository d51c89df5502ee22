#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariant>
#include <array>

namespace vorn {

/// One tag of the page template language, as bytes of code page 932 ready for comparison.
struct TagPattern {
  QByteArray tag;
  QByteArray upper;
  QByteArray lower;
  qint32 length = 0;
  QVariant key;  ///< a child's key; a section's state
};

/// A section tag ("<+FLAG>") with the child tags that may follow it ("<NEW>").
struct PageTag {
  TagPattern section;
  QList<TagPattern> children;
};

/// The section tags by their index, which is also the order in which they are tried.
enum PageTagIndex {
  kTagSubject = 0,
  kTagDialog,
  kTagTimeStamp,
  kTagMailAddress,
  kTagFlag,
  kTagSize,
  kTagText,
  kTagFolder,
  kTagMail,
  kPageTagCount
};

using PageTagTable = std::array<PageTag, kPageTagCount>;

TagPattern CreateTagPattern(const QString& tag, const QVariant& key);

/// Whether a pattern stands in the text at a position, ASCII letters in either case.
bool MatchTagPattern(const QByteArray& text, const TagPattern& pattern, qsizetype position);

/// The indices of the section's child tags that stand one after the other at a position, in table
/// order and each at most once, joined with CR LF. `position` moves past them. A `limit` other than
/// 0 ends the reading once more children than that were found.
QString ReadChildTags(const QByteArray& text, const PageTag& section, qsizetype& position,
                      qint32 limit = 0);

/// The fixed table of tags.
PageTagTable CreatePageTagTable();

}  // namespace vorn
