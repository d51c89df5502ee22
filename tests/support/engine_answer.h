#pragma once

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <optional>

#include "support/test_profile.h"

namespace vorn::test {

/// What the browser engine answers to `ask`, which hands on a function for the answer. The engine
/// forgets a question when the document goes, so that it is asked again after a while; and it
/// answers with nothing when the page is taken away, when no variable of the test is there any
/// more: the answer goes into one that the question keeps.
template <typename Answer>
Answer AnswerTo(const std::function<void(const std::function<void(const Answer&)>&)>& ask) {
  constexpr qint64 kAskAgainMs = 1000;
  const auto answer = std::make_shared<std::optional<Answer>>();
  QElapsedTimer asked;
  EXPECT_TRUE(WaitFor([&] {
    if (!asked.isValid() || asked.hasExpired(kAskAgainMs)) {
      asked.start();
      ask([answer](const Answer& given) { *answer = given; });
    }
    return answer->has_value();
  }));
  return answer->value_or(Answer());
}

}  // namespace vorn::test
