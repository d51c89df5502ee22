#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

namespace vorn {

/// What a user answers to an invitation (PARTSTAT of RFC 5545 section 3.2.12).
enum class InvitationAnswer { Accepted, Tentative, Declined };

/// An appointment to which its organizer wants an answer (METHOD:REQUEST of RFC 5546).
struct Invitation {
  QString calendar;   ///< as it came
  QString organizer;  ///< the address that the answer goes to
  QString summary;
  QStringList attendees;        ///< addresses
  bool isOneOfSeveral = false;  ///< the calendar holds other appointments, which are not answered
};

/// The invitation in a calendar that came by mail; none when it asks for no answer. Safe to call
/// from any thread.
std::optional<Invitation> ReadInvitation(const QString& calendar);

/// The calendar that answers it (METHOD:REPLY, RFC 5546 section 3.2.3) for the attendee with this
/// address, in UTF-8. Empty when the invitation cannot be read.
QByteArray ReplyCalendar(const Invitation& invitation, const QString& address,
                         InvitationAnswer answer);

/// An answer as it is sent.
struct InvitationReply {
  QString summary;
  QString address;  ///< of the one who answers
  InvitationAnswer answer = InvitationAnswer::Accepted;
};

/// What a calendar that `ReplyCalendar` made says; nothing for any other.
std::optional<InvitationReply> ReadInvitationReply(const QByteArray& calendar);

/// Such a calendar with another answer, or of somebody else. One that cannot be read stays.
QByteArray ChangeReply(const QByteArray& calendar, const QString& address, InvitationAnswer answer);

}  // namespace vorn
