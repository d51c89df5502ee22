#include "storage/bags/disk.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "storage/databases.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

DiskPtr Reloaded(Context& context, const SerialId& serialId) {
  auto copy = std::make_shared<Disk>(serialId);
  EXPECT_TRUE(copy->DatabaseToDisk(context.Data));
  return copy;
}

void InsertRow(Context& context, const QString& name, const QString& property) {
  ASSERT_TRUE(context.Data.Execute(
      QStringLiteral("INSERT INTO object ( SERIALID, NAME, PROPERTY ) VALUES('s','%1','%2')")
          .arg(name, property)));
}

TEST(Disk, KeysIgnoreCaseAndKeepTheirFirstSpelling) {
  Disk bag;
  bag.Let(QStringLiteral("Name"), 1);
  bag.Let(QStringLiteral("Other"), 2);
  bag.Let(QStringLiteral("NAME"), 3);
  EXPECT_EQ(bag.Size(), 2);
  EXPECT_EQ(bag.NameAt(1), QStringLiteral("Name"));
  EXPECT_EQ(bag.Get(u"name").toInt(), 3);
  EXPECT_THROW(bag.NameAt(0), std::out_of_range);
  EXPECT_THROW(bag.NameAt(3), std::out_of_range);
}

TEST(Disk, DefaultsStandForAbsentKeysOnly) {
  Disk bag(QStringLiteral("s"));
  bag.Let(QStringLiteral("empty"), QString());
  EXPECT_EQ(bag.Check(u"empty", QStringLiteral("x")).toString(), QString());
  EXPECT_EQ(bag.Check(u"absent", QStringLiteral("x")).toString(), QStringLiteral("x"));
  EXPECT_FALSE(bag.Get(u"absent").isValid());
  bag.Remove(u"absent");
  bag.Init();
  EXPECT_EQ(bag.Size(), 0);
  EXPECT_EQ(bag.SerialID(), QStringLiteral("s"));
}

TEST(Disk, ADiscardedCollectionIsEmptiedAndAReplacedOneIsNot) {
  const auto collection = std::make_shared<DiskCollection>();
  const auto replaced = std::make_shared<DiskCollection>();
  collection->Add(std::make_shared<Disk>(QStringLiteral("a")));
  replaced->Add(std::make_shared<Disk>(QStringLiteral("b")));
  Disk bag;
  bag.Set(QStringLiteral("c"), QVariant::fromValue(collection));
  bag.Set(QStringLiteral("r"), QVariant::fromValue(replaced));
  bag.Let(QStringLiteral("r"), 1);
  bag.Remove(u"C");
  EXPECT_TRUE(collection->IsEmpty());
  EXPECT_EQ(replaced->Count(), 1);
}

TEST(Disk, ValuesAndTheirOrderSurviveSavingAndLoading) {
  TestProfile profile;
  Context& context = profile.Get();
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::Profile));
  Disk bag(QStringLiteral("s"));
  bag.Let(QStringLiteral("z"), QStringLiteral("it's ○ \"NOW\" * 😀\r\nline"));
  bag.Let(QStringLiteral("yes"), true);
  bag.Let(QStringLiteral("no"), false);
  bag.Let(QStringLiteral("zero"), 0);
  bag.Let(QStringLiteral("negative"), -7);
  ASSERT_TRUE(bag.DiskToDatabase(context.Data));
  bag.Remove(u"no");
  ASSERT_TRUE(bag.DiskToDatabase(context.Data));

  const DiskPtr copy = Reloaded(context, u"s"_id);
  ASSERT_EQ(copy->Size(), bag.Size());
  for (qint32 i = 1; i <= bag.Size(); ++i) {
    EXPECT_EQ(copy->NameAt(i), bag.NameAt(i));
    EXPECT_EQ(copy->Get(bag.NameAt(i)), bag.Get(bag.NameAt(i)));
  }
  EXPECT_TRUE(bag.Delete(context.Data));
  EXPECT_EQ(Reloaded(context, u"s"_id)->Size(), 0);
}

TEST(Disk, OddRowsAreReadAsFarAsTheyMakeSense) {
  TestProfile profile;
  Context& context = profile.Get();
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::Profile));
  InsertRow(context, QStringLiteral("no type"), QStringLiteral("x"));
  InsertRow(context, QStringLiteral("a@b@string"), QStringLiteral("x"));
  InsertRow(context, QStringLiteral("flag@bool"), QStringLiteral("○"));
  InsertRow(context, QStringLiteral("other@boolean"), QStringLiteral("true"));
  InsertRow(context, QStringLiteral("number@long"), QStringLiteral("twelve"));
  InsertRow(context, QStringLiteral("Twice@long"), QStringLiteral("1"));
  InsertRow(context, QStringLiteral("TWICE@long"), QStringLiteral("2"));
  const DiskPtr bag = Reloaded(context, u"s"_id);
  EXPECT_EQ(bag->Size(), 4);
  EXPECT_EQ(bag->Get(u"flag"), QVariant(true));
  EXPECT_EQ(bag->Get(u"other"), QVariant(false));
  EXPECT_EQ(bag->Get(u"number"), QVariant(QStringLiteral("twelve")));
  EXPECT_EQ(bag->Get(u"twice"), QVariant(2));
}

TEST(Disk, AFailedSaveKeepsTheStoredRows) {
  TestProfile profile;
  Context& context = profile.Get();
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::Profile));
  Disk bag(QStringLiteral("s"));
  bag.Let(QStringLiteral("kept"), QStringLiteral("value"));
  ASSERT_TRUE(bag.DiskToDatabase(context.Data));
  // What fails stands between items that could be stored.
  bag.Let(QStringLiteral("kept"), QStringLiteral("changed"));
  bag.Set(QStringLiteral("object"), QVariant::fromValue(std::make_shared<Disk>()));
  bag.Let(QStringLiteral("later"), QStringLiteral("new"));
  EXPECT_FALSE(bag.DiskToDatabase(context.Data));
  const DiskPtr stored = Reloaded(context, u"s"_id);
  EXPECT_EQ(stored->Text(u"kept"), QStringLiteral("value"));
  EXPECT_EQ(stored->Size(), 1);

  Disk nameless;
  nameless.Let(QStringLiteral("kept"), 1);
  EXPECT_FALSE(nameless.DiskToDatabase(context.Data));
  EXPECT_FALSE(nameless.DatabaseToDisk(context.Data));
  EXPECT_EQ(nameless.Size(), 1);
}

}  // namespace
}  // namespace vorn
