// Pages of long folders: read from wherever they begin, they show what reading from the first row
// shows.

#include <gtest/gtest.h>

#include "objects/object_types.h"
#include "objects/settings.h"
#include "present/message_list_page.h"
#include "storage/databases.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;

constexpr int kRowsPerPage = 700;
const QString kInboxSelect = QStringLiteral("SELECT SERIALID AS V FROM mail WHERE STATUS = 4 ");

class PagingTest : public testing::Test {
 protected:
  PagingTest() {
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessagesEdit"), true);
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("Messages"), kRowsPerPage);
  }

  void Run(const std::function<void(DataSession&)>& work) {
    Context& context = profile_.Get();
    ASSERT_TRUE(OpenDatabase(context, DatabaseKind::Mail) && context.Data.Begin());
    work(context.Data);
    ASSERT_TRUE(context.Data.Commit()) << qPrintable(context.Data.LastError().text);
    context.Data.Close();
  }
  static void Insert(DataSession& data, int number, const QString& time, int status = 4) {
    ASSERT_TRUE(data.Execute(QStringLiteral("INSERT INTO mail (SERIALID, STATUS, FIELD_SUBJECT, "
                                            "FIELD_TIMESTAMP) VALUES('m%1', %2, 's', %3)")
                                 .arg(number)
                                 .arg(status)
                                 .arg(time)))
        << qPrintable(data.LastError().text);
  }
  // Messages without a time, thousands in one moment, and moments of their own.
  void FillUnevenly(int messages) {
    Run([messages](DataSession& data) {
      for (int i = 0; i < messages; ++i) {
        QString time = QStringLiteral("NULL");
        if (i >= 10) {
          const int second = i < 2000 ? i : i < 8000 ? 2000 : i / 3;
          time = QStringLiteral("'2020-01-01 %1:%2:%3'")
                     .arg(second / 3600, 2, 10, QChar(u'0'))
                     .arg(second / 60 % 60, 2, 10, QChar(u'0'))
                     .arg(second % 60, 2, 10, QChar(u'0'));
        }
        Insert(data, i, time);
      }
    });
  }
  QStringList Expected() {
    QStringList expected;
    for (const QVariant& id :
         profile_.Select(kInboxSelect + QStringLiteral("ORDER BY FIELD_TIMESTAMP ASC"))) {
      expected.append(id.toString());
    }
    return expected;
  }
  QStringList Page(MessageListPages& pages, qint32 number,
                   const SerialId& folder = fixed_serial::kInbox) {
    const auto page = pages.CreateMessageListPage(folder, number).ValueOr({});
    before_ = page.hasBefore;
    next_ = page.hasNext;
    const QString text = QString::fromLatin1(ReadFile(page.content));
    QFile::remove(page.content);
    static const QRegularExpression link(QStringLiteral("\"preview:([^\"]+)\""));
    QStringList ids;
    for (auto match = link.globalMatch(text); match.hasNext();) {
      ids.append(match.next().captured(1));
    }
    return ids;
  }
  // Every page is a slice of the whole, with its neighbours told, in an order that jumps about.
  void ExpectPagesOf(MessageListPages& pages, const QStringList& expected) {
    const auto last = static_cast<qint32>((expected.size() + kRowsPerPage - 1) / kRowsPerPage);
    EXPECT_EQ(pages.CountPages(fixed_serial::kInbox), last);
    for (qint32 i = 0; i < last; ++i) {
      const qint32 number = i % 2 == 0 ? i + 1 : last - i + (last % 2 == 0 ? 1 : 0);
      SCOPED_TRACE(number);
      EXPECT_EQ(Page(pages, number), expected.mid((number - 1) * kRowsPerPage, kRowsPerPage));
      EXPECT_EQ(before_, number > 1);
      EXPECT_EQ(next_, number < last);
    }
    EXPECT_EQ(Page(pages, last + 1), QStringList());
    EXPECT_TRUE(before_);
    EXPECT_FALSE(next_);
  }

  TestProfile profile_;
  bool before_ = false;
  bool next_ = false;
};

TEST_F(PagingTest, TheNewestCanComeFirst) {
  FillUnevenly(12000);
  QStringList expected;
  for (const QVariant& id :
       profile_.Select(kInboxSelect + QStringLiteral("ORDER BY FIELD_TIMESTAMP DESC"))) {
    expected.append(id.toString());
  }
  MessageListPages pages(profile_.Get());
  EXPECT_EQ(Page(pages, 1), Expected().mid(0, kRowsPerPage));
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("NewestFirst"), true);
  ExpectPagesOf(pages, expected);
  EXPECT_FALSE(pages.Explore(fixed_serial::kInbox));
  ExpectPagesOf(pages, expected);
}

TEST_F(PagingTest, ExploredPagesAreThoseOfTheWholeList) {
  FillUnevenly(12000);
  const QStringList expected = Expected();
  ASSERT_EQ(expected.size(), 12000);
  MessageListPages pages(profile_.Get());
  EXPECT_EQ(pages.CountPages(fixed_serial::kInbox, {}, false), 0) << "known without counting";
  ExpectPagesOf(pages, expected);
  int slices = 0;
  while (pages.Explore(fixed_serial::kInbox)) ASSERT_LT(++slices, 1000);
  ExpectPagesOf(pages, expected);
  // Of a folder that was only counted, the last pages are read from the end.
  MessageListPages counted(profile_.Get());
  EXPECT_EQ(counted.CountPages(fixed_serial::kInbox), 18);
  for (const qint32 number : {18, 11, 17, 10, 18}) {
    SCOPED_TRACE(number);
    EXPECT_EQ(Page(counted, number), expected.mid((number - 1) * kRowsPerPage, kRowsPerPage));
  }
  MessageListPages fresh(profile_.Get());
  while (fresh.Explore(fixed_serial::kInbox)) continue;
  EXPECT_EQ(fresh.CountPages(fixed_serial::kInbox, {}, false), 18);

  // What changes behind the index, by this program or another, is seen on the next page.
  Run([](DataSession& data) {
    for (int i = 500; i < 1100; ++i) {
      ASSERT_TRUE(data.Execute(QStringLiteral("DELETE * FROM mail WHERE SERIALID = 'm%1'").arg(i)));
    }
    Insert(data, 20000, QStringLiteral("'2019-01-01 00:00:00'"));
    Insert(data, 20001, QStringLiteral("'2030-01-01 00:00:00'"));
  });
  const QStringList changed = Expected();
  ASSERT_EQ(changed.size(), 12000 - 600 + 2);
  ExpectPagesOf(pages, changed);
}

TEST_F(PagingTest, RowsThatWereFoundElsewhereMakeThePagesUntilSomethingChanges) {
  FillUnevenly(3000);
  MessageListPages pages(profile_.Get());
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  ASSERT_TRUE(profile_.Get().Data.OpenRecordset(pages.Question(fixed_serial::kInbox, {}),
                                                CursorKind::ForwardOnly));
  QStringList found;
  for (const RecordsetPtr rows = profile_.Get().Data.Recordset(); !rows->Eof(); rows->MoveNext()) {
    found.append(rows->Serial().Text());
  }
  EXPECT_EQ(found, Expected());
  // Others than the truth show where they come from.
  found.removeAt(1500);
  pages.TakeAnswer(fixed_serial::kInbox, {}, SerialIdsOf(found));
  ExpectPagesOf(pages, found);
  EXPECT_EQ(pages.CountPages(fixed_serial::kInbox, QStringLiteral("s"), false), 0);
  Run([](DataSession& data) { Insert(data, 9001, QStringLiteral("'2021-03-01 00:00:00'")); });
  ExpectPagesOf(pages, Expected());
}

TEST_F(PagingTest, AFewMessagesAmongManyAndAnEmptyFolder) {
  FillUnevenly(6000);
  MessageListPages pages(profile_.Get());
  EXPECT_EQ(Page(pages, 1, fixed_serial::kDust), QStringList());
  EXPECT_EQ(Page(pages, 2, fixed_serial::kDust), QStringList());
  EXPECT_FALSE(before_) << "nothing was skipped";
  EXPECT_EQ(pages.CountPages(fixed_serial::kDust), 1);
  Run([](DataSession& data) {
    Insert(data, 9001, QStringLiteral("'2021-03-01 00:00:00'"), -4);
    Insert(data, 9002, QStringLiteral("'2020-03-01 00:00:00'"), -3);
    Insert(data, 9003, QStringLiteral("'2022-03-01 00:00:00'"), -4);
  });
  EXPECT_EQ(
      Page(pages, 1, fixed_serial::kDust),
      QStringList({QStringLiteral("m9002"), QStringLiteral("m9001"), QStringLiteral("m9003")}));
  EXPECT_FALSE(pages.Explore(fixed_serial::kDust)) << "nothing to explore among three";
  // A full page has no empty one behind it.
  for (const auto& [rowsPerPage, last] : {std::pair{4, 1}, {3, 1}, {2, 2}}) {
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("Messages"), rowsPerPage);
    EXPECT_EQ(pages.CountPages(fixed_serial::kDust), last) << rowsPerPage;
  }
}

}  // namespace
}  // namespace vorn
