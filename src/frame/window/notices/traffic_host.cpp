#include "frame/window/notices/traffic_host.h"

#include <QApplication>

#include "auxiliary/window/console_window.h"
#include "frame/window/notices/front_window.h"
#include "frame/window/notices/status_bar.h"
#include "kit/window/plain_text.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kMostOfSubject = 20;  // characters in the status bar
constexpr int kTickMs = 100;

}  // namespace

TrafficHost::TrafficHost(Context& context, QWidget& window, RequestQueue& queue,
                         MainStatusBar& status, EventView& view)
    : context_(context),
      window_(window),
      queue_(queue),
      status_(status),
      events_(context, view),
      traffic_(context, *this, status) {
  connect(&tmPlan_, &QTimer::timeout, this, &TrafficHost::Tick);
  tmPlan_.start(kTickMs);
}

void TrafficHost::Tick() {
  traffic_.Tick();
  Q_EMIT Ticked();
}

// By itself it asks for no account and has no word for what nobody asked.
void TrafficHost::SendAndReceive() {
  const bool isAsked = !Plan().RunsPeriodically();
  if (SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled)
          ->IsEmpty()) {
    if (!isAsked) return;
    status_.ShowForAWhile(
        Ui::tr("送受信するアカウントがありません。ファイル > "
               "新規作成 > アカウントで追加してください。"));
    return;
  }
  status_.BeginCheck(isAsked);
  Plan().CreateMessagePlan(kPlanReceive | kPlanSend);
}

void TrafficHost::AddEvent(EventLevel level, EventMode mode, const SerialId& reference,
                           const QString& title, const QString& category, const QString& text) {
  events_.AddEvent(level, mode, reference, title, category, text);
  if (level == kEventError) {
    Q_EMIT Failed();
    // A long subject leaves room for what happened.
    const QString about = ShownText(title, kMostOfSubject);
    // How many came all the same stands last, and is not what is cut off.
    QStringList lines = text.split(kLineBreak);
    lines.prepend(lines.takeLast());
    status_.Tell((about.isEmpty() ? about : about + QStringLiteral(": ")) + lines.join(u' '), true);
  } else {
    // What was received and what was not, for instance.
    QString all = text;
    const bool isOfAccount = category == u"account";
    status_.Tell(all.replace(kLineBreak, QStringLiteral(" ")), false,
                 isOfAccount ? ShownText(title, kMostOfSubject) : QString());
  }
}

SerialId TrafficHost::ChooseAccount(const QString& title, const QString& prompt) {
  const DiskCollectionPtr accounts =
      SelectObjects(context_.Objects, *context_.Session, object_type::kAccount);
  // In front of the window that sends; where there is but one, it is chosen already.
  const SerialId only = accounts->Count() == 1 ? accounts->First()->Serial() : SerialId();
  return SerialId(
      InputTree(context_, FrontWindow(window_), title, prompt, object_type::kAccount, only)
          .value_or(QString()));
}

QString TrafficHost::AskPassword(const PasswordQuestion& question) {
  // What is being typed into another window is no password.
  const bool takesKeys = QApplication::activeWindow() == &window_;
  const QString words =
      (question.wasRefused ? Ui::tr("入力されたパスワードではログインできませんでした。")
                           : QString()) +
      (question.toSend
           ? Ui::tr("送信するために、アカウント「%1」の受信のパスワードを入力してください。")
           : Ui::tr("アカウント「%1」の受信のパスワードを入力してください。"))
          .arg(question.account);
  return InputPassword(context_, &window_, Ui::tr("パスワード"), words, takesKeys)
      .value_or(QString());
}

void TrafficHost::WorkIsHeld(const QString& sentence) {
  status_.showMessage(sentence);
}

}  // namespace vorn
