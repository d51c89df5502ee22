#pragma once

#include <QSplitter>

#include "storage/context.h"

namespace vorn {

class BrowserArea;
class ConsoleTree;

/// What the main window holds: the console tree and, beside it, the area of the pages. The tree
/// shows the folder whose page is in use.
class FolderPanes : public QSplitter {
  Q_OBJECT

 public:
  explicit FolderPanes(Context& context);

  ConsoleTree& Tree() const { return *tvConsole_; }
  BrowserArea& Area() const { return *area_; }
  /// The folder whose node is chosen in the tree, or else the one whose page was used last; empty
  /// for none.
  SerialId CurrentFolder() const;
  /// Brings the node and the pages of an object in line with it. False when no window is left.
  bool Refresh(const SerialId& serialId);
  /// Divides `width` as `window` was left last; keeps how it is divided.
  void LoadWidths(const QString& window, int width);
  void KeepWidths(const QString& window) const;

 private:
  void FollowActivePage();

  Context& context_;
  ConsoleTree* tvConsole_;
  BrowserArea* area_;
};

}  // namespace vorn
