#pragma once

#include <unicode/ucnv.h>

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// Owns one of ICU's converters.
class IcuConverter {
 public:
  explicit IcuConverter(const char* name) : handle_(ucnv_open(name, &status_)) {}
  ~IcuConverter() { ucnv_close(handle_); }
  IcuConverter(const IcuConverter&) = delete;
  IcuConverter& operator=(const IcuConverter&) = delete;

  bool IsValid() const { return U_SUCCESS(status_) && handle_ != nullptr; }

  /// Whether a character may take several bytes.
  bool IsMultiByte() const { return IsValid() && ucnv_getMaxCharSize(handle_) > 1; }

  /// Decodes all of `bytes`; what has no meaning becomes U+FFFD.
  QString ToUnicode(QByteArrayView bytes) {
    QString text(bytes.size() * 2 + 16, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    int32_t length = Convert(text, bytes, &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
      text.resize(length);
      status = U_ZERO_ERROR;
      length = Convert(text, bytes, &status);
    }
    text.resize(U_SUCCESS(status) ? length : 0);
    return text;
  }

 private:
  int32_t Convert(QString& text, QByteArrayView bytes, UErrorCode* status) {
    return ucnv_toUChars(handle_, reinterpret_cast<UChar*>(text.data()),
                         static_cast<int32_t>(text.size()), bytes.data(),
                         static_cast<int32_t>(bytes.size()), status);
  }

  UErrorCode status_ = U_ZERO_ERROR;
  UConverter* handle_;
};

}  // namespace vorn
