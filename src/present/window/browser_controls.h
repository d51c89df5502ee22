#pragma once

#include <QObject>

namespace vorn {

class BrowserHost;
class EngineView;
class FolderToolbar;
class PageLoader;
class ShownFolder;
class WebNavigation;
struct ShownPage;

/// A browser window's toolbar as a whole: shows how it stands with the page, and does what folders
/// and the web have in common, stopping and making anew, and following a link of the page.
class BrowserControls : public QObject {
 public:
  struct Parts {
    ShownPage& page;
    EngineView& engine;
    PageLoader& loader;
    ShownFolder& folder;
    WebNavigation& web;
    FolderToolbar& toolbar;
    BrowserHost& host;
  };

  explicit BrowserControls(const Parts& parts);

  /// Brings the toolbar in line with the page.
  void Show();

 private:
  void Seek();
  void FollowLink(const QString& address);

  Parts parts_;
};

}  // namespace vorn
