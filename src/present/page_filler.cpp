#include "present/page_filler.h"

#include "mail/codec/charset/code_page_932.h"
#include "mail/store/mail_row.h"
#include "present/link_command.h"
#include "present/page_content.h"
#include "storage/ui.h"

namespace vorn {

PageFiller::PageFiller(const PageTagTable& tags, const QByteArray& pageTemplate,
                       const RecordsetPtr& rows, const PageContent& content, qint64 lost)
    : tags_(tags),
      template_(pageTemplate),
      rows_(rows),
      content_(content),
      passed_(lost),
      lost_(lost) {}

QByteArray PageFiller::Run() {
  qint32 remaining = content_.rowsPerPage >= 1 ? content_.rowsPerPage : -1;
  while (mail_ != MailState::After && remaining != 0) {
    at_ = pending_ = rowStart_;
    const bool hasRow = !rows_->Eof();
    if (!Scan()) return output_;
    if (mail_ == MailState::Before) break;
    // A row template that neither ends nor asks for data would go on for ever.
    if (mail_ == MailState::Inside && !hasRow) break;
    if (mail_ == MailState::Inside) {
      NextRow();
      if (remaining > 0) --remaining;
    }
  }
  hasNext_ = !rows_->Eof();
  WriteLost();
  if (pending_ < template_.size() - 1) output_ += template_.sliced(pending_);
  return output_;
}

// Once a page of the file could not be read, the rows that are being walked give nothing more.
void PageFiller::NextRow() {
  ++passed_;
  rows_->MoveNext();
  if (!rows_->Eof() || !rows_->Failed() || !content_.rowsAfter) return;
  rows_->End();
  const RowsBehind rest = content_.rowsAfter(passed_);
  lost_ += rest.rows == nullptr ? 1 : rest.skipped - passed_;
  passed_ = rest.skipped;
  if (rest.rows != nullptr) rows_ = rest.rows;
}

void PageFiller::WriteLost() {
  if (lost_ == 0) return;
  WriteText(Ui::tr("<P>読み込めないメッセージがあります（%1通以上）。データベースファイルが"
                   "壊れています。</P>")
                .arg(lost_));
}

// False when a data tag met no row, which ends the page there.
bool PageFiller::Scan() {
  for (; at_ < template_.size(); ++at_) {
    if (template_[at_] != '<') continue;
    for (const PageTag& tag : tags_) {
      if (MatchTagPattern(template_, tag.section, at_) && !Handle(tag)) return false;
    }
  }
  return true;
}

void PageFiller::WritePending() {
  output_ += template_.sliced(pending_, at_ - pending_);
}

void PageFiller::WriteText(const QString& text) {
  output_ += ToCodePage932(text);
}

bool PageFiller::Handle(const PageTag& tag) {
  const TagRole role = tag.definition->role;
  const qsizetype afterTag = at_ + tag.section.length;
  if (role == TagRole::Rows) {
    HandleMail(afterTag);
    pending_ = afterTag;
    return true;
  }
  if (role == TagRole::Link) return HandleLink(tag, afterTag);
  WritePending();
  pending_ = afterTag;
  if (role == TagRole::Row && rows_->Eof()) return false;
  WriteText(TagText(*tag.definition, {MailRow(*rows_), content_}, TakeChildren(tag)));
  return true;
}

void PageFiller::HandleMail(qsizetype afterTag) {
  if (mail_ == MailState::Before) {
    WritePending();
    mail_ = MailState::Inside;
    rowStart_ = afterTag;
  } else if (!rows_->Eof()) {
    WritePending();
  } else {
    mail_ = MailState::After;
  }
}

QList<const ChildTag*> PageFiller::TakeChildren(const PageTag& tag) {
  QList<const ChildTag*> children;
  const FoundChildTags found = ReadChildTags(template_, tag, pending_);
  pending_ = found.end;
  for (const qsizetype index : found.indices) {
    children.append(&tag.definition->children[static_cast<size_t>(index)]);
  }
  return children;
}

bool PageFiller::HandleLink(const PageTag& tag, qsizetype afterTag) {
  if (link_ == LinkState::Closed) {
    if (rows_->Eof()) return false;
    WritePending();
    pending_ = afterTag;
    const QList<const ChildTag*> children = TakeChildren(tag);
    // Only what was received can be answered or forwarded.
    if (!children.isEmpty() && !PageRow{MailRow(*rows_), content_}.IsReceived()) {
      link_ = LinkState::Suppressed;
      return true;
    }
    const char16_t* word = children.isEmpty() ? link_word::kShow : children.last()->key;
    link_ = LinkState::Open;
    WriteText(QStringLiteral("<A HREF = \"") + LinkStart(word) + rows_->Serial().Text() +
              QStringLiteral("\">"));
    return true;
  }
  if (link_ == LinkState::Open) {
    WritePending();
    WriteText(QStringLiteral("</A>"));
  }
  pending_ = afterTag;
  link_ = LinkState::Closed;
  return true;
}

}  // namespace vorn
