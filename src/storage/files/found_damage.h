#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <utility>

namespace vorn {

// What is damaged, as connections, findings and notes call it.

/// Anything in the file but what follows.
inline const QString kDamagedFile = QStringLiteral("file");
/// The write-ahead log beside it.
inline const QString kDamagedLog = QStringLiteral("log");
/// With the number of an entry of long binary data: that entry alone.
inline const QString kDamagedSource = QStringLiteral("source ");
/// Nothing, but the whole file is older than it should be.
inline const QString kOlderFile = QStringLiteral("older");

/// What reading has shown to be damaged and nobody has kept yet (`KeepDamage`), by the file's path.
class FoundDamage {
 public:
  /// Adds what was found, or puts back what could not be kept; no parts are none.
  void Add(const QString& path, const QSet<QString>& parts) {
    if (!parts.isEmpty()) found_[path] += parts;
  }
  bool IsEmpty() const { return found_.isEmpty(); }
  QStringList Files() const { return found_.keys(); }
  QHash<QString, QSet<QString>> Take() { return std::exchange(found_, {}); }
  QSet<QString> TakeOf(const QString& path) { return found_.take(path); }

 private:
  QHash<QString, QSet<QString>> found_;
};

}  // namespace vorn
