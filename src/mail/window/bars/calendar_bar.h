#pragma once

#include <QFrame>
#include <QPushButton>
#include <optional>

#include "mail/codec/calendar/invitation.h"
#include "storage/context.h"

class QLabel;

namespace vorn {

/// The line above a received message that holds an appointment: keeps it as a file for a calendar,
/// and answers an invitation. Above the answer it shows what is answered.
class CalendarBar : public QFrame {
  Q_OBJECT

 public:
  explicit CalendarBar(Context& context, QWidget* parent = nullptr);
  /// Of a received message. Hidden when `calendar` is empty or holds no appointment.
  void Show(const QString& calendar);
  /// Of a message that answers an invitation: the answer that goes along, which can be changed
  /// while the message can be. Hidden when `reply` is none.
  void ShowAnswer(const QByteArray& reply, bool editable);
  /// Below an answer that was changed: that the message's own words did not follow it.
  void SayWordsStay(bool stay);

 Q_SIGNALS:
  void Answered(const vorn::Invitation& invitation, vorn::InvitationAnswer answer);
  void AnswerChanged(vorn::InvitationAnswer answer);

 private:
  QString Question() const;
  QPushButton* AddButton(const QString& text, const QString& name);
  void Check(InvitationAnswer answer);
  void Save();

  Context& context_;
  QLabel* label_;
  QList<QPushButton*> answers_;  // in the order of `InvitationAnswer`
  QPushButton* save_;
  QString calendar_;
  std::optional<Invitation> invitation_;
};

/// What the user says to an invitation, in words.
QString AnswerWords(InvitationAnswer answer);

/// The subject of the message that answers it.
QString AnswerSubject(InvitationAnswer answer, const QString& summary);

/// Its text.
QString AnswerText(InvitationAnswer answer);

}  // namespace vorn
