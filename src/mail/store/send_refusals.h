#pragma once

#include <QHash>
#include <QString>

#include "storage/context.h"
#include "storage/databases.h"
#include "storage/result.h"

namespace vorn {

/// Which waiting messages of a mail database their servers have refused for good (a reply of 5yz to
/// a recipient or to the text, RFC 5321 section 4.2.1). Table `send_refusal`; the file forgets one
/// by itself when the message is stored anew, waits no longer or goes.
class SendRefusals {
 public:
  /// `file` is the stored path of the mail database.
  SendRefusals(Context& context, QString file) : context_(context), file_(std::move(file)) {}

  /// Notes one; `route` tells how it was sent, so that a mended account counts as another try.
  Result<> Note(const QString& serialId, const QString& route);
  /// The routes by which messages were refused, by serial identifier.
  QHash<QString, QString> Routes();

 private:
  Context& context_;
  QString file_;
};

}  // namespace vorn
