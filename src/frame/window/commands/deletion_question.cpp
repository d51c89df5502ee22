#include "frame/window/commands/deletion_question.h"

#include <QMessageBox>

#include "kit/window/plain_text.h"
#include "mail/store/message_filing.h"
#include "objects/account.h"
#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/shown_object.h"
#include "storage/ui.h"

namespace vorn {

namespace {

// What else the deletion of an object touches.
QString DeletionWarning(Context& context, const DiskPtr& object) {
  const SerialId key = object->Serial();
  const QString type = AnyObject(*object).Type();
  if (type == object_type::kProfile) {
    return Ui::tr("メールのファイルはフォルダ「%1」に残ります。")
        .arg(PlatformPath(context, QStringLiteral("/current/") + key.Text()));
  }
  if (type == object_type::kFolder) {
    QStringList users;
    const DiskCollectionPtr folders =
        SelectObjects(context.Objects, *context.Session, object_type::kFolder);
    for (const DiskPtr& folder : *folders) {
      if (folder->Serial() != key && FolderObject(*folder).Conditions().contains(key.Text())) {
        users.append(ShownObject(*folder).Name());
      }
    }
    if (!users.isEmpty()) {
      return Ui::tr("このフォルダは次のフォルダの条件に使われています: %1")
          .arg(users.join(Ui::tr("、")));
    }
  }
  if (type == object_type::kAccount) {
    const Result<int> waiting = CountWaiting(context, Account(object).Address());
    if (!waiting) {
      return Ui::tr("このアドレスから送信を待つメッセージがあるか、確かめられません。") +
             waiting.Error().text;
    }
    if (*waiting > 0) {
      return Ui::tr("このアドレスから送信を待つメッセージが%1通あります。").arg(*waiting);
    }
  }
  return {};
}

}  // namespace

bool ConfirmDeletion(Context& context, QWidget& window, const SerialId& key, const QString& name) {
  const DiskPtr object = context.Objects.Find(key);
  const bool mayGo =
      object != nullptr && !AnyObject(*object).IsSystem() && key != context.Session->Serial();
  if (!mayGo) return true;
  QString question = Ui::tr("%1「%2」を削除します。よろしいですか？")
                         .arg(TypeCaption(AnyObject(*object).Type()), name);
  const QString warning = DeletionWarning(context, object);
  if (!warning.isEmpty()) question += u'\n' + warning;
  return ShowBox(&window, QMessageBox::Question, question, QMessageBox::Ok | QMessageBox::Cancel,
                 QMessageBox::Cancel) == QMessageBox::Ok;
}

}  // namespace vorn
