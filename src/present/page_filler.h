#pragma once

#include <QByteArray>
#include <QList>

#include "present/page_tags.h"
#include "storage/engine/recordset.h"

namespace vorn {

/// One pass of a template over the rows of a result set. The template is scanned byte by byte; at
/// each section tag the text before it is written, then what the tag stands for. What stands
/// between two "<+MAIL>" is scanned once per row. `lost` rows before the first one cannot be read.
class PageFiller {
 public:
  PageFiller(const PageTagTable& tags, const QByteArray& pageTemplate, const RecordsetPtr& rows,
             const PageContent& content, qint64 lost = 0);

  /// Fills the page from the current row on. The result may be empty. What cannot be read is told
  /// in its place.
  QByteArray Run();
  /// Whether rows follow those that the page shows.
  bool HasNext() const { return hasNext_; }

 private:
  enum class MailState { Before, Inside, After };
  enum class LinkState { Closed, Suppressed, Open };

  bool Scan();
  void NextRow();
  void WriteLost();
  bool Handle(const PageTag& tag);
  void WritePending();
  void WriteText(const QString& text);

  void HandleMail(qsizetype afterTag);
  bool HandleLink(const PageTag& tag, qsizetype afterTag);
  QList<const ChildTag*> TakeChildren(const PageTag& tag);

  const PageTagTable& tags_;
  const QByteArray& template_;
  RecordsetPtr rows_;
  const PageContent& content_;
  QByteArray output_;
  qint64 passed_ = 0;  // rows of the page
  qint64 lost_ = 0;    // of them, those that cannot be read
  bool hasNext_ = false;

  MailState mail_ = MailState::Before;
  LinkState link_ = LinkState::Closed;
  qsizetype rowStart_ = 0;  // of the row template
  qsizetype pending_ = 0;   // the first byte not yet written
  qsizetype at_ = 0;
};

}  // namespace vorn
