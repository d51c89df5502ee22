#pragma once

#include <QString>
#include <QStringList>

#include "objects/credentials.h"
#include "objects/security.h"

namespace vorn {

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
