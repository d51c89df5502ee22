#pragma once

#include <QString>

namespace vorn {

/// The language of the user interface, "ja" or "en": what the user chose in the settings, else
/// Japanese unless the system speaks another language.
QString UiLanguage();

/// Keeps the user's choice for the next start: "ja", "en", or empty to follow the system. It is the
/// user's, not a profile's, since it is needed before any profile is opened.
void KeepUiLanguage(const QString& language);

}  // namespace vorn
