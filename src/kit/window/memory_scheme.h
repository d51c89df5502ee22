#pragma once

#include <QWebEngineUrlScheme>

namespace vorn {

/// Tells the browser engine of a scheme whose pages come from memory; before the application object
/// is made. With a host all pages of it are of one origin, so that the engine leaves one in sight
/// until the next is drawn, and starts no process for each. They must not mind one another.
inline void RegisterMemoryScheme(const char* name) {
  QWebEngineUrlScheme scheme(name);
  scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
  QWebEngineUrlScheme::registerScheme(scheme);
}

}  // namespace vorn
