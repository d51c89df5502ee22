#include "frame/window/panes/opener.h"

#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_changes.h"
#include "kit/window/plain_text.h"
#include "mail/archive/import_messages.h"
#include "mail/mailto.h"
#include "mail/store/message_bag.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "present/page_request.h"
#include "storage/bags/profile_bag.h"
#include "storage/ui.h"

namespace vorn {

void Opener::ShowMessage(MailRequest request) {
  request.file = ProfileBag(*context_.Session).MailFiles();
  request.password = ProfileBag(*context_.Session).Password();
  queue_.PostMailRequest(request);
}

void Opener::OpenArgument(const QString& argument) {
  if (IsMailto(argument)) {
    WriteMessage(argument);
    return;
  }
  const Result<SerialId> serialId = TakeMessageFile(context_, argument);
  if (!serialId) {
    ShowBox(&window_, QMessageBox::Critical, serialId.Error().text);
    return;
  }
  ShowMessage(MailRequest::Of(*serialId));
  changes_.Note();
}

void Opener::OpenFolder(const SerialId& serialId) {
  tree_.SelectNode(serialId);
  BrowserRequest request;
  request.serialId = serialId;
  request.local = true;
  queue_.PostBrowserRequest(request);
}

void Opener::OpenWebPage(const QString& url) {
  const QUrl place = QUrl::fromUserInput(url);
  const bool isWeb = place.scheme() == u"http" || place.scheme() == u"https";
  // The user's own browser gets its corrections from its makers.
  if (isWeb && Settings(context_).OpensWebOutside()) {
    if (!QDesktopServices::openUrl(place)) {
      ShowBox(&window_, QMessageBox::Information, Ui::tr("標準のブラウザーを起動できません。"));
    }
    return;
  }
  BrowserRequest request;
  request.serialId = context_.Data.NewSerialID();
  request.url = url;
  queue_.PostBrowserRequest(request);
}

void Opener::PrintPageFile(const QString& path, const QString& title) {
  BrowserRequest request;
  request.serialId = context_.Data.NewSerialID();
  request.url = path;
  request.local = true;
  request.show = kShowHidden;
  request.exec = PageRequest::kPrint;
  request.title = title;
  queue_.PostBrowserRequest(request);
}

void Opener::OpenObject(const SerialId& key, const QString& tag, RequestShow show, AfterStep after,
                        const SerialId& event) {
  DialogRequest request;
  request.serialId = key;
  request.status = tag;
  request.show = show;
  request.after = after;
  request.event = event;
  queue_.PostDialogRequest(request);
}

void Opener::MakeObject(const QString& type, const SerialId& parent) {
  DialogRequest request;
  request.status = type;
  request.isNew = true;
  request.parent = parent;
  queue_.PostDialogRequest(request);
}

void Opener::OpenEvent(const SerialId& serialId) {
  const DiskPtr record = events_.Find(serialId);
  if (record == nullptr) return;
  const SerialId reference = EventRecord(*record).Reference();
  if (EventRecord(*record).IsAboutMessage()) {
    const MessageBag message(*record);
    MailRequest request;
    request.serialId = reference;
    request.database = message.Database();
    request.file = message.File(context_);
    request.password = message.Password();
    request.event = serialId;
    queue_.PostMailRequest(request);
    return;
  }
  const DiskPtr object = context_.Objects.Find(reference);
  const QString type = object == nullptr ? QString() : AnyObject(*object).Type();
  const bool isSettings = reference == fixed_serial::kSettings;
  if (object == nullptr && !isSettings) {
    // What concerns the whole program is about no object.
    const QString gone =
        reference.IsEmpty()
            ? QString()
            : Ui::tr("このイベントのアカウントは削除されています。") + kLineBreak + kLineBreak;
    ShowBox(&window_, QMessageBox::Information, gone + EventRecord(*record).Text());
    return;
  }
  OpenObject(reference, isSettings ? reference.Text() : type, kShowModal,
             isSettings ? AfterStep::ApplySettings : AfterStep::None, serialId);
}

}  // namespace vorn
