#pragma once

#include <cstring>
#include <string_view>

namespace vorn {

/// Where `part` begins in `text` from `at` on, in a time that grows with the sum of their lengths
/// and not with the product.
inline size_t FindBytes(std::string_view text, std::string_view part, size_t at = 0) {
  if (text.size() - at < part.size()) return std::string_view::npos;
#ifdef _WIN32
  return text.find(part, at);
#else
  const void* const found = memmem(text.data() + at, text.size() - at, part.data(), part.size());
  return found == nullptr ? std::string_view::npos
                          : static_cast<size_t>(static_cast<const char*>(found) - text.data());
#endif
}

}  // namespace vorn
