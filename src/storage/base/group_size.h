#pragma once

#include <QElapsedTimer>
#include <QtGlobal>

namespace vorn {

/// How much has been gathered to be written together (see `TransactionGroup`). Nobody else
/// can write meanwhile, so that a group ends when it has lasted a moment or has become large.
class GroupSize {
 public:
  /// A message of so many bytes is about to be gathered.
  void Add(qint64 bytes) {
    if (messages_++ == 0) age_.start();
    bytes_ += bytes;
  }
  bool IsFull() const {
    return messages_ >= kMessages || bytes_ >= kBytes || (messages_ > 0 && age_.hasExpired(kMs));
  }
  /// It was written, or undone.
  void Clear() { messages_ = bytes_ = 0; }

  static constexpr int kMs = 200;

 private:
  static constexpr qint64 kMessages = 1000;
  static constexpr qint64 kBytes = 2 * 1024 * 1024;

  qint64 messages_ = 0;
  qint64 bytes_ = 0;
  QElapsedTimer age_;
};

}  // namespace vorn
