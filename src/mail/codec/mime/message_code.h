#pragma once

#include <QByteArrayView>
#include <QStringList>
#include <vector>

#include "mail/codec/mime/content_index.h"
#include "mail/codec/mime/flag_string.h"

namespace vorn {

/// The code in which a whole message is read: 0 JIS, 1 EUC, 2 Shift-JIS. It is that of the last
/// text part, and -1 when that has a file name, is plain ASCII or in another code, or when some
/// text part or raw header field is in another one: then each is to be read for itself.
int RecognizeCode(QByteArrayView source, const std::vector<MimeCodec::ContentRecord>& records,
                  const QStringList& textTypes);

/// The choice that a message's flags hold; JIS where they are too short.
CharsetChoice StoredCharset(const FlagString& flags);

/// The choice with which a message that this program wrote was written, of whose stored choice
/// UTF-8 is no part.
CharsetChoice WrittenCharset(QByteArrayView source, const QString& contentIndex,
                             CharsetChoice stored);

}  // namespace vorn
