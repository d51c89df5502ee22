#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// The profile's mail files that a message on a server may be stored in already.
class KnownFiles {
 public:
  explicit KnownFiles(Context& context) : context_(context) {}

  /// Takes those of now, and forgets what earlier ones had.
  void Begin();
  const QStringList& Paths() const { return paths_; }

  struct Holders {
    QStringList files;      ///< that have a message of that name
    bool isErased = false;  ///< it was stored, in another one, and erased for good
  };
  /// Who has a message of that name. Fails when one that is there cannot be asked; one that does
  /// not open at all holds nothing that could be received twice: its user was asked about it
  /// before.
  Result<Holders> Ask(const QString& messageId);
  /// Whether one has a message of that name with so many bytes.
  bool HasSize(const QString& messageId, qint64 bytes);
  /// Whether any message with identifiers of that scope had no name of its own when it was stored:
  /// what gets one now may be one of them. True as well when one that opens cannot be asked.
  bool HasUnnamed(const QString& scope);

 private:
  Result<bool> WasErased(const QString& file, const QString& messageId);

  Context& context_;
  QStringList paths_;
  std::optional<bool> hasUnnamed_;  // once it was asked
  QHash<QString, bool> hasErased_;  // by file
};

}  // namespace vorn
