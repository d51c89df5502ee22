#pragma once

#include <QElapsedTimer>
#include <QObject>

class QWidget;

namespace vorn {

class EngineView;
class PageChange;

/// Lets the page of a browser window that nobody sees go, with its view, and has it made anew when
/// it is seen. Gives the keyboard to the page without taking it from anybody.
class PageRest : public QObject {
  Q_OBJECT

 public:
  /// `around` is the widget within `window` in which the page stands.
  PageRest(EngineView& engine, PageChange& change, QWidget& window, QWidget& around);

  /// Once the page has told its place, it goes.
  void Begin();
  /// Makes the page anew that was let go.
  void Wake();
  /// The page has ended by itself: another one is made, with a process of its own, unless that
  /// ended so as well just now.
  void Renew();
  /// The page is made anew for another reason.
  void End() { rests_ = false; }
  bool IsResting() const { return rests_; }
  /// Gives the keyboard to the page, unless something else in another part of the program has it.
  void TakeKeys();

 Q_SIGNALS:
  /// The page has gone.
  void Gone();
  /// It is to be made anew.
  void AnewWanted();

 private:
  void LetGo();
  bool HasKeysNear() const;

  EngineView& engine_;
  PageChange& change_;
  QWidget& window_;
  QWidget& around_;
  bool rests_ = false;
  QElapsedTimer sinceEnd_;
};

}  // namespace vorn
