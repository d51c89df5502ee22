#pragma once

#include <QHash>
#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/databases.h"

namespace vorn {

/// How a message was refused.
struct SendRefusal {
  QString route;  ///< how it was sent, so that a mended account counts as another try
  QString tried;  ///< when, in the stored form; empty for what earlier versions noted
  QString reply;  ///< the server's words, one recipient a line where it refused those
};

/// Which unsent messages of a mail database their servers have refused for good (a reply of 5yz to
/// a recipient or to the text, RFC 5321 section 4.2.1). Table `send_refusal`; the file forgets one
/// by itself when the message is sent, waits anew or goes, not while it is edited.
class SendRefusals {
 public:
  /// `file` is the stored path of the mail database.
  SendRefusals(Context& context, QString file) : context_(context), file_(std::move(file)) {}

  Result<> Note(const SerialId& serialId, const SendRefusal& refusal);
  /// Of what is not in the dust bin, by serial identifier.
  Result<QHash<SerialId, SendRefusal>> All();

 private:
  Context& context_;
  QString file_;
};

}  // namespace vorn
