// Keys, mail and orders while the page of a folder is made anew, by a page that answers late, takes
// some versions over and has to be loaded for others.
#include "present/page_change.h"

#include <gtest/gtest.h>

#include <utility>

#include "present/page_place.h"
#include "present/page_queue.h"
#include "present/page_rows.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

QByteArray PageOf(const QStringList& messages) {
  return messages.join(u' ').toUtf8();
}

// The page's own script, as far as it says which message is the current one.
class FakePage {
 public:
  void Ask(const QString& script, const PageQueue::Answer& then) {
    open_.append([this, script, then] { then(Run(script)); });
  }
  bool HasOpen() const { return !open_.isEmpty(); }
  void AnswerOne() {
    if (HasOpen()) open_.takeFirst()();
  }
  // It has too much to do.
  void AnswerNothing() { open_.clear(); }
  // Another document: what is open is answered by the one that goes, as the engine does before.
  void Load(const QByteArray& page, const QString& place) {
    while (HasOpen()) AnswerOne();
    rows_ = QString::fromUtf8(page).split(u' ', Qt::SkipEmptyParts);
    gone_.clear();
    current_.clear();
    if (!place.isEmpty()) Restore(QJsonDocument::fromJson(place.toUtf8())[0].toString());
  }
  bool takesOver_ = true;
  QString current_;

 private:
  QVariant Run(const QString& script) {
    if (!script.startsWith(QStringLiteral("window.vorn && vorn."))) return {};
    const QString call = script.mid(20);
    if (call.startsWith(u"state(")) return State();
    if (call.startsWith(u"count(")) return rows_.size();
    if (call.startsWith(u"current(")) return current_;
    if (call.startsWith(u"take(")) return Take();
    if (call.startsWith(u"step(1,")) return Step();
    if (call.startsWith(u"remove(")) return Remove(call);
    if (call.startsWith(u"goToMessage(")) return GoTo(call.section(u'\'', 1, 1));
    if (call.startsWith(u"follow(")) return Follow(call.section(u'\'', 1, 1));
    if (call.startsWith(u"replace(")) return Replace(call);
    return true;
  }
  QVariant Replace(const QString& call) {
    if (!takesOver_) return {};
    const QString page = call.section(u'\'', 1, 1);
    const QString place = call.mid(call.indexOf(u"...") + 3).chopped(1);
    const QString state = State();
    rows_ =
        QString::fromUtf8(QByteArray::fromBase64(page.toLatin1())).split(u' ', Qt::SkipEmptyParts);
    gone_.clear();
    const QString given = QJsonDocument::fromJson(place.toUtf8())[0].toString();
    Restore(given.isEmpty() ? state : given);
    return rows_.size();
  }
  QStringList There() const {
    QStringList there = rows_;
    there.removeIf([this](const QString& row) { return gone_.contains(row); });
    return there;
  }
  QString State() const {
    const qsizetype from = There().indexOf(current_);
    const QStringList next = from < 0 ? QStringList() : There().mid(from);
    return QString::fromUtf8(
        QJsonDocument(QJsonObject{{QStringLiteral("next"), QJsonArray::fromStringList(next)}})
            .toJson(QJsonDocument::Compact));
  }
  void Restore(const QString& state) {
    current_.clear();
    const QJsonArray next = QJsonDocument::fromJson(state.toUtf8())[u"next"].toArray();
    for (const auto& row : next) {
      if (current_.isEmpty() && rows_.contains(row.toString())) current_ = row.toString();
    }
  }
  QVariant Take() {
    if (current_.isEmpty()) return QStringList();
    const QStringList taken(current_);
    const qsizetype from = There().indexOf(current_);
    gone_ += taken;
    current_ = There().value(qMin(from, There().size() - 1));
    return taken;
  }
  QVariant Remove(const QString& call) {
    const QStringList before = There();
    const qsizetype from = before.indexOf(current_);
    const auto left = QJsonDocument::fromJson(call.mid(7).chopped(1).toUtf8()).array();
    for (const auto& row : left) {
      if (rows_.contains(row.toString())) gone_.append(row.toString());
    }
    if (gone_.contains(current_)) current_ = There().value(qMin(from, There().size() - 1));
    return true;
  }
  QVariant GoTo(const QString& message) {
    current_ = There().contains(message) ? message : QString();
    return !current_.isEmpty();
  }
  QVariant Follow(const QString& message) {
    if (There().contains(message)) current_ = message;
    return true;
  }
  QVariant Step() {
    current_ = There().value(qMin(There().indexOf(current_) + 1, There().size() - 1));
    return true;
  }

  QList<std::function<void()>> open_;
  QStringList rows_;
  QStringList gone_;
};

// A window with that page, in the order in which a window does things.
class Desk {
 public:
  explicit Desk(quint32 seed)
      : random_(seed),
        queue_([this](const QString& script, const PageQueue::Answer& then) {
          page_.Ask(script, then);
        }),
        rows_(queue_),
        change_(queue_, rows_, place_) {
    for (int i = 0; i < 40; ++i) folder_.append(QString::number(1000 + i));
  }

  void Open(const QString& message) {
    place_.BeginAtMessage(SerialId(message));
    LoadPage();
    Settle();
  }
  void Delete() {
    rows_.Take([this](const SerialIds& messages) {
      QTimer::singleShot(0, &context_, [this, messages] {
        for (const QString& message : TextsOf(messages)) {
          if (folder_.removeOne(message)) deleted_.append(message);
        }
        rows_.Remove(messages);
        Refresh();
      });
    });
  }
  void TakeBack() {
    queue_.After([this] {
      if (deleted_.isEmpty()) return;
      const QString message = deleted_.takeLast();
      folder_.append(message);
      folder_.sort();
      if (random_.bounded(2) == 0) Refresh();
      place_.BeginAtMessage(SerialId(message));
      Refresh();
    });
  }
  // As the next unopened message, which is sought in the store.
  void GoToNext() {
    rows_.CurrentAlone([this](const SerialId& message) {
      const qsizetype at = folder_.indexOf(message.Text());
      const SerialId next(folder_.value(qMin(at + 3, folder_.size() - 1)));
      rows_.GoToMessage(next, [this, next] {
        place_.BeginAtMessage(next);
        Refresh();
      });
    });
  }
  // The folder's messages have to be looked for, or have been found.
  void BeSlow(bool isSlow) { isSlow_ = isSlow; }
  // The next version cannot be made at once.
  void Stay() {
    change_.Keep([this] {
      if (place_.IsOrdered()) return MakePage();
      if (!isLoading_) change_.Stay();
    });
  }
  void StepDown() { rows_.Step(1, false); }
  void Refresh() {
    change_.Keep([this] { MakePage(); });
  }
  void Receive() {
    folder_.prepend(QStringLiteral("0%1").arg(999 - received_++));
    Refresh();
  }
  void OpenAnother() {
    change_.LeavePlace();
    folder_ = {QStringLiteral("5000")};
    deleted_.clear();
    place_.BeginAtEnd(false);
    MakePage();
  }
  // The page answers and the engine loads, some time.
  void GoOn() {
    page_.takesOver_ = random_.bounded(4) != 0;
    if (isLoading_ && random_.bounded(3) == 0) return EndLoading();
    if (isLoading_ && random_.bounded(3) == 0) ShowLoaded();
    if (random_.bounded(2) == 0) page_.AnswerOne();
    if (random_.bounded(2) == 0) QCoreApplication::processEvents();
  }
  void Settle() {
    for (int quiet = 0; quiet < 3; ++quiet) {
      if (page_.HasOpen() || isLoading_) quiet = 0;
      while (page_.HasOpen()) page_.AnswerOne();
      if (isLoading_) EndLoading();
      QCoreApplication::processEvents();
    }
  }
  // The user clicks a row of a page whose loading has not come to its end.
  void ClickEarly(const QString& message) {
    LoadPage();
    ShowLoaded();
    Click(message);
  }
  // The page answers what it was asked first.
  void AnswerOne(bool takesOver) {
    page_.takesOver_ = takesOver;
    page_.AnswerOne();
  }
  // He clicks a row of the page in whose place another one is already being loaded.
  void ClickLate(const QString& message) {
    LoadPage();
    Click(message);
  }
  void Click(const QString& message) {
    page_.current_ = message;
    change_.NoteRow(SerialId(message), true);
  }
  void BeBusy() { page_.AnswerNothing(); }
  bool IsLoading() const { return isLoading_; }
  QStringList Folder() const { return folder_; }
  QString Current() const { return page_.current_; }

 private:
  void MakePage() {
    if (isSlow_) return change_.Stay();
    const QByteArray page = PageOf(folder_);
    const bool canReplace = !isLoading_;
    if (!canReplace || !change_.Replace(page, [this](bool is) { is ? void() : LoadPage(); })) {
      LoadPage();
    }
  }
  void LoadPage() {
    change_.BeginLoading();
    isLoading_ = true;
    isSeen_ = false;
    loaded_ = PageOf(folder_);
    loadedAt_ = place_.ForLoading();
  }
  void ShowLoaded() {
    if (std::exchange(isSeen_, true)) return;
    page_.Load(loaded_, loadedAt_);
    if (!loadedAt_.isEmpty()) change_.NoteRow(SerialId(page_.current_), false);
  }
  void EndLoading() {
    ShowLoaded();
    isLoading_ = false;
    change_.EndLoading();
  }

  QRandomGenerator random_;
  QObject context_;
  FakePage page_;
  PageQueue queue_;
  PageRows rows_;
  PagePlace place_;
  PageChange change_;
  QStringList folder_;
  QStringList deleted_;
  int received_ = 0;
  bool isLoading_ = false;
  bool isSeen_ = false;
  bool isSlow_ = false;
  QByteArray loaded_;
  QString loadedAt_;
};

// However late the page is, keys do what they do in a list that stands still.
TEST(PageChangeTest, KeysMeanWhatTheOnesBeforeThemHaveLedTo) {
  const quint32 seed = test::Seed("VORN_PAGE_SEED");
  for (int round = 0; round < test::Rounds(500, 50000) && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "VORN_PAGE_SEED=" << seed << ", round " << round);
    QRandomGenerator random(seed + static_cast<quint32>(round));
    Desk desk(random.generate());
    QStringList folder = desk.Folder();
    QStringList deleted;
    QString current = folder[15];
    desk.Open(current);
    QStringList done;
    for (int step = 0; step < 30; ++step) {
      const qsizetype at = folder.indexOf(current);
      switch (random.bounded(10)) {
        case 0:
        case 1:
          done.append(QStringLiteral("delete"));
          desk.Delete();
          deleted.append(current);
          folder.removeAt(at);
          current = folder[qMin(at, folder.size() - 1)];
          break;
        case 2:
          done.append(QStringLiteral("back"));
          desk.TakeBack();
          if (deleted.isEmpty()) break;
          current = deleted.takeLast();
          folder.append(current);
          folder.sort();
          break;
        case 3:
          done.append(QStringLiteral("down"));
          desk.StepDown();
          current = folder[qMin(at + 1, folder.size() - 1)];
          break;
        case 4:
          done.append(QStringLiteral("mail"));
          desk.Receive();
          break;
        case 5:
          done.append(QStringLiteral("next"));
          desk.GoToNext();
          current = folder[qMin(at + 3, folder.size() - 1)];
          break;
        case 6:
          done.append(QStringLiteral("stay"));
          desk.Stay();
          break;
        default:
          for (int i = random.bounded(6); i > 0; --i) desk.GoOn();
      }
    }
    desk.Settle();
    QStringList own = desk.Folder();
    own.removeIf([](const QString& message) { return message.startsWith(u'0'); });
    EXPECT_EQ(own, folder) << done.join(u' ').toStdString();
    EXPECT_EQ(desk.Current(), current) << done.join(u' ').toStdString();
  }
}

TEST(PageChangeTest, WhatIsMeantForAMessageThatIsYetToBeFoundIsDoneToNoOther) {
  Desk desk(1);
  desk.Open(QStringLiteral("1010"));
  const QStringList folder = desk.Folder();
  desk.Delete();
  desk.Settle();
  desk.BeSlow(true);
  desk.TakeBack();
  desk.Delete();
  desk.Settle();
  EXPECT_EQ(desk.Folder(), folder);
  desk.BeSlow(false);
  desk.Refresh();
  desk.Settle();
  EXPECT_EQ(desk.Current(), QStringLiteral("1010"));
}

TEST(PageChangeTest, WhoIsQuickerThanTheEndOfALoadingIsWhereHeWentWhenMailComes) {
  Desk desk(1);
  desk.Open(QStringLiteral("1010"));
  desk.ClickEarly(QStringLiteral("1020"));
  desk.Receive();
  desk.Settle();
  EXPECT_EQ(desk.Current(), QStringLiteral("1020"));
}

TEST(PageChangeTest, AnotherFolderIsLoadedThoughThePageTookOverWhatWasSentBefore) {
  Desk desk(1);
  desk.Open(QStringLiteral("1010"));
  desk.Refresh();
  desk.AnswerOne(true);  // where the user is
  desk.OpenAnother();
  desk.AnswerOne(true);
  desk.AnswerOne(false);
  desk.Settle();
  desk.StepDown();
  desk.Delete();
  desk.Settle();
  EXPECT_EQ(desk.Folder(), QStringList());
}

TEST(PageChangeTest, WhoClicksThePageThatGoesIsThereOnTheOneThatComes) {
  Desk desk(1);
  desk.Open(QStringLiteral("1010"));
  desk.ClickLate(QStringLiteral("1020"));
  desk.Settle();
  EXPECT_EQ(desk.Current(), QStringLiteral("1020"));
  desk.Click(desk.Current());  // as the page tells
  desk.ClickLate(QStringLiteral("no such row"));
  desk.Settle();
  EXPECT_EQ(desk.Current(), QStringLiteral("1020"));
}

TEST(PageChangeTest, WhoHasLeftHisRowIsNotLedBackToIt) {
  PagePlace place;
  place.BeginAtMessage(SerialId(QStringLiteral("1010")));
  place.Restored(place.Number());
  place.NoteRow(SerialId(), false);
  EXPECT_TRUE(place.ForLoading().contains(u"1010"));
  place.NoteRow(SerialId(), true);
  EXPECT_TRUE(place.ForLoading().isEmpty());
}

// It is loaded then, at the place that is known.
TEST(PageChangeTest, APageThatDoesNotAnswerLosesNoPlace) {
  Desk still(1);
  still.Open(QStringLiteral("1010"));
  Desk clicked(1);
  clicked.Open(QStringLiteral("1010"));
  clicked.Click(QStringLiteral("1020"));
  for (Desk* desk : {&still, &clicked}) desk->Receive();
  EXPECT_TRUE(test::WaitFor([&] {
    for (Desk* desk : {&still, &clicked}) desk->BeBusy();
    return still.IsLoading() && clicked.IsLoading();
  }));
  for (Desk* desk : {&still, &clicked}) desk->Settle();
  EXPECT_EQ(still.Current(), QStringLiteral("1010"));
  EXPECT_EQ(clicked.Current(), QStringLiteral("1020"));
}

TEST(PageChangeTest, KeysOfAFolderAreDoneInNoOther) {
  const quint32 seed = test::Seed("VORN_PAGE_SEED");
  for (int round = 0; round < test::Rounds(500, 50000) && !testing::Test::HasFailure(); ++round) {
    SCOPED_TRACE(testing::Message() << "VORN_PAGE_SEED=" << seed << ", round " << round);
    QRandomGenerator random(seed + static_cast<quint32>(round));
    Desk desk(random.generate());
    desk.Open(QStringLiteral("1010"));
    for (int i = random.bounded(4); i >= 0; --i) {
      const int key = random.bounded(3);
      key == 0 ? desk.Delete() : key == 1 ? desk.StepDown() : desk.TakeBack();
      for (int wait = random.bounded(4); wait > 0; --wait) desk.GoOn();
    }
    desk.OpenAnother();
    for (int wait = random.bounded(4); wait > 0; --wait) desk.GoOn();
    desk.Settle();
    EXPECT_EQ(desk.Folder(), QStringList(QStringLiteral("5000")));
    desk.StepDown();
    desk.Delete();
    desk.Settle();
    EXPECT_EQ(desk.Folder(), QStringList());
  }
}

}  // namespace
}  // namespace vorn
