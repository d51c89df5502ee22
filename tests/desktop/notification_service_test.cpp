// What is asked of the desktop's notification service, and what its answers do.

#include "desktop/notification_service.h"

#include <QLocalServer>
#include <QLocalSocket>

#include "support/fake_notifications.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::FakeNotifications;
using test::WaitFor;

Notification About(const QStringList& messages) {
  return {QStringLiteral("2 < 3"),
          QStringLiteral("<b>5 & 6</b>"),
          {QStringLiteral("default"), QStringLiteral("Open")},
          messages};
}

class NotificationServiceTest : public testing::Test {
 protected:
  NotificationServiceTest() {
    QObject::connect(&service_, &NotificationService::Chosen, &service_,
                     [this](const QString& action, const QStringList& about) {
                       events_.append(action + u' ' + about.join(u','));
                     });
    QObject::connect(&service_, &NotificationService::Gone, &service_,
                     [this](const QStringList& about) {
                       events_.append(QStringLiteral("gone ") + about.join(u','));
                     });
  }
  bool AwaitEvent(const QString& event) {
    return WaitFor([&] { return !events_.isEmpty() && events_.takeFirst() == event; });
  }

  NotificationService service_{QStringLiteral("vorn")};
  QStringList events_;
};

TEST_F(NotificationServiceTest, OneNotificationTellsOfAllThatCame) {
  FakeNotifications desktop;
  // What comes while the first is on its way takes its place, and so does what comes later.
  service_.Show(About({QStringLiteral("a")}));
  service_.Show(About({QStringLiteral("a"), QStringLiteral("b")}));
  ASSERT_TRUE(WaitFor([&] { return desktop.Told.size() == 1; }));
  EXPECT_EQ(desktop.Told[0].replaces, 0U);
  EXPECT_EQ(desktop.Told[0].summary, QStringLiteral("2 < 3"));
  EXPECT_EQ(desktop.Told[0].body, QStringLiteral("&lt;b&gt;5 &amp; 6&lt;/b&gt;"));
  EXPECT_EQ(desktop.Told[0].actions.size(), 2);
  service_.Show(About({QStringLiteral("c")}));
  // An action that was chosen before is about what was seen then.
  const uint id = desktop.Told[0].id;
  desktop.Choose(id, QStringLiteral("dust"));
  desktop.Choose(id + 1, QStringLiteral("dust"));  // somebody else's
  EXPECT_TRUE(AwaitEvent(QStringLiteral("dust a,b")));
  ASSERT_TRUE(WaitFor([&] { return desktop.Told.size() == 2 && desktop.Closed.size() == 1; }));
  desktop.Close(desktop.Told[1].id);
  EXPECT_TRUE(AwaitEvent(QStringLiteral("gone c")));
  service_.Show(About({QStringLiteral("d")}));
  ASSERT_TRUE(WaitFor([&] { return desktop.Told.size() == 3; }));
  EXPECT_EQ(desktop.Told[2].replaces, 0U);
  EXPECT_TRUE(events_.isEmpty());
}

TEST_F(NotificationServiceTest, AServiceGetsNoMoreThanItCanShow) {
  FakeNotifications desktop;
  desktop.Abilities = {QStringLiteral("body")};
  service_.Show(About({QStringLiteral("a")}));
  ASSERT_TRUE(WaitFor([&] { return desktop.Told.size() == 1; }));
  EXPECT_EQ(desktop.Told[0].body, QStringLiteral("<b>5 & 6</b>"));
  EXPECT_TRUE(desktop.Told[0].actions.isEmpty());
}

TEST_F(NotificationServiceTest, NothingWaitsWhereNobodyAnswers) {
  service_.Show(About({QStringLiteral("no bus")}));
  EXPECT_TRUE(AwaitEvent(QStringLiteral("gone no bus")));

  // A bus that says nothing.
  QLocalServer silent;
  ASSERT_TRUE(silent.listen(FakeNotifications::NameBus()));
  QElapsedTimer clock;
  clock.start();
  service_.Show(About({QStringLiteral("silence")}));
  EXPECT_LT(clock.elapsed(), 5000);
  ASSERT_TRUE(WaitFor([&] { return silent.hasPendingConnections(); }));
  EXPECT_TRUE(events_.isEmpty());
  silent.nextPendingConnection()->abort();
  silent.close();
  EXPECT_TRUE(AwaitEvent(QStringLiteral("gone silence")));

  // A service that says nothing and goes, and none; then the bus goes, and another one comes.
  auto desktop = std::make_unique<FakeNotifications>();
  desktop->Answers = false;
  service_.Show(About({QStringLiteral("busy")}));
  ASSERT_TRUE(WaitFor([&] { return desktop->Asked > 0; }));
  EXPECT_TRUE(events_.isEmpty());
  desktop->EndService();
  EXPECT_TRUE(AwaitEvent(QStringLiteral("gone busy")));
  service_.Show(About({QStringLiteral("none")}));
  EXPECT_TRUE(AwaitEvent(QStringLiteral("gone none")));
  desktop->EndBus();
  desktop = std::make_unique<FakeNotifications>();
  service_.Show(About({QStringLiteral("anew")}));
  EXPECT_TRUE(WaitFor([&] { return desktop->Told.size() == 1; }));
}

TEST(NotificationServiceEndTest, WhatIsShownGoesWithTheProgram) {
  FakeNotifications desktop;
  {
    NotificationService service(QStringLiteral("vorn"));
    service.Show(About({QStringLiteral("a")}));
    ASSERT_TRUE(WaitFor([&] { return desktop.Told.size() == 1; }));
    // What comes in its place needs the answer to it.
    service.Show(About({QStringLiteral("b")}));
    ASSERT_TRUE(WaitFor([&] { return desktop.Told.size() == 2; }));
  }
  EXPECT_TRUE(WaitFor([&] { return desktop.Closed == QList<uint>{desktop.Told[0].id}; }));
}

}  // namespace
}  // namespace vorn
