#include "fuzz_input.h"
#include "mail/codec/html/html_sanitizer.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QString html = QString::fromUtf8(fuzz::Bytes(data, size));
  for (const RemoteImages images : {RemoteImages::LeftOut, RemoteImages::Kept}) {
    const QByteArray safe = SanitizeHtml(html, images).html.toLower();
    // Text is escaped, so that every sign of a tag is one that was written.
    for (const char* name : {"script", "iframe", "object", "embed", "form", "input", "svg", "math",
                             "link", "base", "template", "video", "audio", "noscript"}) {
      fuzz::Require(!safe.contains(QByteArray("<") + name));
    }
    fuzz::Require(safe.count("<meta") <= 4 && safe.count("<style") <= 1);
    fuzz::Require(!safe.contains("src=\"http"));
  }
  return 0;
}
