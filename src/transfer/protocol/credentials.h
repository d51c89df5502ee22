#pragma once

#include <QString>

namespace vorn {

/// Who logs in, and what proves it. Sessions hand it on whole: each way to log in takes from it
/// what it needs.
struct Credentials {
  QString user;
  QString password;
};

}  // namespace vorn
