#pragma once

#include <QHash>
#include <QString>

#include "mail/search/folder_rows.h"
#include "present/page_tags.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

struct PageContent;
struct RowsBehind;

/// A page that was made.
template <typename T>
struct MadePage {
  T content;
  bool hasBefore = false;  ///< messages were skipped for earlier pages
  bool hasNext = false;    ///< more follow
};

/// Writes the pages that show folders. Made once; holds the tag table and the default template.
class MessageListPages {
 public:
  explicit MessageListPages(Context& context);

  /// Runs a folder's query and fills its template one message at a time. The oldest message comes
  /// first, or with the setting "NewestFirst" the newest. `page` counts from 1. With `search` only
  /// messages that it finds are shown. Returns the page, bytes of code page 932; a page without any
  /// is a failure.
  Result<MadePage<QByteArray>> FolderPage(const SerialId& folder, qint32 page,
                                          const FolderSearch& search = {});
  /// Whether the page that was made last shows no message.
  bool HasNone() const { return hasNone_; }
  /// Writes that page to a new ".html" file in the layout's page folder. Returns the file's path.
  Result<MadePage<QString>> CreateMessageListPage(const SerialId& folder, qint32 page,
                                                  const FolderSearch& search = {});

  /// The first page of a folder, and not long, with another template than its own.
  Result<QByteArray> Preview(const SerialId& folder, const QString& html);

  /// The number of a folder's pages, at least 1, or 0 when the folder cannot be read. Counting
  /// takes its time in a long folder: without `count` it is 0 unless the number is known already.
  qint32 CountPages(const SerialId& folder, const FolderSearch& search = {}, bool count = true);
  /// How many messages a search finds in a folder; nothing when they cannot be counted.
  std::optional<qint64> CountFound(const SerialId& folder, const FolderSearch& search);
  /// The number of the page on which the row stands before which there are so many.
  qint32 PageOf(qint64 rowsBefore) const;
  /// See `FolderRows::Question`; empty when there is no such folder.
  QString Question(const SerialId& folder, const FolderSearch& search);
  /// The question for the identifiers of all messages among which a search looks, the newest first;
  /// empty when there is no such folder.
  QString ScopeQuestion(const SerialId& folder, const FolderSearch& search) const;
  /// Takes the answer to `Question`, as serial identifiers.
  void TakeAnswer(const SerialId& folder, const FolderSearch& search, const SerialIds& serialIds);
  /// Forgets what is known of a folder's rows, as when it was asked for before a change.
  void Forget(const SerialId& folder, const FolderSearch& search);
  /// Finds out, for some milliseconds, where the pages of a long folder begin, so that each of them
  /// is made without delay. False when there is nothing more to find out. For idle moments.
  bool Explore(const SerialId& folder, const FolderSearch& search = {});

 private:
  Result<MadePage<QByteArray>> Fill(const QString& html, const PageContent& content, qint32 page,
                                    FolderRows* rows);
  RowsBehind RowsAfter(FolderRows& rows, qint64 first, qint64 limit, qint64 skipped);
  FolderRows* RowsOf(const SerialId& folder, const FolderSearch& search);
  Result<QString> Write(const QByteArray& bytes, const QString& pageFolder);

  Context& context_;
  PageTagTable tags_;
  QString template_;
  bool hasNone_ = false;
  QHash<QString, FolderRows> rows_;  // by the folder's statement and order
};

}  // namespace vorn
