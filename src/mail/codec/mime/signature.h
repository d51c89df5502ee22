#pragma once

#include <QString>
#include <vector>

#include "mail/codec/mime/content_index.h"

namespace vorn {

/// How a message is signed, as far as its parts say. Nothing here is verified.
enum class SignatureKind {
  None,
  Smime,      ///< a signature beside the message (RFC 8551 section 3.5.3)
  OpenPgp,    ///< the same in OpenPGP (RFC 3156 section 5), or around the text (RFC 9580 section 7)
  Wrapped,    ///< in S/MIME, signed or encrypted in one (RFC 8551 section 3.5.2)
  Encrypted,  ///< in OpenPGP (RFC 3156 section 4)
};

/// `text` is that of the message, which may hold a signature itself.
SignatureKind FindSignature(const std::vector<MimeCodec::ContentRecord>& records,
                            const QString& text);

/// In words; empty for `None`.
QString SignatureWords(SignatureKind kind);

}  // namespace vorn
