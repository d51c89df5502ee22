// What a picture is and what showing it costs, by its first bytes.

#include "mail/codec/html/picture_head.h"

#include <gtest/gtest.h>

#include <string>

namespace vorn {
namespace {

std::string ReadHead(const QByteArray& hex) {
  const auto head = ReadPictureHead(QByteArray::fromHex(hex));
  return head ? head->type + (" " + std::to_string(head->pixels)) : "nothing";
}

TEST(PictureHeadTest, TheFiveKindsTellTheirSize) {
  EXPECT_EQ(ReadHead("89504e470d0a1a0a 0000000d49484452 000000100000000a08020000 00"),
            "image/png 160");
  // The picture behind a comment; one that is larger than its screen.
  EXPECT_EQ(
      ReadHead("474946383961 1000 0a00 800000 aabbccaabbcc 21fe 0141 00 2c 0000 0000 0100 0100 00"),
      "image/gif 160");
  EXPECT_EQ(ReadHead("474946383961 0100 0100 000000 2c 0600 0200 0a00 0800 00"), "image/gif 160");
  EXPECT_EQ(ReadHead("424d 46000000 00000000 36000000 28000000 10000000 f6ffffff 0100"),
            "image/bmp 160");  // from the top down
  EXPECT_EQ(ReadHead("424d 46000000 00000000 1a000000 0c000000 1000 0a00 0100 1800"),
            "image/bmp 160");
  // A comment, a table and a fill byte before the frame; a thumbnail's frame within the comment.
  EXPECT_EQ(
      ReadHead("ffd8 fffe000cffc00011080100010003 ffc40004aabb ff ffc2 0011 08 000a 0010 03 01"),
      "image/jpeg 160");
  EXPECT_EQ(ReadHead("52494646 24000000 57454250 56503858 0a000000 00000000 0f0000 090000"),
            "image/webp 160");
  EXPECT_EQ(ReadHead("52494646 24000000 57454250 5650384c 0a000000 2f 0f400200 0000000000"),
            "image/webp 160");
  EXPECT_EQ(ReadHead("52494646 24000000 57454250 56503820 0a000000 300100 9d012a 1000 0a00"),
            "image/webp 160");
}

TEST(PictureHeadTest, BombsAreLargeAndEverythingElseIsNothing) {
  EXPECT_EQ(ReadHead("89504e470d0a1a0a 0000000d49484452 7fffffff7fffffff"),
            "image/png 4611686014132420609");
  for (const char* other :
       {"", "89504e470d0a1a0a", "89504e470d0a1a0a 0000000d49484452 ffffffff00000001",
        "474946383961 1000 0a00 000000 21fe ff", "424d", "474946383961", "ffd8ff",
        "ffd8ffe00004aabb", "ffd8ffe0ffff", "ffd8ffc0", "52494646 24000000 57454250",
        "52494646 24000000 57454250 414e494d 00000000 00000000 0000000000000000",
        "0000001c66747970617669660000000061766966",  // AVIF
        "00000100010010100000010020006804", "49492a0008000000", "3c737667"}) {
    EXPECT_EQ(ReadHead(other), "nothing") << other;
  }
}

}  // namespace
}  // namespace vorn
