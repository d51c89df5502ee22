#include "objects/trusted_certificates.h"

namespace vorn {
namespace {

QString Prefix(const QString& server) {
  return server.trimmed().toLower() + u'=';
}

}  // namespace

TrustedCertificates::TrustedCertificates(const QString& stored)
    : words_(stored.split(u' ', Qt::SkipEmptyParts)) {}

QStringList TrustedCertificates::For(const QString& server) const {
  const QString prefix = Prefix(server);
  QStringList fingerprints;
  for (const QString& word : words_) {
    if (word.startsWith(prefix)) fingerprints.append(word.sliced(prefix.size()));
  }
  return fingerprints;
}

void TrustedCertificates::Add(const QString& server, const QString& fingerprint) {
  const QString word = Prefix(server) + fingerprint;
  if (!words_.contains(word)) words_.append(word);
}

void TrustedCertificates::RemoveFor(const QString& server) {
  words_.removeIf(
      [prefix = Prefix(server)](const QString& word) { return word.startsWith(prefix); });
}

QString TrustedCertificates::Stored() const {
  return words_.join(u' ');
}

}  // namespace vorn
