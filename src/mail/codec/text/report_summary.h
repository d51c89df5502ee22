#pragma once

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// Whether parts of that type are reports that a program wrote for programs: on the delivery of a
/// message (RFC 3464) or on its opening (RFC 8098), also in their international forms (RFC 6533).
bool IsReport(const QString& type);

/// What such a report says, in lines of the user's language that end with CR LF: whom it is about,
/// what became of the message, and why, with the server's own words. Empty when it says nothing.
QString ReportSummary(const QString& type, QByteArrayView report);

}  // namespace vorn
