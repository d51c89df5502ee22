#pragma once

#include <QElapsedTimer>
#include <QEvent>
#include <QStatusBar>
#include <QTimer>
#include <functional>
#include <utility>
#include <vector>

#include "transfer/results/transfer_events.h"

class QLabel;
class QToolButton;

namespace vorn {

class ElidingLabel;

/// How long the status bar offers to take something back.
enum class OfferLasts {
  WhileAtIt,  ///< until the user goes on with something else
  Minutes,    ///< wherever he looks meanwhile
};

/// The main window's status bar "sbStatus": its first panel shows the session that runs, what
/// it does and how far it is, with a button that ends it.
class MainStatusBar : public QStatusBar, public StatusPanel {
  Q_OBJECT

 public:
  explicit MainStatusBar(QWidget* parent = nullptr);

  void ShowStatus(const QString& text, const QString& icon) override;
  void ShowWork(const QString& words) override;
  /// A check begins. Whoever asks for it wants to know what came of it.
  void BeginCheck(bool isAsked);
  /// Says what a session brought, beside what the others of the same check brought: a failure does
  /// not hide what another one received. Failures stay until something else is said. Empty: it
  /// brought nothing, which is said to who asked for it. Where several bring something, each is
  /// said with what it is `about`, the account's name.
  void Tell(const QString& sentence, bool isFailure, const QString& about = {});
  /// Says something in passing.
  void ShowForAWhile(const QString& sentence);
  /// Says how many messages are chosen on the page in use; nothing for one or none.
  void ShowChosen(int count);
  /// Says for a while what was done, with a button that takes it back, and what was done before it.
  /// Ctrl+Z does so afterwards, too.
  void OfferUndo(const QString& done, std::function<void()> undo,
                 OfferLasts lasts = OfferLasts::WhileAtIt);
  /// Takes the last step back.
  void TakeBack();
  /// The user goes on with something else, which ends what is offered while he is at it.
  void EndOffer();
  /// What was done cannot be taken back any more.
  void ForgetSteps();

 Q_SIGNALS:
  void CancelClicked();
  /// The user wants the last step taken back.
  void UndoWanted();

 protected:
  /// A menu that is opened has no word for the bar, and must not take away what stands there.
  bool eventFilter(QObject* watched, QEvent* event) override {
    return event->type() == QEvent::StatusTip || QStatusBar::eventFilter(watched, event);
  }
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Step {
    QString done;
    std::function<void()> undo;
  };

  // What a check brought so far.
  struct CheckWords {
    QList<std::pair<QString, QString>> results = {};  // about whom, what
    QStringList failures = {};
    QString shown = {};
    bool isAsked = false;
    QElapsedTimer sinceShown = {};
  };

  void BuildPanel();
  void BuildOffer();
  void ShowOffer(const QString& sentence, OfferLasts lasts);
  void HideOffer();
  QStringList Results() const;
  void Show(const QString& sentences);
  void MakeRoom(const QString& message);

  CheckWords check_;
  QLabel* icon_;
  ElidingLabel* work_;
  QLabel* text_;
  QLabel* unit_;
  QToolButton* cancel_;
  QLabel* chosen_;
  QWidget* panel_;
  QWidget* offer_;
  ElidingLabel* done_;
  QToolButton* takeBack_;
  std::vector<Step> steps_;  // the last one first to be taken back
  QTimer offered_;
  OfferLasts lasts_ = OfferLasts::WhileAtIt;
};

}  // namespace vorn
