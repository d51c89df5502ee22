#pragma once

#include <QDialog>
#include <QDialogButtonBox>

#include "objects/request_window.h"
#include "objects/window/form_pages.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// A modal window with pages that edits one object: the object property window and the settings
/// window are such. OK checks every page, saves and closes; what is wrong is told below the pages,
/// with the focus in its field. "Cancel" gives up what was changed; who leaves by Escape or the
/// title bar is asked.
class EditingWindow : public QDialog, public RequestWindow {
  Q_OBJECT

 public:
  EditingWindow(Context& context, const QString& name, QWidget* parent);

  // RequestWindow
  SerialId Tag() const override { return request_ == nullptr ? SerialId() : request_->Serial(); }
  bool IsChild() const override { return false; }
  void ShowModeless() override { show(); }
  void ShowModal() override { exec(); }
  void Activate() override;
  void Unload() override { deleteLater(); }
  void ConfirmObject() override;

  /// Saves and closes, or tells what is wrong.
  void cmOk_Click();

 protected:
  FormPages& Pages() { return *pages_; }
  void AddPage(FormPage* page) { pages_->Add(page); }
  /// The next Enter saves.
  void FocusOk();
  void Tell(const PageFault& fault, const FormPage* page) { pages_->Tell(fault, page); }
  const DiskPtr& Request() const { return request_; }
  void TakeRequest(const DiskPtr& request) { request_ = request; }
  /// Fills the pages from the stored object, when there is one, and tells them.
  void FillPages();
  /// What stands in the controls, as the window's object with what they do not show.
  DiskPtr Edited();
  /// Saves the controls; on false the fault has been told.
  virtual bool Save() = 0;
  /// Saves the bag as the window's object in the profile's database; a failure is told.
  bool SaveEdited(const DiskPtr& bag);
  Context& GetContext() { return context_; }
  void reject() override;
  void showEvent(QShowEvent* event) override;

 private:
  void KeepOtherKeys(Disk& bag);
  void Leave();

  Context& context_;
  DiskPtr request_;
  FormPages* pages_;
  QDialogButtonBox* buttons_;
  QStringList entries_;  // when the window opened
};

}  // namespace vorn
