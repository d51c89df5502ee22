#pragma once

#include <QDialog>

#include "frame/request_window.h"
#include "objects/window/form_page.h"
#include "storage/window/control_state.h"

class QLabel;
class QTabWidget;

namespace vorn {

/// A modal window with pages that edits one object: the object property window and the settings
/// window are such. OK checks every page, saves and closes; what is wrong is told below the pages,
/// with the focus in its field. "Cancel" gives up what was changed; who leaves by Escape or the
/// title bar is asked.
class EditingWindow : public QDialog, public RequestWindow, public FormWindow {
  Q_OBJECT

 public:
  EditingWindow(Context& context, const QString& name, QWidget* parent);

  // RequestWindow
  QString Tag() const override { return request_ == nullptr ? QString() : request_->SerialID(); }
  bool IsChild() const override { return false; }
  void ShowModeless() override { show(); }
  void ShowModal() override { exec(); }
  void Activate() override;
  void Unload() override { deleteLater(); }
  void ConfirmObject() override;

  // FormWindow
  QWidget& Form() override { return *this; }
  QStringList ShownPages() const override;
  QString ListViewLine(const QTableWidget& list, int row) const override;
  void ControlListViewItem(QTableWidget& list, const QString& line) override;
  void CallBackFormData(const Disk& object) override;

  /// Saves and closes, or tells what is wrong.
  void cmOk_Click();

 protected:
  void AddPage(FormPage* page);
  void ShowPage(const FormPage* page);
  QTabWidget& Pages() { return *tsPage_; }
  const DiskPtr& Request() const { return request_; }
  void TakeRequest(const DiskPtr& request) { request_ = request; }
  /// Takes over what another program has stored meanwhile.
  void ReadAnew();
  /// Fills the pages from the stored object, when there is one, and tells them.
  void FillPages();
  void Tell(const PageFault& fault, const FormPage* page);
  /// Saves the controls; on false the fault has been told.
  virtual bool Save() = 0;
  /// Saves the bag as the window's object in the profile's database; a failure is told.
  bool SaveEdited(const DiskPtr& bag);
  /// Checks every page; the first fault is told.
  bool CheckPages();
  DiskPtr Edited();
  /// Gives the loaded object the saved values, keeping what only the running program knows.
  void KeepOtherKeys(Disk& bag);
  void TakeOver(const Disk& saved);
  Context& GetContext() { return context_; }
  void reject() override;
  void showEvent(QShowEvent* event) override;

 private:
  void Leave();
  /// What stands in the controls.
  QStringList Entries();

  Context& context_;
  DiskPtr request_;
  std::vector<FormPage*> pages_;
  QStringList entries_;  // when the window opened
  QTabWidget* tsPage_;
  QLabel* lbError_;
};

}  // namespace vorn
