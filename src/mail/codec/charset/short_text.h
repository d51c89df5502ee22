#pragma once

#include "mail/codec/charset/charset.h"

namespace vorn {

/// What the rest of a message says about the code of a short text in it.
struct Surroundings {
  Charset code;                 ///< in which its text was read, or none
  bool areLabelsWrong = false;  ///< as that of its text is
};

/// Whether a text has neither half-width kana nor Latin letters nor characters that are rare in
/// Japanese.
bool IsUsualJapanese(const QString& text);

/// The code of a text of a few characters under a Japanese label: the declared one as a rule. In so
/// few a wrong label is more usual than damage, so that errors and rare characters count against it
/// where another code reads all of the bytes.
Charset CodeOfShortText(QByteArrayView bytes, const Charset& declared, bool atCut = false,
                        const Surroundings& around = {});

}  // namespace vorn
