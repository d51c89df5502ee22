// Folders made of search conditions: the statements by what they find.

#include "mail/search/search_condition.h"

#include <gtest/gtest.h>

#include "mail/store/message_filing.h"
#include "objects/folder_object.h"
#include "objects/object_types.h"
#include "objects/profile/profile.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/session/file_check.h"
#include "storage/sql/sql_dialect.h"
#include "storage/ui.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

DiskPtr MakeFolder(const SerialId& serialId) {
  auto folder = std::make_shared<Disk>(serialId);
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), serialId.Text());
  return folder;
}

class SearchConditionTest : public testing::Test {
 protected:
  // A folder with these condition lines; its statement.
  QString Statement(const QStringList& lines, const SerialId& serialId = u"f"_id) {
    const DiskPtr folder = MakeFolder(serialId);
    folder->Let(QStringLiteral("Condition"), lines.join(kLineBreak));
    profile_.Get().Objects.Remove(serialId);
    profile_.Get().Objects.Add(folder);
    return FolderSqlBuilder(profile_.Get()).CreateFolderSql(serialId);
  }
  static QString Line(QStringView kind, const QStringList& values, bool joinedByAnd = false,
                      bool negated = false) {
    return FormatConditionLine({FindConditionKind(kind), joinedByAnd, negated, values});
  }

  TestProfile profile_;
};

// What a folder shows, of messages of several states, senders and days.
TEST_F(SearchConditionTest, FoldersFindWhatTheirConditionsSay) {
  const auto store = [this](const char* subject, const char* sender, int status, int days) {
    const SerialId serial = profile_.Store(
        QByteArray("From: ") + sender + "\r\nSubject: " + subject + "\r\n\r\n\r\n", status);
    const QString time =
        QDateTime::currentDateTime().addDays(-days).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    EXPECT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
    EXPECT_TRUE(profile_.Get().Data.Execute(
        QStringLiteral("UPDATE mail SET FIELD_TIMESTAMP = '%1' WHERE SERIALID = '%2'")
            .arg(time, serial.Text())));
    profile_.Get().Data.Close();
    return serial;
  };
  const SerialId filed = store("abc today", "x@example.com", 4, 0);
  store("week ABC", "\"o'x\" <o@example.com>", 4, 7);
  store("old", "x@example.com", 4, 40);
  store("mine abc", "me@example.com", 2, 8);
  store("bare\r\nTo: z@c.example", "x@b.example", 3, 60);
  store("named", "X <X@b.example>", 3, 60);
  for (const char* other : {"wx@b.example", "x@b.example.com", "\"x@b.example\" <y@b.example>"}) {
    store("other", other, 3, 60);
  }
  store("clip\r\nContent-Type: application/pdf", "x@example.com", 3, 60);
  ASSERT_TRUE(MoveMessages(profile_.Get(), {.into = {{u"f"_id, {filed}}}}));

  const auto shown = [this](const QString& statement) {
    QStringList subjects;
    EXPECT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
    EXPECT_TRUE(profile_.Get().Data.OpenRecordset(statement, CursorKind::ForwardOnly,
                                                  StatementTrust::UserCondition))
        << statement.toStdString() << profile_.Get().Data.LastError().text.toStdString();
    for (const RecordsetPtr rows = profile_.Get().Data.Recordset(); !rows->Eof();
         rows->MoveNext()) {
      subjects.append(rows->Fields(u"FIELD_SUBJECT").toString());
    }
    profile_.Get().Data.Close();
    subjects.sort();
    return subjects.join(u'|');
  };
  const auto lines = [&](const QStringList& conditions) { return shown(Statement(conditions)); };
  const auto sql = [&](const char16_t* condition) {
    return shown(QStringLiteral("SELECT * FROM mail WHERE ") + QString::fromUtf16(condition));
  };
  const QString subject = Line(u"subject", {QStringLiteral("abc")});
  EXPECT_EQ(lines({}), QStringLiteral("abc today"));  // what was filed in it
  EXPECT_EQ(lines({subject}), QStringLiteral("abc today|mine abc|week ABC"));
  EXPECT_EQ(
      lines({subject, Line(u"status", {QStringLiteral("2"), QStringLiteral("3")}, true, true)}),
      QStringLiteral("abc today|week ABC"));
  EXPECT_EQ(lines({Line(u"mailaddress", {QStringLiteral("o'x")})}), QStringLiteral("week ABC"));
  EXPECT_EQ(lines({Line(u"mailaddress", {QStringLiteral("o'x")}),
                   Line(u"status", {QStringLiteral("2")})}),
            QStringLiteral("mine abc|week ABC"));
  EXPECT_EQ(lines({Line(u"wholeaddress", {QStringLiteral("x@b.example")})}),
            QStringLiteral("bare|named"));
  EXPECT_EQ(lines({Line(u"wholeaddress", {QStringLiteral("z@c.example")})}),
            QStringLiteral("bare"));
  EXPECT_EQ(lines({Line(u"timestamp", {QStringLiteral("-7")})}),
            QStringLiteral("abc today|week ABC"));
  EXPECT_EQ(lines({subject, Line(u"timestamp", {QStringLiteral("-7")}, true, true)}),
            QStringLiteral("mine abc"));
  EXPECT_EQ(lines({Line(u"attachment", {})}), QStringLiteral("clip"));
  // What is in a folder that is filled by hand, also where most messages are in none.
  const DiskPtr other = MakeFolder(u"g"_id);
  profile_.Get().Objects.Add(other);
  ASSERT_TRUE(MoveMessages(profile_.Get(), {.into = {{other->Serial(), {filed}}}}));
  const QString inOther = Line(u"folder", {QStringLiteral("g")});
  EXPECT_EQ(lines({inOther}), QStringLiteral("abc today"));
  EXPECT_EQ(lines({inOther, Line(u"attachment", {})}), QStringLiteral("abc today|clip"));
  EXPECT_EQ(lines({subject, Line(u"folder", {QStringLiteral("g")}, true, true)}),
            QStringLiteral("mine abc|week ABC"));
  // What another folder shows by several conditions is one of this one's.
  other->Let(QStringLiteral("Condition"),
             QStringList{Line(u"attachment", {}), subject}.join(kLineBreak));
  EXPECT_EQ(lines({inOther, Line(u"status", {QStringLiteral("2")}, true)}),
            QStringLiteral("mine abc"));
  EXPECT_EQ(
      lines({Line(u"status", {QStringLiteral("2")}), Line(u"folder", {QStringLiteral("g")}, true)}),
      QStringLiteral("mine abc"));
  profile_.Get().Objects.Remove(other->Serial());
  EXPECT_EQ(lines({subject, Line(u"attachment", {}, true, true)}), lines({subject}));
  EXPECT_EQ(shown(FolderSqlBuilder(profile_.Get()).CreateFolderSql(fixed_serial::kInbox)),
            QStringLiteral("abc today|old|week ABC"));
  EXPECT_EQ(FolderSqlBuilder(profile_.Get()).CreateFolderSql(u"nowhere"_id), QString());
  // Conditions that users write themselves.
  EXPECT_EQ(sql(u"DATEDIFF(\"d\", FIELD_TIMESTAMP, NOW) = 8"), QStringLiteral("mine abc"));
  EXPECT_EQ(sql(u"FIELD_TIMESTAMP > #2026/01/31# AND STATUS = 2"), QStringLiteral("mine abc"));
  EXPECT_EQ(sql(u"FIELD_TIMESTAMP < #1999/12/31#"), QString());
  EXPECT_EQ(sql(u"SERIALID IN (SELECT SERIALID FROM folder WHERE FOLDERID = 'f')"),
            QStringLiteral("abc today"));
}

TEST_F(SearchConditionTest, WhatGoesByTheTimeIsKnown) {
  const auto goesByTime = [this](const QString& line) {
    Statement({line});
    return FolderSqlBuilder(profile_.Get()).Query(u"f"_id).ChangesWithTime();
  };
  EXPECT_TRUE(goesByTime(Line(u"timestamp", {QStringLiteral("-7")})));
  EXPECT_FALSE(goesByTime(Line(u"subject", {QStringLiteral("snow")})));
  for (const auto& [sql, goes] : {std::pair{u"FIELD_TIMESTAMP < now", true},
                                  {u"STATUS = 'snow' OR mail.KNOWN = 1", false},
                                  {u"FIELD_TIMESTAMP < strftime('%Y', 'now')", true}}) {
    EXPECT_EQ(DependsOnTime(QString::fromUtf16(sql)), goes);
  }
}

TEST_F(SearchConditionTest, WhatIsFiledIsShownOnceAndNeverNowhere) {
  const SerialId kept = profile_.Store("Subject: kept\r\n\r\n");
  const SerialId filed = profile_.Store("Subject: filed\r\n\r\n");
  Context& context = profile_.Get();
  const auto shelf = std::make_shared<Disk>(QStringLiteral("shelf"));
  shelf->Let(QStringLiteral("FormName"), object_type::kFolder);
  shelf->Let(QStringLiteral("Draw"), QStringLiteral("static"));
  context.Objects.Add(shelf);
  const auto inbox = [this, &context] {
    SerialIds ids;
    const FolderQuery query = FolderSqlBuilder(context).Query(fixed_serial::kInbox);
    for (const QVariant& id : profile_.Select(query.Listing().replace(
             QStringLiteral("SELECT *"), QStringLiteral("SELECT SERIALID AS V"))))
      ids.append(SerialIdOf(id));
    EXPECT_EQ(profile_.Select(query.Counting().replace(QStringLiteral("COUNT(*)"),
                                                       QStringLiteral("COUNT(*) AS V"))),
              QList<QVariant>{ids.size()});
    return ids;
  };
  ASSERT_TRUE(MoveMessages(context, {.into = {{shelf->Serial(), {filed}}}}));
  EXPECT_EQ(inbox(), SerialIds{kept});
  shelf->Let(QStringLiteral("Condition"), QStringLiteral("subject\t○\tno such"));
  EXPECT_EQ(inbox().size(), 2) << "the folder shows by conditions now, and not what is in it";
  shelf->Let(QStringLiteral("Condition"), QString());
  EXPECT_EQ(inbox(), SerialIds{kept});
  Settings(context).Bag()->Let(QStringLiteral("ShownOnce"), false);
  EXPECT_EQ(inbox().size(), 2);
  Settings(context).Bag()->Let(QStringLiteral("ShownOnce"), true);
  context.Objects.Remove(shelf->Serial());
  EXPECT_EQ(inbox().size(), 2) << "the folder has been deleted";
}

// "[ml 12]" matched nearly everything and "#1" found "No 21".
TEST_F(SearchConditionTest, WhatWasThrownAwayIsInTheDustBinAlone) {
  profile_.Store("Subject: a\r\n\r\n");
  profile_.Store("Subject: a\r\n\r\n", -4);
  profile_.Store("Subject: b\r\n\r\n", -4);
  const auto count = [this](const QStringList& lines) {
    return profile_
        .Select(Statement(lines).replace(QStringLiteral("SELECT *"),
                                         QStringLiteral("SELECT SERIALID AS V")))
        .size();
  };
  const QStringList subjects{Line(u"subject", {QStringLiteral("a")}),
                             Line(u"subject", {QStringLiteral("b")})};
  EXPECT_EQ(count(subjects), 1);
  EXPECT_EQ(count({Line(u"status", {QStringLiteral("-4")})}), 2) << "asked for by the state";
  // What the user looks for switches nothing.
  profile_.Store("Subject: STATUS report\r\n\r\n", -4);
  EXPECT_EQ(count({Line(u"subject", {QStringLiteral("STATUS")})}), 0);
  profile_.Store("Subject: in folder.one\r\n\r\n");
  EXPECT_EQ(count({Line(u"subject", {QStringLiteral("folder.")})}), 1) << "filed or not";
  EXPECT_FALSE(Statement({}).isEmpty());  // one that is filled by hand
  EXPECT_TRUE(Statement({}).contains(QStringLiteral("STATUS > 0")));
  EXPECT_EQ(count({Line(u"folder", {fixed_serial::kDust.Text()})}), 3) << "who asks for it gets it";
  EXPECT_EQ(count({Line(u"folder", {fixed_serial::kInbox.Text()}, true, true)}), 0);
  EXPECT_EQ(count({Line(u"status", {QStringLiteral("4")}, true, true)}), 0);
  // Nor does a text in a condition that the user wrote.
  const QString written = QStringLiteral("written");
  const DiskPtr folder = MakeFolder(SerialId(written));
  profile_.Get().Objects.Add(folder);
  for (const auto& [sql, found] : {std::pair{u"FIELD_SUBJECT LIKE '*status*'", 0},
                                   {u"FIELD_SUBJECT = \"in folder.one\"", 1},
                                   {u"[Status] < 0 AND FIELD_SUBJECT LIKE '*status*'", 1}}) {
    FolderObject::SetConditions(*folder, true, QString::fromUtf16(sql), {});
    EXPECT_EQ(count({Line(u"folder", {written})}), found) << QString::fromUtf16(sql).toStdString();
  }
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
  EXPECT_EQ(count(subjects), 4);
}

TEST_F(SearchConditionTest, NothingButTheAsteriskIsAWildcard) {
  const auto store = [this](const char* subject, const char* body) {
    profile_.Store(QByteArray("From: a@x\r\nSubject: ") + subject + "\r\n\r\n" + body + "\r\n");
  };
  store("[ml-users 12] hello", "one");
  store("No 21", "two");
  store("No #1?", "three");
  const auto found = [this](const QString& condition) {
    QStringList subjects;
    const QList<QVariant> rows =
        profile_.Select(QStringLiteral("SELECT FIELD_SUBJECT AS V FROM mail WHERE ") + condition);
    for (const QVariant& row : rows) subjects.append(row.toString());
    return subjects.join(u'|');
  };
  const auto like = [&found](const char16_t* pattern) {
    return found(QStringLiteral("FIELD_SUBJECT LIKE '") + QString::fromUtf16(pattern) + u'\'');
  };
  EXPECT_EQ(like(u"*[ML-users 12]*"), QStringLiteral("[ml-users 12] hello"));
  EXPECT_EQ(like(u"*#1*"), QStringLiteral("No #1?"));
  EXPECT_EQ(like(u"*1?"), QStringLiteral("No #1?"));
  EXPECT_EQ(like(u"*[0-9]*"), QString());
  EXPECT_EQ(like(u"no*1*"), QStringLiteral("No 21|No #1?"));
  // The source is looked at also behind a sub-select.
  EXPECT_EQ(
      found(QStringLiteral("SERIALID NOT IN (SELECT SERIALID FROM folder) AND MAIL LIKE '*two*'")),
      QStringLiteral("No 21"));
  EXPECT_EQ(found(QStringLiteral("CONTAINS(ADDRESSES(FIELD_MAILADDRESS), 'from')")), QString());
  EXPECT_EQ(found(QStringLiteral("CONTAINS(ADDRESSES(FIELD_MAILADDRESS), 'A@X') AND "
                                 "CONTAINS(FIELD_SUBJECT, '21')")),
            QStringLiteral("No 21"));
  profile_.Store("From: \"Sales: Tokyo\" <sales@y>\r\nSubject: colon\r\n\r\n");
  EXPECT_EQ(found(QStringLiteral("CONTAINS(ADDRESSES(FIELD_MAILADDRESS), 'sales@y')")),
            QStringLiteral("colon"));
}

TEST_F(SearchConditionTest, FoldersThatReferToThemselvesAreExpandedOnce) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);  // the condition alone
  EXPECT_EQ(Statement({Line(u"folder", {QStringLiteral("f")}),
                       Line(u"subject", {QStringLiteral("x")}, true)}),
            QStringLiteral("SELECT * FROM mail WHERE mail.FIELD_SUBJECT LIKE '*x*'"));
  EXPECT_EQ(Statement({Line(u"folder", {QStringLiteral("f")})}),
            QStringLiteral("SELECT * FROM mail WHERE 0 = 1"));
  EXPECT_EQ(Statement({Line(u"folder", {fixed_serial::kInbox.Text()}),
                       Line(u"folder", {fixed_serial::kOutbox.Text()})}),
            QStringLiteral("SELECT * FROM mail WHERE STATUS = 4 OR STATUS = 3"));
}

// A condition without a value ended its text with zeros, which read as a text that lost its end:
// the folder was gone and nothing was received any more.
TEST_F(SearchConditionTest, AConditionWithoutAValueIsSoundInTheFile) {
  Context& context = profile_.Get();
  const QString line =
      FormatConditionLine({FindConditionKind(u"subject"), true, false, {QString()}});
  EXPECT_FALSE(line.endsWith(QChar(u'\0')));
  EXPECT_EQ(ParseConditionLine(line)->kind, FindConditionKind(u"subject"));
  const DiskPtr folder = MakeFolder(u"f_empty"_id);
  folder->Let(QStringLiteral("Condition"), line + QChar(u'\0') + QChar(u'\0'));  // as it was stored
  ASSERT_TRUE(SaveObject(context, DatabaseKind::Profile, *folder));
  const QString file = ProfileFiles(context, *context.Session).first();
  EXPECT_TRUE(CheckDatabaseFile(file, context.Session->Text(u"password"), FileContents::Objects,
                                context.Data.Damage().TakeOf(file))
                  .IsSound());
  profile_.Restart();
  EXPECT_NE(profile_.Get().Objects.Find(u"f_empty"_id), nullptr);
}

TEST_F(SearchConditionTest, LinesReadBackAndOddOnesAreSkipped) {
  const auto line = ParseConditionLine(Line(u"status", {QStringLiteral("1")}, true, true));
  ASSERT_TRUE(line);
  EXPECT_TRUE(line->joinedByAnd && line->negated);
  EXPECT_FALSE(ParseConditionLine(QStringLiteral("unknown")));
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
  EXPECT_EQ(Statement({QStringLiteral("unknown"),
                       Line(u"status", {QStringLiteral("1); DROP TABLE mail")}),
                       Line(u"subject", {QStringLiteral("x")})}),
            QStringLiteral("SELECT * FROM mail WHERE mail.FIELD_SUBJECT LIKE '*x*'"));
}

}  // namespace
}  // namespace vorn
