#pragma once

#include <QElapsedTimer>
#include <QObject>

class QWidget;

namespace vorn {

class EngineView;
class LongSearch;
class PagePrinting;
class PageReading;
struct ShownPage;

/// Lets a folder's page that nobody sees go, with its view and the memory that it takes in the
/// engine, and has it made anew when it is seen. Its place and its choice are kept. Gives the
/// keyboard to the page without taking it from anybody.
class PageRest : public QObject {
  Q_OBJECT

 public:
  /// `around` is the widget within `window` in which the page stands.
  PageRest(ShownPage& page, EngineView& engine, PageReading& reading, const LongSearch& search,
           const PagePrinting& printing, QWidget& window, QWidget& around);

  /// Nobody sees the page for now. Once it has told its place, it goes.
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
  bool MayGo() const;
  void LetGo();
  bool HasKeysNear() const;

  ShownPage& page_;
  EngineView& engine_;
  PageReading& reading_;
  const LongSearch& search_;
  const PagePrinting& printing_;
  QWidget& window_;
  QWidget& around_;
  bool isUnseen_ = false;
  bool rests_ = false;
  QElapsedTimer sinceEnd_;
};

}  // namespace vorn
