// A folder's page takes over its next version row by row, instead of being loaded anew.
#include <gtest/gtest.h>

#include <signal.h>

#include <QWebEngineView>

#include "mail/store/message_filing.h"
#include "objects/object_loader.h"
#include "objects/settings.h"
#include "present/folder_layout.h"
#include "present/window/browser_window.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

class PageReplacingTest : public FolderPageTest {
 protected:
  void BeginWith(const char* layout, int messages) {
    Begin(messages, 100);
    EXPECT_TRUE(ShareLayout(program_->GetContext(), QString::fromLatin1(layout), OwnLayouts::Kept));
    MadeAnewBy([this] { Browser()->Refresh(); });
    ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === %1").arg(messages)));
    loads_ = std::make_unique<QSignalSpy>(View(), &QWebEngineView::loadStarted);
  }
  // Puts a mark on every row that stands there now.
  void MarkRows() const {
    Script(QStringLiteral(
        "document.querySelectorAll('[draggable]').forEach(row => row.dataset.kept = '1')"));
  }
  int KeptRows() const {
    return Script(QStringLiteral("document.querySelectorAll('[data-kept]').length")).toInt();
  }
  SerialIds Order() const {
    return SerialIdsOf(
        Script(QStringLiteral("[...new Set([...document.querySelectorAll('a[href^=\"preview:\"]')]"
                              ".map(a => a.getAttribute('href').slice(8)))]"))
            .toStringList());
  }

  std::unique_ptr<QSignalSpy> loads_;
};

class EachLayoutTest : public PageReplacingTest, public testing::WithParamInterface<const char*> {};

TEST_P(EachLayoutTest, WhatComesGoesAndChangesTouchesNoOtherRow) {
  BeginWith(GetParam(), 6);
  Press(Qt::Key_End);
  ASSERT_EQ(Chosen(), Ids({6}));
  MarkRows();
  ASSERT_EQ(KeptRows(), 6);

  Come("mail_new", "Between", QStringLiteral("2020-01-01 00:02:30"));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 7")));
  EXPECT_EQ(Order(), Ids({1, 2}) + SerialIds{u"mail_new"_id} + Ids({3, 4, 5, 6}));
  EXPECT_EQ(KeptRows(), 6);
  EXPECT_EQ(Chosen(), Ids({6})) << "what the user is at stays";

  MadeAnewBy([this] {
    EXPECT_TRUE(SetMark(program_->GetContext(), Ids({2}), kFlagNew, false));
    program_->Parent()->Pages().Messages().MessageStored();
  });
  EXPECT_EQ(KeptRows(), 5) << "the one that is read now is another row";
  EXPECT_EQ(Order().size(), 7);

  Press(Qt::Key_Delete);  // the last one
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 6")));
  EXPECT_EQ(KeptRows(), 4);
  EXPECT_EQ(Chosen(), Ids({5}));

  const DiskPtr settings = Settings(program_->GetContext()).Bag();
  settings->Let(QStringLiteral("NewestFirst"), true);
  MadeAnewBy([this] { Browser()->Refresh(); });
  settings->Let(QStringLiteral("NewestFirst"), false);
  EXPECT_EQ(Order(), Ids({5, 4, 3}) + SerialIds{u"mail_new"_id} + Ids({2, 1}));
  EXPECT_EQ(KeptRows(), 4) << "they have moved";
  Press(Qt::Key_Down);
  EXPECT_EQ(Chosen(), Ids({4})) << "in the new order";

  EXPECT_EQ(loads_->count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Ready, EachLayoutTest, testing::Values("standard", "table", "cards"));

TEST_F(PageReplacingTest, AnotherFolderAndTheWayBackNeedNoLoadingEither) {
  BeginWith("table", 12);
  Press(Qt::Key_End);
  Browser()->ShowFolder(kShelf);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 0")));
  EXPECT_TRUE(PageText().contains(u"メッセージはありません")) << PageText().toStdString();
  EXPECT_EQ(View()->title(), QStringLiteral("棚"));
  Press(Qt::Key_Delete);  // there is nothing
  Browser()->ShowFolder(fixed_serial::kInbox);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 12")));
  EXPECT_EQ(Chosen(), SerialIds()) << "a folder begins anew";
  Press(Qt::Key_Down);
  EXPECT_EQ(Chosen(), Ids({1}));
  EXPECT_FALSE(PageText().contains(u"メッセージはありません"));
  EXPECT_EQ(loads_->count(), 0);
}

TEST_F(PageReplacingTest, APageWhoseProcessDiedComesBackWithItsKeys) {
  BeginWith("table", 4);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  ASSERT_EQ(Chosen(), Ids({2}));
  QSignalSpy died(View(), &QWebEngineView::renderProcessTerminated);
  MadeAnewBy([&] {
    ::kill(static_cast<pid_t>(View()->page()->renderProcessPid()), SIGKILL);
    ASSERT_TRUE(WaitFor([&] { return died.count() > 0; }));
  });
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 4")));
  EXPECT_TRUE(WaitFor([this] { return View()->isAncestorOf(QApplication::focusWidget()); }));
  EXPECT_EQ(Chosen(), Ids({2}));
  Press(Qt::Key_Delete);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 3")));
  EXPECT_EQ(Order(), Ids({1, 3, 4}));
}

// The document that is clicked may be the one that is just going.
TEST_F(PageReplacingTest, AClickWhileAnotherDocumentIsLoadedIsNotLost) {
  BeginWith("table", 4);
  Press(Qt::Key_Down);
  const QVariantList at =
      Script(QStringLiteral("(() => { const r = document.querySelector('a[href*=mail_3]')"
                            ".closest('tr').getBoundingClientRect();"
                            "  return [r.x + r.width / 2, r.y + r.height / 2]; })()"))
          .toList();
  ASSERT_EQ(at.size(), 2);
  Script(QStringLiteral("vorn.replace = () => null"));
  QObject::connect(View(), &QWebEngineView::loadStarted, View(), [&] {
    QTest::mouseClick(View()->focusProxy(), Qt::LeftButton, Qt::NoModifier,
                      QPoint(at[0].toInt(), at[1].toInt()));
  });
  MadeAnewBy([this] { Browser()->Refresh(); });
  EXPECT_EQ(loads_->count(), 1);
  EXPECT_TRUE(WaitFor([this] { return Chosen() == Ids({3}); }));
}

// Rows have another height in a narrow window.
TEST_F(PageReplacingTest, AListThatIsMadeNarrowerStaysWhereItIs) {
  BeginWith("table", 80);
  program_->Parent()->resize(1100, 500);
  ASSERT_TRUE(AwaitScript(QStringLiteral("innerWidth > 700")));
  Script(QStringLiteral("scrollTo(0, 800)"));
  ASSERT_TRUE(AwaitScript(QStringLiteral("scrollY === 800")));
  const auto topOfFirst = QStringLiteral(
      "[...document.querySelectorAll('tr[draggable]')].map(r => r.getBoundingClientRect().top)"
      ".findIndex(top => top >= -1)");
  AwaitPainted(*View());  // the page hears of it
  const int first = Script(topOfFirst).toInt();
  EXPECT_GT(first, 10);
  const double width = Script(QStringLiteral("innerWidth")).toDouble();
  const double height = Script(QStringLiteral("document.body.scrollHeight")).toDouble();
  for (const int narrow : {420, 1100}) {
    program_->Parent()->resize(narrow, 500);
    ASSERT_TRUE(
        AwaitScript(QStringLiteral("(innerWidth < 500) === %1")
                        .arg(narrow < 500 ? QStringLiteral("true") : QStringLiteral("false"))));
    AwaitPainted(*View());
    EXPECT_NEAR(Script(topOfFirst).toInt(), first, 1) << narrow;
    if (narrow < 500) {
      EXPECT_NE(Script(QStringLiteral("document.body.scrollHeight")).toDouble(), height);
    } else {
      EXPECT_EQ(Script(QStringLiteral("innerWidth")).toDouble(), width);
    }
  }
  // Who looks at what came last goes on with that.
  const QString isAtEnd =
      QStringLiteral("innerHeight + scrollY >= document.documentElement.scrollHeight - 2");
  Script(QStringLiteral("scrollTo(0, 1e6)"));
  ASSERT_TRUE(AwaitScript(isAtEnd));
  AwaitPainted(*View());
  program_->Parent()->resize(420, 500);
  ASSERT_TRUE(AwaitScript(QStringLiteral("innerWidth < 500")));
  EXPECT_TRUE(AwaitScript(isAtEnd));
}

// A page that cannot take another one over is loaded, and what is done meanwhile is not lost.
TEST_F(PageReplacingTest, WhereThatDoesNotGoThePageIsLoaded) {
  BeginWith("table", 4);
  Press(Qt::Key_Down);
  Script(QStringLiteral("vorn.replace = () => null"));
  MadeAnewBy([this] {
    Browser()->Refresh();
    Press(Qt::Key_Down);
  });
  EXPECT_EQ(loads_->count(), 1);
  EXPECT_EQ(Chosen(), Ids({2}));

  const auto layOut = [this](const char* rows) {
    const auto object = LoadObject(program_->GetContext(), fixed_serial::kLayout);
    object->Let(fixed_serial::kInbox.Text() + QStringLiteral("_html"),
                QStringLiteral("<!DOCTYPE html>\r\n<html lang=\"ja\"><head><meta "
                               "http-equiv=\"Content-Type\" content=\"text/html; "
                               "charset=shift-jis\"></head><body>%1</body>")
                    .arg(QString::fromLatin1(rows)));
    MadeAnewBy([this] { Browser()->Refresh(); });
    // A version that was wanted meanwhile may follow.
    EXPECT_TRUE(WaitFor([this] { return Order() == Ids({1, 2, 3, 4}) && Chosen() == Ids({2}); }));
  };
  // Where several messages share an element, the link of each is its row.
  layOut("<+MAIL><+DIALOG><+SUBJECT><+DIALOG> <+FLAG><NEW><br><+MAIL>");
  EXPECT_EQ(loads_->count(), 1);
  EXPECT_EQ(Script(QStringLiteral("document.querySelector('.vorn-current').localName")).toString(),
            QStringLiteral("a"));
  for (const int left : {3, 2, 1}) {
    Press(Qt::Key_Delete);
    ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === %1").arg(left)));
  }
  EXPECT_EQ(Script(QStringLiteral("document.querySelector('.vorn-current').localName")).toString(),
            QStringLiteral("a"));
  for (const int there : {2, 3, 4}) {
    QTest::keyClick(View()->focusProxy(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === %1").arg(there)));
  }
  EXPECT_EQ(loads_->count(), 1);
  Script(QStringLiteral("vorn.goTo(1, false)"));
  // Rows within rows.
  layOut("<ul><+MAIL><li><+DIALOG><+SUBJECT><+DIALOG><ul><+MAIL>");
  const qsizetype loads = loads_->count();
  EXPECT_GT(loads, 1);
  Come("mail_new", "Last", QStringLiteral("2020-01-02 00:00:00"));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 5")));
  EXPECT_GT(loads_->count(), loads);
  EXPECT_TRUE(WaitFor([this] { return Chosen() == Ids({2}); }));
}

}  // namespace
}  // namespace vorn
