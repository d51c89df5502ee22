#pragma once

#include "objects/endpoint.h"

namespace vorn {

/// How mail of an address is received by POP3 and sent by SMTP: nothing without a host, and without
/// the password.
struct MailServers {
  Endpoint receiving;
  Endpoint sending;

  bool IsEmpty() const { return receiving.host.isEmpty() && sending.host.isEmpty(); }
};

}  // namespace vorn
