#pragma once

#include <QObject>

class QWidget;

namespace vorn {

class EngineView;
class FolderToolbar;
class PageMaker;
class PageReading;
class PageRest;
struct ShownPage;

/// Brings into the view what a window's request asks for: a folder's page, which is made and then
/// loaded, or taken over by the page in sight; a web page; words of the program's own.
class PageLoader : public QObject {
  Q_OBJECT

 public:
  /// `window` bears the page's title.
  PageLoader(ShownPage& page, EngineView& engine, PageReading& reading, PageMaker& maker,
             PageRest& rest, FolderToolbar& toolbar, QWidget& window);

  /// Shows what the request asks for from now on.
  void Show();
  /// Makes or loads the same anew, unless nobody sees it.
  void Refresh();
  /// Loads the request's "url", which is that of a folder's page that has just been made.
  void Load();
  /// Shows words of the program's own, HTML, in the place of a folder.
  void ShowOwnPage(const QString& title, const QString& html);
  bool HasOwnPage() const { return !ownPage_.isEmpty(); }

 Q_SIGNALS:
  /// It stands otherwise with the page than before.
  void Changed();
  /// There is no folder's page now, but words in its place.
  void TextShown();
  /// A page has been loaded, or has taken the place of the one before; false when it could not be.
  void Loaded(bool ok);

 private:
  void ConnectMaker();
  bool Make();
  bool Replace();
  void LoadAnew();
  void ShowText(const QString& html);
  void SetLoading(bool loading);
  void End(bool ok);

  ShownPage& page_;
  EngineView& engine_;
  PageReading& reading_;
  PageMaker& maker_;
  PageRest& rest_;
  FolderToolbar& toolbar_;
  QWidget& window_;
  QString ownPage_;
};

}  // namespace vorn
