#include "fuzz_input.h"
#include "mail/codec/calendar/calendar_summary.h"
#include "mail/codec/header/yencoding.h"
#include "mail/codec/html/html_text.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/text/enriched_text.h"
#include "mail/codec/text/flowed_text.h"
#include "mail/codec/text/report_summary.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArrayView bytes = fuzz::Bytes(data, size);
  const QString text = QString::fromUtf8(bytes);
  HtmlToText(text);
  UnflowText(text, size % 2 == 0);
  if (const auto block = MimeCodec::FindUuBlock(bytes)) {
    fuzz::Require(block->first >= 0 && block->last < bytes.size() && block->first <= block->last);
    MimeCodec::UuDecode(bytes.sliced(block->first, block->last - block->first + 1));
  }
  if (const auto block = MimeCodec::FindYencBlock(bytes)) {
    fuzz::Require(block->first >= 0 && block->last < bytes.size() && block->first <= block->last);
    MimeCodec::YencDecode(bytes.sliced(block->first, block->last - block->first + 1));
  }
  CalendarSummary(text, true);
  fuzz::Require(EnrichedToText(text).size() <= 2 * text.size());
  ReportSummary(QStringLiteral("message/delivery-status"), bytes);
  ReportSummary(QStringLiteral("message/disposition-notification"), bytes);
  const QByteArray raw = bytes.toByteArray();
  using enum MimeCodec::TransferEncoding;
  for (const auto encoding : {Base64, QuotedPrintable, Uuencode}) {
    fuzz::Require(MimeCodec::DecodeTransfer(MimeCodec::EncodeTransfer(raw, encoding), encoding) ==
                  raw);
  }
  // A field that is written is read the same, blanks at the ends aside; controls become blanks.
  bool isClean = true;
  for (const QChar c : text) {
    if (c.unicode() < 0x20 || c.unicode() == 0x7F || c.isSurrogate() ||
        c == QChar::ReplacementCharacter || c == QChar::ByteOrderMark) {
      isClean = false;
    }
  }
  const QByteArray field = MimeCodec::EncodeField("Subject:", text, MimeCodec::OutputCharset::Utf8);
  for (const QByteArray& line : field.split('\n')) fuzz::Require(line.size() <= 998);
  if (isClean && !text.isEmpty()) {
    const QByteArray source = field + "\r\n\r\n";
    fuzz::Require(MimeCodec::DecodeHeader(MimeCodec::HeaderField(source, "Subject:"), 8) == text);
  }
  return 0;
}
