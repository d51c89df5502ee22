// Folders whose condition takes long: the windows live meanwhile, and the user can stop it.

#include "kit/window/icons.h"
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
constexpr int kMarkedMs = 2000;   // of the time that the page takes

class SlowConditionTest : public FolderPageTest {
 protected:
  void Ask(const QString& condition) {
    const DiskPtr shelf = LoadObject(program_->GetContext(), kShelf);
    shelf->Let(QStringLiteral("SqlUse"), true);
    shelf->Let(QStringLiteral("Sql"), condition);
    Browser()->ShowFolder(shelf->Serial());
  }
  void Store(const char* subject) {
    StoreReceived(program_->GetContext(), SerialId(QString::fromUtf8(subject).replace(u' ', u'_')),
                  QByteArray("Subject: ") + subject + "\r\n\r\n",
                  QStringLiteral("2019-01-01 00:00:00"));
  }
  QWidget& Bar() const { return Child<QWidget>(*Browser(), u"barCondition"); }
  bool AwaitText(const char* text) const {
    return WaitFor([&] { return PageText().contains(QString::fromUtf8(text)); });
  }
};

TEST_F(SlowConditionTest, ItsMessagesComeWhenTheyAreFoundAndThePageStaysMeanwhile) {
  Begin(70, 30, true);
  Ask(kLong);
  EXPECT_TRUE(Bar().isVisible());
  ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  EXPECT_TRUE(AwaitText("No69."));
  EXPECT_EQ(Child<QLineEdit>(*Browser(), u"txPage").text(), QStringLiteral("3"));
  MadeAnewBy([this] { Child<QAction>(*Browser(), u"oldest").trigger(); });
  EXPECT_TRUE(PageText().contains(QStringLiteral("No1.")));
  EXPECT_FALSE(Bar().isVisible()) << "what was found is known";
  // A change asks anew, and what changes meanwhile comes after it.
  const auto store = [this](const char* subject) {
    Store(subject);
    Browser()->Refresh();
  };
  store("first change");
  ASSERT_TRUE(WaitFor([this] { return Bar().isVisible(); }));
  EXPECT_TRUE(PageText().contains(QStringLiteral("No1.")));
  store("second change");
  EXPECT_TRUE(AwaitText("first change"));
  EXPECT_TRUE(AwaitText("second change"));
  // So does what nobody had asked for yet when the answer came.
  ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  store("third change");
  ASSERT_TRUE(WaitFor([this] { return Bar().isVisible(); }));
  Store("fourth change");
  EXPECT_TRUE(AwaitText("third change"));
  Browser()->Refresh();
  EXPECT_TRUE(AwaitText("fourth change"));
  // Also while it is looked for the second time by itself.
  ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  store("fifth change");
  for (const char* next : {"sixth change", "seventh change"}) {
    ASSERT_TRUE(WaitFor([this] { return Bar().isVisible(); }));
    Store(next);
    ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  }
  EXPECT_TRUE(AwaitText("seventh change"));
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

// Of many tabs two have a page, also when they were left before it came.
TEST_F(SlowConditionTest, ATabThatIsLeftWhileItWaitsHasNoPageUntilSomebodyComesBack) {
  Begin(70, 30, true);
  ParentWindow* parent = program_->Parent();
  const DiskPtr folder = LoadObject(program_->GetContext(), kShelf);
  folder->Let(QStringLiteral("SqlUse"), true);
  folder->Let(QStringLiteral("Sql"), kEndless);
  auto& tree = Child<QTreeWidget>(*parent, u"tvConsole");
  BrowserWindow* shelf = nullptr;
  for (const SerialId& next : {kShelf, fixed_serial::kOutbox, fixed_serial::kDust}) {
    const size_t before = Browsers().size();
    test::ClickRow(tree, Node(next), Qt::LeftButton, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([&] { return Browsers().size() == before + 1; }));
    if (shelf == nullptr) shelf = Browsers().back();
    const auto picture = [](const QIcon& icon) { return icon.pixmap(16, 16).toImage(); };
    EXPECT_EQ(picture(Browsers().back()->parentWidget()->windowIcon()),
              picture(Icon(QStringLiteral("folder"))))
        << "also before its page is there";
  }
  const auto countPages = [this] {
    const auto all = Browsers();
    return std::count_if(all.begin(), all.end(), [](const BrowserWindow* browser) {
      return browser->findChild<QWebEngineView*>(QStringLiteral("wbUrl")) != nullptr;
    });
  };
  const auto text = [&] {
    auto* view = shelf->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
    return view == nullptr ? QString()
                           : ScriptIn(*view, QStringLiteral("document.body.innerText")).toString();
  };
  const auto& bar = Child<QWidget>(*shelf, u"barCondition");
  EXPECT_TRUE(WaitFor([&] { return countPages() == 2; }));
  EXPECT_TRUE(text().isNull());
  EXPECT_FALSE(bar.isHidden());
  // Back while its messages are looked for, and away again.
  auto* tabs = parent->findChild<QMdiArea*>()->findChild<QTabBar*>();
  const auto leave = [&] {
    for (const int other : {2, 3}) tabs->setCurrentIndex(other);
  };
  tabs->setCurrentIndex(1);
  EXPECT_TRUE(WaitFor([&] { return text().contains(QStringLiteral("読み込み中")); }));
  EXPECT_FALSE(bar.isHidden());
  folder->Let(QStringLiteral("Sql"), kLong);
  shelf->ShowFolder(kShelf);
  leave();
  EXPECT_TRUE(WaitFor([&] { return bar.isHidden(); }));
  EXPECT_TRUE(WaitFor([&] { return countPages() == 2; }));
  EXPECT_TRUE(text().isNull());
  const auto hasRows = [&] { return text().contains(QStringLiteral("No69.")); };
  tabs->setCurrentIndex(1);
  EXPECT_TRUE(WaitFor([&] {
    const auto* view = shelf->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
    return view != nullptr && (view->page()->isLoading() || hasRows());
  }));
  EXPECT_TRUE(bar.isHidden()) << "what was found is known";
  leave();
  EXPECT_TRUE(WaitFor([&] { return countPages() == 2; }));
  EXPECT_TRUE(text().isNull());
  tabs->setCurrentIndex(1);
  EXPECT_TRUE(WaitFor(hasRows));
}

// Keys that come at once, a range, and rows that the mouse chose; a second Delete means the next.
TEST_F(SlowConditionTest, WhatIsThrownAwayIsMetOnceWhileThePageIsMadeAnew) {
  Begin(70, 30);
  Ask(kLong + QStringLiteral(" AND STATUS > 0"));
  ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  ASSERT_TRUE(AwaitText("No1."));
  const auto press = [this](int row) {
    Script(QStringLiteral("[...document.querySelectorAll('a')].find(a => "
                          "a.getAttribute('href') === 'preview:mail_%1').dispatchEvent(new "
                          "MouseEvent('mousedown', {bubbles: true, ctrlKey: true}))")
               .arg(row));
  };
  const auto areMarked = [this](int count) {
    return WaitFor(
        [&] {
          return Script(QStringLiteral("document.querySelectorAll('.vorn-gone').length")).toInt() ==
                 count;
        },
        kMarkedMs);
  };
  FocusPage();
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(areMarked(2));
  EXPECT_EQ(Chosen(), Ids({3}));
  Press(Qt::Key_Down, Qt::ShiftModifier);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(areMarked(4));
  ASSERT_TRUE(WaitFor([this] { return Bar().isVisible(); }));
  press(7);
  press(9);
  press(1);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(areMarked(6));
  EXPECT_EQ(Chosen(), Ids({10})) << "none of those that have left";
  Press(Qt::Key_Up);
  EXPECT_EQ(Chosen(), Ids({8}));
  Press(Qt::Key_Home, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), Ids({5, 6, 8}));
  ASSERT_TRUE(WaitFor([this] { return !Bar().isVisible(); }));
  EXPECT_TRUE(AwaitGone("No9."));
  EXPECT_FALSE(PageText().contains(QStringLiteral("No1.")));
  EXPECT_EQ(Chosen(), Ids({5, 6, 8}));
  Context& context = program_->GetContext();
  // What stays is meant again; what could be thrown away is gone.
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  ASSERT_TRUE(context.Data.Execute(
      QStringLiteral("INSERT INTO send_attempt (SERIALID, STATE, STARTED, SERVER, REPLY) VALUES "
                     "('mail_6', 1, '', '', ''), ('mail_8', 1, '', '', '')")));
  EXPECT_TRUE(NextMessageBox([this] { Press(Qt::Key_Delete); }).contains(QStringLiteral("No6.")));
  EXPECT_TRUE(WaitFor([this] { return Chosen() == Ids({6, 8}); }));
  EXPECT_TRUE(areMarked(1));
  EXPECT_TRUE(context.Data.OpenRecordset(
      QStringLiteral("SELECT SERIALID FROM mail WHERE STATUS < 0 ORDER BY FIELD_TIMESTAMP"),
      CursorKind::ForwardOnly));
  SerialIds thrown;
  for (const RecordsetPtr rows = context.Data.Recordset(); !rows->Eof(); rows->MoveNext()) {
    thrown.append(rows->Serial());
  }
  EXPECT_EQ(thrown, Ids({1, 2, 3, 4, 5, 7, 9}));
  // What has left once is listed again when it is back.
  ASSERT_TRUE(AwaitGone("No5."));
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(AwaitText("No5."));
}

TEST_F(SlowConditionTest, AnExportWaitsForTheMessagesAndCanBeStoppedMeanwhile) {
  Begin(70, 30);
  const QString out = Folder() + QStringLiteral("out.mbox");
  QString told;
  int stopped = 0;
  const auto run = [&](const QString& condition, bool stops) {
    Ask(condition);
    told.clear();
    QElapsedTimer clock;
    clock.start();
    test::Answering<QFileDialog, QProgressDialog, QMessageBox>(
        [&] {
          for (QAction* entry : Child<QMenu>(*program_->Parent(), u"menuFiles").actions()) {
            if (entry->text().startsWith(QStringLiteral("フォルダの書き出し"))) entry->trigger();
          }
          EXPECT_TRUE(WaitFor([&told] { return !told.isEmpty(); }));
        },
        [&out](QFileDialog& file) {
          Child<QLineEdit>(file, u"fileNameEdit").setText(out);
          QMetaObject::invokeMethod(&file, "accept");
        },
        [&](QProgressDialog& progress) {
          if (!stops) return;
          ++stopped;
          progress.cancel();
        },
        [&told](QMessageBox& box) {
          told = box.text();
          box.button(QMessageBox::Ok)->click();
        });
    return clock.elapsed();
  };
  EXPECT_LT(run(kEndless, true), kAtOnceMs);
  EXPECT_EQ(told, QStringLiteral("中止しました。"));
  EXPECT_GT(stopped, 0);
  EXPECT_FALSE(QFile::exists(out));
  run(kLong, false);
  EXPECT_EQ(told, QStringLiteral("70通を書き出しました。"));
  EXPECT_EQ(test::ReadFile(out).count("\nSubject: No"), 70);
}

}  // namespace
}  // namespace vorn
