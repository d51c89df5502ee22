#include "frame/dispatcher.h"

#include <gtest/gtest.h>

#include "events/event_log.h"
#include "objects/settings.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

class FakeWindow : public RequestWindow {
 public:
  FakeWindow(QStringList& log, bool child) : log_(log), child_(child) {}
  bool LoadDefaultProperty(const DiskPtr& request, bool update) override {
    tag_ = request->Serial();
    log_.append(
        QStringLiteral("load %1%2").arg(tag_.Text(), update ? QStringLiteral("+") : QString()));
    return accepts;
  }
  SerialId Tag() const override { return tag_; }
  bool IsChild() const override { return child_; }
  void ShowModeless() override { log_.append(QStringLiteral("modeless")); }
  void ShowModal() override {
    log_.append(QStringLiteral("modal"));
    if (whileModal) whileModal();
  }
  void Activate() override { log_.append(QStringLiteral("activate ") + tag_.Text()); }
  void Unload() override { log_.append(QStringLiteral("unload")); }
  void SetObjectText(const QString& text) override { log_.append(QStringLiteral("text ") + text); }
  void ConfirmObject() override { log_.append(QStringLiteral("ok")); }
  void DeleteObject() override { log_.append(QStringLiteral("delete")); }

  bool accepts = true;
  std::function<void()> whileModal;

 private:
  QStringList& log_;
  bool child_;
  SerialId tag_;
};

class DispatcherTest : public testing::Test, public DispatchHost {
 protected:
  bool IsEnabled() const override { return enabled_; }
  std::vector<RequestWindow*> OpenWindows() const override {
    std::vector<RequestWindow*> windows;
    for (const auto& window : windows_) windows.push_back(window.get());
    return windows;
  }
  RequestWindow* CreateRequestWindow(const Disk& request) override {
    const QString status = request.Text(u"status");
    if (status == u"none") return nullptr;
    auto window = std::make_unique<FakeWindow>(log_, status == u"browser");
    window->accepts = accepts_;
    window->whileModal = [this] {
      enabled_ = false;
      dispatcher_.Tick();
      enabled_ = true;
      if (!std::exchange(ticked_, true)) dispatcher_.Tick();  // closed, and its loop goes on
      profile_.Get().Session->Let(QStringLiteral("status"), answer_);
    };
    windows_.push_back(std::move(window));
    return windows_.back().get();
  }
  void ArrangeWindows() override { log_.append(QStringLiteral("arrange")); }
  void NotifyNewMessages(const Disk& request) override {
    log_.append(QStringLiteral("notify ") + request.Text(u"message"));
  }
  void ApplySettings() override { log_.append(QStringLiteral("apply")); }
  QString NodeText(const SerialId& serialId) const override { return serialId.Text().toUpper(); }
  void RefreshNode(const SerialId& serialId) override {
    log_.append(QStringLiteral("refresh ") + serialId.Text());
  }

  QString Run() {
    log_.clear();
    while (!queue_.IsEmpty()) dispatcher_.Tick();
    return log_.join(u',');
  }
  void PostDialog(const char16_t* serialId, RequestShow show, AfterStep after) {
    DialogRequest request;
    request.serialId = SerialId(QString::fromUtf16(serialId));
    request.status = QStringLiteral("account");
    request.show = show;
    request.after = after;
    EXPECT_TRUE(queue_.PostDialogRequest(request));
  }
  void PostMail(const char16_t* serialId, OpenMode mode = OpenMode::Show) {
    queue_.PostMailRequest(MailRequest::Of(SerialId(QString::fromUtf16(serialId)), mode));
  }

  TestProfile profile_;
  RequestQueue queue_{profile_.Get()};
  Dispatcher dispatcher_{profile_.Get(), queue_, *this};
  std::vector<std::unique_ptr<FakeWindow>> windows_;
  QStringList log_;
  bool enabled_ = true;
  bool ticked_ = false;
  bool accepts_ = true;
  QString answer_ = QStringLiteral("a");
};

TEST_F(DispatcherTest, AnOpenWindowIsReusedUnlessTheRequestIsDirect) {
  PostMail(u"m");
  PostMail(u"m");
  EXPECT_EQ(Run(), QStringLiteral("load m+,modeless,refresh m,activate m"));
  PostMail(u"m", OpenMode::ReplyAll);
  EXPECT_EQ(Run(), QStringLiteral("load m+,modeless,refresh m"));
}

TEST_F(DispatcherTest, ModalWindowsRunTheirStepOnlyWhenConfirmed) {
  PostDialog(u"a", kShowModal, AfterStep::ApplySettings);
  EXPECT_EQ(Run(), QStringLiteral("load a,modal,apply"));
  answer_.clear();
  PostDialog(u"a", kShowModal, AfterStep::ApplySettings);
  EXPECT_EQ(Run(), QStringLiteral("load a,modal"));
}

TEST_F(DispatcherTest, HiddenWindowsRunTheirStepAtOnce) {
  PostDialog(u"a", kShowHidden, AfterStep::RenameObject);
  PostDialog(u"b", kShowHidden, AfterStep::DeleteObject);
  EXPECT_EQ(Run(), QStringLiteral("load a,text A,ok,refresh a,load b,delete,refresh b"));
}

TEST_F(DispatcherTest, ChildWindowsAreArrangedAndDecliningOnesDropped) {
  BrowserRequest request;
  request.serialId = u"f"_id;
  queue_.PostBrowserRequest(request);
  EXPECT_EQ(Run(), QStringLiteral("load f,modeless,arrange,refresh f"));
  accepts_ = false;
  PostMail(u"x");
  EXPECT_EQ(Run(), QStringLiteral("load x+,unload"));
}

TEST_F(DispatcherTest, NoticesAndNonsense) {
  const auto post = [this](const char16_t* mode, const char16_t* status) {
    auto request = std::make_shared<Disk>(QStringLiteral("r"));
    request->Let(QStringLiteral("mode"), QString::fromUtf16(mode));
    request->Let(QStringLiteral("status"), QString::fromUtf16(status));
    request->Let(QStringLiteral("message"), QStringLiteral("m1"));
    queue_.Post(request);
  };
  post(u"messagebox", u"newmessage");
  post(u"messagebox", u"other");
  post(u"unknown", u"mail");
  post(u"window", u"none");
  EXPECT_EQ(Run(), QStringLiteral("notify m1"));
  EXPECT_FALSE(queue_.PostDialogRequest({}));
}

TEST_F(DispatcherTest, RequestsCarryTheirKeys) {
  PostMail(u"", OpenMode::Reply);
  const DiskPtr mail = queue_.Front();
  EXPECT_TRUE(mail->SerialID().endsWith(u'@' + profile_.Get().ComputerName));
  EXPECT_TRUE(mail->Flag(u"direct") && mail->Flag(u"update"));
  queue_.Clear();
  DialogRequest request;
  request.status = QStringLiteral("profile");
  queue_.PostDialogRequest(request);
  EXPECT_TRUE(queue_.Front()->SerialID().startsWith(u"profile_"));
  EXPECT_EQ(queue_.Front()->Number(u"db"), 0);
}

TEST(EventLogTest, RecordsAreKeptAndShown) {
  struct View : EventView {
    void ShowEvent(const SerialId& serialId, const QString& title, const QString& icon) override {
      shown.append(serialId);
      last = title + u'/' + icon;
    }
    SerialIds shown;
    QString last;
  } view;
  TestProfile profile;
  EventLog log(profile.Get(), view);
  const DiskPtr settings = Settings(profile.Get()).Bag();
  settings->Let(QStringLiteral("EventsFolded"), false);
  log.AddEvent(kEventError, kEventMessage, u"m"_id, QString(), QStringLiteral("mailup"),
               QStringLiteral("text"));
  EXPECT_EQ(view.last, QStringLiteral("システム/mailuperror"));
  log.AddEvent(kEventInformation, kEventObject, u"a"_id, QStringLiteral("仕事"),
               QStringLiteral("account"), {});
  EXPECT_EQ(view.last, QStringLiteral("仕事/accountinfomation"));
  EXPECT_TRUE(view.shown[1].Text().startsWith(u"event_1_"));
  const DiskPtr record = log.Find(view.shown[0]);
  ASSERT_NE(record, nullptr);
  // A failure is over once the message is sent.
  const auto fail = [&log](const SerialId& message, const QString& title) {
    log.AddEvent(kEventError, kEventMessage, message, title, QStringLiteral("mailup"), title);
  };
  fail(profile.Store("From: a@x\r\n\r\n.\r\n", kStatusWaiting), QStringLiteral("waits"));
  fail(profile.Store("From: a@x\r\n\r\n.\r\n", kStatusSent), QStringLiteral("went"));
  log.SettleSent();
  EXPECT_EQ(view.last, QStringLiteral("went/mailupinfomation"));
  EXPECT_TRUE(log.Find(view.shown.last())->Text(u"message").startsWith(u"その後、送信しました。"));
  const qsizetype shown = view.shown.size();
  log.SettleSent();
  EXPECT_EQ(view.shown.size(), shown) << "said once, and of no other";
  EXPECT_EQ(record->Number(u"db"), 3);
  EXPECT_EQ(record->Text(u"file"), profile.Get().Session->Text(u"Mail"));
  // With the setting two hundred checks are one event that tells of all, and a failure stands by
  // itself.
  settings->Let(QStringLiteral("EventsFolded"), true);
  view.shown.clear();
  for (int i = 0; i < 200; ++i) {
    log.AddEvent(i == 100 ? kEventError : kEventInformation, kEventObject, u"b"_id,
                 QStringLiteral("会社"), QStringLiteral("account"),
                 i % 50 == 0 ? QStringLiteral("came %1").arg(i) : QString());
  }
  // Since when; before ten o'clock the hour has one digit.
  EXPECT_TRUE(
      QRegularExpression(QStringLiteral("^会社 \\d{1,2}:\\d\\d")).match(view.last).hasMatch())
      << qPrintable(view.last);
  EXPECT_EQ(QSet<SerialId>(view.shown.begin(), view.shown.end()).size(), 2);
  const QString said = log.Find(view.shown[0])->Text(u"message");
  EXPECT_LT(said.indexOf(u"came 150"), said.indexOf(u"came 0"));
  EXPECT_FALSE(said.contains(u"came 100"));
}

}  // namespace
}  // namespace vorn
