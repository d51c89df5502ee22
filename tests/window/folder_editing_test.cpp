// The window that edits a folder and its conditions, driven by keys and clicks.

#include <gtest/gtest.h>

#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/window/condition_editor.h"
#include "storage/ui.h"
#include "window/editing_fixture.h"

namespace vorn {
namespace {

using test::Child;
using test::Press;
using test::Type;
using test::WaitFor;

TEST_F(EditingTest, AFolderIsMadeFromConditionsWithAPreview) {
  profile_.Store("Subject: the plan\r\n\r\n");
  profile_.Store("Subject: other\r\n\r\n");
  ObjectsWindow& window = Open(object_type::kFolder);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("計画"));
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
  auto& matches = Child<QLabel>(window, u"lbMatches");
  Press(Child<QPushButton>(window, u"cmAddCondition"));
  auto& list = Child<ConditionEditor>(window, u"lvCondition");
  auto* text = qobject_cast<QLineEdit*>(list.cellWidget(0, 3));
  ASSERT_NE(text, nullptr);
  QTest::keyClicks(text, QStringLiteral("plan"));
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
  // Who only passes other kinds finds his text again.
  auto* kind = qobject_cast<QComboBox*>(list.cellWidget(0, 1));
  for (const int passed : {2, 3, 6, 0}) kind->setCurrentIndex(passed);
  EXPECT_EQ(qobject_cast<QLineEdit*>(list.cellWidget(0, 3))->text(), QStringLiteral("plan"));
  Press(Child<QPushButton>(window, u"cmAddCondition"));
  qobject_cast<QComboBox*>(list.cellWidget(1, 1))->setCurrentIndex(3);  // 状態
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
  list.cellWidget(1, 3)->findChildren<QCheckBox*>()[3]->setChecked(true);
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
  PressOk();
  const DiskPtr folder = Stored(window.Tag());
  EXPECT_EQ(folder->Text(u"Draw"), QStringLiteral("active"));
  EXPECT_EQ(FolderSqlBuilder(context()).CreateFolderSql(window.Tag()),
            QStringLiteral("SELECT * FROM mail WHERE (mail.FIELD_SUBJECT LIKE '*plan*' AND "
                           "mail.STATUS IN (4)) AND mail.STATUS > 0"));
  // And back: the rows are there again.
  const SerialId serialId = window.Tag();
  Open(object_type::kFolder, serialId);
  auto& stored = Child<ConditionEditor>(*window_, u"lvCondition");
  EXPECT_EQ(stored.rowCount(), 2);
  qobject_cast<QCheckBox*>(stored.cellWidget(1, 2))->setChecked(true);
  // Another kind in a stored row is another condition, also while its value is still empty.
  qobject_cast<QComboBox*>(stored.cellWidget(0, 1))->setCurrentIndex(3);
  PressOk();
  EXPECT_FALSE(Stored(serialId)->Text(u"Condition").contains(QStringLiteral("plan")));
  EXPECT_TRUE(
      FolderSqlBuilder(context()).CreateFolderSql(serialId).contains(QStringLiteral("NOT ")));
}

TEST_F(EditingTest, AFolderThatLeadsBackToItselfIsNotSaved) {
  const auto make = [this](const QString& name) {
    ObjectsWindow& window = Open(object_type::kFolder);
    Type(Child<QLineEdit>(window, u"txObject"), name);
    PressOk();
    return window.Tag();
  };
  const SerialId first = make(QStringLiteral("甲"));
  const SerialId second = make(QStringLiteral("乙"));
  // A condition "in the folder with that name".
  const auto refer = [this](const SerialId& folder, const SerialId& other) {
    ObjectsWindow& window = Open(object_type::kFolder, folder);
    Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
    Press(Child<QPushButton>(window, u"cmAddCondition"));
    auto& list = Child<ConditionEditor>(window, u"lvCondition");
    qobject_cast<QComboBox*>(list.cellWidget(0, 1))->setCurrentIndex(2);
    auto* folders = qobject_cast<QComboBox*>(list.cellWidget(0, 3));
    folders->setCurrentIndex(folders->findData(other.Text()));
    PressOk();
    return Error();
  };
  EXPECT_TRUE(refer(first, first).contains(QStringLiteral("自身に戻ります")));
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(Stored(first)->Text(u"Condition"), QString());
  EXPECT_EQ(refer(first, second), QString());
  EXPECT_TRUE(refer(second, first).contains(QStringLiteral("自身に戻ります")));
  EXPECT_EQ(Stored(second)->Text(u"Condition"), QString());
}

// Renaming a folder made "in the first folder" of "in a folder that is gone", and lost the rest.
TEST_F(EditingTest, ConditionsThatCannotBeShownStayAsTheyAre) {
  const auto line = [](const QStringList& fields) { return fields.join(QChar(u'\0')); };
  const QStringList lines{
      line({QStringLiteral("folder"), QStringLiteral("label"), {}, {}, QStringLiteral("gone")}),
      line({QStringLiteral("status"), {}, {}, {}, QStringLiteral("4"), QStringLiteral("9")}),
      line({QStringLiteral("timestamp"), {}, {}, {}, QStringLiteral("3")}),
      line({QStringLiteral("later"), QStringLiteral("x"), {}, {}, QStringLiteral("y")}),
      line({QStringLiteral("subject"), {}, {}, {}, QStringLiteral("a")})};
  auto folder = std::make_shared<Disk>(QStringLiteral("folder_1"));
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), QStringLiteral("丙"));
  folder->Let(QStringLiteral("Condition"), lines.join(kLineBreak));
  folder->Let(QStringLiteral("OfALaterVersion"), QStringLiteral("kept"));
  ASSERT_TRUE(SaveObject(context(), DatabaseKind::Profile, *folder));
  {
    ObjectsWindow& window = Open(object_type::kFolder, folder->Serial());
    auto& list = Child<ConditionEditor>(window, u"lvCondition");
    ASSERT_EQ(list.rowCount(), 5);
    EXPECT_EQ(qobject_cast<QComboBox*>(list.cellWidget(0, 3))->currentText(),
              QStringLiteral("（削除されたフォルダ）"));
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("丁"));
    PressOk();
    EXPECT_EQ(Error(), QString());
  }
  EXPECT_EQ(Stored(folder->Serial())->Text(u"Condition"), lines.join(kLineBreak));
  EXPECT_EQ(Stored(folder->Serial())->Text(u"OfALaterVersion"), QStringLiteral("kept"));
  EXPECT_EQ(Stored(folder->Serial())->Text(u"Object"), QStringLiteral("丁"));
  // A change is that of its row, and keeps there what the editor cannot show.
  ObjectsWindow& window = Open(object_type::kFolder, folder->Serial());
  auto& list = Child<ConditionEditor>(window, u"lvCondition");
  list.cellWidget(1, 3)->findChildren<QCheckBox*>()[1]->setChecked(true);
  qobject_cast<QComboBox*>(list.cellWidget(4, 0))->setCurrentIndex(1);
  PressOk();
  const QStringList changed = Stored(folder->Serial())->Text(u"Condition").split(kLineBreak);
  EXPECT_EQ(ParseConditionLine(changed.value(1))->values.join(u','), QStringLiteral("2,4,9"));
  EXPECT_EQ(changed.mid(2, 2), lines.mid(2, 2));
  EXPECT_TRUE(ParseConditionLine(changed.value(4))->joinedByAnd) << "another connector alone";
}

TEST_F(EditingTest, AConditionThatTakesLongIsCountedWhileTheWindowLives) {
  for (int i = 0; i < 40; ++i) profile_.Store("Subject: s\r\n\r\n");
  ObjectsWindow& window = Open(object_type::kFolder);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("SQL"));
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
  Child<QCheckBox>(window, u"ckSqlUse").setChecked(true);
  auto& sql = Child<QPlainTextEdit>(window, u"txSql");
  auto& stop = Child<QPushButton>(window, u"cmStopMatches");
  auto& matches = Child<QLabel>(window, u"lbMatches");
  const QString endless = QStringLiteral(
      "0 > (SELECT COUNT(a.STATUS) FROM mail a, mail b, mail c, mail d, mail e, mail f, mail g)");
  sql.setPlainText(endless);
  ASSERT_TRUE(WaitFor([&] { return stop.isVisible(); }));
  Press(stop);
  EXPECT_FALSE(stop.isVisible());
  EXPECT_EQ(matches.text(), QStringLiteral("中止しました。"));
  sql.appendPlainText(QStringLiteral(" "));
  ASSERT_TRUE(WaitFor([&] { return stop.isVisible(); }));
  // Writing on stops it as well.
  sql.setPlainText(QStringLiteral("mail.STATUS = 4"));
  EXPECT_FALSE(stop.isVisible());
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("40通")); }));
  sql.setPlainText(endless);
  ASSERT_TRUE(WaitFor([&] { return stop.isVisible(); }));
  PressOk();
  EXPECT_FALSE(window.isVisible()) << "what takes long is no fault";
}

TEST_F(EditingTest, ASqlConditionShowsTheEnginesErrorBeforeItIsSaved) {
  ObjectsWindow& window = Open(object_type::kFolder);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("SQL"));
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
  Child<QCheckBox>(window, u"ckSqlUse").setChecked(true);
  auto& sql = Child<QPlainTextEdit>(window, u"txSql");
  PressOk();
  EXPECT_EQ(Error(), QStringLiteral("SQLの条件が書かれていません。"));
  sql.setPlainText(QStringLiteral("NO_SUCH_COLUMN = 1"));
  EXPECT_TRUE(WaitFor([&] {
    return Child<QLabel>(window, u"lbMatches").text().contains(QStringLiteral("NO_SUCH_COLUMN"));
  }));
  PressOk();
  EXPECT_TRUE(Error().contains(QStringLiteral("NO_SUCH_COLUMN")));
  sql.setPlainText(QStringLiteral("1 = 1; DELETE FROM mail"));
  PressOk();
  EXPECT_FALSE(Error().isEmpty());
  sql.setPlainText(QStringLiteral("mail.STATUS = 4"));
  PressOk();
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(Stored(window.Tag())->Text(u"Draw"), object_filter::kByConditions);
}

}  // namespace
}  // namespace vorn
