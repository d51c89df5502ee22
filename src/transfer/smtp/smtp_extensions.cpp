#include "transfer/smtp/smtp_extensions.h"

namespace vorn {

void SmtpExtensions::Take(const QByteArray& reply) {
  lines_.clear();
  for (const QByteArray& line : reply.split('\n')) lines_.append(line.mid(4).toUpper());
}

QByteArrayList SmtpExtensions::AuthMechanisms() const {
  QByteArrayList mechanisms;
  for (const QByteArray& line : lines_) {
    if (line.startsWith("AUTH ") || line.startsWith("AUTH=")) mechanisms += line.mid(5).split(' ');
  }
  return mechanisms;
}

std::optional<qint64> SmtpExtensions::SizeLimit() const {
  for (const QByteArray& line : lines_) {
    if (line == "SIZE" || line.startsWith("SIZE ")) return line.mid(5).toLongLong();
  }
  return std::nullopt;
}

}  // namespace vorn
