#pragma once

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// What messages like another one have in common with it.
struct MessageLikeness {
  QString name;    ///< of the sender or the mailing list; possibly empty
  QString sender;  ///< the sender's address; possibly empty
  /// The address that finds them: the mailing list's, where it was written to, else the sender's.
  QString gathering;
};

/// Reads it from a message's address lines and its header: "List-Post" (RFC 2369) names the address
/// of a list, "List-Id" (RFC 2919) its name.
MessageLikeness LikenessOf(const QString& addressLines, QByteArrayView source);

}  // namespace vorn
