#include "fuzz_input.h"
#include "present/page_tags.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const PageTagTable table = CreatePageTagTable();
  const QByteArray text = fuzz::Bytes(data, size).toByteArray();
  for (qsizetype at = 0; at < text.size(); ++at) {
    for (const PageTag& tag : table) {
      if (!MatchTagPattern(text, tag.section, at)) continue;
      const FoundChildTags found = ReadChildTags(text, tag, at + tag.section.length);
      fuzz::Require(found.end <= text.size());
    }
  }
  return 0;
}
