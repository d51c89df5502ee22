#include "mail/window/bars/calendar_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <tuple>

#include "kit/window/plain_text.h"
#include "mail/attachment_files.h"
#include "mail/codec/calendar/calendar_summary.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {

QString AnswerWords(InvitationAnswer answer) {
  switch (answer) {
    case InvitationAnswer::Accepted:
      return Ui::tr("出席します");
    case InvitationAnswer::Tentative:
      return Ui::tr("出席するかもしれません");
    default:
      return Ui::tr("欠席します");
  }
}

QString AnswerSubject(InvitationAnswer answer, const QString& summary) {
  return AnswerWords(answer) + QStringLiteral(": ") + summary;
}

QString AnswerText(InvitationAnswer answer) {
  return AnswerWords(answer) + Ui::tr("。") + u'\n';
}

CalendarBar::CalendarBar(Context& context, QWidget* parent)
    : QFrame(parent), context_(context), label_(PlainLabel()) {
  setObjectName(QStringLiteral("frCalendar"));
  setFrameShape(QFrame::StyledPanel);
  new QHBoxLayout(this);
  label_->setWordWrap(true);
  static_cast<QHBoxLayout*>(layout())->addWidget(label_, 1);
  const std::tuple<InvitationAnswer, QString, QString> answers[] = {
      {InvitationAnswer::Accepted, QStringLiteral("cmAccept"), QStringLiteral("(&1)")},
      {InvitationAnswer::Tentative, QStringLiteral("cmTentative"), QStringLiteral("(&2)")},
      {InvitationAnswer::Declined, QStringLiteral("cmDecline"), QStringLiteral("(&3)")}};
  for (const auto& [answer, name, letter] : answers) {
    QPushButton* button = AddButton(AnswerWords(answer) + letter, name);
    connect(button, &QPushButton::clicked, this, [this, answer = answer] {
      if (const std::optional<Invitation> invitation = invitation_) {
        Q_EMIT Answered(*invitation, answer);  // the window shows its answer then
      } else {
        Check(answer);
        Q_EMIT AnswerChanged(answer);
      }
    });
    answers_.append(button);
  }
  save_ = AddButton(Ui::tr("カレンダー用に保存(&4).."), QStringLiteral("cmSaveCalendar"));
  connect(save_, &QPushButton::clicked, this, &CalendarBar::Save);
  hide();
}

QPushButton* CalendarBar::AddButton(const QString& text, const QString& name) {
  auto* button = new QPushButton(text);
  button->setObjectName(name);
  layout()->addWidget(button);
  return button;
}

void CalendarBar::Show(const QString& calendar) {
  calendar_ = calendar;
  invitation_ = calendar.isEmpty() ? std::nullopt : ReadInvitation(calendar);
  const bool isShown = !calendar.isEmpty() && !CalendarSummary(calendar, false).isEmpty();
  label_->setText(Question());
  for (QPushButton* button : answers_) {
    button->setCheckable(false);
    button->setEnabled(true);
    button->setVisible(invitation_.has_value());
  }
  save_->show();
  setVisible(isShown);
}

QString CalendarBar::Question() const {
  if (!invitation_) return Ui::tr("このメールには予定があります。");
  if (!invitation_->isOneOfSeveral) return Ui::tr("予定への招待です。返事をしますか？");
  return Ui::tr("予定への招待です。そのうち「%1」に返事をしますか？")
      .arg(ShownText(invitation_->summary, kMostInTitle));
}

void CalendarBar::ShowAnswer(const QByteArray& reply, bool editable) {
  invitation_.reset();
  const std::optional<InvitationReply> answer = ReadInvitationReply(reply);
  setVisible(answer.has_value());
  if (!answer) return;
  SayWordsStay(false);
  save_->hide();
  for (QPushButton* button : answers_) {
    button->setCheckable(true);
    button->setEnabled(editable);
    button->show();
  }
  Check(answer->answer);
}

void CalendarBar::SayWordsStay(bool stay) {
  label_->setText(stay ? Ui::tr("予定への返事として、カレンダーに伝わります"
                                "（本文の返事の言葉は変わっていません）:")
                       : Ui::tr("予定への返事として、カレンダーに伝わります:"));
}

void CalendarBar::Check(InvitationAnswer answer) {
  for (qsizetype i = 0; i < answers_.size(); ++i) {
    answers_[i]->setChecked(i == static_cast<qsizetype>(answer));
  }
}

void CalendarBar::Save() {
  const QString name = invitation_ ? invitation_->summary : QString();
  const QString path =
      AskFileToSave(context_, this, FileTask::SaveCalendar, Ui::tr("カレンダー用に保存"),
                    SafeFileName(name.isEmpty() ? Ui::tr("予定") : name) + QStringLiteral(".ics"),
                    Ui::tr("予定のファイル (*.ics)"));
  if (path.isEmpty()) return;
  if (WriteWhole(path, calendar_.toUtf8())) return;
  ShowBox(
      this, QMessageBox::Critical,
      Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。").arg(path));
}

}  // namespace vorn
