#pragma once

#include <QString>

#include "mail/open_mode.h"
#include "objects/window_request.h"
#include "storage/databases.h"

namespace vorn {

/// A request for a message window: which message, how it is opened and where it is stored.
struct MailRequest {
  OpenMode mode = OpenMode::Show;
  SerialId serialId = {};
  bool isNew = false;
  DatabaseKind database = DatabaseKind::MailByPath;
  QString file = {};
  QString password = {};
  RequestShow show = kShowModeless;
  bool autoSend = false;
  SerialId event = {};
  QString mailto = {};  ///< for a new message: a "mailto:" address that it begins with

  /// A new message to be written.
  static MailRequest New(const QString& mailto = {}) {
    return {.isNew = true, .database = DatabaseKind::Mail, .mailto = mailto};
  }
  /// A message to be shown, or to be answered by a new one.
  static MailRequest Of(const SerialId& serialId, OpenMode mode = OpenMode::Show) {
    return {.mode = mode, .serialId = serialId, .isNew = mode != OpenMode::Show};
  }

  bool operator==(const MailRequest&) const = default;
};

}  // namespace vorn
