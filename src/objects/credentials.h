#pragma once

#include <QLatin1String>
#include <QString>

#include "storage/ui.h"

namespace vorn {

/// Who logs in at a server, and what proves it. Handed on whole: each way to log in takes from it
/// what it needs.
struct Credentials {
  QString user = {};
  QString password = {};

  /// Whether there is anything that proves the user.
  bool IsKnown() const;
};

/// A part of the credentials, wherever they are stored, entered or given.
struct CredentialPart {
  QString Credentials::*text;
  /// Behind the server's name in an account's bag; in small letters, an option of `vornctl`.
  QLatin1String key;
  const char* label;  ///< of its box, to translate
  bool isSecret;      ///< proves the user, and is shown to nobody
  bool isAsked;       ///< typed by the user in each run where it is not to be stored; all else is
};

/// Every part: first who it is, then what proves it.
inline constexpr CredentialPart kCredentialParts[] = {
    {.text = &Credentials::user,
     .key = QLatin1String("User"),
     .label = QT_TRANSLATE_NOOP("vorn::Ui", "ユーザー名(&U)"),
     .isSecret = false,
     .isAsked = false},
    {.text = &Credentials::password,
     .key = QLatin1String("Password"),
     .label = QT_TRANSLATE_NOOP("vorn::Ui", "パスワード(&W)"),
     .isSecret = true,
     .isAsked = true},
};

inline bool Credentials::IsKnown() const {
  for (const CredentialPart& part : kCredentialParts) {
    if (part.isSecret && !(this->*part.text).isEmpty()) return true;
  }
  return false;
}

}  // namespace vorn
