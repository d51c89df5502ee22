#include "mail/codec/calendar/invitation.h"

#include <algorithm>
#include <cstdlib>

#include "mail/codec/calendar/parsed_calendar.h"
#include "mail/codec/header/list_splitting.h"

namespace vorn {
namespace {

icalparameter_partstat StatusOf(InvitationAnswer answer) {
  switch (answer) {
    case InvitationAnswer::Accepted:
      return ICAL_PARTSTAT_ACCEPTED;
    case InvitationAnswer::Tentative:
      return ICAL_PARTSTAT_TENTATIVE;
    default:
      return ICAL_PARTSTAT_DECLINED;
  }
}

template <typename Visit>
void ForEachAttendee(icalcomponent* event, const Visit& visit) {
  for (icalproperty* attendee = icalcomponent_get_first_property(event, ICAL_ATTENDEE_PROPERTY);
       attendee != nullptr;
       attendee = icalcomponent_get_next_property(event, ICAL_ATTENDEE_PROPERTY)) {
    visit(attendee);
  }
}

InvitationAnswer AnswerOf(icalproperty* attendee) {
  icalparameter* status = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
  if (status == nullptr) return InvitationAnswer::Tentative;
  switch (icalparameter_get_partstat(status)) {
    case ICAL_PARTSTAT_ACCEPTED:
      return InvitationAnswer::Accepted;
    case ICAL_PARTSTAT_DECLINED:
      return InvitationAnswer::Declined;
    default:
      return InvitationAnswer::Tentative;
  }
}

QByteArray TextOf(icalcomponent* calendar) {
  char* text = icalcomponent_as_ical_string_r(calendar);
  const QByteArray bytes(text);
  free(text);
  return bytes;
}

// What tells the organizer which appointment, and which version of it, is answered.
void CopyIdentity(icalcomponent* from, icalcomponent* to) {
  for (const icalproperty_kind kind :
       {ICAL_UID_PROPERTY, ICAL_SEQUENCE_PROPERTY, ICAL_RECURRENCEID_PROPERTY,
        ICAL_DTSTART_PROPERTY, ICAL_DTEND_PROPERTY, ICAL_DURATION_PROPERTY, ICAL_SUMMARY_PROPERTY,
        ICAL_ORGANIZER_PROPERTY}) {
    icalproperty* property = icalcomponent_get_first_property(from, kind);
    if (property != nullptr) icalcomponent_add_property(to, icalproperty_new_clone(property));
  }
}

// The attendee as the invitation names him, so that his name stays, with the answer.
icalproperty* AnsweringAttendee(icalcomponent* event, const QString& address,
                                InvitationAnswer answer) {
  icalproperty* found = nullptr;
  ForEachAttendee(event, [&](icalproperty* attendee) {
    const QString named = CalendarAddress(icalproperty_get_attendee(attendee));
    if (found == nullptr && named.compare(address, Qt::CaseInsensitive) == 0) found = attendee;
  });
  icalproperty* attendee =
      found != nullptr ? icalproperty_new_clone(found)
                       : icalproperty_new_attendee(("mailto:" + address.toUtf8()).constData());
  icalproperty_remove_parameter_by_kind(attendee, ICAL_RSVP_PARAMETER);
  icalproperty_set_parameter(attendee, icalparameter_new_partstat(StatusOf(answer)));
  return attendee;
}

icalcomponent* AnsweredEvent(icalcomponent* event, const QString& address,
                             InvitationAnswer answer) {
  icalcomponent* answered = icalcomponent_new(ICAL_VEVENT_COMPONENT);
  CopyIdentity(event, answered);
  icalcomponent_add_property(answered, AnsweringAttendee(event, address, answer));
  icalcomponent_add_property(
      answered,
      icalproperty_new_dtstamp(icaltime_current_time_with_zone(icaltimezone_get_utc_timezone())));
  return answered;
}

// The zones that the times name must come along.
void CopyZones(icalcomponent* from, icalcomponent* to) {
  for (icalcomponent* zone = icalcomponent_get_first_component(from, ICAL_VTIMEZONE_COMPONENT);
       zone != nullptr; zone = icalcomponent_get_next_component(from, ICAL_VTIMEZONE_COMPONENT)) {
    icalcomponent_add_component(to, icalcomponent_new_clone(zone));
  }
}

}  // namespace

std::optional<Invitation> ReadInvitation(const QString& calendar) {
  const ParsedCalendar parsed(calendar);
  icalcomponent* event = parsed.Event();
  if (event == nullptr || MethodOf(event) != ICAL_METHOD_REQUEST) {
    return std::nullopt;
  }
  icalproperty* organizer = icalcomponent_get_first_property(event, ICAL_ORGANIZER_PROPERTY);
  const char* uid = icalcomponent_get_uid(event);
  if (organizer == nullptr || uid == nullptr) return std::nullopt;
  Invitation invitation;
  invitation.calendar = calendar;
  invitation.organizer = CalendarAddress(icalproperty_get_organizer(organizer));
  if (!invitation.organizer.contains(u'@')) return std::nullopt;
  const std::vector<icalcomponent*> events = parsed.Events();
  invitation.isOneOfSeveral = std::any_of(
      events.begin(), events.end(),
      [uid](icalcomponent* other) { return qstrcmp(icalcomponent_get_uid(other), uid) != 0; });
  invitation.summary = MimeCodec::OneLine(QString::fromUtf8(icalcomponent_get_summary(event)));
  ForEachAttendee(event, [&](icalproperty* attendee) {
    invitation.attendees.append(CalendarAddress(icalproperty_get_attendee(attendee)));
  });
  return invitation;
}

QByteArray ReplyCalendar(const Invitation& invitation, const QString& address,
                         InvitationAnswer answer) {
  const ParsedCalendar parsed(invitation.calendar);
  icalcomponent* event = parsed.Event();
  if (event == nullptr) return {};
  icalcomponent* whole = icalcomponent_new(ICAL_VCALENDAR_COMPONENT);
  icalcomponent_add_property(whole, icalproperty_new_prodid("-//Vorn//Vorn//JA"));
  icalcomponent_add_property(whole, icalproperty_new_version("2.0"));
  icalcomponent_add_property(whole, icalproperty_new_method(ICAL_METHOD_REPLY));
  CopyZones(parsed.Whole(), whole);
  // A series and those of its times that were moved are one appointment.
  for (icalcomponent* asked : parsed.Events()) {
    const bool isOther = icalcomponent_get_parent(asked) != icalcomponent_get_parent(event) ||
                         qstrcmp(icalcomponent_get_uid(asked), icalcomponent_get_uid(event)) != 0;
    if (isOther) continue;
    icalcomponent_add_component(whole, AnsweredEvent(asked, address, answer));
  }
  const QByteArray bytes = TextOf(whole);
  icalcomponent_free(whole);
  return bytes;
}

std::optional<InvitationReply> ReadInvitationReply(const QByteArray& calendar) {
  const ParsedCalendar parsed(QString::fromUtf8(calendar));
  icalcomponent* event = parsed.Event();
  if (event == nullptr || MethodOf(event) != ICAL_METHOD_REPLY) {
    return std::nullopt;
  }
  icalproperty* attendee = icalcomponent_get_first_property(event, ICAL_ATTENDEE_PROPERTY);
  if (attendee == nullptr) return std::nullopt;
  return InvitationReply{MimeCodec::OneLine(QString::fromUtf8(icalcomponent_get_summary(event))),
                         CalendarAddress(icalproperty_get_attendee(attendee)), AnswerOf(attendee)};
}

QByteArray ChangeReply(const QByteArray& calendar, const QString& address,
                       InvitationAnswer answer) {
  const ParsedCalendar parsed(QString::fromUtf8(calendar));
  if (parsed.Event() == nullptr) return calendar;
  for (icalcomponent* event : parsed.Events()) {
    icalproperty* answering = AnsweringAttendee(event, address, answer);
    while (icalproperty* attendee =
               icalcomponent_get_first_property(event, ICAL_ATTENDEE_PROPERTY)) {
      icalcomponent_remove_property(event, attendee);
      icalproperty_free(attendee);
    }
    icalcomponent_add_property(event, answering);
  }
  return TextOf(parsed.Whole());
}

}  // namespace vorn
