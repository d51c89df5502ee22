#pragma once

#include <QPointer>
#include <QSplitter>

#include "storage/context.h"

namespace vorn {

class BrowserArea;
class ConsoleTree;

/// What the main window holds: the console tree and, beside it, the area of the pages. The tree
/// shows the folder whose page is in use. Where there is no room for both, one of them stands in
/// front, as a rule the page.
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
  /// The keyboard goes there, and it comes to the front.
  void GoToTree();
  void GoToPage();
  /// Brings the page to the front, or the other one of both.
  void ShowPage();
  void TurnOver();
  /// What a window needs that has no room for both.
  QSize minimumSizeHint() const override;
  /// Divides `width` as `window` was left last; keeps how it is divided.
  void LoadWidths(const QString& window, int width);
  void KeepWidths(const QString& window) const;

 Q_SIGNALS:
  /// There is room for both from now on, or no longer.
  void RoomChanged(bool forBoth);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void FollowActivePage();
  void Divide();
  void ShowInFront();

  Context& context_;
  ConsoleTree* tvConsole_;
  BrowserArea* area_;
  QPointer<QWidget> page_;  // that was in use last
  int treeWidth_;           // as the user wants it
  bool hasRoom_ = true;     // for both
  bool isTreeInFront_ = false;
};

}  // namespace vorn
