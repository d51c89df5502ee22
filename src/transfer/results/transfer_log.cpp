#include "transfer/results/transfer_log.h"

#include "storage/ui.h"

namespace vorn {

void TransferLog::Add(const QString& text) {
  if (job_ != nullptr) SessionRecord(job_).AddLog(text);
}

// What the user ended himself is no failure.
void TransferLog::AddError(PopError code, const QString& text) {
  if (code == PopError::Cancelled) return Add(text);
  if (job_ == nullptr) {
    ++counts_.errors;
    return;
  }
  AddError(job_, text);
  if (code == PopError::Login) SessionRecord(job_).RefuseLogin();
}

void TransferLog::AddError(SessionRecord record, const QString& text) {
  ++counts_.errors;
  record.AddError(text);
}

void TransferLog::StoreFailed(const QString& sentence, const StorageError& reason) {
  AddError(PopError::Store, reason.Behind(sentence).text);
}

void TransferLog::ListingFailed(const StorageError& reason) {
  StoreFailed(Ui::tr("サーバーにあるメッセージの記録を読み書きできません。"), reason);
}

}  // namespace vorn
