// Archives of other programs: each message once, whole, and nothing that was none.

#include <gtest/gtest.h>

#include "mail/archive/import_messages.h"
#include "mail/archive/mail_archive.h"
#include "mail/archive/mbox.h"
#include "mail/store/message_filing.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

QList<QByteArray> Read(QByteArray text) {
  QBuffer file(&text);
  file.open(QIODevice::ReadOnly);
  QList<QByteArray> messages;
  EXPECT_TRUE(ReadMbox(file, [&messages](const QByteArray& message) {
    messages.append(message);
    return true;
  }));
  return messages;
}

using Messages = QList<QByteArray>;

TEST(MboxTest, ABodyLineThatBeginsWithFromIsNoSeparator) {
  const QByteArray text =
      "From a@b Thu Jan  1 09:00:00 2026\nSubject: 1\n\nHello\n\nFrom here on it is text.\n"
      "Note: no date above\nFrom c@d Thu Jan  1 09:00:00 2026\nno empty line above\n\n"
      "From c@d Thu Jan  1 09:00:00 2026\nno header field below\n\n"
      "From MAILER-DAEMON Fri, 2 Jan 2026 10:00:00 +0900\nSubject: 2\n\n>From the start\n"
      ">>From there\n\n"
      "From -\nSubject: 3\n\nend";
  EXPECT_EQ(
      Read(text),
      Messages(
          {"Subject: 1\r\n\r\nHello\r\n\r\nFrom here on it is text.\r\n"
           "Note: no date above\r\nFrom c@d Thu Jan  1 09:00:00 2026\r\nno empty line above\r\n\r\n"
           "From c@d Thu Jan  1 09:00:00 2026\r\nno header field below\r\n",
           "Subject: 2\r\n\r\nFrom the start\r\n>From there\r\n", "Subject: 3\r\n\r\nend"}));
}

TEST(MboxTest, EveryCommonSeparatorIsKnown) {
  for (const char* date :
       {"a@b Thu Jan  1 09:00:00 2026", "a@b  Thu Jan  1 09:00 2026",
        "a b@c Thu Jan 01 09:00:00 "
        "JST 2026",
        "1529391212@xxx Tue Jun 19 06:53:32 +0000 2018", "- Thu Jan 01 09:00:00 2026",
        "???@??? Thu Jan 01 09:00:00 1998", "a@b Thu, 1 Jan 2026 09:00:00 +0900",
        "a@b Thu Jan  1 09:00:00 2026 -0500", "u Thu Jan  1 09:00:00 2026 remote from host",
        "a@b 2026-01-01 09:00:00", "-"}) {
    const QByteArray line = QByteArray("From ") + date + "\r\n";
    const QByteArray text = line + "A: 1\r\n\r\nx\r\n\r\n" + line + "B: 2\r\n\r\ny\r\n\r\n";
    EXPECT_EQ(Read(text), Messages({"A: 1\r\n\r\nx\r\n", "B: 2\r\n\r\ny\r\n"})) << date;
  }
  // A program of another language: no date in any of them.
  EXPECT_EQ(Read("From a 1. Januar\nA: 1\n\nx\n\nFrom b 2. Januar\nB: 2\n\ny\n\nFrom text\nz\n"),
            Messages({"A: 1\r\n\r\nx\r\n", "B: 2\r\n\r\ny\r\n\r\nFrom text\r\nz\r\n"}));
}

TEST(MboxTest, ALengthIsBelievedOnlyWhenItFits) {
  const QByteArray separator = "From a@b Thu Jan  1 09:00:00 2026\n";
  const QByteArray body = "x\n\n" + separator + "Subject: inside\n\n>From here\n";
  const auto entry = [&](qsizetype length) -> QByteArray {
    return separator + "A: 1\nContent-Length: " + QByteArray::number(length) + "\n\n" + body + '\n';
  };
  const QByteArray whole =
      WithCrLf("A: 1\nContent-Length: " + QByteArray::number(body.size()) + "\n\n" + body);
  EXPECT_EQ(Read(entry(body.size()) + separator + "B: 2\n\ny\n"),
            Messages({whole, "B: 2\r\n\r\ny\r\n"}));
  EXPECT_EQ(Read(entry(body.size())), Messages({whole}));
  for (const qsizetype wrong :
       {qsizetype(0), body.size() - 5, body.size() + 40, qsizetype(1) << 62}) {
    EXPECT_EQ(Read(entry(wrong)).value(1), "Subject: inside\r\n\r\nFrom here\r\n") << wrong;
  }
  EXPECT_EQ(Read(separator + "Content-Length: 11\n\n>From here\n\n" + separator + "B: 2\n\n"),
            Messages({"Content-Length: 11\r\n\r\nFrom here\r\n", "B: 2\r\n\r\n"}));
}

// A length that ended before a line like a separator's lost all that followed it.
TEST(MboxTest, ALengthIsBelievedOnlyWhereAMessageBeginsBehindIt) {
  const QByteArray separator = "From a@b.c Thu Nov 26 10:00:00 2026\n";
  const QByteArray text = "two\n\n" + separator + "this line has no colon\nSECRET\n";
  const Messages read =
      Read(separator + "Content-Length: 4\n\n" + text + "\n" + separator + "B: 2\n\n");
  ASSERT_EQ(read.size(), 2);
  EXPECT_TRUE(read[0].contains("SECRET")) << read[0].toStdString();
  // What stands before the first separator makes no message of the file.
  for (const QByteArray& before : {QByteArray("\n"), QByteArray("\xEF\xBB\xBF")}) {
    EXPECT_EQ(Read(before + separator + "A: 1\n\n\n" + separator + "B: 2\n\n").size(), 2);
  }
}

TEST(MboxTest, WhatIsWrittenIsReadUnchanged) {
  const Messages messages{"A: 1\r\n\r\nFrom x\r\n>From y\r\n>>From z",
                          "From: a\n\nbare\n",
                          "B: 2",
                          "C: 3\r\n\r\n\r\n\r\n",
                          "no header\r\nFrom " + QByteArray(70000, 'x'),
                          "Content-Length: 3\r\n\r\nabc\r\n\r\nFrom -\r\nD: 4\r\n\r\n",
                          QByteArray("E: 5\r\n\r\n\0\x1a\xff\r", 12),
                          "F: 6\r\n\r\nx\r\n\r",
                          "G: 7\r\n\r\nx\r\n"};
  QByteArray text;
  for (const QByteArray& message : messages) {
    text += MboxEntry(message, "a@b.c", QDateTime({2026, 11, 3}, {9, 5, 7}, Qt::UTC));
  }
  EXPECT_EQ(Read(text), messages);
  // Also in the form that every entry had once.
  text.replace("From a@b.c Tue Nov  3 09:05:07 2026 remote from vorn\n",
               "From VORN Thu Jan  1 00:00:00 1970\n");
  EXPECT_EQ(Read(text), messages);
}

TEST(MboxTest, ASeparatorNamesSenderAndTime) {
  const QDateTime time({2026, 11, 3}, {1, 5, 7}, QTimeZone("Asia/Tokyo"));
  const auto separator = [](const QByteArray& sender, const QDateTime& when) {
    return MboxEntry("A: 1\r\n\r\n", sender, when).split('\n').first();
  };
  EXPECT_EQ(separator("a@b.c", time), "From a@b.c Mon Nov  2 16:05:07 2026 remote from vorn");
  for (const QByteArray& none : {QByteArray(), QByteArray("\"a b\"@c"), QByteArray("a\n@c"),
                                 QByteArray("\xE3\x81\x82@c"), QByteArray(400, 'a')}) {
    EXPECT_EQ(separator(none, {}), "From MAILER-DAEMON Thu Jan  1 00:00:00 1970 remote from vorn");
  }
}

// What is no message was stored as one without text.
TEST(MailArchiveTest, WhatStandsBeforeTheFirstSeparatorIsNoMessage) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("a.mbox"));
  const QByteArray two =
      "From a@x Mon Jan  1 00:00:00 2024\nSubject: 1\n\none\n\n"
      "From b@x Mon Jan  1 00:00:00 2024\nSubject: 2\n\ntwo\n";
  for (const QByteArray& before :
       {QByteArray(), QByteArray("\xEF\xBB\xBF"), QByteArray("\n\r\n")}) {
    test::WriteFile(path, before + two);
    QList<QByteArray> messages;
    EXPECT_TRUE(ReadArchive(path, [&messages](const QByteArray& source) {
      messages.append(source);
      return true;
    }));
    ASSERT_EQ(messages.size(), 2) << before.toHex().toStdString();
    EXPECT_TRUE(messages[0].startsWith("Subject: 1"));
  }
}

TEST(MailArchiveTest, AFolderIsReadWithAllThatLiesInIt) {
  const QTemporaryDir folder;
  const auto write = [&folder](const char* name, const QByteArray& bytes) {
    const QString path = folder.filePath(QString::fromLatin1(name));
    QDir().mkpath(QFileInfo(path).path());
    test::WriteFile(path, bytes);
  };
  write("1.eml", "Subject: 1\n\nx\n");
  write("notes.txt", "Subject: no\n\nx\n");
  write("work/2.eml", "Subject: 2\n\nx\n");
  write("work/old.mbox", "From a@x Mon Jan  1 00:00:00 2024\nSubject: 3\n\none\n");
  write("dir/cur/4:2,S", "Subject: 4\n\nx\n");
  write("dir/new/5", "Subject: 5\n\nx\n");
  write("dir/tmp/half", "Subject: half\n\nx\n");
  write("dir/.Sub/cur/6", "Subject: 6\n\nx\n");
  write("dir/.Sub/new/7", "Subject: 7\n\nx\n");
  QFile::link(folder.path(), folder.filePath(QStringLiteral("work/loop")));
  QByteArray subjects;
  const Result<QString> read = ReadArchive(folder.path(), [&](const QByteArray& source) {
    return !(subjects += source.mid(9, 1)).isEmpty();
  });
  ASSERT_TRUE(read);
  std::sort(subjects.begin(), subjects.end());
  EXPECT_EQ(subjects, "1234567");
  EXPECT_TRUE(read->contains(QStringLiteral("1個のファイル"))) << read->toStdString();
}

TEST(MailArchiveTest, AnImportIsTakenBackButForWhatWasUsed) {
  test::TestProfile profile;
  Context& context = profile.Get();
  const QTemporaryDir folder;
  const SerialId shelf = u"shelf"_id;
  for (const char* name : {"1", "2", "3", "4"}) {
    test::WriteFile(folder.filePath(QLatin1String(name) + QStringLiteral(".eml")),
                    QByteArray("From: a@x\r\nSubject: ") + name + "\r\n\r\ntext\r\n");
  }
  qint64 read = 0;
  const ImportOutcome outcome = ImportMessages(
      context, folder.path(), shelf, [&read](int, qint64 bytes) { return (read = bytes) > 0; });
  ASSERT_TRUE(outcome.complete);
  EXPECT_EQ(read, ArchiveBytes(folder.path())) << "how far it is at its end";
  const ImportCounts& counts = outcome.counts;
  const SerialIds& brought = counts.back.intoDust;
  const auto flags = FlagsOf(context, brought);
  ASSERT_EQ(flags->size(), 4);
  // One got a mark, one was thrown away and one is somewhere else as well.
  EXPECT_TRUE(ToggleStar(context, {brought[0]}));
  EXPECT_TRUE(SetDust(context, {brought[1]}, true));
  EXPECT_TRUE(MoveMessages(context, {.into = {{u"other"_id, {brought[2]}}}}));
  EXPECT_EQ(UnchangedAmong(context, *flags, {}), SerialIds()) << "they are filed";
  EXPECT_EQ(UnchangedAmong(context, *flags, shelf), SerialIds{brought[3]});
  // What has its mark no more is as it was.
  EXPECT_TRUE(ToggleStar(context, {brought[0]}));
  EXPECT_EQ(UnchangedAmong(context, *flags, shelf)->size(), 2);
}

TEST(MailArchiveTest, WhatLiesInTheDustBinIsReturnedAndGoesBackThere) {
  test::TestProfile profile;
  Context& context = profile.Get();
  const QTemporaryDir folder;
  const SerialId shelf = u"shelf"_id;
  const SerialId other = u"other"_id;
  const auto source = [](int number) {
    return "From: a@x\r\nSubject: " + QByteArray::number(number) + "\r\n\r\ntext\r\n";
  };
  const auto path = [&folder](int number) { return folder.filePath(QString::number(number)); };
  SerialIds message{{}};
  for (const int number : {1, 2, 3}) {
    test::WriteFile(path(number), source(number));
    message += ImportMessages(context, path(number), other).counts.back.intoDust;
  }
  for (const int status : {kStatusSent, kStatusWaiting}) {
    const auto number = static_cast<int>(message.size());
    test::WriteFile(path(number), source(number));
    message.append(profile.Store(source(number) + ".\r\n", -status));
  }
  ASSERT_TRUE(SetDust(context, {message[1], message[2]}, true));
  profile.Store(source(2));  // another copy, outside

  const auto cancel = [](int, qint64) { return false; };
  ImportOutcome outcome = ImportMessages(context, path(1), shelf, cancel);
  EXPECT_FALSE(outcome.complete);
  ImportCounts counts = outcome.counts;
  for (const int number : {1, 2, 3, 4, 5}) {
    counts.Add(ImportMessages(context, path(number), shelf).counts);
  }
  EXPECT_EQ(counts.returned, 2);
  EXPECT_EQ(counts.known, 4);
  EXPECT_EQ(counts.kept, 1) << "of those, what would be sent outside";
  EXPECT_EQ(counts.imported, 0);
  EXPECT_EQ(test::Filed(context, message, shelf), (SerialIds{message[1], message[4]}));
  EXPECT_EQ(test::Filed(context, message, other), (SerialIds{message[2], message[3]}));

  const SerialIds& returned = counts.back.Messages();
  const auto unchanged = UnchangedAmong(context, *FlagsOf(context, returned), shelf);
  ASSERT_EQ(unchanged->size(), 2);
  ASSERT_TRUE(MoveMessages(context, counts.back.Only({message[1]})));
  EXPECT_EQ(test::Filed(context, message, shelf), SerialIds{message[4]});
  EXPECT_EQ(test::Filed(context, message, other), message.mid(1, 3));
  const auto inDust =
      profile.Select(QStringLiteral("SELECT SERIALID AS V FROM mail WHERE ") + kInDust);
  EXPECT_EQ(inDust.size(), 3) << "those of 1 and 2, and what would be sent outside";
  // Where it was filed when it was thrown away it stays.
  EXPECT_EQ(ImportMessages(context, path(1), other).counts.returned, 1);
  EXPECT_EQ(test::Filed(context, message, other), message.mid(1, 3));
}

TEST(MailArchiveTest, WhatWasSentIsKnownWithoutItsEndMark) {
  test::TestProfile profile;
  const QByteArray source = "From: a@x\r\nSubject: sent\r\n\r\ntext\r\n";
  profile.Store(source + ".\r\n", kStatusSent);
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("sent.eml"));
  test::WriteFile(file, source);
  const ImportOutcome outcome = ImportMessages(profile.Get(), file, {});
  EXPECT_TRUE(outcome.complete);
  EXPECT_EQ(outcome.counts.known, 1);
  EXPECT_EQ(outcome.counts.imported, 0);
}

TEST(MailArchiveTest, WhoWantsNoMoreIsAskedOfNoFurtherFile) {
  const QTemporaryDir folder;
  for (const char* name : {"1.mbox", "2.mbox", "3.eml"}) {
    test::WriteFile(folder.filePath(QLatin1String(name)),
                    "From a@x Mon Jan  1 00:00:00 2024\nSubject: 1\n\nx\n");
  }
  int taken = 0;
  EXPECT_TRUE(ReadArchive(folder.path(), [&taken](const QByteArray&) { return ++taken < 1; }));
  EXPECT_EQ(taken, 1);
}

TEST(MailArchiveTest, AFileThatIsNoMessageIsRefusedByName) {
  const QTemporaryDir folder;
  const auto write = [&folder](const QString& name, const QByteArray& bytes) {
    test::WriteFile(folder.filePath(name), bytes);
  };
  write(QStringLiteral("1.eml"), "Subject: 1\n\nx\n");
  write(QStringLiteral("2.eml"), QByteArray("\x8f\0\x03 SQL", 7));
  write(QStringLiteral("3.eml"), "\xEF\xBB\xBFSubject: 3\n\nx\n");
  write(QStringLiteral("4.eml"), "no header field\n");
  int taken = 0;
  const auto take = [&taken](const QByteArray&) { return ++taken > 0; };
  EXPECT_TRUE(ReadArchive(folder.path(), take).Error().text.contains(QStringLiteral("2.eml")));
  EXPECT_EQ(taken, 3);
}

// Other programs tell what was read by the folder and the name (the Maildir standard's flag "S").
TEST(MailArchiveTest, AMaildirTellsWhatWasRead) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("maildir"));
  ArchiveWriter writer(ArchiveFormat::Maildir, path, false);
  ASSERT_TRUE(writer.Open());
  ASSERT_TRUE(writer.Write("A: read\r\n\r\n", {QStringLiteral("a"), true}));
  ASSERT_TRUE(writer.Write("A: new\r\n\r\n", {QStringLiteral("b"), false}));
  ASSERT_TRUE(writer.Close());
  const auto names = [&path](const char* part) {
    return QDir(path + u'/' + QLatin1String(part)).entryList(QDir::Files);
  };
  ASSERT_EQ(names("cur").size(), 1);
  ASSERT_EQ(names("new").size(), 1);
  EXPECT_TRUE(names("cur")[0].endsWith(QStringLiteral(":2,S")));
  EXPECT_FALSE(names("new")[0].contains(u':'));
}

}  // namespace
}  // namespace vorn
