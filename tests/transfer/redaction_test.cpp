// What a server sends back of what it was sent never reaches a log or a window.

#include "transfer/redaction.h"

#include <gtest/gtest.h>

#include "support/recording_events.h"
#include "support/test_profile.h"
#include "transfer/pop3_session.h"
#include "transfer/smtp_session.h"

namespace vorn {
namespace {

const QString kUser = QStringLiteral("tim@example.com");
const QString kPassword = QStringLiteral("Corr3ct horse");

TEST(RedactionTest, EveryFormOfASecretIsHidden) {
  const Redaction redaction(kUser, kPassword);
  const QByteArray user = kUser.toUtf8();
  const QByteArray password = kPassword.toUtf8();
  const QByteArray blob = '\0' + user + '\0' + password;
  const QByteArray echoes[] = {
      password,
      password.toUpper(),
      password.toBase64(),
      password.toBase64(QByteArray::OmitTrailingEquals),
      password.toHex(),
      password.toPercentEncoding({}, {}, '%'),
      password.toPercentEncoding({}, "Cor3cthse", '%').toLower(),
      user.toBase64(),
      blob.toBase64(),
      blob.toBase64(QByteArray::Base64UrlEncoding).left(30),
      (user + blob).toBase64(),
      ("xy" + password).toBase64(),
      "Corr3c\r\n535-t ho\r\n535 rse",
      blob.toBase64().insert(22, "\r\n "),
      password.left(9),
  };
  for (const QByteArray& echo : echoes) {
    const QString words = redaction.Words("535-5.7.8 AUTH <" + echo + "> bad");
    EXPECT_TRUE(words.startsWith(QStringLiteral("535-5.7.8 AUTH <")) && words.contains(u"***"))
        << words.toStdString();
    EXPECT_TRUE(words.endsWith(QStringLiteral("> bad"))) << words.toStdString();
    for (qsizetype at = 0; at + 5 <= echo.size(); ++at) {
      const QString part = QString::fromLatin1(echo.sliced(at, 5));
      EXPECT_FALSE(words.contains(part)) << words.toStdString();
    }
  }
  EXPECT_EQ(redaction.Words("550 <tim@example.com> no such user"),
            QStringLiteral("550 <tim@example.com> no such user"));
}

TEST(RedactionTest, AShortOrCutOrOddSecretDoesNotShowEither) {
  EXPECT_EQ(Redaction(kUser, QStringLiteral("ab")).Words("535 cab"), QStringLiteral("***"));
  EXPECT_EQ(Redaction(kUser, QStringLiteral("535-ab")).Words("535-ab"), QStringLiteral("***"));
  EXPECT_FALSE(Redaction(kUser, QStringLiteral("1234567890"))
                   .Words(QByteArray(193, 'x') + "1234567890")
                   .contains(u"1234"));
  EXPECT_FALSE(Redaction(kUser, QStringLiteral("山田太郎"))
                   .Words("-ERR " + QStringLiteral("山田太郎").toUtf8())
                   .contains(u"山田"));
  EXPECT_EQ(Redaction(kUser, QString()).Words("-ERR no"), QStringLiteral("-ERR no"));
}

// The servers' side of each login; the last line of what was said is sent back in the refusal.
TEST(RedactionTest, NoLoginComesBackIntoTheLog) {
  const auto check = [](MailSession& session, const QByteArray& said, QByteArrayList replies,
                        const char* refusal, const test::RecordingEvents& events) {
    for (const QByteArray& reply : replies) session.Receive(reply);
    const QByteArray line = said.trimmed().mid(said.trimmed().lastIndexOf('\n') + 1);
    session.Receive(refusal + QByteArray(" no: ") + line + "\r\n");
    session.Abandon();
    ASSERT_EQ(events.errors.size(), 1) << line.toStdString();
    const QString secret = QString::fromUtf8(line.sliced(line.lastIndexOf(' ') + 1));
    EXPECT_TRUE(events.errors[0].contains(u"***")) << events.errors[0].toStdString();
    EXPECT_FALSE(events.shown.join(u'\n').contains(secret)) << events.errors[0].toStdString();
  };
  const auto smtp = [&check](const QByteArrayList& replies) {
    test::RecordingEvents events;
    QByteArray said;
    SmtpJob job;
    job.authenticate = true;
    job.user = kUser;
    job.password = kPassword;
    job.from = QStringLiteral("f@x");
    job.recipients = {QStringLiteral("a@x")};
    SmtpSession session(job, events, [&said](const QByteArray& bytes) { said += bytes; });
    check(session, said, replies, "535", events);
  };
  const auto pop3 = [&check](const QByteArrayList& replies, bool apop = false) {
    test::RecordingEvents events;
    QByteArray said;
    Pop3Session session({QStringLiteral("h"), kUser, kPassword, apop}, events,
                        [&said](const QByteArray& bytes) { said += bytes; });
    check(session, said, replies, "-ERR", events);
  };
  smtp({"220\r\n", "250 AUTH PLAIN\r\n"});
  smtp({"220\r\n", "250 AUTH LOGIN\r\n", "334\r\n"});
  smtp({"220\r\n", "250 AUTH LOGIN\r\n", "334\r\n", "334\r\n"});
  smtp({"220\r\n", "250 AUTH CRAM-MD5\r\n", "334 PDFAeD4=\r\n"});
  const QByteArray capabilities = "+OK\r\nSASL ";
  pop3({"+OK <1.2@x>\r\n", "-ERR\r\n"}, true);
  pop3({"+OK\r\n", "-ERR\r\n", "+OK\r\n"});
  pop3({"+OK\r\n", capabilities + "PLAIN\r\n.\r\n", "+\r\n"});
  pop3({"+OK\r\n", capabilities + "LOGIN\r\n.\r\n", "+\r\n", "+ \r\n"});
  pop3({"+OK\r\n", capabilities + "CRAM-MD5\r\n.\r\n", "+ PDFAeD4=\r\n"});
}

}  // namespace
}  // namespace vorn
