#include "mail/codec/charset/utf8_locale.h"

namespace vorn {

// Names come as wide characters here, whatever the locale.
Utf8Locale::Utf8Locale() = default;
Utf8Locale::~Utf8Locale() = default;

}  // namespace vorn
