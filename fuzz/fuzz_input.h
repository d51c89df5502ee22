#pragma once

#include <QByteArrayView>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// What libFuzzer calls with every input.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace vorn::fuzz {

inline QByteArrayView Bytes(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// Ends the run when something that must hold does not.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

/// Whether a text can stand in one line of an index column.
inline bool IsOneLine(const QString& text) {
  return !text.contains(u'\n') && !text.contains(u'\r') && !text.contains(QChar(u'\0'));
}

}  // namespace vorn::fuzz
