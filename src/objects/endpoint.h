#pragma once

#include <QString>
#include <QStringList>

#include "objects/security.h"

namespace vorn {

/// Who logs in at a server, and what proves it. Handed on whole: each way to log in takes from it
/// what it needs.
struct Credentials {
  QString user = {};
  QString password = {};
};

/// A server of mail and the login there. Without a host there is none.
struct Endpoint {
  QString host = {};
  int port = 0;
  Security security = Security::None;
  Credentials who = {};
  /// Certificates, by their SHA-256 in hexadecimal, that the user trusts for this server although
  /// they cannot be verified (`TrustedCertificates`).
  QStringList trustedFingerprints = {};
};

}  // namespace vorn
