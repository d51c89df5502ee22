// SCRAM-SHA-256, whose server has to prove itself too, as the RFC has it, and with servers that do
// not.

#include <gtest/gtest.h>

#include "support/session_recorder.h"
#include "transfer/pop3/pop3_session.h"
#include "transfer/protocol/scram_proof.h"
#include "transfer/smtp/smtp_session.h"

namespace vorn {
namespace {

using test::SessionRecorder;

Credentials Who() {
  return {QStringLiteral("user"), QStringLiteral("pencil")};
}

// The example of RFC 7677 section 3.
const QByteArray kNonce = "rOprNGfwEbeRWgbNEkqO";
const QByteArray kNonces = kNonce + "%hvYDpWUa2RaTCAfuxFIlj)hNlF$k0";
const QByteArray kServerFirst = "r=" + kNonces + ",s=W22ZaJ0SNY7soEsUEjb6gQ==,i=4096";
const QByteArray kServerFinal = "v=6rriTRBi23WpRR/wtup+mMhUZUn/dB5nLTJRsjl95G4=";

TEST(ScramTest, ProvesBothSidesAsInTheExample) {
  ScramProof proof(Who(), kNonce);
  EXPECT_EQ(proof.Initial()->words, "n,,n=user,r=" + kNonce);
  const auto answer = proof.Answer(kServerFirst);
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->secret, "dHzbZapWIk4jUhN+Ute9ytag9zjfMHgsqmmiz7AndVQ=");
  EXPECT_EQ(answer->words, "c=biws,r=" + kNonces + ",p=" + answer->secret);
  EXPECT_FALSE(proof.TrustsServer());
  ASSERT_TRUE(proof.Answer(kServerFinal));
  EXPECT_TRUE(proof.TrustsServer());
  EXPECT_FALSE(proof.Answer(kServerFinal)) << "there is nothing more to ask";
}

TEST(ScramTest, NamesAndPasswordsAreWrittenAsTheServerCompares) {
  const auto first = [](const char16_t* user) {
    return ScramProof({QString::fromUtf16(user), {}}, "x").Initial()->words;
  };
  EXPECT_EQ(first(u"a=b,c"), "n,,n=a=3Db=2Cc,r=x");
  EXPECT_EQ(first(u"ｕｓｅｒ\u00AD"), "n,,n=user,r=x");
  EXPECT_EQ(first(u"山田"), "n,,n=山田,r=x");
  const auto answer = [](const char16_t* password) {
    return ScramProof({QStringLiteral("user"), QString::fromUtf16(password)}, kNonce)
        .Answer(kServerFirst)
        ->secret;
  };
  EXPECT_EQ(answer(u"ｐｅｎｃｉｌ"), answer(u"pencil"));
  EXPECT_NE(answer(u"Pencil"), answer(u"pencil"));
  EXPECT_NE(answer(u"a\u0007"), answer(u"a")) << "what has no form stays as it is";
}

TEST(ScramTest, OneProofServesOnceAndTwoNeverHaveOneNonce) {
  EXPECT_NE(ScramProof(Who()).Initial()->words, ScramProof(Who()).Initial()->words);
  for (const QByteArray& serverFirst :
       {QByteArray(), "r=other" + kServerFirst.sliced(2),
        "r=" + kNonce + ",s=W22ZaJ0SNY7soEsUEjb6gQ==,i=4096", "m=x," + kServerFirst,
        "r=" + kNonces + ",i=4096,s=W22ZaJ0SNY7soEsUEjb6gQ==", "r=" + kNonces + ",s=,i=4096",
        "r=" + kNonces + ",s=W22Z!,i=4096", "r=" + kNonces + ",s=W22Z"}) {
    ScramProof proof(Who(), kNonce);
    EXPECT_FALSE(proof.Answer(serverFirst)) << serverFirst.toStdString();
    EXPECT_FALSE(proof.Answer(kServerFirst)) << "it is over";
  }
  // How often a server may have the password hashed: neither so seldom that it is soon guessed, nor
  // for minutes.
  for (const auto& [count, isTaken] : {std::pair("1", false),
                                       {"4095", false},
                                       {"4096", true},
                                       {"150000", true},
                                       {"150001", false},
                                       {"2147483648", false},
                                       {"-4096", false},
                                       {"many", false}}) {
    ScramProof proof(Who(), kNonce);
    EXPECT_EQ(proof.Answer("r=" + kNonces + ",s=W22Z,i=" + count).has_value(), isTaken) << count;
  }
}

// A server that goes through SCRAM with whoever comes and knows no password. `%` in its first
// message is the client's nonce.
struct HostileServer {
  QByteArray first;
  QByteArray final;
  PopError told = PopError::Protocol;
};

const HostileServer kHostile[] = {
    {"r=other,s=W22Z,i=4096", {}},
    {"r=%x,s=W22Z,i=1", {}},
    {"r=%x,s=W22Z,i=2147483648", {}},
    {"r=%x,s=W22Z,i=4096", "v=6rriTRBi23WpRR/wtup+mMhUZUn/dB5nLTJRsjl95G4="},
    {"r=%x,s=W22Z,i=4096", "v="},
    {"r=%x,s=W22Z,i=4096", {}},
    {"r=%x,s=W22Z,i=4096", "e=invalid-proof", PopError::Login},
    {"e=unknown-user", {}, PopError::Login}};

// Answers what the client says in its login, lines without their ends: `ask` before a challenge,
// `in` when it lets the user in.
QByteArray Answered(const HostileServer& server, const QByteArray& line, const QByteArray& ask,
                    const QByteArray& in) {
  const QByteArray said = QByteArray::fromBase64(line.sliced(line.lastIndexOf(' ') + 1));
  if (said.startsWith("n,,")) {
    QByteArray first = server.first;
    first.replace('%', said.sliced(said.indexOf("r=") + 2));
    return ask + first.toBase64() + "\r\n";
  }
  const bool hasMore = said.startsWith("c=") && !server.final.isEmpty();
  return hasMore ? ask + server.final.toBase64() + "\r\n" : in;
}

SmtpJob JobOf(Security security) {
  SmtpJob job;
  job.server.security = security;
  job.server.who = Who();
  job.authenticate = true;
  return job;
}

// Sessions that are as far as to log in, with what servers offer, and what they said.
struct Sending {
  explicit Sending(const QByteArray& mechanisms, Security security = Security::None)
      : session(JobOf(security), events,
                [this](const QByteArray& bytes) { said += bytes.trimmed(); }) {
    session.Receive("220\r\n250-x\r\n250 AUTH " + mechanisms + "\r\n");
  }
  SessionRecorder events;
  QByteArrayList said;
  SmtpSession session;
};

struct Receiving {
  explicit Receiving(const QByteArray& mechanisms, Security security = Security::None)
      : session({{.security = security, .who = Who()}}, events,
                [this](const QByteArray& bytes) { said += bytes.trimmed(); }) {
    session.Receive("+OK\r\n");
    session.Receive("+OK\r\nUSER\r\nSASL " + mechanisms + "\r\n.\r\n");
  }
  SessionRecorder events;
  QByteArrayList said;
  Pop3Session session;
};

TEST(ScramTest, AServerThatDoesNotKnowThePasswordIsNotBelieved) {
  for (const HostileServer& server : kHostile) {
    Sending smtp("PLAIN SCRAM-SHA-256");
    EXPECT_TRUE(smtp.said.last().startsWith("AUTH SCRAM-SHA-256 biws"));
    for (int turn = 0; turn < 3 && !smtp.session.Finished(); ++turn) {
      smtp.session.Receive(Answered(server, smtp.said.last(), "334 ", "235\r\n"));
    }
    EXPECT_TRUE(smtp.session.Finished());
    EXPECT_EQ(smtp.events.codes, QList{server.told}) << server.first.toStdString();

    Receiving pop3("PLAIN SCRAM-SHA-256");
    EXPECT_EQ(pop3.said.last(), "AUTH SCRAM-SHA-256");
    pop3.session.Receive("+ \r\n");
    for (int turn = 0; turn < 3 && !pop3.session.Finished(); ++turn) {
      pop3.session.Receive(Answered(server, pop3.said.last(), "+ ", "+OK\r\n"));
    }
    EXPECT_TRUE(pop3.session.Finished());
    EXPECT_EQ(pop3.events.codes, QList{server.told}) << server.first.toStdString();
    const bool saysWhy = pop3.events.Shown().contains(QStringLiteral("invalid-proof")) ||
                         pop3.events.Shown().contains(QStringLiteral("unknown-user"));
    EXPECT_EQ(saysWhy, server.told == PopError::Login) << pop3.events.Shown().toStdString();
    EXPECT_FALSE(pop3.said.join(' ').contains("PASS"))
        << "nothing else is tried with such a server";
  }
}

// Many servers list it for all and can do it only for those whose password they keep in its form.
TEST(ScramTest, RefusedBeforeAProofItIsFollowedByTheNext) {
  Sending smtp("SCRAM-SHA-256 PLAIN CRAM-MD5");
  smtp.session.Receive("535 no\r\n");
  EXPECT_EQ(smtp.said.last(), "AUTH CRAM-MD5") << "in clear no password is shown";
  smtp.session.Receive("334 PDE+\r\n535 wrong\r\n221\r\n");
  EXPECT_EQ(smtp.events.codes, QList{PopError::Login});

  // Nor is it said in the words of POP3 after whatever was refused.
  for (const char* refusal : {"-ERR no\r\n", "+ \r\n-ERR no\r\n"}) {
    Receiving pop3("PLAIN SCRAM-SHA-256");
    pop3.session.Receive(refusal);
    EXPECT_FALSE(pop3.said.join().contains("USER")) << refusal;
    EXPECT_EQ(pop3.events.codes, QList{PopError::Login}) << refusal;
  }
}

// Where the server is known by its certificate, what it cannot do for a user is no attack: it knows
// him by another mechanism. A server that lets anybody in is none of them.
TEST(ScramTest, OverAnEncryptedConnectionTheNextOneFollows) {
  const struct {
    QByteArray first;
    QByteArrayList replies;  // to what the client says after it
    bool follows;
  } cases[] = {{"r=%x,s=W22Z,i=1", {"no\r\n"}, true}, {"r=%x,s=W22Z,i=4096", {"no\r\n"}, true},
               {"e=unknown-user", {"no\r\n"}, true},  {"r=%x,s=W22Z,i=1", {"ask"}, false},
               {"r=%x,s=W22Z,i=1", {"in"}, false},    {"r=%x,s=W22Z,i=4096", {"in"}, false}};
  for (const auto& [first, replies, follows] : cases) {
    SCOPED_TRACE(first.toStdString());
    const auto play = [&first = first, &replies = replies](
                          auto& session, const QByteArray& said, const QByteArray& no,
                          const QByteArray& ask, const QByteArray& in) {
      session.Receive(Answered({first, {}}, said, ask, in));
      for (const QByteArray& reply : replies) {
        session.Receive(reply == "ask" ? ask + "eHg=\r\n" : reply == "in" ? in : no + reply);
      }
    };
    Sending smtp("LOGIN SCRAM-SHA-256 PLAIN", Security::Tls);
    play(smtp.session, smtp.said.last(), "535 ", "334 ", "235\r\n");
    EXPECT_EQ(smtp.said.last().startsWith("AUTH PLAIN "), follows);
    EXPECT_EQ(smtp.events.codes.isEmpty(), follows);
    // What the server says no to now is the password.
    if (follows) smtp.session.Receive("535 wrong\r\n221\r\n");
    EXPECT_FALSE(smtp.said.contains("AUTH LOGIN"));
    EXPECT_EQ(smtp.events.codes, QList{follows ? PopError::Login : PopError::Protocol});

    Receiving pop3("SCRAM-SHA-256", Security::Tls);
    pop3.session.Receive("+ \r\n");
    play(pop3.session, pop3.said.last(), "-ERR ", "+ ", "+OK\r\n");
    EXPECT_EQ(pop3.said.last(), follows ? QByteArray("USER user") : pop3.said.last());
    EXPECT_EQ(pop3.events.codes.isEmpty(), follows) << pop3.events.Shown().toStdString();
  }
}

}  // namespace
}  // namespace vorn
