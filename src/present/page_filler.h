#pragma once

#include <QByteArray>
#include <QDate>
#include <QSet>
#include <QStringList>
#include <functional>

#include "present/page_tags.h"
#include "storage/disk.h"
#include "storage/recordset.h"

namespace vorn {

/// What a page is filled with besides its rows.
struct PageContent {
  DiskPtr folder;
  QStringList textTypes;
  QSet<QString> doubtful;  ///< messages of which nobody knows whether they were sent
  QSet<QString> refused;   ///< messages that wait, and that their servers do not take
  bool escape = false;     ///< HTML-escape what mail contributes
  qint32 rowsPerPage = 0;  ///< 0: all
  bool withHtml = false;   ///< HTML stands among the texts
  QDate today;             ///< of which short times show the clock alone
  /// The page's rows without the first `skipped` ones; null when none of them can be read.
  /// `skipped` grows by those that have to be passed over for that.
  std::function<RecordsetPtr(qint64& skipped)> rowsAfter;
};

/// One pass of a template over the rows of a result set. The template is scanned byte by byte; at
/// each section tag the text before it is written, then what the tag stands for. What stands
/// between two "<+MAIL>" is scanned once per row. `lost` rows before the first one cannot be read.
class PageFiller {
 public:
  PageFiller(PageTagTable& tags, const QByteArray& pageTemplate, const RecordsetPtr& rows,
             const PageContent& content, qint64 lost = 0);

  /// Fills the page from the current row on. The result may be empty. What cannot be read is told
  /// in its place.
  QByteArray Run(bool& next);

 private:
  enum class MailState { Before, Inside, After };
  enum DialogState { kDialogClosed = 0, kDialogSuppressed = 1, kDialogOpen = 2 };

  bool Scan();
  void NextRow();
  void WriteLost();
  bool Handle(int tag);
  void WritePending();
  void WriteText(const QString& text);
  void WriteMail(const QString& text);

  void HandleMail();
  bool HandleDialog();
  void HandleMailAddress();
  void HandleFlag();
  void HandleFolder();
  void WriteSubject();
  void WriteTimeStamp();
  void WriteSize();
  bool IsReceived() const;
  void WritePreview();
  QStringList TakeChildren(int tag);

  PageTagTable& tags_;
  const QByteArray& template_;
  RecordsetPtr rows_;
  const PageContent& content_;
  QByteArray output_;
  qint64 passed_ = 0;  // rows of the page
  qint64 lost_ = 0;    // of them, those that cannot be read

  MailState mail_ = MailState::Before;
  qsizetype rowStart_ = 0;  // of the row template
  qsizetype pending_ = 0;   // the first byte not yet written
  qsizetype at_ = 0;
};

}  // namespace vorn
