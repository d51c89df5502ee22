#include "transfer/plan/session_record.h"

#include "transfer/plan/append_line.h"

namespace vorn {

void SessionRecord::Begin() {
  for (const QString& key : {kLog, kReceived, kRefused, kRefusedForGood}) job_->Let(key, QString());
  for (const QString& key : {kError, kLoginRefused, kDoubtful}) job_->Let(key, false);
}

void SessionRecord::AddLog(const QString& line) {
  AppendLine(*job_, kLog, line);
}

void SessionRecord::AddError(const QString& line) {
  AddLog(line);
  job_->Let(kError, true);
}

void SessionRecord::AddReceived(const SerialIds& messages) {
  AppendLine(*job_, kReceived, LinesOf(messages));
}

void SessionRecord::AddRefused(const QString& recipient) {
  AppendLine(*job_, kRefused, recipient);
}

}  // namespace vorn
