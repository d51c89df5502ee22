#include "frame/window/message_actions.h"

#include <QMessageBox>
#include <utility>

#include "auxiliary/window/console_window.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/list_settings.h"
#include "objects/manual_folder.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/ui.h"

namespace vorn {

QStringList MessageActions::Act(MessageAction action, const QStringList& messages,
                                const QString& folder) {
  const bool isDust = folder == fixed_serial::kDust;
  switch (action) {
    case MessageAction::OutOfDust: {
      const QStringList changed = ChangeDust(messages, false);
      return isDust ? changed : QStringList();
    }
    case MessageAction::File:
      return ChooseFolder(messages, folder);
    case MessageAction::MarkUnopened:
    case MessageAction::MarkOpened:
      End(SetMark(context_, messages, kFlagNew, action == MessageAction::MarkUnopened), messages);
      return {};
    case MessageAction::ToggleStar:
      End(vorn::ToggleStar(context_, messages), messages);
      return {};
    case MessageAction::ToDust:
      return isDust ? Delete(messages) : ChangeDust(messages, true);
  }
  return {};
}

QString MessageActions::NameOf(const QString& folder) const {
  const DiskPtr object = context_.Objects.Find(folder);
  return object == nullptr ? folder : AnyObject(*object).ShownName();
}

QStringList MessageActions::Drop(const QStringList& messages, const QString& folder,
                                 const QString& from) {
  const bool isDust = folder == fixed_serial::kDust;
  if (folder == fixed_serial::kInbox && ListSettings(context_).ShowsFiledOnce()) {
    return PutIntoInbox(messages, from);
  }
  if (isDust || folder == fixed_serial::kInbox) {
    const QStringList changed = ChangeDust(messages, isDust);
    return isDust == (from == fixed_serial::kDust) ? QStringList() : changed;
  }
  return File(messages, folder, from);
}

QString MessageActions::AskFolder() {
  const auto folders = SelectObjects(context_.Objects, *context_.Session, QStringLiteral("static"));
  const QString ask = Ui::tr("新しいフォルダの名前を入力してください。");
  if (folders->IsEmpty()) return MakeFolder(NoFolderWords() + kLineBreak + kLineBreak + ask);
  // Enter takes the folder of last time, or the first one.
  const bool hasLast = folders->Find(lastFolder_) != nullptr;
  const QString likely = hasLast ? lastFolder_ : folders->First()->SerialID();
  const auto into = InputTree(context_, &window_, Ui::tr("フォルダに入れる"),
                              Ui::tr("メッセージを入れるフォルダを選択してください。"),
                              QStringLiteral("static"), likely, Ui::tr("新しいフォルダ(&N).."));
  if (into && into->startsWith(kAnotherWanted)) {
    const QString name = into->sliced(kAnotherWanted.size());
    const bool isInbox = name.compare(NameOf(fixed_serial::kInbox), Qt::CaseInsensitive) == 0;
    if (isInbox && ListSettings(context_).ShowsFiledOnce()) return fixed_serial::kInbox;
    return MakeFolder(ask, name);
  }
  if (into && into->isEmpty()) {
    ShowBox(&window_, QMessageBox::Information, Ui::tr("フォルダが選択されていません。"));
  }
  return into.value_or(QString());
}

QString MessageActions::MakeFolder(const QString& caption, QString name) {
  while (true) {
    name = InputText(context_, &window_, Ui::tr("新しいフォルダ"), caption, name)
               .value_or(QString())
               .trimmed();
    if (name.isEmpty()) return {};
    const Result<QString> made = MakeManualFolder(context_, name);
    if (!made) {
      ShowBox(&window_, QMessageBox::Critical, made.Error().text);
      continue;
    }
    if (folderMade_) folderMade_(*made);
    return *made;
  }
}

QStringList MessageActions::ChooseFolder(const QStringList& messages, const QString& folder) {
  const QString into = AskFolder();
  if (into == fixed_serial::kInbox) return PutIntoInbox(messages, folder);
  if (into.isEmpty() || !IsFilledByHand(into)) return {};
  return File(messages, into, folder);
}

// The hand-filled folders that messages leave when they are filed: the one that is shown, or where
// those of all folders are, each the ones that it is in.
Result<Filed> MessageActions::Left(const QStringList& messages, const QString& into,
                                   const QString& shownIn) {
  if (shownIn.isEmpty()) {
    Result<Filed> filed = FoldersOf(messages);
    if (filed) filed->remove(into);
    return filed;
  }
  if (shownIn == into || !IsFilledByHand(shownIn)) return Filed();
  const auto members = Members(context_, messages, shownIn);
  if (!members) return members.Error();
  return members->isEmpty() ? Filed() : Filed{{shownIn, *members}};
}

// Taking it back leaves what was in the folders before.
QStringList MessageActions::File(const QStringList& messages, const QString& into,
                                 const QString& shownIn) {
  const auto before = Members(context_, messages, into);
  const Result<Filed> left = Left(messages, into, shownIn);
  const Result<> done = !before ? before.Error()
                        : !left ? left.Error()
                                : FileMessages(context_, messages, into, *left);
  const QStringList filed = End(done, messages);
  const bool leavesInbox =
      shownIn == fixed_serial::kInbox && ListSettings(context_).ShowsFiledOnce();
  const bool leavesFolder = shownIn != into && IsFilledByHand(shownIn);
  const QStringList gone = leavesFolder || leavesInbox ? filed : QStringList();
  if (done) lastFolder_ = into;
  if (!done || !told_) return gone;
  QStringList added = messages;
  added.removeIf([&before](const QString& message) { return before->contains(message); });
  told_(Ui::tr("%1通を「%2」に入れました。").arg(messages.size()).arg(NameOf(into)),
        [this, added, into, left = *left] { Unfile(added, into, left); });
  return gone;
}

void MessageActions::Unfile(const QStringList& added, const QString& into, const Filed& left) {
  const Result<> done = UnfileMessages(context_, added, into, left);
  QStringList back = added;
  for (const QStringList& messages : left) back += messages;
  back.removeDuplicates();
  back = End(done, back);
  if (returned_ && !back.isEmpty()) returned_(back);
}

// What is filed is not shown there, so it is taken out of its folders.
QStringList MessageActions::PutIntoInbox(const QStringList& messages, const QString& from) {
  const bool wasDust = from == fixed_serial::kDust;
  const auto received = Received(context_, messages);
  const auto filed = received ? FoldersOf(*received) : received.Error();
  if (!filed) return End(filed.Error(), messages);
  const QStringList& taken = wasDust ? messages : *received;
  if (taken.isEmpty()) {
    ShowBox(&window_, QMessageBox::Information,
            Ui::tr("「%1」に入れられるのは、受信したメッセージだけです。")
                .arg(NameOf(fixed_serial::kInbox)));
    return {};
  }
  UnderWay underWay;
  const Result<> done = vorn::PutIntoInbox(context_, taken, *filed, &underWay);
  const QStringList changed = End(done, taken, underWay);
  if (!changed.isEmpty() && told_) {
    const QString what = wasDust ? Ui::tr("%1通をくずかごから出しました。").arg(changed.size())
                                 : Ui::tr("%1通を「%2」に入れました。")
                                       .arg(changed.size())
                                       .arg(NameOf(fixed_serial::kInbox));
    told_(what, [this, filed = *filed, changed, wasDust] {
      const Result<> undone =
          vorn::TakeOutOfInbox(context_, filed, wasDust ? changed : QStringList());
      const QStringList back = End(undone, changed);
      if (returned_ && !back.isEmpty()) returned_(back);
    });
  }
  return wasDust || IsFilledByHand(from) ? changed : QStringList();
}

Result<Filed> MessageActions::FoldersOf(const QStringList& messages) {
  Filed filed;
  const auto folders = SelectObjects(context_.Objects, *context_.Session, QStringLiteral("static"));
  for (const DiskPtr& folder : *folders) {
    if (!FolderObject(*folder).ShowsWhatIsFiled()) continue;
    const auto members = Members(context_, messages, folder->SerialID());
    if (!members) return members.Error();
    if (!members->isEmpty()) filed[folder->SerialID()] = *members;
  }
  return filed;
}

QStringList MessageActions::ChangeDust(const QStringList& messages, bool dust) {
  UnderWay underWay;
  const Result<> done = SetDust(context_, messages, dust, &underWay);
  const QStringList changed = End(done, messages, underWay);
  const qsizetype count = changed.size();
  if (count == 0 || !told_) return changed;
  told_(dust ? Ui::tr("%1通をくずかごに入れました。").arg(count)
             : Ui::tr("%1通をくずかごから出しました。").arg(count),
        [this, messages, dust] {
          const QStringList back = End(SetDust(context_, messages, !dust), messages);
          if (returned_ && !back.isEmpty()) returned_(back);
        });
  return changed;
}

QStringList MessageActions::Delete(const QStringList& messages) {
  const auto answer = ShowBox(
      &window_, QMessageBox::Question,
      Ui::tr("メッセージ%1通を削除します。元には戻せません。よろしいですか？").arg(messages.size()),
      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return {};
  UnderWay underWay;
  const Result<> done = DeleteMessages(context_, messages, &underWay);
  if (done && deleted_) deleted_();
  return End(done, messages, underWay);
}

void MessageActions::EmptyDust() {
  const auto answer =
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("くずかごのメッセージをすべて削除します。元には戻せません。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  if (const Result<> emptied = vorn::EmptyDust(context_); !emptied) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("削除できませんでした。") + emptied.Error().text);
  } else if (deleted_) {
    deleted_();
  }
  host_.MessageStored();
}

bool MessageActions::IsFilledByHand(const QString& folder) const {
  const DiskPtr object = context_.Objects.Find(folder);
  return object != nullptr && FolderObject(*object).ShowsWhatIsFiled();
}

// Of a change to messages, of which a failure is told. Returns those that were changed.
QStringList MessageActions::End(const Result<>& done, const QStringList& messages,
                                const UnderWay& underWay) {
  if (!done) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("変更を保存できませんでした。") + done.Error().text);
  } else if (!underWay.isEmpty()) {
    ShowBox(&window_, QMessageBox::Information,
            Ui::tr("送信中なので、そのままにしました: %1")
                .arg(QStringLiteral("「") + underWay.values().join(QStringLiteral("」「")) +
                     QStringLiteral("」")));
  }
  host_.MessageStored();
  QStringList changed = done ? messages : QStringList();
  changed.removeIf([&underWay](const QString& message) { return underWay.contains(message); });
  return changed;
}

}  // namespace vorn
