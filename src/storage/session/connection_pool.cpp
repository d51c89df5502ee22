#include "storage/session/connection_pool.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QRandomGenerator>

#include "storage/engine/connection.h"
#include "storage/files/file_identity.h"

namespace vorn {
namespace {

QByteArray SaltedHash(const QByteArray& salt, const QString& password) {
  return QCryptographicHash::hash(salt + password.toUtf8(), QCryptographicHash::Sha256);
}

QByteArray NewSalt() {
  QByteArray salt(16, Qt::Uninitialized);
  auto* words = reinterpret_cast<quint32*>(salt.data());
  QRandomGenerator::system()->fillRange(words, salt.size() / 4);
  return salt;
}

}  // namespace

// A path that leads to another file by now is found out by the file's identity.
QString ConnectionPool::Canonical(const QString& path) const {
  QString& canonical = canonical_[path];
  if (canonical.isEmpty()) canonical = QFileInfo(path).canonicalFilePath();
  return canonical;
}

Result<std::shared_ptr<Connection>> ConnectionPool::Get(const QString& path,
                                                        const QString& password) {
  if (auto parked = Take(path, password)) return parked;
  return Connection::Open(path, password, Connection::Mode::Existing);
}

std::shared_ptr<Connection> ConnectionPool::Take(const QString& path, const QString& password) {
  const auto found = parked_.find(Canonical(path));
  if (found == parked_.end()) return nullptr;
  if (found->identity != FileIdentity(path)) {
    parked_.erase(found);  // the file was replaced behind our back
    canonical_.clear();
    return nullptr;
  }
  if (found->passwordHash != SaltedHash(found->salt, password)) return nullptr;
  return found->connection;
}

void ConnectionPool::Park(const QString& path, const QString& password,
                          std::shared_ptr<Connection> connection) {
  const QString canonical = Canonical(path);
  if (canonical.isEmpty()) return;
  const auto found = parked_.constFind(canonical);
  if (found != parked_.cend() && found->connection == connection) return;
  const QByteArray salt = NewSalt();
  parked_.insert(canonical,
                 {std::move(connection), FileIdentity(path), salt, SaltedHash(salt, password)});
}

std::shared_ptr<Connection> ConnectionPool::Peek(const QString& path) const {
  return parked_.value(Canonical(path)).connection;
}

void ConnectionPool::Drop(const QString& path) {
  if (path.isEmpty()) {
    parked_.clear();
  } else {
    parked_.remove(Canonical(path));
  }
}

}  // namespace vorn
