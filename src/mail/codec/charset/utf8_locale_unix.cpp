#include <clocale>

#include "mail/codec/charset/utf8_locale.h"

namespace vorn {

Utf8Locale::Utf8Locale() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
  if (locale_ != nullptr) before_ = uselocale(static_cast<locale_t>(locale_));
}

Utf8Locale::~Utf8Locale() {
  if (locale_ == nullptr) return;
  uselocale(static_cast<locale_t>(before_));
  freelocale(static_cast<locale_t>(locale_));
}

}  // namespace vorn
