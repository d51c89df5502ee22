#pragma once

class QUrl;
class QWidget;

namespace vorn {

/// Opens an address of a mail in the system's browser once the user has seen the whole of it and
/// agreed. Anything but "http" and "https" is passed over; that there is no browser is told.
void AskToOpenOutside(QWidget* parent, const QUrl& url);

}  // namespace vorn
