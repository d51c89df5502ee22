#pragma once

#include <QString>

namespace vorn {

/// A lock that belongs to an open file, so that the system releases it when its holder dies. Two
/// locks of one path exclude each other within a program too.
class FileLock {
 public:
  enum class Kind { Shared, Exclusive };
  enum class Result { Taken, Held, Failed };  ///< `Held`: by somebody else, in a way that excludes

  /// `path` is the lock's own file, which is made when needed and stays.
  explicit FileLock(QString path) : path_(std::move(path)) {}
  ~FileLock() { Release(); }
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  /// Takes the lock, or changes its kind, waiting up to `waitMs` for others. A change that fails
  /// leaves nothing held.
  Result Take(Kind kind, int waitMs);
  void Release();
  bool IsHeld() const { return held_; }

  /// Writes into the lock's file who holds it; for the one that holds it alone.
  void WriteHolder();
  /// What the last lone holder wrote; empty when it wrote nothing.
  QString Holder() const;

 private:
  bool OpenFile();
  Result TryTake(Kind kind);

  QString path_;
  qintptr handle_ = -1;
  bool held_ = false;
};

}  // namespace vorn
