#include "mail/codec/html/picture_head.h"

#include <algorithm>
#include <cstdlib>

namespace vorn {
namespace {

using Head = std::optional<PictureHead>;

// A number of `count` bytes at `at`, which the caller has seen to be there.
qint64 Little(QByteArrayView bytes, qsizetype at, int count) {
  qint64 number = 0;
  for (int i = count - 1; i >= 0; --i) number = number << 8 | static_cast<uchar>(bytes[at + i]);
  return number;
}

qint64 Big(QByteArrayView bytes, qsizetype at, int count) {
  qint64 number = 0;
  for (int i = 0; i < count; ++i) number = number << 8 | static_cast<uchar>(bytes[at + i]);
  return number;
}

Head Png(QByteArrayView bytes) {
  constexpr qint64 kMost = 0x7FFFFFFF;  // of a side, by the standard
  if (bytes.size() < 24 || Big(bytes, 16, 4) > kMost || Big(bytes, 20, 4) > kMost) return {};
  return PictureHead{"image/png", Big(bytes, 16, 4) * Big(bytes, 20, 4)};
}

// Viewers enlarge a screen that is smaller than the first picture on it.
Head Gif(QByteArrayView bytes) {
  constexpr qsizetype kScreenEnd = 13;
  if (bytes.size() < kScreenEnd) return {};
  const int flags = static_cast<uchar>(bytes[10]);
  qsizetype at = kScreenEnd + ((flags & 0x80) != 0 ? 3 * (2 << (flags & 7)) : 0);
  while (at + 10 <= bytes.size() && bytes[at] == 0x21) {  // an extension: blocks, an empty one last
    at += 2;
    while (at < bytes.size() && bytes[at] != 0) at += 1 + static_cast<uchar>(bytes[at]);
    ++at;
  }
  if (at + 10 > bytes.size() || bytes[at] != 0x2C) return {};
  const qint64 width = Little(bytes, at + 1, 2) + Little(bytes, at + 5, 2);
  const qint64 height = Little(bytes, at + 3, 2) + Little(bytes, at + 7, 2);
  return PictureHead{"image/gif",
                     std::max(width, Little(bytes, 6, 2)) * std::max(height, Little(bytes, 8, 2))};
}

// The first header is of OS/2 or of Windows; a negative height is a picture from the top down.
Head Bmp(QByteArrayView bytes) {
  if (bytes.size() < 26) return {};
  if (Little(bytes, 14, 4) == 12) {
    return PictureHead{"image/bmp", Little(bytes, 18, 2) * Little(bytes, 20, 2)};
  }
  const auto width = static_cast<qint32>(Little(bytes, 18, 4));
  const auto height = static_cast<qint32>(Little(bytes, 22, 4));
  return PictureHead{"image/bmp", std::abs(qint64{width}) * std::abs(qint64{height})};
}

// The size stands in the first frame header; what comes before it is passed over by its length.
Head Jpeg(QByteArrayView bytes) {
  for (qsizetype at = 2; at + 9 <= bytes.size();) {
    if (bytes[at] != '\xFF') return {};
    const int marker = static_cast<uchar>(bytes[at + 1]);
    if (marker == 0xFF) {  // a fill byte
      ++at;
      continue;
    }
    const bool isFrame =
        marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (isFrame) return PictureHead{"image/jpeg", Big(bytes, at + 5, 2) * Big(bytes, at + 7, 2)};
    const bool standsAlone = marker == 0x01 || (marker >= 0xD0 && marker <= 0xD8);
    at += standsAlone ? 2 : 2 + Big(bytes, at + 2, 2);
  }
  return {};
}

Head Webp(QByteArrayView bytes) {
  if (bytes.size() < 30) return {};
  const QByteArrayView kind = bytes.sliced(12, 4);
  qint64 width = 0;
  qint64 height = 0;
  if (kind == "VP8X") {
    width = Little(bytes, 24, 3) + 1;
    height = Little(bytes, 27, 3) + 1;
  } else if (kind == "VP8L") {
    const qint64 sizes = Little(bytes, 21, 4);
    width = (sizes & 0x3FFF) + 1;
    height = (sizes >> 14 & 0x3FFF) + 1;
  } else if (kind == "VP8 ") {
    width = Little(bytes, 26, 2) & 0x3FFF;
    height = Little(bytes, 28, 2) & 0x3FFF;
  } else {
    return {};
  }
  return PictureHead{"image/webp", width * height};
}

}  // namespace

std::optional<PictureHead> ReadPictureHead(QByteArrayView bytes) {
  if (bytes.startsWith("\x89PNG\r\n\x1A\n")) return Png(bytes);
  if (bytes.startsWith("GIF8")) return Gif(bytes);
  if (bytes.startsWith("\xFF\xD8\xFF")) return Jpeg(bytes);
  if (bytes.startsWith("BM")) return Bmp(bytes);
  if (bytes.startsWith("RIFF") && bytes.size() > 12 && bytes.sliced(8, 4) == "WEBP") {
    return Webp(bytes);
  }
  return {};
}

}  // namespace vorn
