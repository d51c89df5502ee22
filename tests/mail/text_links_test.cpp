// Addresses in a text that is read.

#include <gtest/gtest.h>

#include "mail/codec/text/text_links.h"

namespace vorn {
namespace {

TEST(TextLinks, EndWhereTheirSentenceGoesOn) {
  struct Case {
    const char* line;
    const char* links;
  };
  for (const auto& [line, links] :
       {Case{"詳しくはhttps://example.jp/a?b=1&c=%20をご覧ください。",
             "https://example.jp/a?b=1&c=%20"},
        Case{"(http://example.jp/x_(y)), see http://example.jp/.",
             "http://example.jp/x_(y) http://example.jp/"},
        Case{"<https://example.jp/z>「HTTP://EXAMPLE.JP」",
             "https://example.jp/z http://example.jp"},
        Case{"sato@example.jpまで。yamada@example.co.jp.",
             "mailto:sato@example.jp mailto:yamada@example.co.jp"},
        Case{"http://a@example.jp/ is one", "http://a@example.jp/"},
        Case{"https:// javascript:alert(1) file:///etc/passwd a@b ftp://x/", ""}}) {
    const QString text = QString::fromUtf8(line);
    QStringList found;
    for (const TextLink& link : FindTextLinks(text)) {
      found.append(link.url.toString(QUrl::FullyEncoded));
      EXPECT_FALSE(text.mid(link.first, link.length).isEmpty());
    }
    EXPECT_EQ(found.join(u' '), QString::fromUtf8(links)) << line;
  }
}

}  // namespace
}  // namespace vorn
