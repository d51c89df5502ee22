#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include "mail/codec/charset/charset.h"
#include "mail/codec/mime/flag_string.h"

namespace vorn {

/// The index columns of a message, worked out once when it is stored.
struct MessageIndex {
  QString content;       ///< `FIELD_CONTENT`, the map of its parts
  QString subject;       ///< `FIELD_SUBJECT`
  QString addressLines;  ///< `FIELD_MAILADDRESS`
  FlagString flags;      ///< `FIELD_FLAG`
};

/// How a source is read for its index.
struct IndexOptions {
  QStringList textTypes;      ///< the content types that are text
  bool hasEndMark = false;    ///< a last line of one full stop is no text
  bool readsReplyTo = false;  ///< "Reply-To:" counts where "Replay-To:" is missing
  /// The message has attachments where its window shows some beside what its HTML shows, rather
  /// than where a part is not of a text type.
  bool countsShown = false;
};

/// The lines of `FIELD_MAILADDRESS`, with the names as they read in that code; `readsReplyTo` as in
/// `IndexOptions`.
QString ReadAddressLines(QByteArrayView source, const ReadingCode& code, bool readsReplyTo);

/// Works out the index columns of a source. `flags` is the flag string to start from. Never fails.
MessageIndex IndexMessage(QByteArrayView source, const FlagString& flags,
                          const IndexOptions& options);

}  // namespace vorn
