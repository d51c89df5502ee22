#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <functional>
#include <vector>

#include "mail/codec/charset/charset.h"

namespace vorn::MimeCodec {

/// A structured value such as that of Content-Type: the value before the first semicolon and the
/// parameters after it (RFC 2045 section 5.1, RFC 2231).
class HeaderParameters {
 public:
  /// `value` is the raw field body. Never fails; what cannot be read is left out.
  explicit HeaderParameters(QByteArrayView value);

  /// The main value, lower-cased, without comments: "text/plain", "attachment".
  const QByteArray& Main() const { return main_; }
  /// A parameter's bytes, unquoted; empty when absent. Case of the name does not matter.
  QByteArray Bytes(QByteArrayView name) const;
  /// A parameter as text: continuations joined, RFC 2231 charset applied, and the encoded words
  /// that much Japanese mail has there instead decoded. Of two forms the readable one counts.
  QString Text(QByteArrayView name) const;
  /// The same, and whether it can be read: `clean` is false where characters are wrong or lost.
  DecodedText Reading(QByteArrayView name) const;

 private:
  struct Parameter {
    QByteArray name;  // lower-cased, without section marks
    int section;      // -1 for one that is whole
    bool extended;    // percent-encoded
    QByteArray value;
  };

  enum class Form { Best, Plain };

  void ReadParameter(QByteArrayView text);
  struct Joined {
    QByteArray bytes;
    QByteArray charset;  // empty when none is given
    bool extended = false;
  };
  /// Joins a parameter's sections.
  Joined Join(QByteArrayView name, Form form) const;
  DecodedText ReadForm(QByteArrayView name, Form form) const;

  QByteArray main_;
  std::vector<Parameter> parameters_;
};

/// The preferred of two forms of a name, unless only the other one can be read.
DecodedText MoreReadable(const DecodedText& preferred, const std::function<DecodedText()>& other);

}  // namespace vorn::MimeCodec
