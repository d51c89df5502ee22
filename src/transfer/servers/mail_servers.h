#pragma once

#include <QString>

#include "transfer/protocol/mail_session.h"

namespace vorn {

/// How mail of an address is received by POP3 or sent by SMTP; nothing when `host` is empty.
struct MailServer {
  QString host;
  int port = 0;
  Security security = Security::Tls;
  QString user;
};

struct MailServers {
  MailServer receiving;
  MailServer sending;

  bool IsEmpty() const { return receiving.host.isEmpty() && sending.host.isEmpty(); }
};

}  // namespace vorn
