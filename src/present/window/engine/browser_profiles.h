#pragma once

#include <QString>
#include <memory>

class QWebEngineProfile;

namespace vorn {

class AllowedSites;
class PageSource;

/// The browser engine's two worlds. Folder pages are local and hold what strangers wrote: no
/// scripts, nothing from the network, nothing kept. Web pages get an ordinary browser, of which
/// cookies, what was visited and which sites may run scripts are kept in memory.
class BrowserProfiles {
 public:
  /// `formerFolder` is where earlier versions kept the web pages' data, which goes.
  explicit BrowserProfiles(const QString& formerFolder);
  ~BrowserProfiles();

  QWebEngineProfile* Local() const { return local_.get(); }
  QWebEngineProfile* Web() const { return web_.get(); }

  /// What the local world shows.
  PageSource& Pages() const { return *pages_; }
  /// Shows folder pages in a font whatever their layout says, from the next page on that is loaded.
  /// An empty family and a size of 0 points leave it to the layout.
  void UseFont(const QString& family, int points);
  /// The rule for that font; empty for none.
  QString FontStyle() const { return fontStyle_; }

  AllowedSites& Sites() const { return *sites_; }

 private:
  QString fontStyle_;
  std::unique_ptr<PageSource> pages_;
  std::unique_ptr<QWebEngineProfile> local_;
  std::unique_ptr<QWebEngineProfile> web_;
  std::unique_ptr<AllowedSites> sites_;
};

}  // namespace vorn
