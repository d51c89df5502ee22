#include "fuzz_input.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/code_page_932.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  constexpr const char* kLabels[] = {"iso-2022-jp", "euc-jp",      "shift_jis",    "utf-8",
                                     "us-ascii",    "utf-7",       "utf-16",       "gb18030",
                                     "big5",        "iso-2022-kr", "windows-1252", "hz-gb-2312"};
  const Charset charset = Charset::FromLabel(kLabels[data[0] % std::size(kLabels)]);
  const QByteArrayView bytes = fuzz::Bytes(data + 1, size - 1);
  const QString text = Decode(charset, bytes).text;
  Decode(charset, bytes, true);
  DecodeAutomatically(bytes, charset);
  const Charset recognized = RecognizeCharset(bytes);
  const bool isUtf8 = Decode({Charset::Family::Utf8, {}}, bytes).clean;
  if (recognized.family == Charset::Family::Ascii) {
    fuzz::Require(Decode(recognized, bytes).clean);
  } else if (isUtf8 && !HasJisEscape(bytes)) {
    // A few letters that no mail has are ideographs of EUC instead.
    fuzz::Require(recognized.family == Charset::Family::Utf8 ||
                  (recognized.family == Charset::Family::Euc && Decode(recognized, bytes).clean));
  }
  fuzz::Require(CodePage932Length(text) == ToCodePage932(text).size());
  return 0;
}
