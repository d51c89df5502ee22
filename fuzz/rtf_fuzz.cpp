#include "fuzz_input.h"
#include "mail/codec/text/rtf_text.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArrayView bytes = fuzz::Bytes(data, size);
  fuzz::Require(RtfToText(bytes, size % 2 == 0 ? 932 : 0).size() <= 2 * bytes.size());
  return 0;
}
