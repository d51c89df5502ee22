#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// A mail's HTML as it may be shown.
struct SafeHtml {
  QByteArray html;               ///< a whole document in UTF-8
  bool hasRemoteImages = false;  ///< whether it names images of the network
  int largeImages = 0;           ///< how many images inside it were left out for their size
  int otherImages = 0;     ///< how many of the network are never shown: of styles, drawings, forms
  bool hasColors = false;  ///< of its own; else it is shown in the reader's scheme, light or dark
};

/// Whether images of the network stay in the document, which then asks its viewer for them: their
/// addresses, percent-encoded, follow `kRemoteImage`.
enum class RemoteImages { LeftOut, Kept };
inline constexpr const char* kRemoteImage = "vorn-mail://mail/image?";

/// Keeps of a mail's HTML what is known to be harmless, read as browsers read it (HTML standard,
/// section 13.2): text, its marks, tables, lists, links to be clicked and images, with styles that
/// only say how it looks. Everything else is left out: scripts, forms, frames, plug-ins, drawings,
/// what speaks to the browser, and every address that would be looked up or loaded by itself. One
/// that is nested too deep to be read in reasonable time gives its text alone. Never fails.
SafeHtml SanitizeHtml(const QString& html, RemoteImages images);

}  // namespace vorn
