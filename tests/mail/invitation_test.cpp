// Answers to invitations, as calendars and as messages.

#include "mail/codec/calendar/invitation.h"

#include <gtest/gtest.h>

#include "mail/codec/calendar/calendar_summary.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/compose_message.h"
#include "mail/message_model.h"
#include "objects/settings.h"

namespace vorn {
namespace {

const QString kCalendar = QStringLiteral(
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nMETHOD:REQUEST\r\nBEGIN:VTIMEZONE\r\nTZID:Office\r\n"
    "BEGIN:STANDARD\r\nDTSTART:16010101T000000\r\nTZOFFSETFROM:+0900\r\nTZOFFSETTO:+0900\r\n"
    "END:STANDARD\r\nEND:VTIMEZONE\r\nBEGIN:VEVENT\r\nUID:42@example.jp\r\nSEQUENCE:3\r\n"
    "DTSTART;TZID=Office:20260203T100000\r\nSUMMARY:定例会議\r\nDESCRIPTION:secret\r\n"
    "ORGANIZER;CN=田中:MAILTO:Tanaka@example.jp\r\n"
    "ATTENDEE;CN=\"山田, 太郎\";RSVP=TRUE;PARTSTAT=NEEDS-ACTION:mailto:yamada@example.jp\r\n"
    "ATTENDEE:mailto:sato@example.jp\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");

TEST(InvitationTest, OnlyARequestWithAnOrganizerIsAnswered) {
  const auto invitation = ReadInvitation(kCalendar);
  ASSERT_TRUE(invitation.has_value());
  EXPECT_EQ(invitation->organizer, QStringLiteral("Tanaka@example.jp"));
  EXPECT_EQ(invitation->summary, QStringLiteral("定例会議"));
  EXPECT_EQ(invitation->attendees,
            (QStringList{QStringLiteral("yamada@example.jp"), QStringLiteral("sato@example.jp")}));
  const auto without = [](const char16_t* from, const char16_t* to) {
    QString changed = kCalendar;
    return ReadInvitation(changed.replace(QString::fromUtf16(from), QString::fromUtf16(to)));
  };
  EXPECT_FALSE(without(u"METHOD:REQUEST", u"METHOD:CANCEL"));
  EXPECT_FALSE(without(u"METHOD:REQUEST\r\n", u""));
  EXPECT_FALSE(without(u"UID:42@example.jp\r\n", u""));
  EXPECT_FALSE(without(u"MAILTO:Tanaka@example.jp", u"urn:x"));
  EXPECT_FALSE(ReadInvitation(QStringLiteral("BEGIN:VCALENDAR\r\nBEGIN:VEV")));
}

TEST(InvitationTest, TheAnswerNamesTheAppointmentAndTheOneWhoAnswersAlone) {
  const Invitation invitation = *ReadInvitation(kCalendar);
  const auto answer = [&](const char16_t* address, InvitationAnswer given) {
    return QString::fromUtf8(ReplyCalendar(invitation, QString::fromUtf16(address), given))
        .remove(QStringLiteral("\r\n "));
  };
  const QString accepted = answer(u"YAMADA@example.jp", InvitationAnswer::Accepted);
  for (const char16_t* line :
       {u"METHOD:REPLY", u"UID:42@example.jp", u"SEQUENCE:3", u"TZID:Office",
        u"DTSTART;TZID=Office:20260203T100000", u"SUMMARY:定例会議",
        u"ORGANIZER;CN=田中:MAILTO:Tanaka@example.jp", u"DTSTAMP:", u"PARTSTAT=ACCEPTED"}) {
    EXPECT_TRUE(accepted.contains(QString::fromUtf16(line))) << accepted.toStdString();
  }
  EXPECT_EQ(accepted.count(QStringLiteral("ATTENDEE")), 1);
  EXPECT_TRUE(accepted.contains(QStringLiteral("山田, 太郎")));
  EXPECT_FALSE(accepted.contains(QStringLiteral("NEEDS-ACTION")));
  EXPECT_FALSE(accepted.contains(QStringLiteral("RSVP")));
  EXPECT_FALSE(accepted.contains(QStringLiteral("secret")));
  const QString forwarded = answer(u"new@example.jp", InvitationAnswer::Declined);
  EXPECT_TRUE(
      forwarded.contains(QStringLiteral("ATTENDEE;PARTSTAT=DECLINED:mailto:new@example.jp")));
  EXPECT_TRUE(answer(u"sato@example.jp", InvitationAnswer::Tentative)
                  .contains(QStringLiteral("PARTSTAT=TENTATIVE:mailto:sato@example.jp")));
}

// A series and a time of it that was moved are answered together; what else came along is not.
TEST(InvitationTest, ASeriesIsShownAndAnsweredWhole) {
  const QString moved = QStringLiteral(
      "BEGIN:VEVENT\r\nUID:42@example.jp\r\nRECURRENCE-ID:20260210T010000Z\r\n"
      "DTSTART:20260211T010000Z\r\nSUMMARY:移動\r\nORGANIZER:mailto:Tanaka@example.jp\r\n"
      "ATTENDEE:mailto:sato@example.jp\r\nEND:VEVENT\r\n");
  QString other = moved;
  other.replace(QStringLiteral("42@"), QStringLiteral("43@"))
      .replace(QStringLiteral("移動"), QStringLiteral("別の件"));
  QString calendar = kCalendar;
  calendar.replace(QStringLiteral("END:VCALENDAR"),
                   moved + other + QStringLiteral("END:VCALENDAR"));
  const QString summary = CalendarSummary(calendar, false);
  for (const char16_t* subject : {u"定例会議", u"移動", u"別の件"}) {
    EXPECT_EQ(summary.count(QString::fromUtf16(subject)), 1) << summary.toStdString();
  }
  const QByteArray reply = ReplyCalendar(
      *ReadInvitation(calendar), QStringLiteral("sato@example.jp"), InvitationAnswer::Accepted);
  EXPECT_EQ(reply.count("PARTSTAT=ACCEPTED"), 2) << reply.toStdString();
  EXPECT_EQ(reply.count("RECURRENCE-ID"), 1);
  EXPECT_FALSE(reply.contains("43@example.jp"));
  EXPECT_TRUE(ReadInvitation(calendar)->isOneOfSeveral);
  EXPECT_FALSE(ReadInvitation(kCalendar)->isOneOfSeveral);
  // It is named after the series also where the moved time comes first.
  QString turned = kCalendar;
  turned.replace(QStringLiteral("BEGIN:VEVENT"), moved + QStringLiteral("BEGIN:VEVENT"));
  EXPECT_EQ(ReadInvitation(turned)->summary, QStringLiteral("定例会議"));
  EXPECT_FALSE(ReadInvitation(turned)->isOneOfSeveral);
  const QByteArray changed =
      ChangeReply(reply, QStringLiteral("sato@example.jp"), InvitationAnswer::Declined);
  EXPECT_EQ(changed.count("PARTSTAT=DECLINED"), 2);
  EXPECT_FALSE(changed.contains("ACCEPTED"));
  // A calendar of thousands of appointments is not written out.
  QString many = kCalendar;
  many.replace(QStringLiteral("END:VCALENDAR"),
               other.repeated(500) + QStringLiteral("END:VCALENDAR"));
  EXPECT_EQ(CalendarSummary(many, false).count(u"別の件"), 19);
}

// Two invitations in one message are both shown; the first one is answered, and the question says
// which.
TEST(InvitationTest, SeveralCalendarsOfAMessageAreShownAndTheFirstIsAnswered) {
  QString other = kCalendar;
  other.replace(QStringLiteral("42@"), QStringLiteral("43@"))
      .replace(QStringLiteral("定例会議"), QStringLiteral("別の件"));
  QString plain = other;
  plain.remove(QStringLiteral("METHOD:REQUEST\r\n"));
  const QString broken = QStringLiteral("BEGIN:VCALENDAR\r\nBEGIN:VEV");
  struct Case {
    QStringList parts;
    bool hasFirst;
    const char16_t* answered;
  };
  const Case cases[] = {
      {{kCalendar, other}, true, u"定例会議"},      {{kCalendar + other}, true, u"定例会議"},
      {{other, kCalendar, other}, true, u"別の件"}, {{broken, other, plain}, false, u"別の件"},
      {{plain, kCalendar}, true, u"定例会議"},
  };
  for (const Case& c : cases) {
    QByteArray source = "Content-Type: multipart/mixed; boundary=b\r\n\r\n";
    for (const QString& part : c.parts) {
      // As programs label it that know no calendars.
      const QByteArray type = part == plain   ? "application/octet-stream; name=\"a.ICS\""
                              : part == other ? "application/ics"
                                              : "text/calendar; charset=utf-8";
      source += "--b\r\nContent-Type: " + type + "\r\n\r\n" + part.toUtf8() + "\r\n";
    }
    source += "--b--\r\n";
    TextRequest request;
    request.textTypes = DefaultTextTypes();
    request.withReports = true;
    const QString index = MimeCodec::ContentIndex(source);
    const QString text = GetMessageText(source, index, request).text;
    EXPECT_EQ(text.count(QStringLiteral("定例会議")), c.hasFirst ? 1 : 0) << text.toStdString();
    EXPECT_EQ(text.count(QStringLiteral("別の件")), 1) << text.toStdString();
    const auto invitation = ReadInvitation(GetMessageCalendar(source, index, {}));
    ASSERT_TRUE(invitation.has_value());
    EXPECT_EQ(invitation->summary, QString::fromUtf16(c.answered));
    EXPECT_EQ(invitation->isOneOfSeveral, c.hasFirst);
    const QByteArray reply =
        ReplyCalendar(*invitation, QStringLiteral("sato@example.jp"), InvitationAnswer::Accepted);
    EXPECT_EQ(reply.count("BEGIN:VEVENT"), 1) << reply.toStdString();
    EXPECT_EQ(reply.count("BEGIN:VTIMEZONE"), 1) << reply.toStdString();
  }
}

// Kept, opened and edited, the answer stays what it is, and files go beside it.
TEST(InvitationTest, AnAnswerIsWrittenAsAPartAndTakenBack) {
  MessageModel model;
  model.text = QStringLiteral("出席します。");
  model.calendarReply = "BEGIN:VCALENDAR\r\nMETHOD:REPLY\r\nEND:VCALENDAR\r\n";
  using enum MimeEncode;
  for (const MimeEncode encode : {Base64, QuotedPrintable, Uuencode}) {
    ComposeOptions options;
    options.boundaryToken = QStringLiteral("token");
    options.settings.textTypes = DefaultTextTypes();
    options.settings.mimeEncode = encode;
    options.read = [](const ModelAttachment&) { return QByteArray("file"); };
    StoredMessage stored;
    stored.source = ComposeMessage(model, options);
    stored.isWritten = true;
    EXPECT_TRUE(
        stored.source.contains("Content-Type: text/calendar; charset=\"utf-8\"; method=REPLY"));
    stored.contentIndex = MimeCodec::ContentIndex(stored.source);
    MessageModel again = OpenSource(stored, OpenMode::Show, false, options.settings, {}, {});
    EXPECT_EQ(again.calendarReply.value_or(QByteArray()), *model.calendarReply);
    EXPECT_TRUE(again.attachments.empty());
    again.attachments.push_back(
        {QStringLiteral("a.bin"), QStringLiteral("application/x"), true, {}, {}});
    const QByteArray both = ComposeMessage(again, options);
    EXPECT_TRUE(both.contains("method=REPLY") && both.contains("a.bin"));
    // The organizer's own window shows it as a message, not as something to send.
    stored.isWritten = false;
    EXPECT_FALSE(OpenSource(stored, OpenMode::Show, false, options.settings, {}, {}).calendarReply);
  }
}

}  // namespace
}  // namespace vorn
