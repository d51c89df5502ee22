#include "mail/closing_rules.h"

#include <gtest/gtest.h>

namespace vorn {
namespace {

TEST(ClosingRules, NothingThatSomebodyWroteGoesWithoutAQuestion) {
  const LeftMessage fresh{.isNew = true, .isEditable = true, .isBlank = true};
  const LeftMessage reply{.isNew = true, .isAnswer = true, .isEditable = true};
  const LeftMessage draft{.isEditable = true};
  const LeftMessage read{};
  const auto with = [](LeftMessage message, bool LeftMessage::*what, bool is = true) {
    message.*what = is;
    return message;
  };
  const struct {
    LeftMessage message;
    Leaving careful;
    Leaving documented;
  } rules[] = {
      {fresh, Leaving::Dropped, Leaving::AskedAbout},
      {with(fresh, &LeftMessage::isBlank, false), Leaving::AskedAbout, Leaving::AskedAbout},
      {reply, Leaving::Dropped, Leaving::Dropped},
      {with(reply, &LeftMessage::isEdited), Leaving::AskedAbout, Leaving::AskedAbout},
      {draft, Leaving::StateKept, Leaving::StateKept},
      {with(draft, &LeftMessage::isBlank), Leaving::StateKept, Leaving::StateKept},
      {with(draft, &LeftMessage::isEdited), Leaving::Stored, Leaving::Stored},
      {with(draft, &LeftMessage::isErased), Leaving::AskedAboutAnew, Leaving::AskedAboutAnew},
      {read, Leaving::StateKept, Leaving::StateKept},
      {with(read, &LeftMessage::isErased), Leaving::StateKept, Leaving::StateKept},
      {with(read, &LeftMessage::isEdited), Leaving::StateKept, Leaving::StateKept},
      {with(draft, &LeftMessage::isUnreadable), Leaving::StateKept, Leaving::StateKept},
      {with(fresh, &LeftMessage::isUnreadable), Leaving::StateKept, Leaving::StateKept},
  };
  for (size_t i = 0; i < std::size(rules); ++i) {
    EXPECT_EQ(RuleOfLeaving(rules[i].message, true), rules[i].careful) << i;
    EXPECT_EQ(RuleOfLeaving(rules[i].message, false), rules[i].documented) << i;
  }
}

}  // namespace
}  // namespace vorn
