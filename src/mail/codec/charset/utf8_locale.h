#pragma once

namespace vorn {

/// For as long as one lives, libraries that ask the platform for the code of texts hear of UTF-8 in
/// this thread, whatever the user's locale is.
class Utf8Locale {
 public:
  Utf8Locale();
  ~Utf8Locale();
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;

 private:
  void* locale_ = nullptr;
  void* before_ = nullptr;
};

}  // namespace vorn
