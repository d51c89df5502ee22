#pragma once

#include <QString>

#include "present/window/page/browser_host.h"

namespace vorn {

class BrowserWindow;

/// What a browser window asks of the program that has other ones.
class WebHost : public BrowserHost {
 public:
  /// A new browser window, not yet shown.
  virtual BrowserWindow* NewBrowserWindow() = 0;
  /// The other browser window that answers to a target name; null when there is none.
  virtual BrowserWindow* NamedWindow(const QString& name, const BrowserWindow* asking) = 0;
};

}  // namespace vorn
