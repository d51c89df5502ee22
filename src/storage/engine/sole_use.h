#pragma once

#include <QString>

struct sqlite3;

namespace vorn {

/// Nobody else's connection to a database file while it lasts: asked by the engine's own locks (see
/// its "File Locking And Concurrency"), which an open connection holds in every program and which
/// end with a program's death. Others that open the file meanwhile wait.
class SoleUse {
 public:
  explicit SoleUse(const QString& path);
  ~SoleUse();
  SoleUse(const SoleUse&) = delete;
  SoleUse& operator=(const SoleUse&) = delete;

  /// False when some connection, of this program or another one, has the file open. True also
  /// where the file cannot be locked, since it can be read alone.
  bool IsTaken() const { return taken_; }

 private:
  sqlite3* handle_ = nullptr;
  bool taken_ = true;
};

}  // namespace vorn
