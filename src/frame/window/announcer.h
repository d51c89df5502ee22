#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>

class QWebEnginePage;
class QWebEngineView;
class QWindow;

namespace vorn {

class BrowserWindow;
class ParentWindow;

/// Tells a script that drives the program by keys what has become true, one line each, so that it
/// need not guess from the window system or the clock:
///
///     shown NAME                a window or menu is there: its object name, else its class
///     closed NAME               it is no more
///     active NAME | active -    it has the keyboard now; "-": no window of the program has it
///     focus NAME                the control in it that has
///     enabled NAME              a button can be pressed again
///     loaded NAME               a view of the browser engine has got its page
///     page FOLDER ROWS          a folder's page is loaded and painted, with so many messages
///     session ended received N sent N errors N    counted since the program began
///     settled PROBE KEYS        the answer to a probe
///
/// A probe is the key Pause (PROBE 0) or Shift+Pause (1), which the program's windows never see.
/// KEYS counts the other key presses that arrived before it, modifiers left out. The answer comes
/// when all that had happened by then is on the screen, pages of the browser engine included. As
/// the window system keeps keys in order, a script knows from it whether a key was lost.
///
/// No line holds what a message or the user said.
class Announcer : public QObject {
 public:
  using Say = std::function<void(const QString& line)>;

  /// Watches the running application; `say` is given every line without its end.
  explicit Announcer(Say say);
  /// Puts lines onto the standard output at once.
  static void ToStandardOutput(const QString& line);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void WindowEvent(QWidget& window, int type);
  void FollowView(QWebEngineView& view);
  void FollowBrowser(BrowserWindow& browser);
  void FollowParent(ParentWindow& parent);
  void FocusMoved(const QWindow* window);
  void PageLoaded(BrowserWindow& browser);
  bool TakeProbe(bool shift);
  void Settle();
  void AwaitExposure();
  void AwaitPages(const QList<QPointer<QWebEnginePage>>& pages);
  void Answer();
  void WhenPainted(const QPointer<QWebEnginePage>& page, const std::function<void()>& then);
  void Look(const QPointer<QWebEnginePage>& page, const QString& script,
            const std::function<void()>& then);

  Say say_;
  int keys_ = 0;
  QStringList probes_;       // not answered yet
  qsizetype answering_ = 0;  // so many of them when the last one is reached; 0: none
  int paintings_ = 0;        // numbers what pages are asked to paint
};

}  // namespace vorn
