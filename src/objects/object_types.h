#pragma once

#include <QString>

#include "storage/base/serial_id.h"

namespace vorn {

/// The type words of objects: the value of "FormName", and the "status" of the request that
/// creates one.
namespace object_type {
inline const QString kProfile = QStringLiteral("profile");
inline const QString kAccount = QStringLiteral("account");
inline const QString kFolder = QStringLiteral("folder");
inline const QString kBookmark = QStringLiteral("bookmark");
inline const QString kBook = QStringLiteral("book");
inline const QString kEvent = QStringLiteral("event");
}  // namespace object_type

/// What the filter of `SelectObjects` takes beside those.
namespace object_filter {
inline const QString kOwner = QStringLiteral("owner");  ///< the logged-in profile alone
inline const QString kInbox = QStringLiteral("inbox");
/// Folders by how they are filled, which their "Draw" says in the same words.
inline const QString kByHand = QStringLiteral("static");
inline const QString kByConditions = QStringLiteral("active");
}  // namespace object_filter

/// The serial identifiers that are the same in every profile.
namespace fixed_serial {
inline const SerialId kInbox(QStringLiteral("01_folder_1_INBOX0000000"));
inline const SerialId kOutbox(QStringLiteral("01_folder_2_OUTBOX000000"));
inline const SerialId kEditWait(QStringLiteral("01_folder_3_EDITWAIT0000"));
inline const SerialId kDust(QStringLiteral("01_folder_4_DUST00000000"));
inline const SerialId kEventLog(QStringLiteral("EVENT_000000000000"));
inline const SerialId kSettings(QStringLiteral("logo"));
inline const SerialId kRules(QStringLiteral("rule"));
inline const SerialId kLayout(QStringLiteral("layout"));
inline const SerialId kMainPlacement(QStringLiteral("DATA_parent"));
}  // namespace fixed_serial

}  // namespace vorn
