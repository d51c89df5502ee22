#include "present/page_filler.h"

#include <algorithm>

#include "mail/codec/address.h"
#include "mail/codec/code_page_932.h"
#include "mail/codec/flag_string.h"
#include "mail/codec/message_code.h"
#include "mail/codec/text_extraction.h"
#include "mail/mail_store.h"
#include "objects/any_object.h"
#include "storage/shown_text.h"
#include "storage/time_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString& NameOf(const AddressEntry& entry) {
  return entry.displayName.isEmpty() ? entry.address : entry.displayName;
}

// In its usual and its wide forms.
bool HasAt(const QString& text) {
  return text.contains(u'@') || text.contains(u'＠') || text.contains(u'﹫');
}

// A name that looks like another address, or that nobody sees, does not hide the one that the
// message came from.
QString ShownSender(const AddressEntry& entry) {
  const QString name = WithoutHidden(entry.displayName).simplified();
  if (!HasVisible(name)) return entry.address;
  QString others = name;
  others.remove(entry.address, Qt::CaseInsensitive);
  // In front, where a narrow column does not cut it off.
  return HasAt(others) ? entry.address + QStringLiteral(" (") + name + u')' : name;
}

QString Unreadable() {
  return Ui::tr("【読み込めません】");
}
constexpr qsizetype kPreviewBytes = 100;

// The marks that turn letters round, whichever they are, as visible signs.
QString WithoutTurns(const QString& text) {
  const bool turns = std::any_of(text.begin(), text.end(), [](QChar c) {
    return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
  });
  return turns ? ShownInLine(text) : text;
}

// Escaped, and where its letters or marks run from right to left for itself: nothing around it is
// turned round with it. An address always begins at the left.
QString Isolated(const QString& text) {
  const bool runsBack = std::any_of(text.begin(), text.end(), [](QChar c) {
    return c.direction() == QChar::DirR || c.direction() == QChar::DirAL ||
           (c.category() == QChar::Other_Format && c.direction() != QChar::DirBN);
  });
  if (!runsBack) return text.toHtmlEscaped();
  return (HasAt(text) ? QStringLiteral("<bdi dir=\"ltr\">") : QStringLiteral("<bdi>")) +
         text.toHtmlEscaped() + QStringLiteral("</bdi>");
}

}  // namespace

PageFiller::PageFiller(PageTagTable& tags, const QByteArray& pageTemplate, const RecordsetPtr& rows,
                       const PageContent& content, qint64 lost)
    : tags_(tags),
      template_(pageTemplate),
      rows_(rows),
      content_(content),
      passed_(lost),
      lost_(lost) {
  tags_[kTagDialog].section.key = static_cast<int>(kDialogClosed);
}

QByteArray PageFiller::Run(bool& next) {
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
  next = !rows_->Eof();
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
  qint64 skipped = passed_;
  const RecordsetPtr rest = content_.rowsAfter(skipped);
  lost_ += rest == nullptr ? 1 : skipped - passed_;
  passed_ = skipped;
  if (rest != nullptr) rows_ = rest;
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
    for (int tag = 0; tag < kPageTagCount; ++tag) {
      if (MatchTagPattern(template_, tags_[static_cast<size_t>(tag)].section, at_) &&
          !Handle(tag)) {
        return false;
      }
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

void PageFiller::WriteMail(const QString& text) {
  WriteText(content_.escape ? WithoutTurns(text).toHtmlEscaped() : text);
}

bool PageFiller::Handle(int tag) {
  const qsizetype afterTag = at_ + tags_[static_cast<size_t>(tag)].section.length;
  if (tag == kTagMail) {
    HandleMail();
    pending_ = afterTag;
    return true;
  }
  if (tag == kTagDialog) return HandleDialog();
  WritePending();
  pending_ = afterTag;
  if (tag == kTagFolder) {
    HandleFolder();
    return true;
  }
  if (rows_->Eof()) return false;
  switch (tag) {
    case kTagSubject:
      WriteSubject();
      break;
    case kTagTimeStamp:
      WriteTimeStamp();
      break;
    case kTagMailAddress:
      HandleMailAddress();
      break;
    case kTagFlag:
      HandleFlag();
      break;
    case kTagSize:
      WriteSize();
      break;
    default:
      WritePreview();
  }
  return true;
}

void PageFiller::HandleMail() {
  if (mail_ == MailState::Before) {
    WritePending();
    mail_ = MailState::Inside;
    rowStart_ = at_ + tags_[kTagMail].section.length;
  } else if (!rows_->Eof()) {
    WritePending();
  } else {
    mail_ = MailState::After;
  }
}

QStringList PageFiller::TakeChildren(int tag) {
  return ReadChildTags(template_, tags_[static_cast<size_t>(tag)], pending_)
      .split(kLineBreak, Qt::SkipEmptyParts);
}

bool PageFiller::HandleDialog() {
  QVariant& state = tags_[kTagDialog].section.key;
  const qsizetype afterTag = at_ + tags_[kTagDialog].section.length;
  if (state.toInt() == kDialogClosed) {
    if (rows_->Eof()) return false;
    WritePending();
    pending_ = afterTag;
    QString kind = QStringLiteral("preview");
    for (const QString& child : TakeChildren(kTagDialog)) {
      kind = tags_[kTagDialog].children[child.toInt()].key.toString();
    }
    // Only what was received can be answered or forwarded.
    const bool received = IsReceived();
    if (kind != u"preview" && !received) {
      state = static_cast<int>(kDialogSuppressed);
      return true;
    }
    state = static_cast<int>(kDialogOpen);
    WriteText(QStringLiteral("<A HREF = \"") + kind + u':' + rows_->SerialID() +
              QStringLiteral("\">"));
    return true;
  }
  if (state.toInt() == kDialogOpen) {
    WritePending();
    WriteText(QStringLiteral("</A>"));
  }
  pending_ = afterTag;
  state = static_cast<int>(kDialogClosed);
  return true;
}

void PageFiller::HandleMailAddress() {
  QStringList kinds;
  bool isShort = false;
  for (const QString& child : TakeChildren(kTagMailAddress)) {
    const QString kind = tags_[kTagMailAddress].children[child.toInt()].key.toString();
    kind.isEmpty() ? void(isShort = true) : kinds.append(kind);
  }
  QStringList shown;
  const QString lines = rows_->Fields(u"FIELD_MAILADDRESS").toString();
  for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (!kinds.isEmpty() && !kinds.contains(entry.kind)) continue;
    shown.append(content_.escape ? Isolated(WithoutTurns(ShownSender(WithWholeAddress(entry))))
                                 : NameOf(entry));
  }
  const qsizetype more = shown.size() - 1;
  if (isShort && more > 0) return WriteText(shown.first() + Ui::tr(" 他%1名").arg(more));
  WriteText(shown.join(QStringLiteral("<BR>")));
}

void PageFiller::HandleFlag() {
  enum Child { kNew = 0, kClip, kPriority, kState };
  const QString flags = rows_->Fields(u"FIELD_FLAG").toString();
  const auto isSet = [&flags](int position, QStringView value) {
    return GetFlagChar(flags, position, QString()) == value;
  };
  for (const QString& child : TakeChildren(kTagFlag)) {
    switch (child.toInt()) {
      case kNew:
        if (isSet(kFlagNew, u"1")) WriteText(QStringLiteral("○"));
        break;
      case kClip:
        if (isSet(kFlagAttachment, u"1")) WriteText(QStringLiteral("＠"));
        break;
      case kPriority:
        if (isSet(kFlagPriority, u"1")) WriteText(QStringLiteral("↑"));
        if (isSet(kFlagPriority, u"3")) WriteText(QStringLiteral("↓"));
        break;
      case kState:
        if (qAbs(rows_->Fields(u"STATUS").toInt()) == kStatusEdit) WriteText(QStringLiteral("✎"));
        if (isSet(kFlagStar, u"1")) WriteText(QStringLiteral("★"));
        if (isSet(kFlagAnswered, u"1")) WriteText(QStringLiteral("↩"));
        if (isSet(kFlagForwarded, u"1")) WriteText(QStringLiteral("→"));
        break;
      default:
        break;
    }
  }
}

void PageFiller::HandleFolder() {
  for (const QString& child : TakeChildren(kTagFolder)) {
    const bool isName = child.toInt() == 0;
    const AnyObject folder(*content_.folder);
    WriteMail(isName ? folder.ShownName() : folder.ToolTip());
  }
}

void PageFiller::WriteSubject() {
  const QString stored = rows_->Fields(u"FIELD_SUBJECT").toString();
  const bool isSeen = !content_.escape || HasVisible(stored);
  const QString subject = isSeen ? stored : QString();
  if (content_.doubtful.contains(rows_->SerialID())) WriteText(Ui::tr("【送信を確認】"));
  if (content_.refused.contains(rows_->SerialID())) WriteText(Ui::tr("【断られました】"));
  if (rows_->IsRowDamaged()) WriteText(Unreadable());
  if (content_.escape && !subject.isEmpty())
    return WriteText(Isolated(WithoutTurns(WithoutHidden(subject))));
  WriteMail(subject.isEmpty() ? Ui::tr("(件名なし)") : subject);
}

void PageFiller::WriteTimeStamp() {
  const bool isShort = !TakeChildren(kTagTimeStamp).isEmpty();
  const QVariant time = rows_->Fields(u"FIELD_TIMESTAMP");
  if (!time.isValid()) return;
  WriteText(isShort ? ShortTimeText(time.toString(), content_.today)
                    : GeneralTimeText(time.toString()));
}

void PageFiller::WriteSize() {
  const qint64 bytes = rows_->ByteCount(u"MAIL");
  if (bytes < 0) return WriteText(Unreadable());
  const auto highestIndex = static_cast<double>(bytes - 1);
  WriteText(QString::number(highestIndex / 1024.0, 'f', 2));
}

bool PageFiller::IsReceived() const {
  return qAbs(rows_->Fields(u"STATUS").toInt()) == kStatusReceived;
}

void PageFiller::WritePreview() {
  const QString flags = rows_->Fields(u"FIELD_FLAG").toString();
  TextRequest request;
  const QString contentIndex = rows_->Fields(u"FIELD_CONTENT").toString();
  request.charset = StoredCharset(flags);
  request.maximum = kPreviewBytes;
  request.textTypes = content_.textTypes;
  request.withReports = IsReceived();
  request.withHtml = content_.withHtml && IsReceived();
  const QVariant source = rows_->Fields(u"MAIL");
  if (!source.isValid()) return WriteText(Unreadable());
  const MessageText preview = GetMessageText(source.toByteArray(), contentIndex, request);
  if (preview.produced) WriteMail(preview.text);
}

}  // namespace vorn
