#include "mail/codec/header/identifiers.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QLocale>

namespace vorn::MimeCodec {

QString Digest(const QByteArray& bytes) {
  return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QString EncodeIdentifier(const QByteArray& bytes) {
  return QString::fromLatin1(
      bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

QString CurrentDateText() {
  const QDateTime now = QDateTime::currentDateTime();
  const int minutes = now.offsetFromUtc() / 60;
  const QString date = QLocale::c().toString(now, QStringLiteral("ddd, d MMM yyyy HH:mm:ss "));
  return date + (minutes < 0 ? u'-' : u'+') +
         QStringLiteral("%1%2")
             .arg(qAbs(minutes) / 60, 2, 10, QLatin1Char('0'))
             .arg(qAbs(minutes) % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace vorn::MimeCodec
