#pragma once

#include <QFrame>
#include <QPushButton>
#include <optional>

#include "mail/invitation.h"

class QLabel;

namespace vorn {

/// The line above a received message that holds an appointment: keeps it as a file for a calendar,
/// and answers an invitation.
class CalendarBar : public QFrame {
  Q_OBJECT

 public:
  explicit CalendarBar(QWidget* parent = nullptr);
  /// Hidden when `calendar` is empty or holds no appointment.
  void Show(const QString& calendar);

 Q_SIGNALS:
  void Answered(const vorn::Invitation& invitation, vorn::InvitationAnswer answer);

 private:
  QPushButton* AddButton(const QString& text, const QString& name);
  void Save();

  QLabel* label_;
  QList<QPushButton*> answers_;
  QString calendar_;
  std::optional<Invitation> invitation_;
};

/// What the user says to an invitation, in words.
QString AnswerWords(InvitationAnswer answer);

}  // namespace vorn
