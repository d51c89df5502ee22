#pragma once

#include <QString>
#include <QStringList>

namespace vorn {

/// The exceptions that the user made for servers whose certificates cannot be verified, as an
/// account keeps them: words of a server's name, "=" and the SHA-256 of its certificate in
/// hexadecimal, separated by blanks. An exception counts for that server and certificate alone.
class TrustedCertificates {
 public:
  explicit TrustedCertificates(const QString& stored = {});

  /// The fingerprints trusted for a server.
  QStringList For(const QString& server) const;
  void Add(const QString& server, const QString& fingerprint);
  void RemoveFor(const QString& server);
  QString Stored() const;

 private:
  QStringList words_;
};

}  // namespace vorn
