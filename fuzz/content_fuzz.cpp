#include "fuzz_input.h"
#include "mail/codec/mime/attachments.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArrayView source = fuzz::Bytes(data, size);
  const QStringList textTypes{QStringLiteral("text/plain")};
  const MessageIndex index = IndexMessage(source, FlagString(QStringLiteral("001")), {textTypes});
  const auto direct = MimeCodec::ReadContent(source);
  const auto stored = MimeCodec::ParseContentIndex(index.content);
  fuzz::Require(direct.size() == stored.size() && !direct.empty());
  for (size_t i = 0; i < stored.size(); ++i) {
    fuzz::Require(stored[i].first == direct[i].first && stored[i].last == direct[i].last);
    fuzz::Require(stored[i].first >= 0 && stored[i].last < source.size() &&
                  stored[i].last >= stored[i].first - 1);
    fuzz::Require(stored[i].name == direct[i].name && stored[i].type == direct[i].type);
  }
  TextRequest request;
  request.textTypes = textTypes;
  request.withReports = true;
  GetMessageText(source, index.content, request);
  request.maximum = 100;
  request.charset = CharsetChoice::ShiftJis;
  GetMessageText(source, index.content, request);
  ListAttachments(stored, textTypes);
  return 0;
}
