#pragma once

#include <QString>

namespace vorn {

/// The names that the object of settings has for what it holds; `Settings` tells what they mean,
/// the last ones `NoticeSettings` and `EditSettings`.
namespace setting {
inline const QString kInstalled = QStringLiteral("Install");  ///< the version that wrote them last
inline const QString kPages = QStringLiteral("MessagesEdit");
inline const QString kRows = QStringLiteral("Messages");
inline const QString kOpensNewest = QStringLiteral("MessagesNewest");
inline const QString kNewestFirst = QStringLiteral("NewestFirst");
inline const QString kEventsFolded = QStringLiteral("EventsFolded");
inline const QString kShownOnce = QStringLiteral("ShownOnce");
inline const QString kPageEscape = QStringLiteral("PageEscape");
inline const QString kReadingPane = QStringLiteral("ReadingPane");
inline const QString kRowHeight = QStringLiteral("RowHeight");
inline const QString kHtmlFirst = QStringLiteral("HtmlFirst");
inline const QString kToolbarIcon = QStringLiteral("ToolbarIcon");
inline const QString kStatusBar = QStringLiteral("Statusbar");
inline const QString kTaskTray = QStringLiteral("Tasktray");
inline const QString kWebOutside = QStringLiteral("WebOutside");
inline const QString kScriptsAsked = QStringLiteral("ScriptsAsked");
inline const QString kComesForward = QStringLiteral("ComesForward");
inline const QString kLanguage = QStringLiteral("Language");
inline const QString kChecks = QStringLiteral("MessageCheck");
inline const QString kCheckMinutes = QStringLiteral("MessageCheckInterval");
inline const QString kReceivedTime = QStringLiteral("ReceivedTime");
inline const QString kReceipts = QStringLiteral("ReceiveNotice");
inline const QString kEditReceipts = QStringLiteral("ReceiveNoticeEdit");
inline const QString kWrapLines = QStringLiteral("WrapLines");
inline const QString kStandardHeaders = QStringLiteral("StandardHeaders");
inline const QString kAddressSearch = QStringLiteral("AddressSearch");
inline const QString kCareful = QStringLiteral("Careful");
inline const QString kTextTypes = QStringLiteral("TextMime");
inline const QString kListFont = QStringLiteral("ListFont");
inline const QString kMessageFont = QStringLiteral("MessageFont");
inline const QString kEditFont = QStringLiteral("EditFont");

inline const QString kNotice = QStringLiteral("MessageNotice");
inline const QString kNoticeDialog = QStringLiteral("MessageNoticeDialog");
inline const QString kNoticeDesktop = QStringLiteral("MessageNoticeDesktop");
inline const QString kNoticeSound = QStringLiteral("MessageNoticeSound");
inline const QString kNoticeSoundAlone = QStringLiteral("MessageNoticeSoundAlone");
inline const QString kNoticeSoundFile = QStringLiteral("MessageNoticeSoundFile");

inline const QString kEditMode = QStringLiteral("EditMode");
inline const QString kSubjectReply = QStringLiteral("SubjectReplay");
inline const QString kSubjectForward = QStringLiteral("SubjectForward");
inline const QString kQuoteSign = QStringLiteral("MemoIndent");
inline const QString kUsualReplies = QStringLiteral("UsualReplies");
inline const QString kReplyLine = QStringLiteral("ReplyLine");
inline const QString kSignatureAbove = QStringLiteral("SignatureAbove");
inline const QString kMimeEncode = QStringLiteral("MimeEncode");
inline const QString kMimeText = QStringLiteral("MimeText");
}  // namespace setting

}  // namespace vorn
