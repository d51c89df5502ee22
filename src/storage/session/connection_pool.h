#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <memory>

#include "storage/base/result.h"

namespace vorn {

class Connection;

/// Connections that were closed but stay warm: deriving a file's key takes some 30 ms, and the
/// system opens and closes its databases around every small task. A parked connection is handed
/// out only for the same file, still the same one on disk, and the same password.
class ConnectionPool {
 public:
  /// The connection to the file at `path`: the parked one, or one that is made now.
  Result<std::shared_ptr<Connection>> Get(const QString& path, const QString& password);
  void Park(const QString& path, const QString& password, std::shared_ptr<Connection> connection);
  /// The connection parked for `path`, which stays parked; for work that needs no password.
  std::shared_ptr<Connection> Peek(const QString& path) const;
  /// Really closes what is parked for `path`, or everything when it is empty.
  void Drop(const QString& path = {});

 private:
  struct Parked {
    std::shared_ptr<Connection> connection;
    QString identity;
    QByteArray salt;
    QByteArray passwordHash;
  };

  std::shared_ptr<Connection> Take(const QString& path, const QString& password);
  /// The path without symbolic links; kept, since every level costs a question to the system.
  QString Canonical(const QString& path) const;

  QHash<QString, Parked> parked_;  // by canonical path
  mutable QHash<QString, QString> canonical_;
};

}  // namespace vorn
