#pragma once

#include <QString>

#include "present/page_tags.h"
#include "storage/context.h"

namespace vorn {

/// Writes the pages that show folders. Made once; holds the tag table and the default template.
class MessageListPages {
 public:
  explicit MessageListPages(Context& context);

  /// Runs a folder's query, fills its template one message at a time and writes the page, bytes of
  /// code page 932, to a new ".html" file. `page` counts from 1. `before` and `next` tell whether
  /// messages were skipped for earlier pages and whether more follow. With `search` only messages
  /// whose subject or addresses hold that text are shown. Returns the file's path, or
  /// an empty string when nothing was written; the session's `LastError` may say why.
  QString CreateMessageListPage(const QString& folder, qint32 page, bool& before, bool& next,
                                const QString& search = {});

 private:
  QString Write(const QByteArray& bytes, const QString& pageFolder);

  Context& context_;
  PageTagTable tags_;
  QString template_;
};

}  // namespace vorn
