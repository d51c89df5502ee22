#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include "mail/codec/charset/charset.h"

namespace vorn {

/// A message's HTML with the images that it names by their Content-ID ("cid:", RFC 2392) put into
/// it as data, so that it shows them without loading anything. Images that are not in the message
/// stay as they were named.
QString WithInlineImages(const QString& html, const QByteArray& source,
                         const QString& contentIndex);

/// Where the MIME entities begin whose pictures stand in the text of the message's HTML: an element
/// that nothing around it hides names them by their Content-ID, and their content is a picture,
/// whatever they are called.
QSet<qsizetype> ShownImages(QByteArrayView source, const QString& contentIndex,
                            const ReadingCode& code);

}  // namespace vorn
