// Folders whose condition takes long: the windows live meanwhile, and the user can stop it.

#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>

#include "objects/object_loader.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

// Some seconds, and for ever.
const QString kLong = QStringLiteral(
    "0 < (SELECT COUNT(a.STATUS) FROM mail a, mail b, mail c, mail d WHERE a.FIELD_SUBJECT < "
    "d.FIELD_SUBJECT AND b.STATUS + c.STATUS = 8)");
const QString kEndless = QStringLiteral(
    "0 > (SELECT COUNT(a.STATUS) FROM mail a, mail b, mail c, mail d, mail e, mail f, mail g)");
constexpr int kAtOnceMs = 10000;  // of minutes

class SlowConditionTest : public FolderPageTest {
 protected:
  void Ask(const QString& condition) {
    const DiskPtr shelf = LoadObject(program_->GetContext(), QString::fromUtf16(kShelf));
    shelf->Let(QStringLiteral("SqlUse"), true);
    shelf->Let(QStringLiteral("Sql"), condition);
    Browser()->ShowFolder(shelf->SerialID());
  }
  QWidget& Bar() const { return Child<QWidget>(*Browser(), u"barCondition"); }
  bool AwaitText(const char* text) const {
    return WaitFor([&] { return PageText().contains(QString::fromUtf8(text)); });
  }
};

TEST_F(SlowConditionTest, ItsMessagesComeWhenTheyAreFoundAndThePageStaysMeanwhile) {
  Begin(100, 30, true);
  Ask(kLong);
  EXPECT_TRUE(Bar().isVisible());
  ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  EXPECT_TRUE(AwaitText("No99."));
  EXPECT_EQ(Child<QLineEdit>(*Browser(), u"txPage").text(), QStringLiteral("4"));
  MadeAnewBy([this] { Child<QAction>(*Browser(), u"oldest").trigger(); });
  EXPECT_TRUE(PageText().contains(QStringLiteral("No1.")));
  EXPECT_FALSE(Bar().isVisible()) << "what was found is known";
  // A change asks anew, and what changes meanwhile comes after it.
  const auto store = [this](const char* subject) {
    Disk request(QString::fromUtf8(subject).replace(u' ', u'_'));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Timestamp"), QStringLiteral("2019-01-01 00:00:00"));
    MailStore(program_->GetContext())
        .StoreMessage(request, QByteArray("Subject: ") + subject + "\r\n\r\n");
    Browser()->Refresh();
  };
  store("first change");
  ASSERT_TRUE(WaitFor([this] { return Bar().isVisible(); }));
  EXPECT_TRUE(PageText().contains(QStringLiteral("No1.")));
  store("second change");
  EXPECT_TRUE(AwaitText("first change"));
  EXPECT_TRUE(AwaitText("second change"));
}

TEST_F(SlowConditionTest, ItIsStoppedByItsButtonByAnotherFolderAndByTheEnd) {
  Begin(40, 30);
  QElapsedTimer clock;
  Ask(kEndless);
  ASSERT_TRUE(Bar().isVisible());
  test::Press(Child<QPushButton>(*Browser(), u"cmStopCondition"));
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_TRUE(AwaitText("中止しました"));
  Ask(kEndless);
  EXPECT_TRUE(AwaitText("読み込み中"));
  clock.start();
  Browser()->ShowFolder(fixed_serial::kInbox);
  EXPECT_FALSE(Bar().isVisible());
  EXPECT_TRUE(AwaitText("No1."));
  EXPECT_LT(clock.elapsed(), kAtOnceMs);
  Ask(kEndless);
  ASSERT_TRUE(Bar().isVisible());
  clock.start();
  EndProgram();
  EXPECT_LT(clock.elapsed(), kAtOnceMs);
}

}  // namespace
}  // namespace vorn
