#pragma once

#include <QByteArray>

#include <optional>

namespace vorn {

/// What a picture's first bytes say of it, whatever its label says.
struct PictureHead {
  const char* type;  ///< media type: image/bmp, gif, jpeg, png or webp
  qint64 pixels;     ///< width times height, which is what showing it costs
};

/// What is shown at most of one picture of a mail, in pixels. A larger one costs its sender hardly
/// a byte, and its reader's machine minutes.
inline constexpr qint64 kMostPicturePixels = 40'000'000;

/// Reads the head of a picture of the five common kinds: BMP, GIF, JPEG (ITU T.81, B.2), PNG and
/// WebP (RFC 9649). `bytes` is the whole picture. Nothing for any other content, and for one whose
/// head is cut.
std::optional<PictureHead> ReadPictureHead(QByteArrayView bytes);

}  // namespace vorn
