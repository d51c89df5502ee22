#include "frame/window/commands/message_actions.h"

#include <QMessageBox>
#include <utility>

#include "auxiliary/window/console_window.h"
#include "kit/window/plain_text.h"
#include "kit/window/progress_window.h"
#include "objects/folder_object.h"
#include "objects/list_settings.h"
#include "objects/manual_folder.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/shown_object.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// What was done, said of so many messages.
using Words = std::function<QString(qsizetype)>;

Words FiledWords(const QString& folder) {
  return [folder](qsizetype count) {
    return Ui::tr("%n通を「%1」に入れました。", nullptr, static_cast<int>(count)).arg(folder);
  };
}

Words BinWords(bool dust) {
  return [dust](qsizetype count) { return DustWords(dust, count); };
}

Words OpenedWords(bool isNew) {
  return [isNew](qsizetype count) {
    const int n = static_cast<int>(count);
    return isNew ? Ui::tr("%n通を未開封にしました。", nullptr, n)
                 : Ui::tr("%n通を開封済みにしました。", nullptr, n);
  };
}

bool HasNew(Context& context, const SerialId& message) {
  return FlagsOf(context, {message}).ValueOr({}).value(message).Has(kFlagNew);
}

auto SetNew(Context& context, bool isNew) {
  return [&context, isNew](const SerialIds& messages) {
    return SetMark(context, messages, kFlagNew, isNew);
  };
}

}  // namespace

SerialIds MessageActions::Act(MessageAction action, const SerialIds& messages,
                              const SerialId& folder) {
  const bool isDust = folder == fixed_serial::kDust;
  switch (action) {
    case MessageAction::OutOfDust: {
      const SerialIds changed = ChangeDust(messages, false);
      return isDust ? changed : SerialIds();
    }
    case MessageAction::File:
      return ChooseFolder(messages, folder);
    case MessageAction::MarkUnopened:
    case MessageAction::MarkOpened:
    case MessageAction::ToggleOpened: {
      const bool isNew =
          action == MessageAction::MarkUnopened ||
          (action == MessageAction::ToggleOpened && !HasNew(context_, messages.first()));
      Mark(messages, SetNew(context_, isNew), SetNew(context_, !isNew), OpenedWords(isNew));
      return {};
    }
    case MessageAction::ToggleStar: {
      const auto toggle = [this](const SerialIds& starred) {
        return vorn::ToggleStar(context_, starred);
      };
      const Result<MessageFlags> before = FlagsOf(context_, messages);
      if (!before) {
        TellEnd(before.Error(), {});
        return {};
      }
      const auto back = [this, before = *before](const SerialIds& changed) -> Result<> {
        SerialIds starred;
        SerialIds bare;
        for (const SerialId& message : changed) {
          (before.value(message).Has(kFlagStar) ? starred : bare).append(message);
        }
        const Result<> set = SetMark(context_, starred, kFlagStar, true);
        return set ? SetMark(context_, bare, kFlagStar, false) : set;
      };
      Mark(messages, toggle, back, [](qsizetype count) {
        return Ui::tr("%n通のスターを変えました。", nullptr, static_cast<int>(count));
      });
      return {};
    }
    case MessageAction::ToDust:
      return isDust ? Delete(messages) : ChangeDust(messages, true);
  }
  return {};
}

QString MessageActions::NameOf(const SerialId& folder) const {
  const DiskPtr object = context_.Objects.Find(folder);
  return object == nullptr ? folder.Text() : ShownObject(*object).Name();
}

SerialIds MessageActions::Drop(const SerialIds& messages, const SerialId& folder,
                               const SerialId& from) {
  const bool isDust = folder == fixed_serial::kDust;
  if (folder == fixed_serial::kInbox && ListSettings(context_).ShowsFiledOnce()) {
    return PutIntoInbox(messages, from);
  }
  if (isDust || folder == fixed_serial::kInbox) {
    const SerialIds changed = ChangeDust(messages, isDust);
    return isDust == (from == fixed_serial::kDust) ? SerialIds() : changed;
  }
  return File(messages, folder, from);
}

SerialId MessageActions::AskForFolder() {
  const auto folders = SelectObjects(context_.Objects, *context_.Session, object_filter::kByHand);
  const QString ask = Ui::tr("新しいフォルダの名前を入力してください。");
  if (folders->IsEmpty()) return MakeFolder(NoFolderWords() + kLineBreak + kLineBreak + ask);
  // Enter takes the folder of last time, or the first one.
  const bool hasLast = folders->Find(lastFolder_) != nullptr;
  const SerialId likely = hasLast ? lastFolder_ : folders->First()->Serial();
  const auto into = InputTree(context_, &window_, Ui::tr("フォルダに入れる"),
                              Ui::tr("メッセージを入れるフォルダを選択してください。"),
                              object_filter::kByHand, likely, Ui::tr("新しいフォルダ(&N).."));
  if (into && into->startsWith(kAnotherWanted)) {
    const QString name = into->sliced(kAnotherWanted.size());
    const DiskPtr inbox = context_.Objects.Find(fixed_serial::kInbox);
    const bool isInbox =
        inbox != nullptr && ShownObject(*inbox).Names().contains(name, Qt::CaseInsensitive);
    if (isInbox && ListSettings(context_).ShowsFiledOnce()) return fixed_serial::kInbox;
    return MakeFolder(ask, name);
  }
  if (into && into->isEmpty()) {
    ShowBox(&window_, QMessageBox::Information, Ui::tr("フォルダが選択されていません。"));
  }
  return SerialId(into.value_or(QString()));
}

SerialId MessageActions::MakeFolder(const QString& caption, QString name) {
  while (true) {
    name = InputText(context_, &window_, Ui::tr("新しいフォルダ"), caption, name)
               .value_or(QString())
               .trimmed();
    if (name.isEmpty()) return {};
    const Result<SerialId> made = MakeManualFolder(context_, name);
    if (!made) {
      ShowBox(&window_, QMessageBox::Critical, made.Error().text);
      continue;
    }
    if (folderMade_) folderMade_(*made);
    return *made;
  }
}

SerialIds MessageActions::ChooseFolder(const SerialIds& messages, const SerialId& folder) {
  const SerialId into = AskForFolder();
  if (into == fixed_serial::kInbox) return PutIntoInbox(messages, folder);
  if (into.IsEmpty() || !IsFilledByHand(into)) return {};
  return File(messages, into, folder);
}

// All hand-filled folders, which the messages may be in.
Filed MessageActions::AllFolders(const SerialIds& messages) {
  Filed filed;
  const auto folders = SelectObjects(context_.Objects, *context_.Session, object_filter::kByHand);
  for (const DiskPtr& folder : *folders) {
    if (FolderObject(*folder).ShowsWhatIsFiled()) filed[folder->Serial()] = messages;
  }
  return filed;
}

// They leave the hand-filled folder that is shown, or where those of all folders are, each the ones
// that it is in; and the dust bin, which else would be emptied with them.
SerialIds MessageActions::File(const SerialIds& messages, const SerialId& into,
                               const SerialId& shownIn) {
  Move move{.into = {{into, messages}}, .outOfDust = messages};
  const bool leavesFolder = IsFilledByHand(shownIn);
  if (shownIn.IsEmpty()) move.outOf = AllFolders(messages);
  if (leavesFolder) move.outOf = {{shownIn, messages}};
  move.outOf.remove(into);
  const SerialIds filed = Carry(move, messages, FiledWords(NameOf(into)));
  if (!filed.isEmpty()) lastFolder_ = into;
  const bool leavesInbox =
      shownIn == fixed_serial::kInbox && ListSettings(context_).ShowsFiledOnce();
  const bool leaves = leavesFolder || leavesInbox || shownIn == fixed_serial::kDust;
  return leaves && shownIn != into ? filed : SerialIds();
}

// What is filed is not shown there, so it is taken out of its folders.
SerialIds MessageActions::PutIntoInbox(const SerialIds& messages, const SerialId& from) {
  const bool wasDust = from == fixed_serial::kDust;
  const auto received = ReceivedAmong(context_, messages);
  if (!received) return End(received.Error(), messages);
  const SerialIds& taken = wasDust ? messages : *received;
  if (taken.isEmpty()) {
    ShowBox(&window_, QMessageBox::Information,
            Ui::tr("「%1」に入れられるのは、受信したメッセージだけです。")
                .arg(NameOf(fixed_serial::kInbox)));
    return {};
  }
  const SerialIds changed =
      Carry({.outOf = AllFolders(*received), .outOfDust = taken}, taken,
            wasDust ? BinWords(false) : FiledWords(NameOf(fixed_serial::kInbox)));
  return wasDust || IsFilledByHand(from) ? changed : SerialIds();
}

QString DustWords(bool dust, qsizetype count) {
  const int n = static_cast<int>(count);
  return dust ? Ui::tr("%n通をくずかごに入れました。", nullptr, n)
              : Ui::tr("%n通をくずかごから出しました。", nullptr, n);
}

QString DeletedWords(qsizetype count) {
  return Ui::tr("%n通を削除しました。", nullptr, static_cast<int>(count));
}

SerialIds MessageActions::ChangeDust(const SerialIds& messages, bool dust) {
  return Carry(dust ? Move{.intoDust = messages} : Move{.outOfDust = messages}, messages,
               BinWords(dust));
}

// Moves messages, and tells how many it moved. Returns those that are now where they should be.
SerialIds MessageActions::Carry(const Move& move, const SerialIds& messages, const Words& words) {
  const MovedSome carried = MoveAll(move);
  TellEnd(carried.end, carried.moved.underWay);
  const Move& back = carried.moved.back;
  const qsizetype count = back.Messages().size();
  if (count > 0 && told_) told_(words(count), [this, back] { CarryBack(back); });
  const bool isWhole = carried.messages.size() == move.Messages().size();
  return Without(carried.moved.underWay, isWhole ? messages : carried.messages);
}

void MessageActions::CarryBack(const Move& move) {
  const MovedSome carried = MoveAll(move);
  TellEnd(carried.end, carried.moved.underWay);
  const SerialIds back = Without(carried.moved.underWay, carried.messages);
  if (returned_ && !back.isEmpty()) returned_(back);
  const SerialIds rest = move.Messages().mid(carried.messages.size());
  if (rest.isEmpty() || !carried.end || !told_) return;
  told_(Ui::tr("%n通が残っています。", nullptr, static_cast<int>(rest.size())),
        [this, others = move.Only(rest)] { CarryBack(others); });
}

MovedSome MessageActions::MoveAll(const Move& move) {
  ProgressWindow progress(&window_, Ui::tr("メッセージの移動"));
  return MoveInPieces(context_, move,
                      [&progress](int done, int total) { return progress.Show(done, total); });
}

// Marks messages, and tells how many have other marks now.
void MessageActions::Mark(const SerialIds& messages, const Marking& mark, const Marking& back,
                          const Words& words) {
  const Result<MessageFlags> before = FlagsOf(context_, messages);
  const Result<> done = before ? mark(messages) : before.Error();
  End(done, messages);
  const Result<MessageFlags> after = FlagsOf(context_, messages);
  if (!done || !after || !told_) return;
  SerialIds changed;
  for (const SerialId& message : messages) {
    if (before->value(message) != after->value(message)) changed.append(message);
  }
  if (changed.isEmpty()) return;
  told_(words(changed.size()), [this, back, changed] { End(back(changed), changed); });
}

SerialIds MessageActions::Delete(const SerialIds& messages) {
  const auto answer =
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("メッセージ%n通を削除します。元には戻せません。よろしいですか？", nullptr,
                     static_cast<int>(messages.size())),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return {};
  const Result<UnderWay> kept = DeleteMessages(context_, messages);
  if (kept && deleted_) deleted_(DeletedWords(messages.size() - kept->size()));
  return kept ? End({}, messages, *kept) : End(kept.Error(), messages);
}

void MessageActions::EmptyDustBin() {
  const auto answer =
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("くずかごのメッセージをすべて削除します。元には戻せません。よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  const Emptied emptied = [this] {
    ProgressWindow progress(&window_, Ui::tr("くずかごの削除"));
    return EmptyDust(context_,
                     [&progress](int done, int total) { return progress.Show(done, total); });
  }();
  QString words = DeletedWords(emptied.count);
  if (emptied.left > 0) {
    words += Ui::tr("中止したので、%n通が残っています。", nullptr, emptied.left);
  }
  if (deleted_ && (emptied.end || emptied.count > 0)) deleted_(words);
  TellEnd(emptied.end, emptied.underWay);
}

bool MessageActions::IsFilledByHand(const SerialId& folder) const {
  const DiskPtr object = context_.Objects.Find(folder);
  return object != nullptr && FolderObject(*object).ShowsWhatIsFiled();
}

// A failure is told, and what stayed as it was because it is being sent.
void MessageActions::TellEnd(const Result<>& done, const UnderWay& underWay) {
  if (!done) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("変更を保存できませんでした。") + done.Error().text);
  } else if (!underWay.isEmpty()) {
    ShowBox(&window_, QMessageBox::Information,
            Ui::tr("送信中なので、そのままにしました: %1")
                .arg(Ui::tr("「%1」").arg(underWay.values().join(Ui::tr("」「")))));
  }
  host_.MessageStored();
}

// Of a change to messages, all of them or none. Returns those that were changed.
SerialIds MessageActions::End(const Result<>& done, const SerialIds& messages,
                              const UnderWay& underWay) {
  TellEnd(done, underWay);
  return done ? Without(underWay, messages) : SerialIds();
}

}  // namespace vorn
