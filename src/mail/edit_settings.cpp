#include "mail/edit_settings.h"

#include "objects/reply_line.h"
#include "objects/setting_keys.h"
#include "objects/settings.h"

namespace vorn {
namespace {

// Base64 for a number that stands for nothing.
MimeEncode MimeEncodeIn(const Disk& settings) {
  const auto stored = static_cast<MimeEncode>(settings.Number(setting::kMimeEncode));
  const bool isOther = stored == MimeEncode::QuotedPrintable || stored == MimeEncode::Uuencode;
  return isOther ? stored : MimeEncode::Base64;
}

}  // namespace

EditSettings EditSettings::From(const Settings& all) {
  const Disk& settings = *all.Bag();
  EditSettings edit;
  edit.editMode = settings.Flag(setting::kEditMode);
  edit.subjectReplay = settings.Text(setting::kSubjectReply);
  edit.subjectForward = settings.Text(setting::kSubjectForward);
  edit.memoIndent = settings.Text(setting::kQuoteSign);
  edit.textTypes = all.TextTypes();
  edit.standards = all.Standards();
  edit.usualReplies = settings.Flag(setting::kUsualReplies);
  edit.mimeEncode = MimeEncodeIn(settings);
  edit.mimeText = settings.Flag(setting::kMimeText);
  edit.replyLine = ShownReplyLine(settings.Text(setting::kReplyLine));
  if (settings.Flag(setting::kSignatureAbove)) edit.signaturePlace = SignaturePlace::AboveQuote;
  return edit;
}

EditSettings EditSettings::Defaults() {
  EditSettings edit;
  edit.editMode = true;
  edit.subjectReplay = QStringLiteral("Re");
  edit.subjectForward = QStringLiteral("Fw");
  edit.memoIndent = QStringLiteral("> ");
  edit.textTypes = DefaultTextTypes();
  edit.standards = MailStandards::All(true);
  edit.usualReplies = true;
  return edit;
}

}  // namespace vorn
