#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// What a file from a mail is by its name and by its content.
struct FileKind {
  /// Whether it may be opened without a question: its name is that of a kind of document that does
  /// nothing by itself, and its content is of the same kind.
  bool isHarmless = false;
  QString byName;     ///< in words for the user
  QString byContent;  ///< likewise
};

/// `bytes` are the whole content. Never fails: what is not known is not harmless.
FileKind KindOfFile(const QString& name, const QByteArray& bytes);

}  // namespace vorn
