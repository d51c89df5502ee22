#pragma once

namespace vorn {

/// Where mail is read and written by its standards and as people expect it, and where as older
/// profiles have it. One setting decides all of it, with a name that is older than most.
struct MailStandards {
  // What is read.
  bool readsReplyTo;    ///< "Reply-To:" counts where "Replay-To:" is missing
  bool keepsAddresses;  ///< addresses are taken whole, and in their own spelling
  bool readsHtml;       ///< HTML is a text where there is no other, and then no attachment
  bool countsShown;     ///< attachments are what a window shows, not whatever is no text
  bool namesParts;      ///< a part without a name is called as is usual for its type
  // What the user writes.
  bool keepsReferences;   ///< a message that is edited again answers what it answered before
  bool dropsOwnEnd;       ///< what composing puts behind a text is no part of it
  bool gathersHtml;       ///< a page goes on with its pictures, as one file
  bool usesFields;        ///< fields and parameters by their names in the standards go along
  bool attachesMessages;  ///< a message that is attached is no file
  bool writesReports;     ///< receipts tell programs, too (RFC 8098)
  bool keepsSenders;      ///< who sends for another is named beside him (RFC 5322 section 3.6.2)

  static constexpr MailStandards All(bool on) {
    return {.readsReplyTo = on,
            .keepsAddresses = on,
            .readsHtml = on,
            .countsShown = on,
            .namesParts = on,
            .keepsReferences = on,
            .dropsOwnEnd = on,
            .gathersHtml = on,
            .usesFields = on,
            .attachesMessages = on,
            .writesReports = on,
            .keepsSenders = on};
  }
};

}  // namespace vorn
