#include "mail/window/bars/message_bars.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "mail/refusal_notice.h"
#include "mail/window/bars/calendar_bar.h"
#include "mail/window/bars/doubt_bar.h"
#include "mail/window/bars/reading_bar.h"
#include "mail/window/host/message_host.h"
#include "storage/ui.h"

namespace vorn {

MessageBars::MessageBars(Context& context, MessageHost& host, MessageDocument& document)
    : context_(context),
      document_(document),
      erased_(new NoticeBar(QStringLiteral("frErased"))),
      unkept_(new NoticeBar(QStringLiteral("frUnkept"))),
      doubt_(new DoubtBar),
      refused_(BuildRefusal()),
      account_(BuildAccountNotice(host)),
      calendar_(new CalendarBar(context)),
      signed_(new NoticeBar(QStringLiteral("frSigned"))),
      reading_(new ReadingBar(context, document)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(erased_);
  layout->addWidget(unkept_);
  layout->addWidget(doubt_);
  layout->addWidget(refused_);
  layout->addWidget(account_);
  layout->addWidget(calendar_);
  layout->addWidget(signed_);
  layout->addWidget(reading_);
}

NoticeBar* MessageBars::BuildRefusal() {
  auto* mend = new QPushButton(Ui::tr("編集する(&T)"));
  mend->setObjectName(QStringLiteral("cmMend"));
  return new NoticeBar(QStringLiteral("frRefused"), mend);
}

NoticeBar* MessageBars::BuildAccountNotice(MessageHost& host) {
  auto* make = new QPushButton(Ui::tr("アカウントを作成(&A).."));
  make->setObjectName(QStringLiteral("cmMakeAccount"));
  connect(make, &QPushButton::clicked, make, [this, &host] {
    asksForAccount_ = true;
    host.MakeAccount();
  });
  return new NoticeBar(QStringLiteral("frNoAccount"), make);
}

void MessageBars::ShowErased() {
  isErased_ = IsErased(context_, document_);
  if (!isErased_ || document_.IsUnreadable()) {
    erased_->Say({});
  } else if (document_.IsEditable()) {
    erased_->Say(
        Ui::tr("このメッセージは削除されました。書いたものはこのウィンドウに残っていて、"
               "閉じるときに保存するかどうかを選べます。"));
  } else {
    erased_->Say(
        Ui::tr("このメッセージは削除されました。このウィンドウを閉じるまでは、返信や転送、"
               "ファイルへの保存ができます。"));
  }
}

void MessageBars::ShowKept(const Result<>& kept) {
  unkept_->Say(
      kept ? QString()
           : Ui::tr("書きかけの内容を控えておけません。今プログラムが終わると失われます。") +
                 kept.Error().text);
}

bool MessageBars::ShowStanding() {
  ShowErased();
  const bool isUnsent = (document_.IsWaiting() || document_.IsEditable()) && !document_.IsNew();
  const QString refusal = isUnsent && !document_.IsSending()
                              ? RefusalNotice(context_, document_.File(), document_.Tag())
                              : QString();
  isRefused_ = !refusal.isEmpty();
  refused_->Say(refusal);
  Mend().setVisible(document_.IsWaiting());
  const bool lackedAccount =
      std::exchange(lacksAccount_, document_.IsEditable() && !HasEnabledAccount(context_));
  account_->Say(lacksAccount_
                    ? Ui::tr("送信するアカウントがまだないので、このメッセージは送信できません。"
                             "書いておくことはできます。")
                    : QString());
  return lackedAccount && !lacksAccount_;
}

void MessageBars::Show(const OpenedMessage& opened) {
  if (const auto& reply = opened.model.calendarReply) {
    calendar_->ShowAnswer(*reply, document_.IsEditable());
  } else {
    calendar_->Show(opened.calendar);
  }
  signed_->Say(opened.signature);
  reading_->Show();
}

}  // namespace vorn
