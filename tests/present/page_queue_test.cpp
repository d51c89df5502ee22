// What a folder's page is asked while it answers late, goes, and comes again.
#include "present/page_queue.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

namespace vorn {
namespace {

// A page that answers when it is told to, and then with the question.
class SlowPage {
 public:
  PageQueue::Ask Asker() {
    return [this](const QString& script, const PageQueue::Answer& then) {
      heard_.append(script.toInt());
      open_.append({script, then});
    };
  }
  void Answer() {
    if (open_.isEmpty()) return;
    const auto [script, then] = open_.takeFirst();
    then(script);
  }
  void Lose() { open_.clear(); }
  bool HasOpen() const { return !open_.isEmpty(); }
  const QList<int>& Heard() const { return heard_; }

 private:
  QList<std::pair<QString, PageQueue::Answer>> open_;
  QList<int> heard_;
};

TEST(PageQueueTest, WhatWaitsIsAskedOfTheNextVersionOrOfNone) {
  SlowPage page;
  PageQueue queue(page.Asker());
  QStringList answers;
  const auto note = [&answers](const QVariant& answer) { answers.append(answer.toString()); };
  queue.Run(QStringLiteral("1"), note);
  EXPECT_EQ(answers, QStringList(QString())) << "there is no page";
  queue.BeginLoading();
  queue.Run(QStringLiteral("2"), note);
  queue.EndLoading();
  queue.RunFirst(QStringLiteral("3"), note);
  EXPECT_EQ(page.Heard(), QList<int>({3}));
  queue.Resume();
  EXPECT_EQ(page.Heard(), QList<int>({3, 2}));
  queue.Expect();
  queue.Run(QStringLiteral("4"), note);
  queue.Drop();
  queue.Resume();
  EXPECT_EQ(page.Heard(), QList<int>({3, 2})) << "it was not meant for what comes";
  EXPECT_EQ(answers.size(), 2);
  // What takes back what was done is done in any case, unless something before it is not.
  int takenBack = 0;
  queue.Expect();
  queue.After([&] { ++takenBack; });
  queue.Run(QStringLiteral("5"));
  queue.After([&] { ++takenBack; });
  queue.RunAlone(QStringLiteral("6"), note);
  queue.Drop();
  queue.Resume();
  for (int i = 0; i < 5; ++i) {
    page.Answer();
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(takenBack, 1);
  EXPECT_EQ(answers.size(), 4) << "3 and 2, which had been asked";
  queue.Run(QStringLiteral("7"), note);
  queue.Close();
  page.Answer();
  EXPECT_EQ(answers.size(), 4) << "the window has gone";
}

TEST(PageQueueTest, OneThatIsAskedAloneEndsBeforeTheNextBegins) {
  SlowPage page;
  PageQueue queue(page.Asker());
  queue.EndLoading();
  queue.Resume();
  int done = 0;
  queue.RunAlone(QStringLiteral("1"), [&](const QVariant&) {
    queue.GoOn(QStringLiteral("2"), [&](const QVariant&) {
      ++done;
      queue.Expect();  // as one that makes the page anew
    });
  });
  queue.Run(QStringLiteral("3"));
  const auto answer = [&] {
    page.Answer();
    QCoreApplication::processEvents();
  };
  answer();
  EXPECT_EQ(page.Heard(), QList<int>({1, 2}));
  answer();
  EXPECT_EQ(done, 1);
  EXPECT_EQ(page.Heard(), QList<int>({1, 2}));
  queue.Resume();
  EXPECT_EQ(page.Heard(), QList<int>({1, 2, 3}));
  // A document that goes takes the answer along: what was to come after it is dropped, and nothing
  // waits for ever.
  queue.RunAlone(QStringLiteral("4"), [&](const QVariant&) { ++done; });
  queue.Run(QStringLiteral("5"));
  page.Lose();
  queue.BeginLoading();
  queue.EndLoading();
  queue.Resume();
  EXPECT_EQ(page.Heard().last(), 4);
  queue.Run(QStringLiteral("5"));
  EXPECT_EQ(page.Heard().last(), 5);
  EXPECT_EQ(done, 1);
  // Another folder comes after the answer and before it is acted upon.
  queue.RunAlone(QStringLiteral("6"), [&](const QVariant&) { ++done; });
  page.Answer();
  page.Answer();
  queue.Drop();
  queue.Run(QStringLiteral("7"));
  EXPECT_EQ(page.Heard().last(), 7) << "there it waits for nothing";
  QCoreApplication::processEvents();
  EXPECT_EQ(done, 2) << "what it was meant for has been done";
}

// Asks, answers, makes versions, loads, dies and goes to other folders in any order.
class RandomPage {
 public:
  explicit RandomPage(quint32 seed)
      : random_(seed), queue_([this](const QString& script, const PageQueue::Answer& then) {
          Hear(script.toInt());
          open_.append(then);
        }) {}

  void Step() {
    switch (random_.bounded(9)) {
      case 0:
      case 1:
        Ask();
        break;
      case 2:
        isAlone_.insert(++asked_);
        queue_.RunAlone(QString::number(asked_), Note(asked_));
        break;
      case 3:
      case 4:
        if (!open_.isEmpty()) open_.takeFirst()({});
        break;
      case 5:
        if (queue_.HasPage()) queue_.Expect();
        isComing_ = true;
        break;
      case 6:
        if (queue_.HasPage()) Resume();
        break;
      case 7:
        open_.clear();
        under_.clear();
        isComing_ = true;
        queue_.BeginLoading();
        queue_.EndLoading();
        if (random_.bounded(2) == 0) Resume();
        break;
      default:
        under_.clear();
        random_.bounded(3) == 0 ? queue_.Shut() : queue_.Drop();
    }
    if (random_.bounded(2) == 0) QCoreApplication::processEvents();
  }
  // Everything is answered in the end, but for what went with a document.
  void End() {
    open_.clear();
    under_.clear();
    queue_.EndLoading();
    Resume();
    Ask();
    for (int i = 0; i < 1000 && last_ != asked_; ++i) {
      if (!open_.isEmpty()) open_.takeFirst()({});
      QCoreApplication::processEvents();
    }
    EXPECT_EQ(last_, asked_) << "something waits for ever";
  }

 private:
  void Ask() {
    ++asked_;
    queue_.Run(QString::number(asked_), Note(asked_));
  }
  void Resume() {
    isComing_ = false;
    queue_.Resume();
  }
  void Hear(int number) {
    EXPECT_FALSE(isComing_) << number;
    EXPECT_TRUE(under_.isEmpty()) << number << " beside one that is asked alone";
    EXPECT_GT(number, last_);
    last_ = number;
    if (isAlone_.contains(number)) under_.insert(number);
  }
  PageQueue::Answer Note(int number) {
    return [this, number](const QVariant&) {
      EXPECT_FALSE(answered_.contains(number)) << number;
      answered_.insert(number);
      under_.remove(number);
    };
  }

  QRandomGenerator random_;
  PageQueue queue_;
  QList<PageQueue::Answer> open_;
  QSet<int> isAlone_;
  QSet<int> under_;  // of those the ones that were heard and have not ended
  QSet<int> answered_;
  bool isComing_ = false;
  int asked_ = 0;
  int last_ = 0;  // that was heard
};

TEST(PageQueueTest, QuestionsKeepTheirOrderAndAreAnsweredOnce) {
  const quint32 seed = test::Seed("VORN_PAGE_SEED");
  for (int round = 0; round < test::Rounds(500, 50000) && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "VORN_PAGE_SEED=" << seed << ", round " << round);
    RandomPage page(seed + static_cast<quint32>(round));
    for (int step = 0; step < 80; ++step) page.Step();
    page.End();
  }
}

}  // namespace
}  // namespace vorn
