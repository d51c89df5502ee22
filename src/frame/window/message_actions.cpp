#include "frame/window/message_actions.h"

#include <QMessageBox>

#include "auxiliary/window/console_window.h"
#include "kit/window/plain_text.h"
#include "mail/message_filing.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/ui.h"

namespace vorn {

void MessageActions::Act(MessageAction action, const QStringList& messages, const QString& folder) {
  if (action == MessageAction::OutOfDust) {
    ChangeDust(messages, false);
  } else if (action == MessageAction::File) {
    ChooseFolder(messages, folder);
  } else if (folder != fixed_serial::kDust) {
    ChangeDust(messages, true);
  } else {
    Delete(messages);
  }
}

void MessageActions::Drop(const QStringList& messages, const QString& folder, const QString& from) {
  if (folder == fixed_serial::kDust || folder == fixed_serial::kInbox) {
    ChangeDust(messages, folder == fixed_serial::kDust);
  } else {
    const bool moves = from != folder && IsFilledByHand(from);
    End(FileMessages(context_, messages, folder, moves ? from : QString()));
  }
}

void MessageActions::ChooseFolder(const QStringList& messages, const QString& folder) {
  if (SelectObjects(context_.Objects, *context_.Session, QStringLiteral("static"))->IsEmpty()) {
    ShowBox(&window_, QMessageBox::Information, NoFolderWords());
    return;
  }
  const QString into =
      InputTree(context_, &window_, Ui::tr("フォルダに入れる"),
                Ui::tr("メッセージを入れるフォルダを選択してください。"), QStringLiteral("static"));
  if (into.isEmpty() && !context_.Session->Flag(u"cancel")) {
    ShowBox(&window_, QMessageBox::Information, Ui::tr("フォルダが選択されていません。"));
  }
  if (into.isEmpty() || !IsFilledByHand(into)) return;
  const QString from = IsFilledByHand(folder) && into != folder ? folder : QString();
  End(FileMessages(context_, messages, into, from));
}

void MessageActions::ChangeDust(const QStringList& messages, bool dust) {
  QStringList underWay;
  const bool done = SetDust(context_, messages, dust, &underWay);
  End(done, underWay);
}

void MessageActions::Delete(const QStringList& messages) {
  const auto answer = ShowBox(
      &window_, QMessageBox::Question,
      Ui::tr("メッセージ%1通を削除します。元には戻せません。よろしいですか？").arg(messages.size()),
      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  QStringList underWay;
  const bool done = DeleteMessages(context_, messages, &underWay);
  End(done, underWay);
}

void MessageActions::EmptyDust() {
  const auto answer =
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("くずかごのメッセージをすべて削除します。元には戻せません。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  if (!vorn::EmptyDust(context_)) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("削除できませんでした。") + context_.Data.LastError().text);
  }
  host_.MessageStored();
}

bool MessageActions::IsFilledByHand(const QString& folder) const {
  const DiskPtr object = context_.Objects.Find(folder);
  return object != nullptr && vorn::IsFilledByHand(*object);
}

// Of a change to messages, of which a failure is told.
void MessageActions::End(bool done, const QStringList& underWay) {
  if (!done) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("変更を保存できませんでした。") + context_.Data.LastError().text);
  } else if (!underWay.isEmpty()) {
    ShowBox(&window_, QMessageBox::Information,
            Ui::tr("送信中なので、そのままにしました: %1")
                .arg(QStringLiteral("「") + underWay.join(QStringLiteral("」「")) +
                     QStringLiteral("」")));
  }
  host_.MessageStored();
}

}  // namespace vorn
