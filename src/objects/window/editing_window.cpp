#include "objects/window/editing_window.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include "kit/window/ok_cancel.h"
#include "objects/object_loader.h"
#include "objects/save_object.h"
#include "storage/bags/profile_bag.h"
#include "storage/ui.h"

namespace vorn {

EditingWindow::EditingWindow(Context& context, const QString& name, QWidget* parent)
    : QDialog(parent), context_(context), pages_(new FormPages), buttons_(OkCancelBox()) {
  setObjectName(name);
  setAttribute(Qt::WA_DeleteOnClose);
  connect(buttons_, &QDialogButtonBox::accepted, this, &EditingWindow::cmOk_Click);
  connect(buttons_, &QDialogButtonBox::rejected, this, &EditingWindow::Leave);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pages_, 1);
  layout->addWidget(buttons_);
}

void EditingWindow::FocusOk() {
  buttons_->button(QDialogButtonBox::Ok)->setFocus();
}

void EditingWindow::Activate() {
  raise();
  activateWindow();
}

void EditingWindow::FillPages() {
  const DiskPtr object = LoadObject(context_, Tag());
  object == nullptr ? pages_->CallBackFormData(Disk()) : DiskToForm(*pages_, *object);
  pages_->TellNames();
}

// What the window does not show stays as it is.
void EditingWindow::KeepOtherKeys(Disk& bag) {
  const DiskPtr object = LoadObject(context_, Tag());
  if (object == nullptr) return;
  for (qint32 i = 1; i <= object->Size(); ++i) {
    const QString& key = object->NameAt(i);
    const bool isOurs = ProfileBag::SessionKeys().contains(key, Qt::CaseInsensitive) ||
                        bag.Get(key).isValid() || HasControlFor(*pages_, key);
    if (!isOurs) bag.Let(key, object->Get(key));
  }
}

DiskPtr EditingWindow::Edited() {
  DiskPtr bag = FormToDisk(*pages_, Tag());
  KeepOtherKeys(*bag);
  pages_->Finish(*bag);
  return bag;
}

bool EditingWindow::SaveEdited(const DiskPtr& bag) {
  const Result<> saved = SaveObject(context_, DatabaseKind::Profile, *bag);
  if (saved) {
    TakeOver(context_, *bag);
    return true;
  }
  Tell({Ui::tr("保存できませんでした。") + saved.Error().text, nullptr}, nullptr);
  return false;
}

void EditingWindow::cmOk_Click() {
  pages_->TellNothing();
  if (!pages_->Check() || !Save()) return;
  ProfileBag::SetAnswer(*context_.Session, Tag().Text());
  accept();
}

void EditingWindow::ConfirmObject() {
  cmOk_Click();
  // A window that was never shown and has something to tell shows itself now.
  if (pages_->TellsFault()) {
    exec();
  } else {
    deleteLater();
  }
}

void EditingWindow::showEvent(QShowEvent* event) {
  if (!event->spontaneous() && entries_.isEmpty()) entries_ = pages_->Entries();
  QDialog::showEvent(event);
}

void EditingWindow::reject() {
  if (isVisible() && pages_->Entries() != entries_) {
    const std::optional<bool> saves = AskToSave(this);
    if (!saves) return;
    if (*saves) return cmOk_Click();
  }
  Leave();
}

void EditingWindow::Leave() {
  ProfileBag::SetAnswer(*context_.Session, QString());
  QDialog::reject();
}

}  // namespace vorn
