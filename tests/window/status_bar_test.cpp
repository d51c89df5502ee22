// What the main window's status bar says of checks, and the steps that it takes back, by itself.

#include "frame/window/notices/status_bar.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <QToolButton>

#include "support/test_profile.h"

namespace vorn {
namespace {

TEST(MainStatusBarTest, AFailureStaysBesideWhatOthersBrought) {
  MainStatusBar bar;
  bar.BeginCheck(true);
  // Two accounts may bring alike much.
  bar.Tell(QStringLiteral("2 came"), false, QStringLiteral("a"));
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("2 came"));
  bar.Tell(QStringLiteral("2 came"), false, QStringLiteral("b"));
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("a: 2 came ／ b: 2 came"));
  bar.BeginCheck(true);
  bar.Tell(QStringLiteral("one: 2"), false);
  bar.Tell(QStringLiteral("two: refused"), true);
  bar.Tell(QStringLiteral("three: 1"), false);
  bar.Tell(QStringLiteral("one: 2"), false);  // once is enough
  const QString all = QStringLiteral("one: 2 ／ three: 1 ／ two: refused");
  EXPECT_EQ(bar.currentMessage(), all);
  bar.Tell({}, false);
  EXPECT_EQ(bar.currentMessage(), all) << "who brought nothing takes nothing away";
  const auto pass = [&bar] {  // the time after which a message goes
    for (QTimer* timer : bar.findChildren<QTimer*>()) {
      if (timer->isActive()) QMetaObject::invokeMethod(timer, "timeout");
    }
  };
  pass();
  EXPECT_EQ(bar.currentMessage(), all) << "until somebody sees the failure";
  bar.BeginCheck(false);
  bar.Tell({}, false);
  EXPECT_EQ(bar.currentMessage(), QString()) << "nobody asked";
  bar.BeginCheck(true);
  bar.Tell({}, false);
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("新しいメッセージはありません。"));
  bar.ShowForAWhile(QStringLiteral("said by the way"));
  bar.Tell(QStringLiteral("four: 3"), false);
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("four: 3")) << "of another check";
  pass();
  EXPECT_EQ(bar.currentMessage(), QString());
}

// What was done is read to its end, and which folder it was all the same.
TEST(MainStatusBarTest, WhereThereIsLittleRoomNamesAreShortenedBeforeTheirSentence) {
  MainStatusBar bar;
  const QString words = QStringLiteral("「%1」から：3通を「受信」に取り込みました。");
  const QString whole =
      words.arg(QStringLiteral("/home/sato/メール/").repeated(9) + QStringLiteral("2026.mbox"));
  auto& line = *bar.findChild<QLabel*>(QStringLiteral("lbDone"));
  line.setFixedWidth(line.fontMetrics().horizontalAdvance(
      words.arg(QStringLiteral("あいうえおかきくけこさしす"))));
  bar.OfferUndo(whole, [] {});
  EXPECT_TRUE(line.toolTip().contains(whole));
  EXPECT_TRUE(line.text().startsWith(QStringLiteral("「/home")) &&
              line.text().endsWith(QStringLiteral("mbox」から：3通を「受信」に取り込みました。")))
      << qPrintable(line.text());
}

TEST(MainStatusBarTest, StepsAreTakenBackTheLastOneFirst) {
  MainStatusBar bar;
  QStringList undone;
  const auto offer = [&](int step) {
    bar.OfferUndo(QString::number(step), [&undone, step] { undone.append(QString::number(step)); });
  };
  for (int step = 1; step <= 21; ++step) offer(step);
  bar.EndOffer();  // of the button, not of the steps
  for (int step = 1; step <= 22; ++step) bar.TakeBack();
  EXPECT_EQ(undone.size(), 20) << "older ones are forgotten";
  EXPECT_EQ(undone.first(), QStringLiteral("21"));
  EXPECT_EQ(undone.last(), QStringLiteral("2"));
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("元に戻せる操作はありません。"));
  offer(1);
  bar.ForgetSteps();
  bar.TakeBack();
  EXPECT_EQ(undone.size(), 20) << "what was deleted for good is behind it";
}

TEST(MainStatusBarTest, AnOfferThatLastsIsThereWhereverTheUserLooks) {
  MainStatusBar bar;
  const auto* offer = bar.findChild<QToolButton*>(QStringLiteral("cmUndo"))->parentWidget();
  const auto isShown = [&](OfferLasts lasts) {
    bar.OfferUndo(
        QStringLiteral("done"), [] {}, lasts);
    bar.EndOffer();
    return !offer->isHidden();
  };
  EXPECT_FALSE(isShown(OfferLasts::WhileAtIt));
  EXPECT_TRUE(isShown(OfferLasts::Minutes));
  EXPECT_FALSE(isShown(OfferLasts::WhileAtIt)) << "another one takes its place";
}

TEST(MainStatusBarTest, ASessionSaysWhatItDoesInTheRoomThatThereIs) {
  QMainWindow window;
  MainStatusBar bar(&window);
  window.setStatusBar(&bar);
  window.resize(600, 200);
  window.show();
  const auto label = [&bar](const char16_t* name) {
    return bar.findChild<QLabel*>(QString::fromUtf16(name));
  };
  bar.ShowStatus(QStringLiteral("mail.example.com"), QStringLiteral("account"));
  EXPECT_FALSE(label(u"panelUnit")->isVisible()) << "of a server's name";
  bar.ShowStatus(QStringLiteral("33.3"), QStringLiteral("maildown"));
  EXPECT_EQ(label(u"panelSession")->text(), QStringLiteral("33.3"));
  EXPECT_TRUE(label(u"panelUnit")->isVisible());
  const QString words = QStringLiteral("24 / 305 通を受信中 …（%1）");
  const auto shown = [&](const QString& account) {
    bar.ShowWork(words.arg(account));
    QCoreApplication::processEvents();
    return label(u"panelWork")->text();
  };
  EXPECT_EQ(shown(QStringLiteral("a")), words.arg(QStringLiteral("a")));
  const QString longName = QString(200, u'長');
  EXPECT_TRUE(shown(longName).startsWith(u"24 / 305"));
  EXPECT_TRUE(shown(longName).endsWith(u'…'));
  EXPECT_TRUE(label(u"panelWork")->toolTip().contains(u'）')) << "the whole";
  EXPECT_EQ(window.width(), 600);
}

}  // namespace
}  // namespace vorn
