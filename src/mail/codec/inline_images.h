#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// A message's HTML with the images that it names by their Content-ID ("cid:", RFC 2392) put into
/// it as data, so that it shows them without loading anything. Images that are not in the message
/// stay as they were named.
QString WithInlineImages(const QString& html, const QByteArray& source,
                         const QString& contentIndex);

}  // namespace vorn
