#include "objects/window/objects_window.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/object_request.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/window/account_pages.h"
#include "objects/window/file_page.h"
#include "objects/window/folder_page.h"
#include "objects/window/list_page.h"
#include "objects/window/profile_page.h"
#include "objects/window_request.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr QSize kObjectsSize(560, 480);

}  // namespace

ObjectsWindow::ObjectsWindow(Context& context, const EventLog& events, QWidget* parent)
    : EditingWindow(context, QStringLiteral("objects"), parent), events_(events) {
  resize(kObjectsSize);
}

void ObjectsWindow::BuildPages(const QString& type) {
  Context& context = GetContext();
  file_ = new FilePage(context, type, Tag());
  AddPage(file_);
  if (type == object_type::kProfile) {
    profile_ = new ProfilePage(context, Tag());
    AddPage(profile_);
  } else if (type == object_type::kAccount) {
    BuildAccountPages();
  } else if (type == object_type::kFolder) {
    folder_ = new FolderPage(context, Tag());
    AddPage(folder_);
  } else if (type == object_type::kBookmark) {
    BuildListPage(new BookmarkPage);
  } else if (type == object_type::kBook) {
    BuildListPage(new BookPage);
  }
}

void ObjectsWindow::BuildAccountPages() {
  auto* receiving = new ReceivePage;
  auto* sending = new SendPage(*receiving);
  receiving->MayBeUnusedBeside(*sending);
  AddPage(new AccountPage(*file_->Name(), *receiving, *sending));
  AddPage(receiving);
  AddPage(sending);
  receiving_ = receiving;
}

void ObjectsWindow::BuildListPage(ListPage* page) {
  AddPage(page);
  entries_ = page;
}

// Who opens a list wants its entries; a new one has no name yet.
void ObjectsWindow::BeginAtEntries() {
  const bool isNew = GetContext().Objects.Find(Tag()) == nullptr;
  if (entries_ == nullptr || isNew) return file_->Name()->setFocus();
  Pages().ShowPage(entries_);
  entries_->List().setFocus();
}

bool ObjectsWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  TakeRequest(request);
  type_ = WindowRequest(*request).ObjectType();
  BuildPages(type_);
  resize(size().expandedTo(sizeHint()));
  FillPages();
  if (const SerialId parent = ObjectRequest(*request).Parent(); !parent.IsEmpty())
    file_->LetParent(parent);
  const QString name = file_->Name()->text();
  TakeProposal(*request);
  setWindowTitle(name.isEmpty() ? Ui::tr("新しい") + TypeCaption(type_)
                                : name + QStringLiteral(" - ") + TypeCaption(type_));
  if (const DiskPtr event = events_.Find(ObjectRequest(*request).Event())) {
    AddEventPage(EventRecord(*event).Text());
  } else {
    BeginAtEntries();
  }
  return true;
}

// What a new object begins with.
void ObjectsWindow::TakeProposal(const Disk& request) {
  const QString name = ObjectRequest(request).Name();
  if (!name.isEmpty()) file_->Name()->setText(name);
  const QString condition = ObjectRequest(request).Condition();
  if (!condition.isEmpty() && folder_ != nullptr) {
    Pages().ControlListViewItem(folder_->Conditions(), condition);
  }
}

// The text of an event about the object; shown, never saved.
void ObjectsWindow::AddEventPage(const QString& text) {
  auto* page = new FormPage(QStringLiteral("event"), Ui::tr("イベント(&V)"));
  auto* box = new QPlainTextEdit(text, page);
  box->setObjectName(QStringLiteral("txEventLog"));
  box->setProperty("tag", QStringLiteral("nosave"));
  box->setReadOnly(true);
  static_cast<QFormLayout*>(page->layout())->addRow(box);
  AddPage(page);
  Pages().ShowPage(page);  // which is what was asked for
}

void ObjectsWindow::SetObjectText(const QString& text) {
  file_->Name()->setText(text);
}

bool ObjectsWindow::Save() {
  const DiskPtr bag = Edited();
  const Result<> valid = ValidateObject(GetContext().Objects, *bag);
  if (!valid) {
    Tell({valid.Error().text, file_->Name()}, file_);
    return false;
  }
  const Result<> changed = profile_ != nullptr ? profile_->ChangePassword(*bag) : Result<>();
  if (!changed) {
    Tell({changed.Error().text, nullptr}, profile_);
    return false;
  }
  const DatabaseKind kind = ObjectRequest(*Request()).Database();
  const Result<> saved = SaveObject(GetContext(), kind, *bag);
  if (!saved) {
    Tell({Ui::tr("保存できませんでした。") + saved.Error().text, nullptr}, file_);
    return false;
  }
  // A receive password that is not saved is still known until the program ends.
  if (receiving_ != nullptr) receiving_->LetSecrets(*bag);
  TakeOver(GetContext(), *bag);
  if (profile_ != nullptr && !profile_->DeleteRemoved()) {
    ShowBox(this, QMessageBox::Critical, Ui::tr("ファイルを削除できませんでした。"));
  }
  return true;
}

void ObjectsWindow::DeleteObject() {
  cmDelete_Click();
  deleteLater();
}

void ObjectsWindow::cmDelete_Click() {
  Context& context = GetContext();
  const DiskPtr object = context.Objects.Find(Tag());
  if (object == nullptr) return;
  if (AnyObject(*object).IsSystem() || Tag() == context.Session->Serial()) {
    ShowBox(parentWidget(), QMessageBox::Information,
            AnyObject(*object).Is(object_type::kProfile)
                ? Ui::tr("使用中のプロファイルは削除できません。")
                : Ui::tr("標準のフォルダは削除できません。"));
    return;
  }
  const DatabaseKind kind = ObjectRequest(*Request()).Database();
  const auto remove = [&]() -> Result<> {
    const OpenedDatabase opened(context, kind);
    return opened ? ResultOf(context.Data, object->Delete(context.Data)) : opened.Error();
  };
  if (const Result<> removed = remove(); !removed) {
    ShowBox(parentWidget(), QMessageBox::Critical,
            Ui::tr("削除できませんでした。") + removed.Error().text);
    return;
  }
  context.Objects.Remove(Tag());
}

}  // namespace vorn
