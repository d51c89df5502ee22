#include "frame/window/commands/archive_commands.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QSignalBlocker>
#include <QTimer>
#include <functional>
#include <optional>

#include "auxiliary/window/console_window.h"
#include "frame/window/commands/page_actions.h"
#include "kit/window/plain_text.h"
#include "kit/window/progress_window.h"
#include "mail/archive/export_messages.h"
#include "mail/archive/import_messages.h"
#include "mail/archive/mail_archive.h"
#include "mail/search/folder_listing.h"
#include "mail/search/search_condition.h"
#include "mail/store/message_filing.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/shown_object.h"
#include "present/window/page/condition_wait.h"
#include "storage/condition_run.h"
#include "storage/engine/condition_limit.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"
#include "transfer/mail_traffic.h"

namespace vorn {
namespace {

constexpr qsizetype kNamedMessages = 20;
constexpr int kLongestMs = 120000;  // to look for a folder's messages

// Lists a folder; what takes long is asked elsewhere, where the user can stop it.
Result<FolderListing> ListFolder(Context& context, const SerialId& folder,
                                 ProgressWindow& progress) {
  const QString unread = Ui::tr("フォルダを読み込めません。");
  {
    const ConditionLimit brief(kBriefMs);
    const Result<FolderListing> listing = ListFolderMessages(context, folder);
    if (listing) return listing;
    if (!brief.IsReached()) return listing.Error().Behind(unread);
  }
  std::optional<ConditionRun::Answer> found;
  const QString question =
      FolderSqlBuilder(context).Query(folder).Identifiers(RowOrder::OldestFirst);
  const ConditionRunPtr run(
      new ConditionRun(context, question, kLongestMs,
                       [&found](const ConditionRun::Answer& answer) { found = answer; }));
  if (!progress.Wait(Ui::tr("条件に合うメッセージを探しています…"),
                     [&found] { return found.has_value(); })) {
    return StorageError{StorageError::Kind::Other, Ui::tr("中止しました。")};
  }
  if (!found->values) return found->values.Error().Behind(unread);
  SerialIds serialIds;
  for (const QVariant& value : *found->values) serialIds.append(SerialIdOf(value));
  const Result<FolderListing> listing = ListMessages(context, serialIds);
  return listing ? listing : listing.Error().Behind(unread);
}

void WarnOf(QWidget* parent, const QString& text, const QString& which,
            const QList<UnreadableMessage>& messages) {
  QStringList lines{text, which};
  for (const UnreadableMessage& message : messages.first(qMin(messages.size(), kNamedMessages))) {
    lines.append(message.Name());
  }
  if (messages.size() > kNamedMessages) lines.append(QStringLiteral("…"));
  QMessageBox box(QMessageBox::Warning, kApplicationTitle, lines.join(u'\n'), QMessageBox::Ok,
                  parent);
  box.setTextFormat(Qt::PlainText);  // a subject is no markup
  box.exec();
}

// The inbox shows what is in no folder.
SerialId FiledIn(const SerialId& folder) {
  return folder == fixed_serial::kInbox ? SerialId() : folder;
}

struct FormatChoice {
  ArchiveFormat format;
  QString filter;
  QString suffix;
};

QList<FormatChoice> Formats() {
  return {{ArchiveFormat::Mbox, QStringLiteral("mbox (*.mbox)"), QStringLiteral(".mbox")},
          {ArchiveFormat::Maildir, Ui::tr("Maildirのフォルダ (*)"), QString()},
          {ArchiveFormat::Eml, Ui::tr("emlファイルのフォルダ (*)"), QString()}};
}

// Western sentences begin with a space, the first one too.
QString ImportedWords(const ImportCounts& counts, const QString& folder) {
  QString words;
  if (counts.imported > 0 || counts.returned == 0) {
    words = Ui::tr("%n通を「%1」に取り込みました。", nullptr, counts.imported).arg(folder);
  }
  if (counts.returned > 0) {
    words += Ui::tr("%n通をくずかごから「%1」に戻しました。", nullptr, counts.returned).arg(folder);
  }
  if (counts.known > 0) words += Ui::tr("%n通は保存済みでした。", nullptr, counts.known);
  if (counts.kept > 0) {
    words += Ui::tr("うち%n通は未送信で、くずかごの中です。", nullptr, counts.kept);
  }
  return words.trimmed();
}

// A window for folders may hand over another one than the user believes. In front, where a line
// with too little room is not cut off.
QString FolderReadWords(const QStringList& paths) {
  if (!QFileInfo(paths.first()).isDir()) return {};
  return Ui::tr("「%1」から：").arg(QDir::toNativeSeparators(paths.first()));
}

}  // namespace

void ArchiveCommands::ImportFiles(const SerialId& current) {
  Import(AskFilesToOpen(context_, &window_, FileTask::Import, Ui::tr("メッセージの取り込み"),
                        Ui::tr("メッセージ (*.eml *.mbox *.mbx);;すべてのファイル (*)")),
         current);
}

void ArchiveCommands::ImportFolder(const SerialId& current) {
  const QString folder = AskFolder(context_, &window_, FileTask::Import,
                                   Ui::tr("取り込むフォルダ（mbox、Maildir、emlのファイル）"));
  if (!folder.isEmpty()) Import({folder}, current);
}

QString ArchiveCommands::NameOf(const SerialId& folder) const {
  const DiskPtr object = context_.Objects.Find(folder);
  return object == nullptr ? QString() : ShownObject(*object).Name();
}

// Where there is no folder that is filled by hand there is nothing to ask. Empty: the user
// declines.
SerialId ArchiveCommands::AskTarget(const SerialId& current) {
  const QString kinds = object_filter::kInbox + kLineBreak + object_filter::kByHand;
  const auto targets = SelectObjects(context_.Objects, *context_.Session, kinds);
  if (targets->Count() <= 1) return fixed_serial::kInbox;
  const bool holdsMessages = targets->Find(current) != nullptr;
  return SerialId(InputTree(context_, &window_, Ui::tr("メッセージの取り込み"),
                            Ui::tr("取り込んだメッセージを入れるフォルダを選択してください。"),
                            kinds, holdsMessages ? current : fixed_serial::kInbox)
                      .value_or(QString()));
}

void ArchiveCommands::Import(const QStringList& paths, const SerialId& current) {
  const SerialId folder = paths.isEmpty() ? SerialId() : AskTarget(current);
  if (folder.IsEmpty()) return;
  if (traffic_.Control().Busy()) {
    ShowBox(&window_, QMessageBox::Information, Ui::tr("送受信が終わってから取り込んでください。"));
    return;
  }
  const QSignalBlocker noSession(sessions_);
  ImportCounts counts;
  Result<> imported;
  {
    ProgressWindow progress(&window_,
                            paths.size() > 1
                                ? Ui::tr("メッセージの取り込み")
                                : Ui::tr("「%1」の取り込み").arg(QFileInfo(paths[0]).fileName()));
    qint64 total = 0;
    for (const QString& path : paths) total += ArchiveBytes(path);
    qint64 before = 0;  // in the files that are done
    for (const QString& path : paths) {
      if (!imported) break;
      const int done = counts.Read();
      const ImportOutcome outcome =
          ImportMessages(context_, path, FiledIn(folder),
                         [&progress, done, before, total](int messages, qint64 bytes) {
                           return progress.ShowRead(done + messages, before + bytes, total);
                         });
      counts.Add(outcome.counts);
      imported = outcome.complete;
      before += ArchiveBytes(path);
    }
  }
  host_.MessageStored();
  TellImported(imported, counts, folder, FolderReadWords(paths));
}

void ArchiveCommands::TellImported(const Result<>& imported, const ImportCounts& counts,
                                   const SerialId& folder, const QString& read) {
  const QString text = read + ImportedWords(counts, NameOf(folder));
  const QString amiss = imported ? counts.notice : imported.Error().text;
  if (!amiss.isEmpty()) {
    ShowBox(&window_, QMessageBox::Warning, amiss + u'\n' + text);
  } else if (!counts.unreadable.isEmpty()) {
    WarnOf(&window_, text,
           Ui::tr("保存済みのもののうち、次の%n通は壊れていて読み込めません。", nullptr,
                  static_cast<int>(counts.unreadable.size())),
           counts.unreadable);
  } else if (counts.back.Messages().isEmpty()) {
    ShowBox(&window_, QMessageBox::Information, text);
  }
  if (!counts.back.Messages().isEmpty()) OfferUndo(text, counts.back, folder);
}

// With the marks that the messages have now: what has others by then has been used. It goes to the
// dust bin and not for good, since a server may have been told meanwhile that it is stored, and
// whoever takes back one step too many wants it back.
void ArchiveCommands::OfferUndo(const QString& done, const Move& back, const SerialId& folder) {
  const Result<MessageFlags> flags = FlagsOf(context_, back.Messages());
  if (!flags) return;  // the next one who reads the file tells why
  // A box must not stand inside the engine's answer, which the undoing waits for.
  const auto undo = [this, back, now = *flags, folder] {
    QTimer::singleShot(0, &window_, [this, back, now, folder] { TakeBack(back, now, folder); });
  };
  actions_.Offer(done, undo, OfferLasts::Minutes);  // whoever imported looks at what came
}

void ArchiveCommands::TakeBack(const Move& back, const MessageFlags& flags,
                               const SerialId& folder) {
  const Result<SerialIds> unchanged = UnchangedAmong(context_, flags, FiledIn(folder));
  MovedSome moved;
  if (unchanged) {
    ProgressWindow progress(&window_, Ui::tr("取り込みの取り消し"));
    moved = MoveInPieces(context_, back.Only(*unchanged),
                         [&progress](int done, int total) { return progress.Show(done, total); });
  } else {
    moved.end = unchanged.Error();
  }
  host_.MessageStored();
  const auto gone = static_cast<int>(moved.moved.back.Messages().size());
  // By the user's end, or a failure.
  const auto left = static_cast<int>(unchanged.ValueOr({}).size() - moved.messages.size());
  const auto kept = static_cast<int>(flags.size()) - gone - left;
  QString text = Ui::tr("取り込んだメッセージ%n通をくずかごに入れました。", nullptr, gone);
  if (kept > 0) text += Ui::tr("取り込んでから変更された%n通は残しました。", nullptr, kept);
  const QString remaining = Ui::tr("中止したので、%n通が残っています。", nullptr, left);
  if (left > 0) text += remaining;
  // Whoever ended it by mistake goes on with what is left.
  const Move rest =
      back.Only(back.Only(unchanged.ValueOr({})).Messages().mid(moved.messages.size()));
  if (left > 0) OfferUndo(remaining, rest, folder);
  if (moved.end) {
    ShowBox(&window_, QMessageBox::Information, text);
  } else {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("取り込みを元に戻せませんでした。") + moved.end.Error().text +
                (gone > 0 ? u'\n' + text : QString()));
  }
}

void ArchiveCommands::Export(const SerialId& folder, const QString& name) {
  if (folder.IsEmpty()) return;
  QStringList filters;
  for (const FormatChoice& choice : Formats()) filters.append(choice.filter);
  QString filter;
  QString path = AskFileToSave(context_, &window_, FileTask::Export,
                               Ui::tr("フォルダ「%1」の書き出し").arg(name), name,
                               filters.join(QStringLiteral(";;")), &filter);
  if (path.isEmpty()) return;
  const FormatChoice choice = Formats().value(qMax(qsizetype{0}, filters.indexOf(filter)));
  // The dialog asked about the name as it was typed.
  if (!path.endsWith(choice.suffix)) {
    path += choice.suffix;
    if (QFileInfo::exists(path) &&
        ShowBox(&window_, QMessageBox::Question,
                Ui::tr("「%1」は既にあります。上書きしますか？").arg(path),
                QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes) {
      return;
    }
  }
  ExportOutcome outcome;
  {
    ProgressWindow progress(&window_, Ui::tr("「%1」の書き出し").arg(name));
    const Result<FolderListing> listing = ListFolder(context_, folder, progress);
    if (listing) {
      const auto count = static_cast<int>(listing->messages.size());
      outcome =
          ExportMessages(context_, {folder, choice.format, path, true, *listing},
                         [&progress, count](int written) { return progress.Show(written, count); });
    } else {
      outcome.complete = listing.Error();
    }
  }
  TellExported(outcome);
}

// What could not be read is named; a long list is cut, since `vornctl export` gives the whole.
void ArchiveCommands::TellExported(const ExportOutcome& outcome) {
  if (!outcome.complete) {
    ShowBox(&window_, QMessageBox::Warning, outcome.complete.Error().text);
    return;
  }
  const QString text = Ui::tr("%n通を書き出しました。", nullptr, outcome.count);
  if (outcome.unreadable.isEmpty()) {
    ShowBox(&window_, QMessageBox::Information, text);
    return;
  }
  WarnOf(&window_, text,
         Ui::tr("次の%n通は壊れていて読み込めないので、含まれていません。", nullptr,
                static_cast<int>(outcome.unreadable.size())),
         outcome.unreadable);
}

}  // namespace vorn
