#pragma once

#include <QString>

class QPrinter;

namespace vorn {

/// What a browser window asks of the program around it.
class BrowserHost {
 public:
  virtual ~BrowserHost() = default;
  /// A link command was followed on a folder's page: asks for a message window.
  /// `open` is the open mode.
  virtual void OpenMessage(int open, const QString& serialId, bool isNew) = 0;
  /// Lets the user choose a printer and how to print; false when he declines.
  virtual bool ChoosePrinter(QPrinter& printer) = 0;
  /// A browser window has closed.
  virtual void BrowserClosed() = 0;
};

}  // namespace vorn
