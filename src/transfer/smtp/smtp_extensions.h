#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <optional>

namespace vorn {

/// What a server says in its answer to EHLO that it can do (RFC 5321 section 4.1.1.1).
class SmtpExtensions {
 public:
  /// Takes the lines of the answer, joined by line feeds, in place of what was known.
  void Take(const QByteArray& reply);
  void Clear() { lines_.clear(); }

  /// Of an extension without arguments.
  bool Has(const QByteArray& keyword) const { return lines_.contains(keyword); }
  /// The mechanisms of AUTH (RFC 4954), also in the older form "AUTH=".
  QByteArrayList AuthMechanisms() const;
  /// The most bytes of a message (RFC 1870), 0 when there is no limit; nothing without SIZE.
  std::optional<qint64> SizeLimit() const;

 private:
  QByteArrayList lines_;  // in upper case
};

}  // namespace vorn
