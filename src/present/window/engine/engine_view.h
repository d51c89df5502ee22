#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

#include "present/window/engine/page_links.h"
#include "storage/context.h"

class QPoint;
class QUrl;
class QVariant;
class QWebEngineView;
class QWidget;

namespace vorn {

class BrowserProfiles;
class LinkPage;
class ScriptBar;

/// The engine's view in a browser window, with the page in it. Both may go and come; what they tell
/// is passed on here until they are let go.
class EngineView : public QObject {
  Q_OBJECT

 public:
  /// Makes a view in `window`, as yet without a page.
  EngineView(Context& context, const BrowserProfiles& profiles, QWidget& window);
  ~EngineView() override { Close(); }

  /// Has a page for the local world or for the web, and a view if there is none.
  void Use(bool local);
  /// Lets view and page go, with the memory that they take.
  void LetGo();
  /// Lets them go for good: what the page was asked is not answered any more.
  void Close();
  /// There is none after they were let go.
  QWebEngineView* View() const { return view_; }
  LinkPage* Page() const { return page_; }
  /// What is followed and wanted in the page.
  PageLinks& Links() { return links_; }
  /// The line above a web page whose scripts do not run.
  ScriptBar* Scripts() const { return scripts_; }

  /// Loads a local page or one of the web; the page is one for that. `first` is a script of the
  /// program's that the new document runs before anything else; empty for none.
  void Load(const QUrl& url, bool local, const QString& first = {});
  /// What is seen where a local page that is loaded next, or is still to come, has no background:
  /// one that offers a dark scheme stands on what the windows' texts stand on, others on white.
  void StandOn(bool offersDark);
  /// Whether a folder's page was loaded last, and in the font that is wanted now.
  bool ShowsFolder() const;
  /// Shows words of the program's own, on a local page.
  void ShowHtml(const QString& html);
  /// Asks the page by a script of the program's. The answer is empty when the page goes.
  void Ask(const QString& script, const std::function<void(const QVariant&)>& then);

 Q_SIGNALS:
  /// There is another view than before.
  void Remade();
  void LoadBegan();
  void LoadEnded(bool ok);
  /// The page has another address or title.
  void PlaceChanged();
  /// The menu is wanted at a place of the screen.
  void MenuWanted(const QPoint& at);
  /// The menu is wanted by a key.
  void KeyMenuWanted();
  void PrintEnded();
  /// The page's process has ended.
  void Crashed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeView();

  const BrowserProfiles& profiles_;
  QWidget& window_;
  ScriptBar* scripts_;
  QWebEngineView* view_ = nullptr;
  LinkPage* page_ = nullptr;
  PageLinks links_;
  QString fontStyle_;  // of the page that was loaded last
  bool isLocal_ = false;
  bool closed_ = false;
};

}  // namespace vorn
