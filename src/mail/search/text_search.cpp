#include "mail/search/text_search.h"

#include <optional>
#include <string>

#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/text_extraction.h"
#include "objects/settings.h"
#include "storage/engine/connection.h"
#include "storage/engine/long_binary_table.h"

namespace vorn {
namespace {

constexpr ushort kLastAscii = 0x7F;

// Where a line ends is no matter of what is said: words go on across it, those of Japanese without
// a blank.
QString WithoutLines(const QString& text) {
  QString joined;
  joined.reserve(text.size());
  for (const QString& line : text.split(u'\n')) {
    const QString words = line.trimmed();
    const bool isBlankNeeded =
        !joined.isEmpty() && !words.isEmpty() &&
        (joined.back().unicode() <= kLastAscii || words.front().unicode() <= kLastAscii);
    if (isBlankNeeded) joined += u' ';
    joined += words;
  }
  return joined;
}

}  // namespace

TextSearch::TextSearch(Context& context, const QString& text)
    : text_(text),
      pattern_(text.toStdString(), LetterCase::Ignored, Wildcards::None),
      textTypes_(Settings(context).TextTypes()) {}

bool TextSearch::Finds(Connection& connection, const SerialId& serialId) const {
  const auto row = connection.Prepare(
      "SELECT MAIL, FIELD_CONTENT, FIELD_FLAG, CONTAINS(FIELD_SUBJECT, ?) OR "
      "CONTAINS(ADDRESSES(FIELD_MAILADDRESS), ?) FROM mail WHERE SERIALID = ?");
  if (row == nullptr) return false;
  row->Bind({text_, text_, serialId.Text()});
  if (row->Next() != Statement::Step::Row) return false;
  if (row->Value(3).toBool()) return true;
  const Result<QByteArray> source = LongBinaryTable(connection).Read(row->Value(0).toLongLong());
  if (!source) return false;
  TextRequest request;
  request.charset = StoredCharset(FlagString(row->Value(2).toString()));
  request.textTypes = textTypes_;
  request.withReports = true;
  request.withHtml = true;
  request.isWhole = true;
  const MessageText read = GetMessageText(*source, row->Value(1).toString(), request);
  return pattern_.Matches(WithoutLines(read.text).toStdString());
}

}  // namespace vorn
