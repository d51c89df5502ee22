// What a message window offers in each state of its message, by its table of commands alone.

#include "mail/window/message_commands.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

namespace vorn {
namespace {

bool Is(bool (*says)(const MessageState&), const MessageState& state) {
  return says == nullptr || says(state);
}

// The entries of a menu by the letters of their keys; "-" for one that cannot be given.
QString Given(CommandPlace menu, const MessageState& state) {
  QString letters;
  for (const MessageCommand& command : MessageCommands()) {
    if (command.place != menu) continue;
    const QString text = command.traits.text ? command.traits.text(state) : command.text;
    const bool isGiven = Is(command.traits.isEnabled, state);
    letters += isGiven ? text.mid(text.lastIndexOf(u'&') + 1, 1) : QStringLiteral("-");
  }
  return letters;
}

QString Buttons(const MessageState& state) {
  QStringList names;
  for (const MessageCommand& command : MessageCommands()) {
    const CommandTraits& traits = command.traits;
    if (command.place != CommandPlace::CommandBar || !Is(traits.isShown, state)) continue;
    names.append(Is(traits.isEnabled, state) ? traits.name : u'(' + traits.name + u')');
  }
  return names.join(u' ');
}

struct Case {
  MessageState state;
  QString messages;  // what its menu gives
  QString buttons;
};

TEST(MessageCommandsTest, EachStateOffersWhatCanBeDone) {
  const MessageState begun{.isEditable = true};
  const MessageState draft{.isStored = true, .isEditable = true};
  const MessageState waiting{.status = kStatusWaiting, .isStored = true};
  const MessageState doubtful{.status = kStatusWaiting, .isStored = true, .isDoubtful = true};
  const MessageState sent{.status = kStatusSent, .isStored = true};
  const MessageState received{.status = kStatusReceived, .isStored = true};
  const MessageState unreadable{.status = kStatusReceived, .isStored = true, .isUnreadable = true};
  const MessageState stuck{.status = kStatusWaiting, .isStored = true, .isUnreadable = true};
  const Case cases[] = {
      {begun, QStringLiteral("S-----F---"), QStringLiteral("mailup file clip edit")},
      {draft, QStringLiteral("S----DF---"), QStringLiteral("mailup file clip edit")},
      {waiting, QStringLiteral("SRAFTDF---"), QStringLiteral("mailupdelete file (clip) edit")},
      {doubtful, QStringLiteral("-RAFTDF---"), QStringLiteral("(mailupdelete) file (clip) edit")},
      {sent, QStringLiteral("SRAFTDF---"), QStringLiteral("mailup file")},
      {received, QStringLiteral("-RAFTDFGXB"), QStringLiteral("replay file")},
      {unreadable, QStringLiteral("-----DF---"), QStringLiteral("file")},
      {stuck, QStringLiteral("S----DF---"), QStringLiteral("mailupdelete file (clip) edit")},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(Given(CommandPlace::MessagesMenu, each.state), each.messages) << &each - cases;
    EXPECT_EQ(Buttons(each.state), each.buttons) << &each - cases;
    const bool isPriorityFree = each.state.isEditable;
    EXPECT_EQ(Given(CommandPlace::PriorityMenu, each.state),
              isPriorityFree ? QStringLiteral("HNL") : QStringLiteral("---"));
  }
}

}  // namespace
}  // namespace vorn
