#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <vector>

#include "mail/codec/charset/charset.h"
#include "mail/codec/header/header_parameters.h"

namespace vorn::MimeCodec {

/// One MIME part: where it stands in the source and what it is. Offsets are bytes of the source,
/// both ends included; an empty range ends before it begins.
struct ContentRecord {
  qsizetype headerFirst = 0;
  qsizetype headerLast = -1;
  QString type;  ///< type and subtype in lower case
  qsizetype first = 0;
  qsizetype last = -1;
  QString encoding;  ///< the transfer encoding in lower case, empty when there is none
  QString name;      ///< the file name
  bool hasName = false;
  /// Of which multipart/alternative, counted from 1, it belongs to a form, and to which; 0 outside
  /// of them. Not in the stored form.
  int alternative = 0;
  int form = 0;

  qsizetype Size() const { return last - first + 1; }
  bool IsAlternative() const { return alternative > 0; }
};

/// Maps the leaf parts of the message at `start` to `end` (-1: the end) of a source, in order
/// (RFC 2046). Never fails: depth and number of parts have limits, a multipart whose boundary is
/// missing counts as one plain text, and a message without headers as well.
std::vector<ContentRecord> ReadContent(QByteArrayView source, qsizetype start = 0,
                                       qsizetype end = -1);

/// The stored form: records separated by CR LF, of six fields, or seven with a file name, separated
/// by the character with code 0.
QString FormatContentIndex(const std::vector<ContentRecord>& records);
std::vector<ContentRecord> ParseContentIndex(const QString& index);
/// Those of a stored form with what only the source tells (`alternative`, `form`).
std::vector<ContentRecord> ParseContentIndex(const QString& index, QByteArrayView source);

/// `ReadContent` in its stored form.
QString ContentIndex(QByteArrayView source, qsizetype start = 0, qsizetype end = -1);

/// The Content-Type of a part with its parameters.
HeaderParameters ContentType(QByteArrayView source, const ContentRecord& record);

/// Whether a source ends with the mark of composed sources, a line of one full stop, which is no
/// text. One that came from a server has none: such a line is the sender's.
bool HasEndMark(QByteArrayView source);
/// The source without that mark.
QByteArray WithoutEndMark(const QByteArray& source);
inline constexpr qsizetype kEndMarkLength = 3;  ///< the full stop and its line break

/// The character set that a part declares.
Charset DeclaredCharset(QByteArrayView source, const ContentRecord& record);

/// What the first of a message's texts that declares one is in; unknown when none does.
Charset TextCharset(QByteArrayView source, const std::vector<ContentRecord>& records);

}  // namespace vorn::MimeCodec
