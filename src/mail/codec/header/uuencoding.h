#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

namespace vorn::MimeCodec {

/// A file that stands among the lines of a text.
struct TextBlock {
  qsizetype first = 0;  ///< the block's first byte
  qsizetype last = -1;  ///< its last byte, the line break after its end included
  QByteArray name;      ///< as written
};

/// The first uuencoded block in `text` at or after `from`, from the line "begin 666 name" to the
/// line "end"; a "begin" without any line of data after it is
/// text.
std::optional<TextBlock> FindUuBlock(QByteArrayView text, qsizetype from = 0);

/// The bytes of a block, its "begin" and "end" lines included or not. Damaged lines give what they
/// hold.
QByteArray UuDecode(QByteArrayView block);

/// Data lines for bytes, without "begin", the closing "`" and "end"; 45 bytes a line, CR LF.
QByteArray UuEncode(const QByteArray& bytes);

}  // namespace vorn::MimeCodec
