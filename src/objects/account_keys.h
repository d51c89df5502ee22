#pragma once

#include <QString>

// The keys of an account's bag beside those of its credentials (`kCredentialParts`). A prefix
// before one makes the name of the control that edits it.
namespace vorn::account_key {

inline const QString kAddress = QStringLiteral("Mailaddress");
inline const QString kDisplay = QStringLiteral("Display");
inline const QString kSignature = QStringLiteral("Signature");
inline const QString kEventLog = QStringLiteral("EventLog");

// The servers, and what is said of each of them: "InMailServerPort".
inline const QString kIn = QStringLiteral("InMailServer");
inline const QString kOut = QStringLiteral("OutMailServer");
inline const QString kPort = QStringLiteral("Port");
inline const QString kPasswordSave = QStringLiteral("PasswordSave");
inline const QString kProtocol = QStringLiteral("Protocol");
inline const QString kSecurity = QStringLiteral("Security");
inline const QString kCertificates = QStringLiteral("Certificates");
inline const QString kDelete = QStringLiteral("Delete");
inline const QString kAuth = QStringLiteral("Auth");

}  // namespace vorn::account_key
