#include "mail/window/composing/invitation_composer.h"

#include <QLineEdit>
#include <QTextDocument>

#include "mail/message_document.h"
#include "mail/window/bars/calendar_bar.h"
#include "mail/window/body/message_body.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/fields/address_list.h"

namespace vorn {

InvitationComposer::InvitationComposer(Context& context, MessageDocument& document,
                                       MessageForm& form, CalendarBar& bar)
    : context_(context), document_(document), form_(form), bar_(bar) {
  connect(&bar_, &CalendarBar::AnswerChanged, this, &InvitationComposer::Change);
  connect(&form_.Body(), &MessageBody::TextEdited, this, &InvitationComposer::CheckWords);
}

// The answer goes to the organizer, from the address that was invited; the user sees it first.
void InvitationComposer::Write(const Invitation& invitation, InvitationAnswer answer) {
  const QString own = OwnAddress(context_, invitation.attendees);
  AddressEntry sender = ParseAddressEntry(QStringLiteral("FROM: ") + own, true);
  for (const AddressEntry& entry : document_.Model().addresses) {
    const bool isInvited = own.isEmpty() || entry.address.compare(own, Qt::CaseInsensitive) == 0;
    if (entry.kind == u"FROM" && isInvited) sender = entry;
  }
  document_.Model().calendarReply = ReplyCalendar(invitation, sender.address, answer);
  form_.Addresses().Show(
      {ParseAddressEntry(QStringLiteral("TO: ") + invitation.organizer, true), sender}, true);
  form_.Subject().setText(AnswerSubject(answer, invitation.summary));
  form_.Subject().setCursorPosition(0);
  form_.Body().Text()->setPlainText(AnswerText(answer));
  bar_.ShowAnswer(*document_.Model().calendarReply, true);
  Q_EMIT Edited();
}

// The words that were written for the answer before follow, where they still stand. Where they were
// edited they are the user's own, and he is told that they may say something else now.
void InvitationComposer::Change(InvitationAnswer answer) {
  const auto before = ReadInvitationReply(document_.Model().calendarReply.value_or(QByteArray()));
  if (!before) return;
  document_.Model().calendarReply =
      ChangeReply(*document_.Model().calendarReply, before->address, answer);
  const QString subject = form_.Subject().text();
  const QString former = AnswerSubject(before->answer, before->summary);
  if (const qsizetype at = subject.indexOf(former); at >= 0) {
    form_.Subject().setText(
        QString(subject).replace(at, former.size(), AnswerSubject(answer, before->summary)));
  }
  QTextCursor sentence = form_.Body().Text()->document()->find(
      AnswerText(before->answer).trimmed(), 0, QTextDocument::FindCaseSensitively);
  if (!sentence.isNull()) sentence.insertText(AnswerText(answer).trimmed());
  isChanged_ = isChanged_ || answer != before->answer;
  CheckWords();
  Q_EMIT Edited();
}

// Also when they are undone or edited later. Who has not changed his answer may word it as he
// likes.
void InvitationComposer::CheckWords() {
  if (!isChanged_) return;
  const auto reply = ReadInvitationReply(document_.Model().calendarReply.value_or(QByteArray()));
  bar_.SayWordsStay(
      reply && !form_.Body().Text()->toPlainText().contains(AnswerText(reply->answer).trimmed()));
}

}  // namespace vorn
