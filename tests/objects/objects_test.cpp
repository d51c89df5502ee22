#include <gtest/gtest.h>

#include "mail/search/search_condition.h"
#include "mail/store/message_filing.h"
#include "objects/account.h"
#include "objects/any_object.h"
#include "objects/folder_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile/profile.h"
#include "objects/profile/standard_objects.h"
#include "objects/profile/version_serial.h"
#include "objects/save_object.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/engine/raw_pages.h"
#include "storage/session/file_check.h"
#include "storage/sql/sql_dialect.h"
#include "storage/ui.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

DiskPtr MakeObject(const SerialId& serialId, const QString& type, const QString& name,
                   const QString& draw = {}) {
  auto object = std::make_shared<Disk>(serialId);
  object->Let(QStringLiteral("FormName"), type);
  object->Let(QStringLiteral("Object"), name);
  object->Let(QStringLiteral("Draw"), draw);
  return object;
}

TEST(StandardObjects, ANewProfileHasThemAllUnderTheirFixedIdentifiers) {
  TestProfile profile;
  Context& context = profile.Get();
  struct Expected {
    SerialId serialId;
    QString name, draw, sql;
  };
  const Expected folders[] = {
      {u"01_folder_1_INBOX0000000"_id, QStringLiteral("受信"), QStringLiteral("activedown"),
       QStringLiteral("STATUS = 4")},
      {u"01_folder_2_OUTBOX000000"_id, QStringLiteral("送信"), QStringLiteral("activeup"),
       QStringLiteral("STATUS = 3")},
      {u"01_folder_3_EDITWAIT0000"_id, QStringLiteral("待ち"), QStringLiteral("activewait"),
       QStringLiteral("STATUS = 1 OR STATUS = 2")},
      {u"01_folder_4_DUST00000000"_id, QStringLiteral("くずかご"), QStringLiteral("dust"),
       QStringLiteral("STATUS < 0")},
  };
  for (const Expected& expected : folders) {
    const DiskPtr folder = context.Objects.Find(expected.serialId);
    ASSERT_NE(folder, nullptr);
    EXPECT_EQ(folder->Text(u"Object"), expected.name);
    EXPECT_EQ(folder->Text(u"Draw"), expected.draw);
    EXPECT_EQ(folder->Text(u"Sql"), expected.sql);
    EXPECT_TRUE(folder->Flag(u"SqlUse") && folder->Flag(u"System"));
  }
  EXPECT_NE(context.Objects.Find(fixed_serial::kEventLog), nullptr);
  EXPECT_EQ(Settings(context).Bag()->Text(u"Install"), context.VersionText);
}

TEST(StandardObjects, ChangesAndChoicesSurviveTheNextLogin) {
  TestProfile profile;
  const DiskPtr inbox = profile.Get().Objects.Find(fixed_serial::kInbox);
  inbox->Let(QStringLiteral("Object"), QStringLiteral("受信箱"));
  ASSERT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, *inbox));
  const auto bookmarks = [&profile] {
    return SelectObjects(profile.Get().Objects, *profile.Get().Session, object_type::kBookmark)
        ->Count();
  };
  EXPECT_EQ(bookmarks(), 1);
  profile.Restart();
  EXPECT_EQ(profile.Get().Objects.Find(fixed_serial::kInbox)->Text(u"Object"),
            QStringLiteral("受信箱"));
  EXPECT_EQ(bookmarks(), 1);
}

TEST(StandardObjects, AProfileOfAnOldVersionGetsTheEventLogButNoBookmarks) {
  TestProfile profile;
  Context& context = profile.Get();
  const DiskPtr settings = Settings(context).Bag();
  settings->Let(QStringLiteral("Install"), QStringLiteral("0.0.7999"));
  context.Objects.Remove(fixed_serial::kEventLog);
  ASSERT_TRUE(SaveObject(context, DatabaseKind::Profile, *settings));
  ASSERT_TRUE(CreateStandardObjects(context));
  EXPECT_NE(context.Objects.Find(fixed_serial::kEventLog), nullptr);
  EXPECT_EQ(SelectObjects(context.Objects, *context.Session, object_type::kBookmark)->Count(), 1);
}

TEST(StandardObjects, WhoHasAllElseOfTheLookOfNewProfilesFoldsEvents) {
  TestProfile profile;
  for (const int pane : {2, 0}) {
    const DiskPtr settings = Settings(profile.Get()).Bag();
    settings->Remove(u"EventsFolded");
    settings->Let(QStringLiteral("ReadingPane"), pane);
    ASSERT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, *settings));
    profile.Restart();
    EXPECT_EQ(Settings(profile.Get()).FoldsEvents(), pane != 0);
  }
}

TEST(StandardObjects, TheNewLookLeavesWhatTheUserChoseHimself) {
  TestProfile profile;
  const QString own = QStringLiteral("his own line");
  for (const bool isNew : {true, false}) {
    const DiskPtr settings = Settings(profile.Get()).Bag();
    for (const char16_t* key : {u"ReadingPane", u"HtmlFirst"}) settings->Remove(key);
    settings->Let(QStringLiteral("ReplyLine"), own);
    ASSERT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, *settings));
    profile.Restart();
    EXPECT_TRUE(HasFormerLook(profile.Get()));
    ASSERT_TRUE(SettleLook(profile.Get(), isNew));
    profile.Restart();
    EXPECT_FALSE(HasFormerLook(profile.Get())) << "it is asked once";
    EXPECT_EQ(Settings(profile.Get()).IsHtmlFirst(), isNew);
    EXPECT_EQ(Settings(profile.Get()).Bag()->Text(u"ReplyLine"), own);
  }
}

TEST(VersionSerial, PartsAreJoinedWithFourDigitsEach) {
  EXPECT_EQ(VersionSerialID(QStringLiteral("0.0.8000")), 8000);
  EXPECT_EQ(VersionSerialID(QStringLiteral("1.2.3")), 100020003);
  EXPECT_EQ(VersionSerialID(QStringLiteral("x")), 0);
  EXPECT_EQ(VersionSerialID(QString()), 0);
}

TEST(DefaultObject, TheOneThatWasMarkedLastCounts) {
  DiskCollection objects;
  const QString saved = QStringLiteral("2026/11/%1 9:00:00");
  for (const auto& [serialId, day] : {std::pair(u"a"_id, 2), {u"b"_id, 10}, {u"c"_id, 3}}) {
    const DiskPtr folder = MakeObject(serialId, object_type::kFolder, serialId.Text());
    AnyObject::SetDefault(*folder, true);
    AnyObject::SetChanged(*folder, saved.arg(day, 2, 10, QChar(u'0')));
    objects.Add(folder);
  }
  EXPECT_EQ(DefaultObject(objects, object_type::kFolder)->Serial(), u"b"_id);
  EXPECT_EQ(DefaultObject(objects, object_type::kAccount), nullptr);
}

TEST(SelectObjects, FilterAndFlagsChooseTheObjects) {
  DiskCollection objects;
  const DiskPtr owner = MakeObject(u"p1"_id, object_type::kProfile, QStringLiteral("a"));
  objects.Add(owner);
  objects.Add(MakeObject(u"p2"_id, object_type::kProfile, QStringLiteral("b")));
  objects.Add(MakeObject(u"f1"_id, object_type::kFolder, QStringLiteral("c"),
                         QStringLiteral("activedown")));
  objects.Add(
      MakeObject(u"f2"_id, object_type::kFolder, QStringLiteral("d"), QStringLiteral("static")));
  objects.Add(MakeObject(u"a1"_id, object_type::kAccount, QStringLiteral("e")));
  objects.Add(MakeObject(u"x"_id, QString(), QStringLiteral("f")));
  objects.Find(u"a1"_id)->Let(QStringLiteral("Enabled"), true);

  const auto select = [&](const QString& filter, SelectFlags flags = {}) {
    QStringList serials;
    const DiskCollectionPtr selected = SelectObjects(objects, *owner, filter, flags);
    for (const DiskPtr& object : *selected) {
      serials.append(object->SerialID());
    }
    return serials.join(u',');
  };
  EXPECT_EQ(select(QString()), QStringLiteral("p1,p2,f1,f2,a1"));
  EXPECT_EQ(select(QStringLiteral("owner")), QStringLiteral("p1"));
  EXPECT_EQ(select(QStringLiteral("profile")), QStringLiteral("p1,p2"));
  EXPECT_EQ(select(QStringLiteral("static")), QStringLiteral("f2"));
  EXPECT_EQ(select(QStringLiteral("active")), QStringLiteral("f1"));
  EXPECT_EQ(select(QStringLiteral("account\r\nfolder")), QStringLiteral("f1,f2,a1"));
  EXPECT_EQ(select(QString(), kSelectEnabled), QStringLiteral("a1"));
  EXPECT_EQ(select(QString(), kSelectDefault), QString());
}

TEST(SaveObject, NamesMustBeGivenAndUnique) {
  DiskCollection objects;
  objects.Add(MakeObject(u"a"_id, object_type::kAccount, QStringLiteral("Work")));
  const auto check = [&objects](const QString& name) {
    return ValidateObject(objects, *MakeObject(u"b"_id, object_type::kAccount, name)).Error().text;
  };
  EXPECT_EQ(check(QString()), QStringLiteral("オブジェクト名が設定されていません。"
                                             "アカウントの名前を入力してください。"));
  objects.Add(MakeObject(u"f"_id, object_type::kFolder, QStringLiteral("Notes")));
  EXPECT_EQ(check(QStringLiteral("Notes")),
            QStringLiteral("同じオブジェクト名を持つオブジェクトが存在します。"
                           "（フォルダ「Notes」）"));
  EXPECT_EQ(check(QStringLiteral("work")), QString());
  EXPECT_TRUE(ValidateObject(objects, *objects.Find(u"a"_id)));
}

TEST(SaveObject, OnlyTheLoggedInProfileIsTheDefaultAndItsPasswordIsNotStored) {
  TestProfile profile(QStringLiteral("top secret"));
  Context& context = profile.Get();
  const SerialId first = context.Session->Serial();
  const DiskPtr second =
      MakeObject(u"_profile2"_id, object_type::kProfile, QStringLiteral("Second"));
  second->Let(QStringLiteral("Default"), true);
  context.Objects.Add(second);
  // As an editing window gives it, in a bag of its own.
  const DiskPtr edited =
      MakeObject(second->Serial(), object_type::kProfile, QStringLiteral("Second"));
  edited->Let(QStringLiteral("Default"), true);
  edited->Let(QStringLiteral("PassWord"), QStringLiteral("in another spelling"));
  ASSERT_TRUE(SaveObject(context, DatabaseKind::Navigator, *edited));
  EXPECT_FALSE(second->Flag(u"Default"));
  EXPECT_FALSE(edited->Flag(u"Default"));
  ASSERT_TRUE(SaveObject(context, DatabaseKind::Navigator, *context.Session));

  DiskCollection stored;
  ASSERT_TRUE(LoadObjects(context, DatabaseKind::Navigator, stored));
  EXPECT_EQ(stored.Count(), 2);
  EXPECT_TRUE(stored.Find(first)->Flag(u"Default"));
  EXPECT_FALSE(stored.Find(second->Serial())->Flag(u"Default"));
  EXPECT_FALSE(stored.Find(first)->Get(u"password").isValid());
  EXPECT_FALSE(stored.Find(second->Serial())->Get(u"password").isValid());
  EXPECT_EQ(context.Session->Text(u"password"), QStringLiteral("top secret"));
}

TEST(SaveObject, WhatCannotBeReadStaysAsItIs) {
  TestProfile profile;
  Context& context = profile.Get();
  const SerialId serial = u"large"_id;
  const DiskPtr object = MakeObject(serial, object_type::kBook, QStringLiteral("book"));
  object->Let(QStringLiteral("Long"), QString(60000, u'x'));
  ASSERT_TRUE(SaveObject(context, DatabaseKind::Profile, *object));
  context.Data.CloseAll();
  const QString file = ProfileFiles(context, *context.Session).first();
  const QByteArray sound = test::ReadFile(file);
  int unreadable = 0;
  for (qsizetype page = 1; page < sound.size() / kPageBytes; ++page) {
    context.Data.CloseAll();
    context.Data.Damage().Take();
    for (const char* ending : {"-wal", "-shm"}) QFile::remove(file + QLatin1String(ending));
    QByteArray damaged = sound;
    damaged.replace(page * kPageBytes, kPageBytes, QByteArray(kPageBytes, 'x'));
    test::WriteFile(file, damaged);
    const DiskPtr shown = MakeObject(serial, object_type::kBook, QStringLiteral("shown"));
    const OpenedDatabase opened(context, DatabaseKind::Profile);
    if (!opened || shown->DatabaseToDisk(context.Data)) continue;
    ++unreadable;
    EXPECT_EQ(shown->Text(u"Object"), QStringLiteral("shown")) << page;
    EXPECT_FALSE(SaveObject(context, DatabaseKind::Profile, *shown)) << page;
  }
  EXPECT_GT(unreadable, 10);
}

TEST(SaveObject, MarkedObjectsAreSavedTogetherAtTheEnd) {
  TestProfile profile;
  const DiskPtr placement = profile.Get().Objects.Find(fixed_serial::kMainPlacement);
  placement->Let(QStringLiteral("save"), true);
  placement->Let(QStringLiteral("width"), 700);
  const auto other = MakeObject(u"x"_id, object_type::kBook, QStringLiteral("x"));
  profile.Get().Objects.Add(other);
  ASSERT_TRUE(SaveMarkedObjects(profile.Get()));
  profile.Restart();
  EXPECT_EQ(profile.Get().Objects.Find(fixed_serial::kMainPlacement)->Number(u"width"), 700);
  EXPECT_EQ(profile.Get().Objects.Find(u"x"_id), nullptr);
}

// Whoever needs an object while messages are read or written loses neither rows nor the
// transaction.
TEST(OpenedDatabase, WhatIsOpenedMeanwhileLeavesTheOuterOneAsItWas) {
  TestProfile profile;
  Context& context = profile.Get();
  const SerialId first = profile.Store("Subject: first\r\n\r\n");
  profile.Store("Subject: second\r\n\r\n");
  DataSession& data = context.Data;
  {
    const OpenedDatabase mail(context, DatabaseKind::Mail);
    ASSERT_TRUE(mail);
    ASSERT_TRUE(data.Begin());
    ASSERT_TRUE(data.Execute(
        QStringLiteral("UPDATE mail SET STATUS = -4 WHERE SERIALID = '%1'").arg(first.Text())));
    ASSERT_TRUE(data.OpenRecordset(QStringLiteral("SELECT * FROM mail ORDER BY FIELD_SUBJECT"),
                                   CursorKind::ForwardOnly));
    const RecordsetPtr rows = data.Recordset();
    // Another file, the same one, and one that does not open.
    context.Objects.Remove(fixed_serial::kInbox);
    EXPECT_NE(LoadObject(context, fixed_serial::kInbox), nullptr);
    {
      const OpenedDatabase again(context, DatabaseKind::Mail);
      EXPECT_TRUE(again);
      EXPECT_TRUE(
          data.OpenRecordset(QStringLiteral("SELECT * FROM folder"), CursorKind::ForwardOnly));
    }
    {
      // The same one from within another, by somebody who fails in the middle.
      const OpenedDatabase objects(context, DatabaseKind::Profile);
      const OpenedDatabase again(context, DatabaseKind::Mail);
      EXPECT_TRUE(again);
      EXPECT_TRUE(data.Begin());
      EXPECT_TRUE(data.Execute(QStringLiteral("UPDATE mail SET STATUS = -3")));
    }
    EXPECT_FALSE(OpenedDatabase(context, DatabaseKind::MailByPath, QStringLiteral("/proc/none/x")));
    EXPECT_EQ(data.Recordset(), rows);
    EXPECT_EQ(rows->Fields(u"FIELD_SUBJECT").toString(), QStringLiteral("first"));
    rows->MoveNext();
    EXPECT_EQ(rows->Fields(u"FIELD_SUBJECT").toString(), QStringLiteral("second"));
    EXPECT_TRUE(data.Commit());
  }
  EXPECT_EQ(profile.Select(QStringLiteral("SELECT STATUS AS V FROM mail WHERE STATUS < 0")).size(),
            1);
  EXPECT_TRUE(
      profile.Select(QStringLiteral("SELECT STATUS AS V FROM mail WHERE STATUS = -3")).isEmpty());
}

TEST(Account, ValuesAreCheckedBeforeTheyAreStored) {
  TestProfile profile;
  AccountValues good;
  good.name = QStringLiteral("仕事");
  good.address = QStringLiteral("a@example.org");
  good.incoming.host = QStringLiteral("127.0.0.1");
  good.incoming.who.user = QStringLiteral("a");
  EXPECT_TRUE(ValidateAccount(profile.Get(), good));
  good.incoming.security = Security::Tls;
  good.outgoing.security = Security::StartTls;
  const Result<DiskPtr> created = CreateAccount(profile.Get(), good);
  ASSERT_TRUE(created);
  const DiskPtr& account = *created;
  EXPECT_EQ(account->Number(u"InMailServerSecurity"), 2);
  EXPECT_EQ(account->Number(u"OutMailServerSecurity"), 1);
  for (const QVariant& unknown : QList<QVariant>{7, -1, QStringLiteral("x")}) {
    account->Let(QStringLiteral("InMailServerSecurity"), unknown);
    EXPECT_EQ(Account(account).Incoming().security, Security::Tls) << "never in clear";
  }
  good.name = QStringLiteral("次");
  const auto refuses = [&](auto change) {
    AccountValues values = good;
    change(values);
    return !ValidateAccount(profile.Get(), values);
  };
  EXPECT_TRUE(refuses([](AccountValues& v) { v.address = QStringLiteral("nobody"); }));
  EXPECT_TRUE(refuses([](AccountValues& v) { v.incoming.port = 70000; }));
  EXPECT_TRUE(refuses([](AccountValues& v) { v.incoming.host.clear(); }));
  EXPECT_TRUE(
      refuses([](AccountValues& v) { v.incoming.who.user = QStringLiteral("a\r\nDELE 1"); }));
  EXPECT_TRUE(refuses([](AccountValues& v) { v.name = QStringLiteral("受信"); }));
}

}  // namespace
}  // namespace vorn
