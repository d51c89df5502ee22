#pragma once

#include <QString>

#include "storage/context.h"
#include "storage/result.h"

namespace vorn {

/// The choices of "InMailServerProtocol" by their stored numbers.
enum class InProtocol { Pop3 = 0, Apop = 1 };

/// What makes an account, for callers that have no window: the values of its pages.
struct AccountValues {
  QString name;
  QString address;
  QString display;
  QString inServer;
  int inPort = 110;
  QString inUser;
  QString inPassword;
  InProtocol inProtocol = InProtocol::Pop3;
  int inSecurity = 0;  ///< 0 none, 1 STARTTLS, 2 TLS
  bool deleteOnServer = false;
  QString outServer;  ///< empty: the incoming one
  int outPort = 25;
  int outSecurity = 0;
  QString outUser;  ///< empty: no authentication
  QString outPassword;
  bool isDefault = false;
};

/// Whether a server can listen there (RFC 6335); and the sentence for the user when not.
constexpr bool IsPort(int port) {
  return port >= 1 && port <= 65535;
}
QString PortWords();

/// What is wrong with the values, as a sentence for the user; empty when nothing is.
QString ValidateAccount(const Context& context, const AccountValues& values);

/// Stores a new enabled account.
Result<DiskPtr> CreateAccount(Context& context, const AccountValues& values);

}  // namespace vorn
