// What is done with messages of the folders' pages, by itself: what leaves the folder that is
// shown, and what takes it back.

#include "frame/window/commands/message_actions.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QWidget>

#include "objects/manual_folder.h"
#include "objects/object_types.h"
#include "objects/setting_keys.h"
#include "objects/settings.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

class CountingHost : public MessageHost {
 public:
  int stored = 0;

  void SendMessage(const SerialId&) override {}
  bool ChooseSender(const SerialId&, const QString&, const QString&) override { return false; }
  void MessageStored() override { ++stored; }
  void DustChanged(const SerialId&, bool) override {}
  void PostMail(const MailRequest&) override {}
  void OpenMessageFile(const QString&) override {}
  void PrintPageFile(const QString&, const QString&) override {}
  SerialId NeighbourOf(const SerialId&, int) override { return {}; }
  void GatherAlike(const SerialId&) override {}
  void StopAlike(const SerialId&) override {}
  QStringList OfferedAddresses() override { return {}; }
  bool PrefersHtml() const override { return false; }
  void PreferHtml(bool) override {}
  void AddToBook(const SerialIds&) override {}
  void MakeAccount() override {}
  bool IsClosing() const override { return false; }
};

class MessageActionsTest : public testing::Test {
 protected:
  MessageActionsTest() {
    actions_.OnDone([this](const QString& done, std::function<void()> undo) {
      done_ = done;
      undo_ = std::move(undo);
    });
    actions_.OnReturned([this](const SerialIds& messages) { returned_ = messages; });
  }
  SerialId Folder(const char16_t* name) {
    return MakeManualFolder(profile_.Get(), QString::fromUtf16(name)).ValueOr({});
  }
  qsizetype In(const SerialId& folder) {
    return test::Filed(profile_.Get(), messages_, folder).size();
  }

  test::TestProfile profile_;
  SerialIds messages_{profile_.Store("Subject: 1\r\n\r\n"), profile_.Store("Subject: 2\r\n\r\n")};
  QWidget window_;
  CountingHost host_;
  MessageActions actions_{profile_.Get(), window_, host_};
  QString done_;
  std::function<void()> undo_;
  SerialIds returned_;
};

TEST_F(MessageActionsTest, WhatIsFiledLeavesTheFolderThatIsShownAndComesBack) {
  const SerialId shelf = Folder(u"shelf");
  const SerialId box = Folder(u"box");
  EXPECT_TRUE(actions_.Drop(messages_, shelf, fixed_serial::kOutbox).isEmpty());
  EXPECT_EQ(In(shelf), 2);
  EXPECT_EQ(actions_.Drop(messages_, box, shelf), messages_);
  EXPECT_EQ(In(shelf), 0);
  EXPECT_EQ(In(box), 2);
  EXPECT_EQ(done_, QStringLiteral("2通を「box」に入れました。"));
  EXPECT_TRUE(actions_.Drop(messages_, box, box).isEmpty()) << "it is there already";
  undo_();
  EXPECT_EQ(In(shelf), 2);
  EXPECT_EQ(In(box), 0);
  EXPECT_EQ(QSet<SerialId>(returned_.begin(), returned_.end()),
            QSet<SerialId>(messages_.begin(), messages_.end()));
  EXPECT_EQ(host_.stored, 4);
}

TEST_F(MessageActionsTest, WhatIsThrownAwayLeavesEveryFolderButTheDustBin) {
  const SerialIds one{messages_[0]};
  EXPECT_EQ(actions_.Act(MessageAction::ToDust, one, fixed_serial::kInbox), one);
  EXPECT_EQ(done_, QStringLiteral("1通をくずかごに入れました。"));
  EXPECT_TRUE(actions_.Act(MessageAction::OutOfDust, one, fixed_serial::kInbox).isEmpty());
  EXPECT_EQ(actions_.Act(MessageAction::ToDust, one, fixed_serial::kInbox), one);
  EXPECT_EQ(actions_.Act(MessageAction::OutOfDust, one, fixed_serial::kDust), one);
  EXPECT_TRUE(actions_.Act(MessageAction::ToggleStar, messages_, fixed_serial::kInbox).isEmpty());
  // Into the inbox as out of the dust bin, also where it shows what is filed.
  Settings(profile_.Get()).Bag()->Let(setting::kShownOnce, false);
  actions_.Act(MessageAction::ToDust, one, fixed_serial::kInbox);
  EXPECT_EQ(actions_.Drop(one, fixed_serial::kInbox, fixed_serial::kDust), one);
  EXPECT_EQ(
      profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail WHERE STATUS < 0")).size(), 0);
}

}  // namespace
}  // namespace vorn
