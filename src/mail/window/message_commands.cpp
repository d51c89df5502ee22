#include "mail/window/message_commands.h"

#include <QApplication>
#include <QMessageBox>
#include <QStyle>

#include "auxiliary/window/console_window.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "mail/message_document.h"
#include "mail/store/message_filing.h"
#include "mail/window/bars/message_bars.h"
#include "mail/window/bars/reading_bar.h"
#include "mail/window/body/message_body.h"
#include "mail/window/composing/message_closing.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/composing/message_output.h"
#include "mail/window/composing/message_sending.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "mail/window/fields/focused_box.h"
#include "mail/window/fields/header_list.h"
#include "mail/window/host/message_host.h"
#include "mail/window/message_window.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/ui.h"

namespace vorn {
namespace {

using Parts = MessageParts;
using State = MessageState;

const QKeySequence kAttachKey(Qt::CTRL | Qt::SHIFT | Qt::Key_A);

// What the commands do.

void Send(const Parts& parts) {
  parts.sending.SendOrCancel();
}

void SendFromToolbar(const Parts& parts) {
  parts.sending.SendFromToolbar();
}

template <OpenMode kMode>
void TurnInto(const Parts& parts) {
  parts.window.TurnInto(kMode);
}

template <int kStep>
void ShowNeighbour(const Parts& parts) {
  parts.window.ShowNeighbour(kStep);
}

void ToggleDust(const Parts& parts) {
  parts.document.Edits().ToggleDust();
  parts.window.ShowState();
}

// As in lists: what lies in the dust already is deleted, after a question.
void ThrowAway(const Parts& parts) {
  if (parts.document.IsInDust() && !parts.document.IsNew()) return parts.closing.Delete();
  ToggleDust(parts);
  parts.window.close();
}

// Kept at once, since the lists show it.
void ToggleStar(const Parts& parts) {
  const bool star = !StateOf(parts).hasStar;
  if (const Result<> marked = SetMark(parts.context, {parts.document.Tag()}, kFlagStar, star)) {
    parts.document.Edits().FollowStar(star);
    parts.host.MessageStored();
  } else {
    ShowBox(&parts.window, QMessageBox::Critical,
            Ui::tr("変更を保存できませんでした。") + marked.Error().text);
  }
  parts.window.ShowState();
}

void ChooseFolders(const Parts& parts) {
  QStringList entries;
  const DiskCollectionPtr folders =
      SelectObjects(parts.context.Objects, *parts.context.Session, object_filter::kByHand);
  if (folders->IsEmpty()) {
    ShowBox(&parts.window, QMessageBox::Information, NoFolderWords());
    return;
  }
  for (const DiskPtr& folder : *folders) {
    // "@" separates the fields of an entry.
    QString name = AnyObject(*folder).Name();
    entries.append(folder->SerialID() + u'@' + name.replace(u'@', u'＠') + u'@' +
                   AnyObject(*folder).Draw());
  }
  const auto chosen = InputList(parts.context, &parts.window, Ui::tr("保存フォルダ"),
                                Ui::tr("メッセージを保存するフォルダを選択してください。"),
                                LinesOf(MessageBag(*parts.document.Bag()).Folders()),
                                entries.join(kLineBreak), true);
  if (chosen) parts.document.Edits().SetFolders(SerialIdsOfLines(*chosen));
}

template <CharsetChoice kCharset>
void PickCharset(const Parts& parts) {
  parts.window.SetActiveCharset(kCharset);
}

QString HeaderOf(Priority priority) {
  switch (priority) {
    case Priority::High:
      return QStringLiteral("1");
    case Priority::Usual:
      return QStringLiteral("3");
    case Priority::Low:
      return QStringLiteral("5");
  }
  return {};
}

template <Priority kPriority>
void Prioritize(const Parts& parts) {
  Disk& bag = *parts.document.Bag();
  MessageBag::SetFlags(bag, MessageBag(bag).Flags().WithPriority(kPriority));
  parts.form.Headers().SetHeader(QStringLiteral("X-Priority:"), HeaderOf(kPriority));
  parts.window.SetEdited(true);
}

void Paste(const Parts& parts) {
  if (!parts.form.Clips().Input().Paste()) InFocusedBox(parts.window, "paste");
}

void AddAttachment(const Parts& parts) {
  parts.form.Clips().Input().AddByDialog();
}

// How they are shown.

bool IsWaiting(const State& state) {
  return state.status == kStatusWaiting;
}

bool IsReceived(const State& state) {
  return state.IsRead();
}

bool IsWritten(const State& state) {
  return state.status == kStatusEdit || IsWaiting(state);
}

bool IsEditable(const State& state) {
  return state.isEditable;
}

// Of a doubtful message there is nothing to cancel; its bar offers what there is to decide.
bool MaySend(const State& state) {
  return state.status != kStatusReceived && (!state.isUnreadable || IsWaiting(state)) &&
         !state.isDoubtful;
}

bool MayAnswer(const State& state) {
  return !state.isEditable && !state.isUnreadable;
}

bool OffersSending(const State& state) {
  return !state.isUnreadable && (state.status == kStatusEdit || state.status == kStatusSent);
}

template <CharsetChoice kCharset>
bool IsIn(const State& state) {
  return state.charset == kCharset;
}

template <Priority kPriority>
bool HasPriority(const State& state) {
  return state.priority == kPriority;
}

// Who is to mend a message looks for a word that says so.
QString CancelButtonText(const State& state) {
  return state.isRefused ? Ui::tr("編集して再送") : Ui::tr("送信キャンセル");
}

QString SendText(const State& state) {
  if (state.isRefused) return Ui::tr("編集して再送(&S)..");
  return IsWaiting(state) ? Ui::tr("送信をキャンセル(&S)") : Ui::tr("送信(&S)");
}

QString SendButtonText(const State& state) {
  return state.status == kStatusSent ? Ui::tr("再送") : Ui::tr("送信");
}

QIcon Picture(const char* key) {
  return Icon(QString::fromLatin1(key));
}

QIcon Picture(QStyle::StandardPixmap picture) {
  return QApplication::style()->standardIcon(picture);
}

// The boxes obey these keys themselves; the menu only shows them.
QString WithKey(const QString& text, const char* key) {
  return text + u'\t' + QString::fromLatin1(key);
}

QList<MessageCommand> FileEntries() {
  using enum CommandPlace;
  return {
      {MenuBar,
       Ui::tr("ファイル(&F)"),
       nullptr,
       {.name = QStringLiteral("menuFiles"), .opens = FileMenu}},
      {FileMenu,
       Ui::tr("メッセージ(&M).."),
       nullptr,
       {.name = QStringLiteral("menuFilesMessages"), .opens = MessagesMenu}},
      {FileMenu,
       Ui::tr("くずかご(&B)"),
       ToggleDust,
       {.begins = true,
        .needsRow = true,
        .isChecked = [](const State& state) { return state.isInDust; }}},
      {FileMenu,
       Ui::tr("ファイルに保存(&F).."),
       [](const Parts& parts) { parts.output.SaveToFile(parts.window.GetMessageSubject()); },
       {.keys = {QKeySequence::Save}, .begins = true, .needsText = true}},
      {FileMenu,
       Ui::tr("印刷(&P).."),
       [](const Parts& parts) { parts.output.Print(); },
       {.keys = {QKeySequence::Print}, .begins = true, .needsText = true}},
      {FileMenu,
       Ui::tr("閉じる(&X)"),
       [](const Parts& parts) { parts.window.close(); },
       {.keys = {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)},
        .begins = true}},
      // As in the main window, without an entry of its own.
      {Keys,
       QString(),
       [](const Parts& parts) { parts.host.PostMail(MailRequest::New()); },
       {.keys = {QKeySequence::New}}},
  };
}

QList<MessageCommand> MessagesEntries() {
  using enum CommandPlace;
  return {
      {MessagesMenu,
       Ui::tr("送信(&S)"),
       Send,
       {.keys = {QKeySequence(Qt::CTRL | Qt::Key_Return)}, .isEnabled = MaySend, .text = SendText}},
      {MessagesMenu,
       Ui::tr("送信者に返信(&R)"),
       TurnInto<OpenMode::Reply>,
       {.keys = {QKeySequence(Qt::CTRL | Qt::Key_R)}, .begins = true, .isEnabled = MayAnswer}},
      {MessagesMenu,
       Ui::tr("関係者に返信(&A)"),
       TurnInto<OpenMode::ReplyAll>,
       {.keys = {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R)}, .isEnabled = MayAnswer}},
      {MessagesMenu,
       Ui::tr("転送(&F)"),
       TurnInto<OpenMode::Forward>,
       {.keys = {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F)}, .isEnabled = MayAnswer}},
      {MessagesMenu, Ui::tr("再送信(&T)"), TurnInto<OpenMode::Resend>, {.isEnabled = MayAnswer}},
      {MessagesMenu,
       Ui::tr("削除(&D)"),
       [](const Parts& parts) { parts.closing.Delete(); },
       {.begins = true,
        .needsRow = true,
        .isEnabled = [](const State& state) { return state.isStored; }}},
      {MessagesMenu,
       Ui::tr("保存フォルダ(&F).."),
       ChooseFolders,
       {.begins = true, .needsText = true, .needsRow = true}},
      {MessagesMenu,
       Ui::tr("このようなメールをフォルダに集める(&G).."),
       [](const Parts& parts) { parts.host.GatherAlike(parts.document.Bag()->Serial()); },
       {.begins = true, .needsRow = true, .isEnabled = IsReceived}},
      {MessagesMenu,
       Ui::tr("このようなメールを受信しない(&X).."),
       [](const Parts& parts) { parts.host.StopAlike(parts.document.Bag()->Serial()); },
       {.needsRow = true, .isEnabled = IsReceived}},
      {MessagesMenu,
       Ui::tr("アドレスブックに登録(&B)"),
       [](const Parts& parts) { parts.host.AddToBook({parts.document.Bag()->Serial()}); },
       {.needsRow = true, .isEnabled = IsReceived}},
  };
}

QList<MessageCommand> EditEntries() {
  using enum CommandPlace;
  return {
      {MenuBar,
       Ui::tr("編集(&E)"),
       nullptr,
       {.name = QStringLiteral("menuEdits"), .opens = EditMenu}},
      {EditMenu, WithKey(Ui::tr("切り取り(&X)"), "Ctrl+X"),
       [](const Parts& parts) { InFocusedBox(parts.window, "cut"); }},
      {EditMenu, WithKey(Ui::tr("コピー(&C)"), "Ctrl+C"),
       [](const Parts& parts) { InFocusedBox(parts.window, "copy"); }},
      {EditMenu, Ui::tr("削除(&D)"), [](const Parts& parts) { DeleteInFocusedBox(parts.window); }},
      {EditMenu, WithKey(Ui::tr("貼り付け(&P)"), "Ctrl+V"), Paste},
      {EditMenu,
       Ui::tr("文字セット(&H)"),
       nullptr,
       {.name = QStringLiteral("menuEditCharsets"), .begins = true, .opens = CharsetMenu}},
      {EditMenu,
       Ui::tr("文字コードを選んで読む(&M).."),
       [](const Parts& parts) { parts.bars.Reading().Choose(); },
       {.name = QStringLiteral("readas"), .needsText = true, .isEnabled = IsReceived}},
      {EditMenu,
       Ui::tr("添付ファイル(&A)"),
       nullptr,
       {.name = QStringLiteral("menuEditsAttachments"), .opens = AttachmentMenu}},
      {EditMenu,
       Ui::tr("優先度(&I)"),
       nullptr,
       {.name = QStringLiteral("menuEditsPrioritys"), .opens = PriorityMenu}},
      {EditMenu,
       WithKey(Ui::tr("元に戻す(&U)"), "Ctrl+Z"),
       [](const Parts& parts) { InFocusedBox(parts.window, "undo"); },
       {.begins = true}},
      {EditMenu, WithKey(Ui::tr("やり直し(&R)"), "Ctrl+Y"),
       [](const Parts& parts) { InFocusedBox(parts.window, "redo"); }},
      {EditMenu, WithKey(Ui::tr("すべて選択(&L)"), "Ctrl+A"),
       [](const Parts& parts) { InFocusedBox(parts.window, "selectAll"); }},
      {EditMenu,
       Ui::tr("検索(&F).."),
       [](const Parts& parts) { parts.form.OpenFind(); },
       {.keys = {QKeySequence::Find}, .begins = true}},
  };
}

QList<MessageCommand> EditingEntries() {
  using enum CommandPlace;
  return {
      {CharsetMenu,
       Ui::tr("日本語ＪＩＳ(&J)"),
       PickCharset<CharsetChoice::Jis>,
       {.oneOf = true, .isChecked = IsIn<CharsetChoice::Jis>}},
      {CharsetMenu,
       Ui::tr("日本語ＥＵＣ(&E)"),
       PickCharset<CharsetChoice::Euc>,
       {.oneOf = true, .isChecked = IsIn<CharsetChoice::Euc>}},
      {CharsetMenu,
       Ui::tr("日本語ＳＪＩＳ(&S)"),
       PickCharset<CharsetChoice::ShiftJis>,
       {.oneOf = true, .isChecked = IsIn<CharsetChoice::ShiftJis>}},
      {CharsetMenu,
       Ui::tr("適切な文字セット(&A)"),
       PickCharset<CharsetChoice::Automatic>,
       {.begins = true, .oneOf = true, .isChecked = IsIn<CharsetChoice::Automatic>}},
      {CharsetMenu,
       Ui::tr("ＵＴＦ－８(&U)"),
       PickCharset<CharsetChoice::Utf8>,
       {.oneOf = true, .isChecked = IsIn<CharsetChoice::Utf8>}},
      {AttachmentMenu,
       Ui::tr("保存(&S).."),
       [](const Parts& parts) { parts.form.Clips().SaveByDialog(); },
       {.isEnabled = [](const State& state) { return state.hasAttachments; }}},
      {AttachmentMenu,
       Ui::tr("追加(&A).."),
       AddAttachment,
       {.keys = {kAttachKey}, .isEnabled = IsEditable}},
      {AttachmentMenu,
       Ui::tr("中のファイルを取り出す(&X).."),
       [](const Parts& parts) { parts.form.Clips().UnpackCurrent(); },
       {.isShown = [](const State& state) { return state.hasArchive; }}},
      {PriorityMenu,
       Ui::tr("高い(&H)"),
       Prioritize<Priority::High>,
       {.oneOf = true, .isEnabled = IsEditable, .isChecked = HasPriority<Priority::High>}},
      {PriorityMenu,
       Ui::tr("普通(&N)"),
       Prioritize<Priority::Usual>,
       {.oneOf = true, .isEnabled = IsEditable, .isChecked = HasPriority<Priority::Usual>}},
      {PriorityMenu,
       Ui::tr("低い(&L)"),
       Prioritize<Priority::Low>,
       {.oneOf = true, .isEnabled = IsEditable, .isChecked = HasPriority<Priority::Low>}},
  };
}

QList<MessageCommand> ViewEntries() {
  using enum CommandPlace;
  return {
      {MenuBar,
       Ui::tr("表示(&V)"),
       nullptr,
       {.name = QStringLiteral("menuViews"), .opens = ViewMenu}},
      {ViewMenu,
       Ui::tr("前のメッセージ(&B)"),
       ShowNeighbour<-1>,
       {.keys = {QKeySequence(Qt::CTRL | Qt::Key_PageUp)}, .needsRow = true}},
      {ViewMenu,
       Ui::tr("次のメッセージ(&N)"),
       ShowNeighbour<1>,
       {.keys = {QKeySequence(Qt::CTRL | Qt::Key_PageDown)}, .needsRow = true}},
      {ViewMenu,
       Ui::tr("拡大(&I)"),
       [](const Parts& parts) { parts.form.Body().ZoomBy(1); },
       {.keys = {QKeySequence::ZoomIn}, .begins = true}},
      {ViewMenu,
       Ui::tr("縮小(&O)"),
       [](const Parts& parts) { parts.form.Body().ZoomBy(-1); },
       {.keys = {QKeySequence::ZoomOut}}},
      {ViewMenu,
       Ui::tr("元の大きさ(&0)"),
       [](const Parts& parts) { parts.form.Body().ZoomBack(); },
       {.keys = {QKeySequence(Qt::CTRL | Qt::Key_0)}}},
      {ViewMenu,
       Ui::tr("ソースを表示(&S)"),
       [](const Parts& parts) { parts.output.ShowSource(parts.window.GetMessageSubject()); },
       {.keys = {QKeySequence(Qt::CTRL | Qt::Key_U)}, .begins = true, .needsText = true}},
  };
}

QList<MessageCommand> CommandBarButtons() {
  using enum CommandPlace;
  return {
      {CommandBar,
       Ui::tr("送信"),
       SendFromToolbar,
       {.name = QStringLiteral("mailup"),
        .icon = Picture("mailup"),
        .isShown = OffersSending,
        .text = SendButtonText}},
      {CommandBar,
       Ui::tr("送信キャンセル"),
       SendFromToolbar,
       {.name = QStringLiteral("mailupdelete"),
        .icon = Picture("mailup"),
        .isEnabled = [](const State& state) { return !state.isDoubtful; },
        .isShown = IsWaiting,
        .text = CancelButtonText}},
      {CommandBar,
       Ui::tr("返信"),
       TurnInto<OpenMode::Reply>,
       {.name = QStringLiteral("replay"), .icon = Picture("mail"), .isShown = IsReceived}},
      {CommandBar,
       Ui::tr("ﾌｧｲﾙ"),
       nullptr,
       {.name = QStringLiteral("file"), .icon = Picture(QStyle::SP_FileIcon), .opens = FileMenu}},
      {CommandBar,
       Ui::tr("添付"),
       AddAttachment,
       {.name = QStringLiteral("clip"),
        .icon = Picture(QStyle::SP_DialogOpenButton),
        .shownKey = kAttachKey,
        .isEnabled = IsEditable,
        .isShown = IsWritten}},
      {CommandBar,
       Ui::tr("編集"),
       nullptr,
       {.name = QStringLiteral("edit"),
        .icon = Picture(QStyle::SP_FileDialogDetailedView),
        .opens = EditMenu,
        .isShown = IsWritten}},
  };
}

QList<MessageCommand> ReadingBarButtons() {
  using enum CommandPlace;
  return {
      {ReadingBar,
       Ui::tr("全員に返信"),
       TurnInto<OpenMode::ReplyAll>,
       {.name = QStringLiteral("replayall"), .icon = Picture("replayall")}},
      {ReadingBar,
       Ui::tr("転送"),
       TurnInto<OpenMode::Forward>,
       {.name = QStringLiteral("forward"), .icon = Picture("forward")}},
      {ReadingBar,
       Ui::tr("前"),
       ShowNeighbour<-1>,
       {.name = QStringLiteral("before"),
        .icon = Picture(QStyle::SP_ArrowBack),
        .begins = true,
        .needsRow = true}},
      {ReadingBar,
       Ui::tr("次"),
       ShowNeighbour<1>,
       {.name = QStringLiteral("next"),
        .icon = Picture(QStyle::SP_ArrowForward),
        .needsRow = true}},
      {ReadingBar,
       Ui::tr("スター"),
       ToggleStar,
       {.name = QStringLiteral("star"),
        .icon = Picture("bookmark"),
        .begins = true,
        .needsRow = true,
        .isChecked = [](const State& state) { return state.hasStar; }}},
      {ReadingBar,
       Ui::tr("くずかご"),
       ThrowAway,
       {.name = QStringLiteral("dust"), .icon = Picture("dust"), .needsRow = true}},
  };
}

}  // namespace

MessageState StateOf(const MessageParts& parts) {
  const MessageDocument& document = parts.document;
  const FlagString flags = MessageBag(*document.Bag()).Flags();
  const AttachmentList& clips = parts.form.Clips();
  return {.status = document.Status(),
          .isInDust = document.IsInDust(),
          .isStored = !document.IsNew(),
          .isErased = parts.bars.SaysErased(),
          .isUnreadable = document.IsUnreadable(),
          .isEditable = document.IsEditable(),
          .isDoubtful = parts.sending.IsDoubtful(),
          .isRefused = parts.bars.IsRefused(),
          .hasAttachments = !clips.Attachments().empty(),
          .hasArchive = clips.HasArchive(),
          .charset = document.Code().charset,
          .hasStar = flags.Has(kFlagStar),
          .priority = flags.StoredPriority()};
}

QList<MessageCommand> MessageCommands() {
  return FileEntries() + MessagesEntries() + EditEntries() + EditingEntries() + ViewEntries() +
         CommandBarButtons() + ReadingBarButtons();
}

}  // namespace vorn
