#pragma once

#include <QMdiArea>
#include <QPointer>

#include "objects/placement.h"
#include "storage/context.h"

namespace vorn {

class BrowserWindow;

/// The area of the main window that holds its browser windows: overlapping, side by side or in
/// tabs. Of many tabs those that were used last have a page; the others rest.
class BrowserArea : public QMdiArea {
  Q_OBJECT

 public:
  explicit BrowserArea(Context& context);
  ~BrowserArea() override;

  /// Takes a new window in.
  void Add(BrowserWindow* window);
  /// Keeps one that nobody sees and that is none of those below, since it only prints.
  void AddUnseen(BrowserWindow* window) const;
  QList<BrowserWindow*> Browsers() const;
  /// The one that was used last, when it shows a folder; else null.
  BrowserWindow* Active() const;
  /// Another one than `asking` that answers to a target name; null when there is none.
  BrowserWindow* Named(const QString& name, const BrowserWindow* asking) const;

  Arrangement Current() const;
  /// Arranges the windows in another way, which is kept.
  void Arrange(Arrangement arrangement);
  /// Arranges them as that is kept.
  void ArrangeAsKept();

  /// The next window that is added for this folder is the tab that folders share which are only
  /// looked at.
  void ExpectPreview(const SerialId& folder) { expected_ = folder; }
  /// A window was added for that folder.
  void Opened(const SerialId& folder, BrowserWindow* window);
  /// Shows a folder in the tab that folders share; false when there is none.
  bool ShowInPreview(const SerialId& folder);

  /// Makes the pages of all folders anew.
  void RefreshFolders();
  /// Makes the pages of one folder anew, or closes them when it is gone. False when no window is
  /// left.
  bool RefreshFolder(const SerialId& folder, bool isGone);

 Q_SIGNALS:
  /// Another window is used now, or it shows another folder, or what another search finds.
  void ActiveChanged();
  /// See `BrowserWindow::StepWanted`.
  void StepWanted(const QString& step);
  /// More or fewer messages are chosen in a window.
  void ChosenChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void RestHidden();
  void GiveKeysToPage();
  void TakeIdleKeys();
  bool HasTabs() const { return viewMode() == TabbedView; }

  Context& context_;
  QWidget* unseen_;
  QPointer<BrowserWindow> front_;  // the tab that was used last
  QPointer<BrowserWindow> preview_;
  SerialId expected_;
  bool ends_ = false;
};

}  // namespace vorn
