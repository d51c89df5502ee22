#include "frame/window/notices/start_questions.h"

#include <QMessageBox>

#include "kit/window/plain_text.h"
#include "mail/message_id.h"
#include "mail/store/answer_notes.h"
#include "mail/store/drafts.h"
#include "mail/store/outbox.h"
#include "objects/profile/standard_objects.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

bool IsWanted(QWidget& window, const QString& question) {
  return ShowBox(&window, QMessageBox::Question, question, QMessageBox::Yes | QMessageBox::No,
                 QMessageBox::Yes) == QMessageBox::Yes;
}

}  // namespace

SerialIds AskOfDoubtful(Context& context, QWidget& window) {
  Outbox outbox(context, MailDatabasePath(context));
  outbox.SettleLeftOver();
  SerialIds messages;
  // Of a file that cannot be read its damage is told.
  for (const DoubtfulMessage& message : outbox.Doubtful().ValueOr({})) {
    messages.append(message.serialId);
  }
  const bool opens =
      !messages.isEmpty() &&
      IsWanted(window, Ui::tr("送信を試みて、届いたかどうか分からないメッセージが%n通あります。"
                              "開いて確かめますか？",
                              nullptr, static_cast<int>(messages.size())));
  return opens ? messages : SerialIds();
}

SerialIds AskOfDrafts(Context& context, QWidget& window) {
  const SerialIds drafts = Drafts::LeftBehind(context);
  AnswerNotes::Sweep(context, drafts);
  const bool opens =
      !drafts.isEmpty() &&
      IsWanted(window, Ui::tr("前回、編集中のまま終了したメッセージが%n通あります。開きますか？",
                              nullptr, static_cast<int>(drafts.size())));
  if (!opens) return {};
  SerialIds restored;
  QStringList leftOut;
  QStringList failures;
  for (const SerialId& serialId : std::as_const(drafts)) {
    const Result<Drafts::Restored> draft =
        Drafts::Restore(context, serialId, NewMessageSerialID(context));
    if (!draft) {
      failures.append(draft.Error().text);
      continue;
    }
    restored.append(draft->message);
    leftOut += draft->leftOut;
  }
  if (!failures.isEmpty()) {
    failures.removeDuplicates();
    ShowBox(&window, QMessageBox::Critical,
            Ui::tr("編集中だったメッセージのうち%n通を開けません。残してあるので、次に始めるときに"
                   "もう一度尋ねます。",
                   nullptr, static_cast<int>(drafts.size() - restored.size())) +
                u'\n' + failures.join(u'\n'));
  }
  if (!leftOut.isEmpty()) {
    ShowBox(
        &window, QMessageBox::Warning,
        Ui::tr(
            "次の添付ファイルは、大きいか、読み込めないため、編集中のメッセージに残っていません。"
            "もう一度添付してください。") +
            QStringLiteral("\n\n") + leftOut.join(u'\n'));
  }
  return restored;
}

bool AskOfLook(Context& context, QWidget& window) {
  if (!HasFormerLook(context)) return false;
  const bool isWanted = IsWanted(
      window,
      Ui::tr(
          "新しい表示を使いますか？\n\nメッセージを表で並べ、選んだものをその下に表示し、フォルダを"
          "タブで開きます。「表示」と「ウィンドウ」のメニューと設定で、いつでも変えられます。"));
  const Result<> settled = SettleLook(context, isWanted);
  if (!settled) {
    ShowBox(&window, QMessageBox::Critical,
            Ui::tr("設定を保存できません。") + settled.Error().text);
  }
  return isWanted;
}

}  // namespace vorn
