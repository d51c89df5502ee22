#pragma once

#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// What the dispatcher needs of a window that it creates. A window owns itself: it goes when it is
/// closed, or through `Unload`.
class RequestWindow {
 public:
  virtual ~RequestWindow() = default;

  /// Takes the request, which the window keeps, and fills itself; its tag is then the request's
  /// serial identifier. False when it is to be discarded; it has told its own failures.
  virtual bool LoadDefaultProperty(const DiskPtr& request, bool update) = 0;
  /// The serial identifier of what the window shows.
  virtual SerialId Tag() const = 0;
  /// Whether the window stands in the main window's client area.
  virtual bool IsChild() const = 0;
  virtual void ShowModeless() = 0;
  /// Returns when the window has closed.
  virtual void ShowModal() = 0;
  virtual void Activate() = 0;
  /// Whether the window is done with and may be unloaded.
  virtual bool Dust() const { return false; }
  virtual void Unload() = 0;
  /// Messages were stored, sent or changed.
  virtual void MessagesChanged() {}

  // Of property windows, for the steps that work on a window without showing it.
  virtual void SetObjectText(const QString&) {}
  virtual void ConfirmObject() {}
  virtual void DeleteObject() {}
};

}  // namespace vorn
