// What the main window asks before an object goes.

#include <QMessageBox>

#include "frame/window/parent_window.h"
#include "kit/window/plain_text.h"
#include "mail/message_filing.h"
#include "objects/account.h"
#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/ui.h"

namespace vorn {

namespace {

// What else the deletion of an object touches.
QString DeletionWarning(Context& context, const DiskPtr& object) {
  const QString& key = object->SerialID();
  const QString type = AnyObject(*object).Type();
  if (type == object_type::kProfile) {
    return Ui::tr("メールのファイルはフォルダ「%1」に残ります。")
        .arg(PlatformPath(context, QStringLiteral("/current/") + key));
  }
  if (type == object_type::kFolder) {
    QStringList users;
    const DiskCollectionPtr folders =
        SelectObjects(context.Objects, *context.Session, object_type::kFolder);
    for (const DiskPtr& folder : *folders) {
      if (folder->SerialID() != key && FolderObject(*folder).Conditions().contains(key)) {
        users.append(AnyObject(*folder).Name());
      }
    }
    if (!users.isEmpty()) {
      return Ui::tr("このフォルダは次のフォルダの条件に使われています: %1")
          .arg(users.join(QStringLiteral("、")));
    }
  }
  if (type == object_type::kAccount) {
    const int waiting = CountWaiting(context, Account(object).Address());
    if (waiting > 0) {
      return Ui::tr("このアドレスから送信を待つメッセージが%1通あります。").arg(waiting);
    }
  }
  return {};
}

}  // namespace

void ParentWindow::DeleteObject(const QString& key, const QString& tag) {
  const DiskPtr object = context_.Objects.Find(key);
  // What cannot be deleted is not asked about.
  const bool mayGo =
      object != nullptr && !AnyObject(*object).IsSystem() && key != context_.Session->SerialID();
  if (mayGo) {
    QString question = Ui::tr("「%1」を削除します。よろしいですか？").arg(NodeText(key));
    const QString warning = DeletionWarning(context_, object);
    if (!warning.isEmpty()) question += u'\n' + warning;
    const auto answer = ShowBox(this, QMessageBox::Question, question,
                                QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer != QMessageBox::Ok) return;
  }
  PostDialog(key, tag, kShowHidden, QStringLiteral("delete"));
}

}  // namespace vorn
