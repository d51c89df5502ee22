#include "storage/session/data_session.h"

#include <gtest/gtest.h>

#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/engine/connection.h"
#include "storage/engine/engine.h"
#include "storage/session/change_mark.h"
#include "storage/session/database_sync.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;

const QString kPassword = QStringLiteral("秘密");

class DataSessionTest : public testing::Test {
 protected:
  void SetUp() override {
    path_ = folder_.filePath(QStringLiteral("a.mbx"));
    ASSERT_TRUE(data_.Create(path_, kPassword));
    ASSERT_TRUE(data_.Open(path_, kPassword));
    ASSERT_TRUE(data_.CreateField(QStringLiteral("t"), QStringLiteral("V"), FieldType::Text, true,
                                  true, 0));
    ASSERT_TRUE(data_.CreateField(QStringLiteral("t"), QStringLiteral("DATA"),
                                  FieldType::LongBinary, false, false, 0));
    ASSERT_TRUE(CompleteSchema(*data_.OpenConnection()));
  }

  void Insert(const QString& value, const QByteArray& bytes = {}) {
    ASSERT_TRUE(data_.OpenRecordset(QStringLiteral("SELECT * FROM t"), CursorKind::Updatable));
    const RecordsetPtr rows = data_.Recordset();
    rows->AddNew();
    rows->SetField(QStringLiteral("V"), value);
    rows->SetField(QStringLiteral("data"), bytes);
    ASSERT_TRUE(rows->Update());
  }

  QStringList Values(const QString& select = QStringLiteral("SELECT V FROM t ORDER BY v")) {
    QStringList values;
    EXPECT_TRUE(data_.OpenRecordset(select, CursorKind::ForwardOnly))
        << data_.LastError().text.toStdString();
    for (const RecordsetPtr rows = data_.Recordset(); !rows->Eof(); rows->MoveNext()) {
      values.append(rows->Fields(u"V").toString());
    }
    return values;
  }

  qint64 Count(const QString& table) {
    EXPECT_TRUE(data_.OpenRecordset(QStringLiteral("SELECT COUNT(0) AS V FROM ") + table,
                                    CursorKind::ForwardOnly));
    return data_.Recordset()->Fields(u"V").toLongLong();
  }

  QTemporaryDir folder_;
  QString path_;
  DataSession data_;
};

TEST_F(DataSessionTest, FilesAreEncryptedAndOpenWithTheirPasswordAlone) {
  Insert(QStringLiteral("plain words"));
  data_.Close();
  EXPECT_FALSE(data_.Open(path_, QStringLiteral("wrong")));  // while the right one is warm
  EXPECT_EQ(data_.LastError().kind, StorageError::Kind::WrongPassword);
  EXPECT_FALSE(data_.TestPassword(path_, QString()));
  EXPECT_TRUE(data_.TestPassword(path_, kPassword));
  data_.CloseAll();
  const QByteArray bytes = ReadFile(path_);
  EXPECT_FALSE(bytes.startsWith("SQLite"));
  EXPECT_FALSE(bytes.contains("plain words"));
  EXPECT_FALSE(data_.Open(path_, QStringLiteral("wrong")));
  EXPECT_TRUE(data_.Open(path_, kPassword));
}

TEST_F(DataSessionTest, AReplacedFileIsNotTakenForTheWarmOne) {
  Insert(QStringLiteral("old"));
  data_.Close();
  QFile::rename(path_, path_ + QStringLiteral(".old"));
  QFile::remove(path_ + QStringLiteral("-wal"));
  EXPECT_FALSE(data_.Open(path_, kPassword));
  ASSERT_TRUE(data_.Create(path_, kPassword));
  ASSERT_TRUE(data_.Open(path_, kPassword));
  EXPECT_FALSE(data_.OpenRecordset(QStringLiteral("SELECT * FROM t"), CursorKind::ForwardOnly));
}

TEST_F(DataSessionTest, ForeignAndNewerFilesAreRefusedAndLeftAlone) {
  const QString text = folder_.filePath(QStringLiteral("text.mbx"));
  test::WriteFile(text, QByteArray(5000, 'x'));
  EXPECT_FALSE(data_.Open(text, kPassword));
  EXPECT_FALSE(data_.Create(text, kPassword));
  EXPECT_EQ(ReadFile(text), QByteArray(5000, 'x'));

  ASSERT_TRUE(data_.Open(path_, kPassword));
  ASSERT_TRUE(data_.Execute(QStringLiteral("PRAGMA user_version = 99")));
  data_.CloseAll();
  const QByteArray before = ReadFile(path_);
  EXPECT_FALSE(data_.Open(path_, kPassword));
  EXPECT_EQ(data_.LastError().kind, StorageError::Kind::Newer);
  EXPECT_EQ(ReadFile(path_), before);
}

// The tables as version 1 made them, with a message that was stored twice.
void MakeOldTables(DataSession& data) {
  for (const char16_t* column :
       {u"SERIALID", u"STATUS", u"FIELD_TIMESTAMP", u"FIELD_ID", u"FIELD_FLAG"}) {
    ASSERT_TRUE(data.CreateField(QStringLiteral("mail"), QString::fromUtf16(column),
                                 FieldType::Memo, false, false, 0));
  }
  ASSERT_TRUE(data.CreateField(QStringLiteral("mail"), QStringLiteral("MAIL"),
                               FieldType::LongBinary, false, false, 0));
  for (const char16_t* statement :
       {u"DROP TABLE long_binary", u"CREATE TABLE long_binary (ID INTEGER PRIMARY KEY, DATA BLOB)",
        u"CREATE INDEX mail_FIELD_ID ON mail (FIELD_ID)",
        u"INSERT INTO long_binary VALUES (1, 'first')",
        u"INSERT INTO mail (SERIALID, STATUS, FIELD_ID, MAIL) VALUES ('a', 4, 'same', 1)",
        u"INSERT INTO mail (SERIALID, STATUS, FIELD_ID, MAIL) VALUES ('b', 4, 'same', 1)",
        u"CREATE TABLE on_server (MAILBOX TEXT, FIELD_ID TEXT, SIZE INTEGER, DELETIONS INTEGER)",
        u"INSERT INTO on_server VALUES ('m', '', 0, 2), ('m', 'a', 1, -2), ('m', 'b', 1, 3), "
        u"('m', 'c', 1, -1)",
        u"PRAGMA user_version = 1"}) {
    ASSERT_TRUE(data.Execute(QString::fromUtf16(statement))) << data.LastError().text.toStdString();
  }
}

TEST_F(DataSessionTest, AnOlderFileIsBroughtUpToDate) {
  MakeOldTables(data_);
  data_.CloseAll();
  ASSERT_TRUE(data_.Open(path_, kPassword)) << data_.LastError().text.toStdString();
  EXPECT_EQ(
      Values(QStringLiteral("SELECT name AS V FROM sqlite_master WHERE name = 'mail_UNREAD'")),
      QStringList({QStringLiteral("mail_UNREAD")}));
  ASSERT_TRUE(data_.OpenRecordset(QStringLiteral("PRAGMA user_version"), CursorKind::ForwardOnly));
  EXPECT_EQ(data_.Recordset()->Fields(u"user_version").toInt(), kSchemaVersion);
  // Both rows are there, the one that came first under its identifier; a third one is refused.
  EXPECT_EQ(Values(QStringLiteral("SELECT FIELD_ID AS V FROM mail ORDER BY SERIALID")),
            (QStringList{QStringLiteral("same"), QStringLiteral("same#b")}));
  EXPECT_FALSE(data_.Execute(
      QStringLiteral("INSERT INTO mail (SERIALID, STATUS, FIELD_ID) VALUES ('c', 4, 'same')")));
  EXPECT_EQ(Values(QStringLiteral("SELECT STATE AS V FROM on_server ORDER BY FIELD_ID")),
            (QStringList{QStringLiteral("3"), QStringLiteral("2"), QStringLiteral("1"),
                         QStringLiteral("0")}));
  // A source that was stored without a digest is read all the same.
  ASSERT_TRUE(data_.OpenRecordset(QStringLiteral("SELECT * FROM mail"), CursorKind::ForwardOnly));
  EXPECT_EQ(data_.Recordset()->Fields(u"MAIL").toByteArray(), QByteArray("first"));
}

// A table that is made for new files alone does nothing for whoever has mail already. Whoever adds
// one says here as of which version.
TEST_F(DataSessionTest, AFileOfTheLastVersionGetsTheTablesOfThisOne) {
  MakeOldTables(data_);
  data_.CloseAll();
  const auto tables = [this] {
    return Values(
        QStringLiteral("SELECT name AS V FROM sqlite_master WHERE type = 'table' ORDER BY 1"));
  };
  ASSERT_TRUE(data_.Open(path_, kPassword));
  const QStringList all = tables();
  ASSERT_TRUE(all.contains(QStringLiteral("send_refusal")));
  for (const char16_t* statement :
       {u"DROP TABLE told_stop", u"DROP TABLE send_refusal",
        u"CREATE TABLE send_refusal (SERIALID TEXT PRIMARY KEY, ROUTE TEXT)",
        u"INSERT INTO send_refusal VALUES ('a', 'way')", u"PRAGMA user_version = 10"}) {
    ASSERT_TRUE(data_.Execute(QString::fromUtf16(statement)));
  }
  data_.CloseAll();
  ASSERT_TRUE(data_.Open(path_, kPassword));
  EXPECT_EQ(tables(), all);
  EXPECT_EQ(Values(QStringLiteral("SELECT ROUTE AS V FROM send_refusal WHERE REPLY IS NULL")),
            QStringList({QStringLiteral("way")}));
  EXPECT_EQ(all.size(), 13) << "a table more asks for a version more";
}

TEST_F(DataSessionTest, AMessageThatIsBeingSentCannotBeChanged) {
  MakeOldTables(data_);
  data_.CloseAll();
  ASSERT_TRUE(data_.Open(path_, kPassword));
  const auto run = [this](const char16_t* statement) {
    return data_.Execute(QString::fromUtf16(statement));
  };
  ASSERT_TRUE(run(u"UPDATE mail SET STATUS = 2"));
  ASSERT_TRUE(run(u"INSERT INTO send_attempt (SERIALID, STATE) VALUES ('a', 1)"));
  for (const char16_t* statement :
       {u"UPDATE mail SET STATUS = 1 WHERE SERIALID = 'a'", u"UPDATE mail SET STATUS = -2",
        u"UPDATE mail SET MAIL = 2 WHERE SERIALID = 'a'", u"DELETE FROM mail"}) {
    EXPECT_FALSE(run(statement)) << QString::fromUtf16(statement).toStdString();
    EXPECT_EQ(data_.LastError().kind, StorageError::Kind::InTransfer);
  }
  EXPECT_TRUE(run(u"UPDATE mail SET FIELD_FLAG = '02'"));
  EXPECT_TRUE(run(u"UPDATE mail SET STATUS = 1 WHERE SERIALID = 'b'"));
  // Of one that may have arrived the state stays what it is, but it can be thrown away.
  ASSERT_TRUE(run(u"UPDATE send_attempt SET STATE = 2"));
  EXPECT_FALSE(run(u"UPDATE mail SET STATUS = 1 WHERE SERIALID = 'a'"));
  EXPECT_FALSE(run(u"UPDATE mail SET MAIL = 2 WHERE SERIALID = 'a'"));
  EXPECT_TRUE(run(u"UPDATE mail SET STATUS = -2 WHERE SERIALID = 'a'"));
  EXPECT_TRUE(run(u"DELETE FROM mail WHERE SERIALID = 'a'"));
  EXPECT_EQ(Values(QStringLiteral("SELECT SERIALID AS V FROM send_attempt")), QStringList());
}

TEST_F(DataSessionTest, ResultSetsStayUsableAfterLaterQueries) {
  for (const char16_t* value : {u"a", u"b", u"c"}) Insert(QString::fromUtf16(value));
  ASSERT_TRUE(
      data_.OpenRecordset(QStringLiteral("SELECT V FROM t ORDER BY V"), CursorKind::ForwardOnly));
  const RecordsetPtr outer = data_.Recordset();
  QStringList seen;
  for (; !outer->Eof(); outer->MoveNext()) {
    seen.append(outer->Fields(u"v").toString());
    EXPECT_EQ(Values().size(), 3);
  }
  EXPECT_EQ(seen.join(u','), QStringLiteral("a,b,c"));
  data_.Close();
  EXPECT_TRUE(outer->Eof());
}

TEST_F(DataSessionTest, LongBinaryDataLivesWithItsRow) {
  const QByteArray bytes(
      "\0\xFF"
      "binary",
      8);
  Insert(QStringLiteral("a"), bytes);
  ASSERT_TRUE(data_.OpenRecordset(QStringLiteral("SELECT * FROM t"), CursorKind::Updatable));
  RecordsetPtr row = data_.Recordset();
  EXPECT_EQ(row->Fields(u"DATA").toByteArray(), bytes);
  EXPECT_EQ(row->ByteCount(u"DATA"), bytes.size());
  row->Edit();
  row->SetField(QStringLiteral("DATA"), QByteArray("new"));
  ASSERT_TRUE(row->Update());
  EXPECT_EQ(Count(QStringLiteral("long_binary")), 1);
  const QString numbers = QStringLiteral("SELECT ID AS V FROM long_binary");
  const qint64 last = Values(numbers).value(0).toLongLong();
  ASSERT_TRUE(data_.Execute(QStringLiteral("DELETE * FROM t")));
  EXPECT_EQ(Count(QStringLiteral("long_binary")), 0);
  // Its number is not given again: a row that was not seen to go would show another one's data.
  Insert(QStringLiteral("b"), bytes);
  EXPECT_GT(Values(numbers).value(0).toLongLong(), last);
}

TEST_F(DataSessionTest, TransactionsNestAndAnInnerRollbackUndoesItsOwnWork) {
  ASSERT_TRUE(data_.Begin());
  Insert(QStringLiteral("outer"));
  ASSERT_TRUE(data_.Begin());
  Insert(QStringLiteral("inner"));
  data_.Rollback();
  ASSERT_TRUE(data_.Commit());
  EXPECT_EQ(Values(), QStringList{QStringLiteral("outer")});
  ASSERT_TRUE(data_.Begin());
  Insert(QStringLiteral("left open"));
  data_.Close();
  ASSERT_TRUE(data_.Open(path_, kPassword));
  EXPECT_EQ(Values().size(), 1);
}

TEST_F(DataSessionTest, AGroupReachesTheFileTogether) {
  DataSession other;
  data_.Group().Gather(path_);
  for (const char16_t* value : {u"a", u"b"}) {
    ASSERT_TRUE(data_.Open(path_, kPassword));
    ASSERT_TRUE(data_.BeginGathered());
    Insert(QString::fromUtf16(value));
    ASSERT_TRUE(data_.Commit());
    data_.Close();
  }
  ASSERT_TRUE(other.Open(path_, kPassword));
  ASSERT_TRUE(other.OpenRecordset(QStringLiteral("SELECT V FROM t"), CursorKind::ForwardOnly));
  EXPECT_TRUE(other.Recordset()->Eof());
  ASSERT_TRUE(data_.Group().End());
  ASSERT_TRUE(other.OpenRecordset(QStringLiteral("SELECT V FROM t"), CursorKind::ForwardOnly));
  EXPECT_FALSE(other.Recordset()->Eof());
  EXPECT_TRUE(SyncDatabase(data_, path_));
}

// A user's own change is in the file at once, and no failure of what is gathered undoes it.
TEST_F(DataSessionTest, WhatDoesNotBelongToAGroupIsWrittenAtOnce) {
  DataSession other;
  data_.Group().Gather(path_);
  ASSERT_TRUE(data_.Open(path_, kPassword));
  ASSERT_TRUE(data_.BeginGathered());
  Insert(QStringLiteral("gathered"));
  ASSERT_TRUE(data_.Commit());
  ASSERT_TRUE(data_.Begin());
  Insert(QStringLiteral("own"));
  ASSERT_TRUE(data_.Commit());
  ASSERT_TRUE(data_.BeginGathered());
  Insert(QStringLiteral("fails"));
  data_.Close();  // without a commit
  EXPECT_FALSE(data_.Group().End());
  ASSERT_TRUE(data_.Open(path_, kPassword));
  EXPECT_EQ(Values(), (QStringList{QStringLiteral("gathered"), QStringLiteral("own")}));
  ASSERT_TRUE(other.Open(path_, kPassword));
  ASSERT_TRUE(other.OpenRecordset(QStringLiteral("SELECT V FROM t"), CursorKind::ForwardOnly));
  EXPECT_FALSE(other.Recordset()->Eof());
}

TEST_F(DataSessionTest, ARollbackUndoesTheWholeGroupAndTheFlushTellsIt) {
  const auto insert = [this](const char16_t* value) {
    ASSERT_TRUE(data_.Open(path_, kPassword));
    ASSERT_TRUE(data_.BeginGathered());
    Insert(QString::fromUtf16(value));
  };
  data_.Group().Gather(path_);
  insert(u"first");
  ASSERT_TRUE(data_.Commit());
  data_.Close();
  insert(u"left open");
  data_.Close();  // without a commit
  EXPECT_FALSE(data_.Group().Flush());
  insert(u"next group");
  ASSERT_TRUE(data_.Commit());
  EXPECT_TRUE(data_.Group().End());
  EXPECT_EQ(Values(), QStringList{QStringLiteral("next group")});
}

// Whoever reads in between must not be the only one to hear that nothing was stored.
TEST_F(DataSessionTest, AFlushThatFailedForAReaderIsToldToTheWriterToo) {
  for (const char* statement :
       {"PRAGMA foreign_keys = ON", "CREATE TABLE parent (id PRIMARY KEY)",
        "CREATE TABLE child (id REFERENCES parent DEFERRABLE INITIALLY DEFERRED)"}) {
    ASSERT_EQ(sqlite3_exec(data_.OpenConnection()->Handle(), statement, nullptr, nullptr, nullptr),
              SQLITE_OK);
  }
  data_.Group().Gather(path_);
  ASSERT_TRUE(data_.BeginGathered());
  Insert(QStringLiteral("lost"));
  ASSERT_TRUE(data_.Execute(QStringLiteral("INSERT INTO child VALUES (1)")));
  ASSERT_TRUE(data_.Commit());
  EXPECT_FALSE(data_.Group().FlushForReading());
  EXPECT_FALSE(data_.Group().End());
  EXPECT_TRUE(data_.Group().End());
  EXPECT_EQ(Values(), QStringList());
}

// They take the place of the engine's own.
TEST_F(DataSessionTest, BoundedFunctionsDoWhatTheEnginesDo) {
  TestProfile profile;
  profile.Store("Subject: s\r\n\r\n");
  const auto value = [&](const char* expression) {
    return profile
        .Select(QStringLiteral("SELECT %1 AS V FROM mail").arg(QString::fromUtf8(expression)))
        .value(0)
        .toString();
  };
  EXPECT_EQ(value("instr('会議の資料','資料')"), QStringLiteral("4"));
  EXPECT_EQ(value("instr('abc','d')"), QStringLiteral("0"));
  EXPECT_EQ(value("instr('abc','')"), QStringLiteral("1"));
  EXPECT_EQ(value("instr(NULL,'d')"), QString());
  EXPECT_EQ(value("replace('a-b-c','-','＋')"), QStringLiteral("a＋b＋c"));
  EXPECT_EQ(value("replace('abc','','x')"), QStringLiteral("abc"));
  EXPECT_EQ(value("trim('ああxああ','あ')"), QStringLiteral("x"));
  EXPECT_EQ(value("ltrim('xxay','x')"), QStringLiteral("ay"));
  EXPECT_EQ(value("rtrim('ayxx','x')"), QStringLiteral("ay"));
  EXPECT_EQ(value("trim('aaa','a')"), QString());
}

// What was worked out of the file is out of date after each change, however alike they are.
TEST_F(DataSessionTest, EveryChangeHasAMarkOfItsOwn) {
  QSet<QString> marks{ChangeMark(data_)};
  for (int i = 0; i < 3; ++i) {
    Insert(QStringLiteral("same"));
    EXPECT_EQ(ChangeMark(data_), ChangeMark(data_));
    marks.insert(ChangeMark(data_));
  }
  EXPECT_EQ(marks.size(), 4);
}

// A log whose frames were spoiled, one that another file left, and a file that lost its contents.
TEST_F(DataSessionTest, WhatIsNotAsItWasWrittenIsNotTakenForIt) {
  const QString log = path_ + QStringLiteral("-wal");
  Insert(QStringLiteral("first"));
  Insert(QStringLiteral("second"));
  const QByteArray file = ReadFile(path_);
  const QByteArray frames = ReadFile(log);
  ASSERT_GT(frames.size(), 8192);
  data_.CloseAll();
  const auto damage = [&](const QByteArray& bytes, const QByteArray& inLog) {
    QFile::remove(path_ + QStringLiteral("-shm"));
    test::WriteFile(path_, bytes);
    test::WriteFile(log, inLog);
    std::ignore = data_.Open(path_, kPassword);
    data_.CloseAll();
    const QSet<QString> parts = data_.Damage().Take().value(path_);
    return QStringList(parts.begin(), parts.end()).join(u' ');
  };
  EXPECT_EQ(damage(file, frames), QString());
  QByteArray torn = frames;
  torn[5000] = static_cast<char>(torn[5000] ^ 1);
  EXPECT_EQ(damage(file, torn), QStringLiteral("log"));

  DataSession other;
  const QString another = folder_.filePath(QStringLiteral("b.mbx"));
  ASSERT_TRUE(other.Create(another, kPassword) && other.Open(another, kPassword));
  const QByteArray stranger = ReadFile(another + QStringLiteral("-wal"));
  ASSERT_GT(stranger.size(), 4096);
  EXPECT_EQ(damage(file, stranger), QStringLiteral("log"));
  EXPECT_FALSE(QFile::exists(log) && QFileInfo(log).size() > 0) << "it is set aside";

  EXPECT_EQ(damage(QByteArray(), QByteArray()), QStringLiteral("file"));
}

TEST_F(DataSessionTest, PasswordsChangeFromAndToTheEmptyOne) {
  Insert(QStringLiteral("kept"));
  data_.Close();
  ASSERT_TRUE(data_.ChangePassword(path_, kPassword, QString()));
  EXPECT_FALSE(data_.Open(path_, kPassword));
  ASSERT_TRUE(data_.Open(path_, QString()));
  EXPECT_EQ(Values(), QStringList{QStringLiteral("kept")});
  data_.CloseAll();
  EXPECT_FALSE(ReadFile(path_).startsWith("SQLite"));
  EXPECT_FALSE(data_.ChangePassword(path_, QStringLiteral("wrong"), kPassword));
  ASSERT_TRUE(data_.ChangePassword(path_, QString(), kPassword));
  ASSERT_TRUE(data_.Open(path_, kPassword));
}

TEST_F(DataSessionTest, SerialIdentifiersAreUniqueSafeAndInOrder) {
  QSet<SerialId> seen;
  SerialId last;
  const QRegularExpression allowed(QStringLiteral("^mail_[a-z2-7]{20}$"));
  for (int i = 0; i < 20000; ++i) {
    const SerialId serial = data_.NewSerialID(QStringLiteral("mail_"));
    ASSERT_TRUE(allowed.match(serial.Text()).hasMatch()) << serial.Text().toStdString();
    ASSERT_LT(last, serial);
    seen.insert(serial);
    last = serial;
  }
  EXPECT_EQ(seen.size(), 20000);
}

TEST(Databases, AFileWhoseMakerDiedIsFinishedOnOpening) {
  TestProfile profile;
  Context& context = profile.Get();
  const QString path = profile.Folder() + QStringLiteral("half.mbx");
  const QString killed = path + QStringLiteral(".new-12345");
  ASSERT_TRUE(context.Data.Create(path, {}));  // a mark and no tables
  ASSERT_TRUE(context.Data.TestPassword(path, {}));
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath, path));
  EXPECT_TRUE(context.Data.OpenRecordset(QStringLiteral("SELECT MAIL, FIELD_FLAG FROM mail"),
                                         CursorKind::ForwardOnly));
  context.Data.CloseAll();
  QFile::remove(path);
  QFile left(killed);
  ASSERT_TRUE(left.open(QIODevice::WriteOnly));
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath, path));
  EXPECT_FALSE(left.exists());
  EXPECT_TRUE(
      context.Data.OpenRecordset(QStringLiteral("SELECT MAIL FROM mail"), CursorKind::ForwardOnly));
}

TEST(Databases, MissingFilesAreMadeOnOpeningAndPathsMove) {
  TestProfile profile;
  Context& context = profile.Get();
  EXPECT_EQ(CurrentPath(context, QStringLiteral("/current/a/current/b")),
            context.AppFolder + QStringLiteral("a") + context.AppFolder + QStringLiteral("b"));
  EXPECT_EQ(PlatformPath(context, QStringLiteral("/current/p\\profile.mbx")),
            context.AppFolder + QStringLiteral("p/profile.mbx"));
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath,
                           QStringLiteral("/current/new folder\\other.mbx")));
  EXPECT_TRUE(QFile::exists(profile.Folder() + QStringLiteral("new folder/other.mbx")));
  profile.Store("Subject: kept\r\n\r\n\r\n");
  EXPECT_TRUE(CreateDatabase(context, DatabaseKind::Mail));  // an existing one stays
  EXPECT_EQ(profile.Select(QStringLiteral("SELECT FIELD_SUBJECT AS V FROM mail")),
            QList<QVariant>{QStringLiteral("kept")});
}

// Whatever zone it is told in; in another one it would sort among the wrong ones.
TEST(TimeText, OneMomentHasOneText) {
  const QDateTime moment =
      QDateTime::fromString(QStringLiteral("2026-11-26T23:30:00Z"), Qt::ISODate);
  EXPECT_EQ(StoredTimeText(moment), StoredTimeText(moment.toOffsetFromUtc(5 * 3600)));
  EXPECT_EQ(StoredTimeText(moment), StoredTimeText(moment.toOffsetFromUtc(-9 * 3600)));
}

TEST(TimeText, ShortOnesSayWhatADayNeeds) {
  const QDate today(2026, 3, 1);
  const auto text = [&](const char16_t* stored) {
    return ShortTimeText(QString::fromUtf16(stored), today);
  };
  EXPECT_EQ(text(u"2026-03-01 09:05:07.123"), QStringLiteral("9:05"));
  EXPECT_EQ(text(u"2026-02-28 23:59:59"), QStringLiteral("2/28"));
  EXPECT_EQ(text(u"2025-03-01 09:05:07"), QStringLiteral("2025/03/01"));
  EXPECT_EQ(text(u"yesterday"), QString());
}

TEST(TimeText, ShownOnesHaveTheFormOfTheLocale) {
  const QString stored = QStringLiteral("2026-11-03 09:05:07.123");
  const QLocale before;
  for (const auto& [locale, whole, day] : {
           std::tuple{"ja_JP", "2026/11/03 9:05:07", "11/3"},
           {"C", "2026/11/03 9:05:07", "11/3"},
           {"en_US", "11/3/2026 9:05:07 AM", "11/3"},
           {"en_GB", "03/11/2026 09:05:07", "03/11"},
           {"de_DE", "03.11.2026 09:05:07", "03.11"},
           {"sv_SE", "2026-11-03 09:05:07", "11-03"},
       }) {
    QLocale::setDefault(QLocale(QLatin1String(locale)));
    EXPECT_EQ(ShownTimeText(stored), QLatin1String(whole));
    EXPECT_EQ(ShortTimeText(stored, QDate(2026, 12, 1)), QLatin1String(day));
    EXPECT_EQ(GeneralTimeText(stored), QStringLiteral("2026/11/03 9:05:07"));
  }
  QLocale::setDefault(before);
}

}  // namespace
}  // namespace vorn
