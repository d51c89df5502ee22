#pragma once

#include <QString>
#include <QStringList>

#include "mail/reply_form.h"
#include "objects/mail_standards.h"

namespace vorn {

class Settings;

/// How files are put into text for the way, by the stored numbers of the choice.
enum class MimeEncode { Base64 = 0, QuotedPrintable = 1, Uuencode = 2 };

/// The settings that opening and composing read.
struct EditSettings {
  bool editMode = false;
  QString subjectReplay;
  QString subjectForward;
  QString memoIndent;
  QStringList textTypes;
  MailStandards standards = MailStandards::All(false);
  /// Replies as people are used to: to all means to the other recipients too, the first quoted line
  /// is marked, and only the usual words are taken for reply marks.
  bool usualReplies = false;
  QString replyLine;  ///< above what a reply quotes; see `AttributionLine`
  SignaturePlace signaturePlace = SignaturePlace::UnderQuote;
  MimeEncode mimeEncode = MimeEncode::Base64;
  bool mimeText = false;

  static EditSettings From(const Settings& settings);
  /// What a new profile starts with.
  static EditSettings Defaults();
};

}  // namespace vorn
