#pragma once

#include <QStringView>

#include "storage/base/serial_id.h"

namespace vorn {

inline namespace serial_literal {

/// A serial identifier as it stands in a test: `u"mail_1"_id`.
inline SerialId operator""_id(const char16_t* text, size_t length) {
  return SerialId(QStringView(text, static_cast<qsizetype>(length)).toString());
}

}  // namespace serial_literal
}  // namespace vorn
