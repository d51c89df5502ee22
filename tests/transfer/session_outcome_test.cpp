// However a conversation ends, it ends with exactly one outcome, and nothing that proves the user
// stands in what is told.

#include "mail/codec/header/envelope_address.h"
#include "support/session_playing.h"
#include "support/test_profile.h"
#include "transfer/protocol/redaction.h"

namespace vorn {
namespace {

using test::Play;
using test::SessionRecorder;

SmtpJob Job() {
  SmtpJob job;
  job.from = QStringLiteral("f@x");
  job.recipients = {QStringLiteral("a@x"), QStringLiteral("b@x")};
  job.source = "Subject: s\r\n\r\ntext\r\n.\r\n";
  return job;
}

QString PlayPop3(SessionRecorder& events, const QByteArray& server,
                 const QString& password = QStringLiteral("s3cret"), bool apop = false) {
  return Play(
      Pop3Login{{.host = QStringLiteral("mail.example"), .who = {QStringLiteral("user"), password}},
                apop},
      events, server);
}

const QByteArray kBefore = "220 hi\r\n250-x\r\n250 PIPELINING\r\n250 ok\r\n250 ok\r\n250 ok\r\n";
const QByteArray kWhole = kBefore + "354 go on\r\n250 queued\r\n221 bye\r\n";

TEST(SessionOutcome, AConversationThatIsCutAtAnyByteHasOneOutcome) {
  const qsizetype asked = kBefore.size();
  const qsizetype given = asked + QByteArray("354 go on\r\n").size();
  const qsizetype answered = given + QByteArray("250 queued\r\n").size();
  for (qsizetype length = 0; length <= kWhole.size(); ++length) {
    SessionRecorder events;
    Play(Job(), events, kWhole.first(length));
    QStringList expected;
    if (length >= asked) expected.append(QStringLiteral("begin"));
    if (length >= answered) {
      expected.append(QStringLiteral("sent"));
    } else if (length >= given) {
      expected.append(QStringLiteral("unknown"));
    } else if (length >= asked) {
      expected.append(QStringLiteral("refused"));
    }
    EXPECT_EQ(events.told, expected) << length;
    EXPECT_EQ(events.errors.isEmpty(), length >= answered) << length;
  }
}

TEST(SessionOutcome, AnAnswerSaysWhetherTheMessageWasTaken) {
  const std::pair<const char*, const char16_t*> answers[] = {
      {"354 go\r\n250 ok\r\n", u"sent"},
      {"354 go\r\n452 full\r\n", u"refused"},
      {"354 go\r\n554 no\r\n", u"refused"},
      {"354 go\r\nwhat\r\n", u"unknown"},
      {"354 go\r\n334 \r\n", u"unknown"},
      {"451 later\r\n", u"refused"},
      {"250 ok\r\n", u"refused"},
      {"354 go\r\n250-a\r\n550 b\r\n", u"unknown"},
      {"354 go\r\n250-a\r\n251 b\r\n", u"unknown"}};
  for (const auto& [answer, outcome] : answers) {
    SessionRecorder events;
    Play(Job(), events, kBefore + answer);
    EXPECT_EQ(events.told, (QStringList{QStringLiteral("begin"), QString::fromUtf16(outcome)}))
        << answer;
  }
  SessionRecorder declined;
  declined.mayHandOver = false;
  EXPECT_FALSE(Play(Job(), declined, kWhole).contains(QStringLiteral("DATA")));
  EXPECT_EQ(declined.told, QStringList{QStringLiteral("begin")});
}

TEST(SessionOutcome, AMessageThatWasNotGivenOutWholeWasNotTaken) {
  SmtpJob job = Job();
  job.source = "Subject: s\r\n\r\n" + QByteArray("0123456789\r\n").repeated(60000) + ".\r\n";
  SessionRecorder events;
  SmtpSession session(job, events, [](const QByteArray&) {});
  session.Receive(kBefore);
  session.Receive("354 go on\r\n");
  session.Drained();
  session.Abandon();
  EXPECT_TRUE(session.Finished());
  EXPECT_EQ(events.told, (QStringList{QStringLiteral("begin"), QStringLiteral("refused")}));

  // One that was given out may have been.
  SessionRecorder whole;
  SmtpSession given(Job(), whole, [](const QByteArray&) {});
  given.Receive(kBefore);
  given.Receive("354 go on\r\n");
  given.Drained();
  given.Abandon();
  EXPECT_EQ(whole.told, (QStringList{QStringLiteral("begin"), QStringLiteral("unknown")}));

  // Nor by a server that says yes to half of it.
  SessionRecorder hasty;
  SmtpSession second(job, hasty, [](const QByteArray&) {});
  second.Receive(kBefore);
  second.Receive("354 go on\r\n");
  second.Receive("250 queued\r\n");
  EXPECT_TRUE(second.Finished());
  EXPECT_EQ(hasty.told, (QStringList{QStringLiteral("begin"), QStringLiteral("refused")}));
}

TEST(SessionOutcome, WhatCameBeforeEncryptionIsForgotten) {
  SmtpJob job = Job();
  job.server.security = Security::StartTls;
  SessionRecorder events;
  QByteArray said;
  int handshakes = 0;
  SmtpSession session(
      job, events, [&said](const QByteArray& bytes) { said += bytes; },
      [&handshakes] { ++handshakes; });
  session.Receive("220\r\n250-x\r\n250-SMTPUTF8\r\n250-SIZE 1\r\n250 STARTTLS\r\n220 go\r\n");
  ASSERT_EQ(handshakes, 1);
  session.TlsEstablished();
  said.clear();
  session.Receive("250 x\r\n");
  EXPECT_EQ(said, QByteArray("MAIL FROM:<f@x>\r\n"));

  SessionRecorder injected;
  SmtpSession second(
      job, injected, [](const QByteArray&) {}, [&handshakes] { ++handshakes; });
  second.Receive("220\r\n250-x\r\n250 STARTTLS\r\n220 go\r\n250 AUTH PLAIN\r\n");
  EXPECT_EQ(handshakes, 1);
  EXPECT_EQ(injected.codes, QList<PopError>{PopError::Protocol});

  SessionRecorder mailbox;
  Pop3Session third(
      {{.host = QStringLiteral("mail.example"),
        .security = Security::StartTls,
        .who = {QStringLiteral("user"), QStringLiteral("s3cret")}}},
      mailbox, [](const QByteArray&) {}, [&handshakes] { ++handshakes; });
  third.Receive("+OK hi\r\n");
  third.Receive("+OK\r\nSTLS\r\nUSER\r\n.\r\n");
  third.Receive("+OK go\r\n+OK logged in\r\n");
  EXPECT_EQ(handshakes, 1);
  EXPECT_EQ(mailbox.codes, QList<PopError>{PopError::Protocol});
}

TEST(EnvelopeAddressTest, DomainsAreALabelsAndLocalPartsNeedTheirExtension) {
  const auto path = [](const char16_t* address) {
    const auto envelope = ToEnvelope(QString::fromUtf16(address));
    return envelope ? envelope->path + (envelope->needsUtf8 ? " utf8" : "") : QByteArray("-");
  };
  EXPECT_EQ(path(u"taro@例え.jp"), QByteArray("taro@xn--r8jz45g.jp"));
  EXPECT_EQ(path(u"taro@EXAMPLE.jp"), QByteArray("taro@EXAMPLE.jp"));
  // Another domain than "fass.de", which may be a stranger's.
  EXPECT_EQ(path(u"taro@faß.de"), QByteArray("taro@xn--fa-hia.de"));
  EXPECT_EQ(path(u"太郎@例え.jp"), QByteArray("太郎@xn--r8jz45g.jp utf8"));
  EXPECT_EQ(path(u"\"a b\"@x"), QByteArray("\"a b\"@x"));
  for (const char16_t* bad :
       {u"", u"\"a b\"@x y", u"\"a\" b\"@x", u"\"a b\\\"@x", u"a b@x", u"a@x\r\nRCPT TO:<b@x>",
        u"a@x>", u"a@x\u200b", u"a@ex\u3000ample", u"a@-例え.jp", u"@", u"@x", u"a@", u"a",
        u"(x@y.z)", u"@x:b@y", u"b(c)@x"}) {
    EXPECT_EQ(path(bad), QByteArray("-")) << QString::fromUtf16(bad).toStdString();
  }

  SmtpJob job = Job();
  job.recipients = {QStringLiteral("太郎@例え.jp")};
  SessionRecorder refused;
  EXPECT_FALSE(Play(job, refused, "220\r\n250 x\r\n221\r\n").contains(QStringLiteral("MAIL")));
  EXPECT_TRUE(refused.Shown().contains(QStringLiteral("太郎@例え.jp")));
  SessionRecorder offered;
  const QString said =
      Play(job, offered, "220\r\n250-x\r\n250 SMTPUTF8\r\n250\r\n250\r\n354\r\n250\r\n221\r\n");
  EXPECT_TRUE(said.contains(QStringLiteral(" SMTPUTF8|RCPT TO:<太郎@xn--r8jz45g.jp>")))
      << said.toStdString();
  SessionRecorder plain;
  EXPECT_FALSE(Play(Job(), plain, "220\r\n250-x\r\n250 SMTPUTF8\r\n250\r\n")
                   .contains(QStringLiteral("> SMTPUTF8")));
}

// --- secrets -----------------------------------------------------------------------------------

TEST(RedactionTest, NoFormOfASecretIsShown) {
  const QString password = QStringLiteral("Kyoto-2026");
  const Redaction redaction(Credentials{QStringLiteral("yamada"), password});
  const QByteArray plain = password.toUtf8();
  const QByteArray blob = '\0' + QByteArray("yamada") + '\0' + plain;
  const QByteArray encoded = plain.toBase64();
  for (const QByteArray& form :
       {plain, plain.toLower(), encoded, plain.toBase64(QByteArray::OmitTrailingEquals),
        blob.toBase64(), QByteArray("yamada").toBase64(), plain.toHex(), QByteArray("Kyoto%2D2026"),
        encoded.first(6) + "\r\n535-" + encoded.sliced(6), encoded.first(9),
        QByteArray("x" + plain + "y").toBase64()}) {
    const QString words = redaction.Words("535 you sent " + form + " there");
    EXPECT_TRUE(words.startsWith(QStringLiteral("535 you sent"))) << words.toStdString();
    for (const QByteArray& leak : {plain.first(5), encoded.first(6), blob.toBase64().first(8),
                                   plain.toHex().first(8), encoded.sliced(6, 6)}) {
      EXPECT_FALSE(words.contains(QString::fromLatin1(leak), Qt::CaseInsensitive))
          << form.toStdString() << ": " << words.toStdString();
    }
  }
  EXPECT_EQ(redaction.Words("550 no such user"), QStringLiteral("550 no such user"));
}

// What servers answered, and what of it may be shown. `%` stands for the login's blob in base64.
const std::pair<QByteArray, const char16_t*> kAnswers[] = {
    {"no such user", u"no such user"},
    {"", u""},
    {"\xE6\xB8\x88\xE3\x81\xBF\xE3\x81\xBE\xE3\x81\x9B\xE3\x82\x93", u"済みません"},
    // Markup stays the text that it is
    {"<h1>Welcome</h1><img src=\"/dev/zero\">", u"<h1>Welcome</h1><img src=\"/dev/zero\">"},
    {"&lt;b&gt; <a href=x>y</a>", u"&lt;b&gt; <a href=x>y</a>"},
    // Controls, escape sequences of terminals, marks of direction and what nothing shows
    {"\x1B[2J\x1B]0;owned\x07", u"?[2J?]0;owned?"},
    {"\xC2\x9B\x33\x31m", u"?31m"},
    {"\x9B\x33\x31m", u"\uFFFD31m"},
    {"a\bb\x7F", u"a?b?"},
    {QByteArray("a\0b", 3), u"a?b"},
    {"a\rb\tc\x0B\x0C", u"a b c"},
    {"\xE2\x80\xAE"
     "drowssap",
     u"?drowssap"},
    {"\xE2\x81\xA6x\xE2\x81\xA9", u"?x?"},
    {"a\xE2\x80\x8B"
     "b\xC2\xAD",
     u"a?b?"},
    {"a\xE2\x80\xA8"
     "b\xE2\x80\xA9"
     "c",
     u"a b c"},
    {"\xEE\x80\x80\xEF\xBF\xBE", u"??"},
    // Other codes, and what is none
    {"\x83\x41\x83\x42", u"\uFFFDA\uFFFDB"},
    {"\x1B$B$\"\x1B(B", u"?$B$\"?(B"},
    {"\xFF\xFE"
     "A",
     u"\uFFFD\uFFFDA"},
    {"\xC0\xAF\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
    // The program's own voice
    {"\xEF\xBC\x89\xE6\x8E\xA5\xE7\xB6\x9A\xE6\xB8\x88\xEF\xBC\x88", u")接続済("},
    {"+OK logged in", u"+OK logged in"},
    {"250 queued", u"250 queued"},
    // Secrets
    {"bad PASS Kyoto-2026", u"bad PASS ***"},
    {"bad kYOTO-2026!", u"bad ***!"},
    {"half of it: oto-20", u"half of it: ***"},
    {"K y o t o - 2 0 2 6", u"***"},
    {"\"Kyoto\"-'2026'", u"\"***'"},
    {"Kyoto%2D2026 =4Byoto-2026", u"***"},
    {"4b796f746f2d32303236", u"***"},
    {"AUTH PLAIN %", u"AUTH PLAIN ***"},
    {"S3lvdG8tMjAyNg==", u"***=="},
    {"user dXNlcg==", u"user ***=="},
    {"a Kyoto-2026 b Kyoto-2026", u"a *** b ***"}};

// All that is told of a server that refuses with these words, wherever in a conversation it does.
QStringList SentencesOf(const QByteArray& answer, const SmtpJob& job) {
  QStringList all;
  for (const char* before : {"", "+OK\r\n-ERR\r\n+OK\r\n", "+OK\r\n-ERR\r\n+OK\r\n+OK\r\n"}) {
    SessionRecorder pop3;
    PlayPop3(pop3, before + ("-ERR " + answer) + "\r\n", job.server.who.password);
    all += pop3.errors;
  }
  const QByteArray login = "220\r\n250-x\r\n250 AUTH PLAIN\r\n";
  const QByteArray sender = login + "235\r\n250\r\n";
  for (const QByteArray& before : {QByteArray(), login, sender, sender + "250\r\n250\r\n"}) {
    SessionRecorder smtp;
    Play(job, smtp, before + "554 " + answer + "\r\n250\r\n221\r\n");
    all += smtp.errors;
  }
  EXPECT_EQ(all.size(), 7) << answer.toStdString();
  return all;
}

TEST(RedactionTest, WhatAServerSaysIsShownPlainAndBounded) {
  SmtpJob job = Job();
  job.authenticate = true;
  job.server.who.user = QStringLiteral("user");
  job.server.who.password = QStringLiteral("Kyoto-2026");
  const QByteArray secret = job.server.who.password.toUtf8();
  const QByteArray blob = (QByteArray("\0user\0", 6) + secret).toBase64();
  for (const auto& [text, words] : kAnswers) {
    const QByteArray answer = QByteArray(text).replace("PLAIN %", "PLAIN " + blob);
    for (const QString& sentence : SentencesOf(answer, job)) {
      EXPECT_TRUE(sentence.contains(QString::fromUtf16(words))) << sentence.toStdString();
      EXPECT_FALSE(sentence.contains(u'\n')) << sentence.toStdString();
      EXPECT_EQ(sentence.count(u'）'), sentence.count(QStringLiteral("（サーバーの応答")))
          << sentence.toStdString();
    }
  }
  const QByteArray kana = "\xE3\x81\x82";
  for (const QByteArray& answer : {QByteArray(5000, 'x'), QByteArray(8, 'x') + secret.repeated(900),
                                   QByteArray(4088, ' ') + secret, 'x' + kana.repeated(2000),
                                   QByteArray("<b>").repeated(1500)}) {
    for (const QString& sentence : SentencesOf(answer, job)) {
      EXPECT_LE(sentence.size(), 300) << sentence.toStdString();
      EXPECT_FALSE(sentence.contains(QStringLiteral("Kyo"), Qt::CaseInsensitive) ||
                   sentence.contains(QChar::ReplacementCharacter))
          << sentence.toStdString();
    }
  }
}

TEST(RedactionTest, AServerThatEchoesALoginShowsNothingOfIt) {
  SmtpJob job = Job();
  job.authenticate = true;
  job.server.who.user = QStringLiteral("yamada");
  job.server.who.password = QStringLiteral("Kyoto-2026");
  const QByteArray blob = (QByteArray("\0yamada\0", 8) + "Kyoto-2026").toBase64();
  SessionRecorder plain;
  Play(job, plain, "220\r\n250-x\r\n250 AUTH PLAIN\r\n535 bad AUTH PLAIN " + blob + "\r\n221\r\n");
  EXPECT_FALSE(plain.errors.isEmpty());
  EXPECT_FALSE(plain.Shown().contains(QString::fromLatin1(blob.first(10))));

  // The name says who was refused, and is no secret.
  SessionRecorder login;
  Play(job, login,
       "220\r\n250-x\r\n250 AUTH LOGIN\r\n334\r\n334\r\n535 yamada may not, Kyoto-2026\r\n221\r\n");
  EXPECT_TRUE(login.Shown().contains(u"yamada may not"));
  EXPECT_FALSE(login.Shown().contains(u"Kyoto"));

  const QByteArray challenge = "<1.2@x>";
  const QByteArray digest =
      QMessageAuthenticationCode::hash(challenge, job.server.who.password.toUtf8(),
                                       QCryptographicHash::Md5)
          .toHex();
  SessionRecorder cram;
  Play(job, cram,
       "220\r\n250-x\r\n250 AUTH CRAM-MD5\r\n334 " + challenge.toBase64() + "\r\n535 wrong " +
           digest + " " + ("yamada " + digest).toBase64() + "\r\n221\r\n");
  EXPECT_FALSE(cram.errors.isEmpty());
  EXPECT_FALSE(cram.Shown().contains(QString::fromLatin1(digest.first(12))));
  EXPECT_FALSE(
      cram.Shown().contains(QString::fromLatin1(("yamada " + digest).toBase64().sliced(16, 16))));

  SessionRecorder pop3;
  PlayPop3(pop3, "+OK\r\n-ERR\r\n+OK\r\n-ERR bad PASS Kyoto-2026\r\n",
           QStringLiteral("Kyoto-2026"));
  EXPECT_FALSE(pop3.Shown().contains(QStringLiteral("Kyoto")));
  SessionRecorder apop;
  const QByteArray proof =
      QCryptographicHash::hash("<1.2@x>Kyoto-2026", QCryptographicHash::Md5).toHex();
  PlayPop3(apop, "+OK <1.2@x>\r\n-ERR\r\n-ERR user " + proof + "\r\n", QStringLiteral("Kyoto-2026"),
           true);
  EXPECT_FALSE(apop.errors.isEmpty());
  EXPECT_FALSE(apop.Shown().contains(QString::fromLatin1(proof.first(12))));
}

// --- POP3 --------------------------------------------------------------------------------------

const QByteArray kLoginLines = "+OK\r\n-ERR\r\n+OK\r\n+OK\r\n";

TEST(Pop3Limits, RulesWorkWithoutTop) {
  for (const char* capabilities : {"-ERR\r\n", "+OK\r\nUSER\r\nUIDL\r\n.\r\n"}) {
    SessionRecorder events;
    events.wantsHeaders = true;
    const bool asks = *capabilities == '-';  // a server that tells no capabilities is tried
    const QByteArray top = asks ? "-ERR unknown\r\n" : "";
    const QString said =
        PlayPop3(events, QByteArray("+OK\r\n") + capabilities +
                             "+OK\r\n+OK\r\n+OK\r\n1 9\r\n2 9\r\n.\r\n+OK\r\n1 a\r\n2 b\r\n.\r\n" +
                             top + "+OK\r\nSubject: stop\r\n\r\nx\r\n.\r\n" +
                             "+OK\r\nSubject: go\r\n\r\nx\r\n.\r\n+OK\r\n+OK\r\n+OK\r\n");
    EXPECT_EQ(events.arrived, QByteArrayList{"Subject: go\r\n\r\nx\r\n"}) << said.toStdString();
    EXPECT_TRUE(said.contains(QStringLiteral("DELE 1|DELE 2"))) << said.toStdString();
    EXPECT_EQ(events.log.size(), 1) << events.log.join(u'\n').toStdString();
  }
}

TEST(Pop3Limits, NumbersAndLengthsOfAServerAreNotBelieved) {
  SessionRecorder huge;
  PlayPop3(huge,
           kLoginLines +
               "+OK\r\n1 9223372036854775807\r\n2 9223372036854775807\r\n3 -5\r\n4 99999999999"
               "9999999999\r\n.\r\n+OK\r\n1 a\r\n2 b\r\n3 c\r\n4 d\r\n.\r\n"
               "+OK\r\nSubject: x\r\n\r\n.\r\n");
  EXPECT_EQ(huge.arrived.size(), 1);

  QByteArray list;
  for (int number = 1; number <= 1100000; ++number) list += QByteArray::number(number) + " 9\r\n";
  EXPECT_EQ(ReadMailbox(list, "1 a\r\n2 a\r\n").size(), 1000000U);

  SessionRecorder endless;
  const QString said =
      PlayPop3(endless, "+OK\r\n+OK\r\n" + QByteArray("X-MORE\r\n").repeated(20000));
  EXPECT_EQ(said, QStringLiteral("CAPA"));
  EXPECT_EQ(endless.codes, QList<PopError>{PopError::Protocol});

  SessionRecorder talkative;
  Play(Job(), talkative, "220\r\n" + QByteArray("250-MORE\r\n").repeated(20000));
  EXPECT_EQ(talkative.codes, QList<PopError>{PopError::Protocol});
}

TEST(Pop3Limits, AServerThatCannotListItsIdentifiersNowIsLeftAlone) {
  SessionRecorder events;
  const QString said =
      PlayPop3(events, "+OK\r\n+OK\r\nUIDL\r\n.\r\n+OK\r\n+OK\r\n+OK\r\n1 9\r\n.\r\n-ERR busy\r\n");
  EXPECT_FALSE(said.contains(QStringLiteral("RETR"))) << said.toStdString();
  EXPECT_EQ(events.errors.size(), 1);
}

TEST(Pop3Limits, APlusAloneIsAContinuation) {
  SessionRecorder events;
  const QString said = PlayPop3(
      events, "+OK\r\n+OK\r\nSASL LOGIN\r\n.\r\n+\r\n+ \r\n+OK\r\n+OK\r\n.\r\n+OK\r\n.\r\n+OK\r\n");
  EXPECT_TRUE(said.contains(QStringLiteral("AUTH LOGIN|dXNlcg==|czNjcmV0|LIST")))
      << said.toStdString();
}

// The login's commands, by their first two words.
QString LoginCommands(const QByteArray& capabilities, const QByteArray& answers) {
  SessionRecorder events;
  QStringList said =
      PlayPop3(events, "+OK\r\n+OK\r\n" + capabilities + ".\r\n" + answers).split(u'|');
  said.removeFirst();  // CAPA
  for (QString& line : said) line = line.section(u' ', 0, 1);
  return said.join(u'|');
}

TEST(Pop3Limits, AMechanismThatTheServerDoesNotDoIsFollowedByTheNext) {
  EXPECT_EQ(LoginCommands("SASL LOGIN\r\nUSER\r\n", "-ERR unknown\r\n+OK\r\n-ERR no\r\n"),
            QStringLiteral("AUTH LOGIN|USER user|PASS s3cret"));
  EXPECT_EQ(LoginCommands("SASL LOGIN\r\nUSER\r\n", "+\r\n+\r\n-ERR wrong\r\n"),
            QStringLiteral("AUTH LOGIN|dXNlcg==|czNjcmV0"));
  // In clear not by one that shows the password, unless it is the login that all servers have.
  EXPECT_EQ(LoginCommands("SASL LOGIN CRAM-MD5\r\n", "-ERR unknown\r\n"),
            QStringLiteral("AUTH CRAM-MD5"));
  // A server that keeps passwords scrambled cannot check it, whatever it lists.
  const QString refused =
      LoginCommands("SASL CRAM-MD5\r\nUSER\r\n", "+ PDFAeD4=\r\n-ERR wrong\r\n+OK\r\n-ERR no\r\n");
  EXPECT_TRUE(refused.startsWith(QStringLiteral("AUTH CRAM-MD5|")) &&
              refused.endsWith(QStringLiteral("|USER user|PASS s3cret")))
      << refused.toStdString();
}

}  // namespace
}  // namespace vorn
