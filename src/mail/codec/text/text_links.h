#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace vorn {

/// An address in a text, and where it leads.
struct TextLink {
  qsizetype first = 0;
  qsizetype length = 0;
  QUrl url;  ///< "http", "https" or "mailto"
};

/// The addresses of pages and mailboxes in a line of text, in their order. What closes a sentence
/// or a bracket around one does not belong to it.
QList<TextLink> FindTextLinks(const QString& line);

}  // namespace vorn
