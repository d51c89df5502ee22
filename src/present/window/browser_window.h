#pragma once

#include <QWidget>
#include <memory>

#include "objects/request_window.h"
#include "present/shown_page.h"
#include "storage/context.h"

namespace vorn {

class BrowserControls;
class BrowserProfiles;
class EngineView;
class FolderToolbar;
class MessageListPages;
class PageLoader;
class PageMaker;
class PagePrinting;
class PageReading;
class PageRest;
class PageSplit;
class ShownFolder;
class WebHost;
class WebNavigation;

/// The window "URL": shows a folder's message list page, or a web page, in the embedded browser.
/// It keeps its request and reads from it "local", "url" and "Page", and writes back "before",
/// "next" and "onLoad".
class BrowserWindow : public QWidget, public RequestWindow {
  Q_OBJECT

 public:
  BrowserWindow(Context& context, MessageListPages& pages, const BrowserProfiles& profiles,
                WebHost& host);
  ~BrowserWindow() override;

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  SerialId Tag() const override { return tag_; }
  bool IsChild() const override { return true; }
  void ShowModeless() override;
  void ShowModal() override { ShowModeless(); }
  void Activate() override;
  bool Dust() const override { return page_.request.State().IsDust(); }
  void Unload() override;

  /// Whether the window shows a folder.
  bool IsLocal() const { return page_.request.IsLocal(); }
  /// What is done with the folder and its messages.
  ShownFolder& Folder() const { return *folder_; }
  /// Where the window goes on the web.
  WebNavigation& Web() const { return *web_; }
  /// Lets the page go while nobody sees the window, and gives it the keyboard.
  PageRest& Resting() const { return *rest_; }

  /// Shows another folder in the place of this one, as if it had just been opened.
  void ShowFolder(const SerialId& folder);
  /// Shows a page of the program's own.
  void ShowOwnPage(const QString& title, const QString& html);
  /// Makes the folder's page anew and shows it.
  void Refresh();
  /// Loads "url".
  void UpdateBrowser();
  /// Brings the toolbar in line with "before", "next" and "onLoad".
  void ControlToolbarUpdate();

 Q_SIGNALS:
  /// It goes to what another request asks for; that page has yet to be loaded.
  void Begun();
  /// A page has been loaded, or has taken the place of the one before; false when it could not be.
  void Loaded(bool ok);
  /// The user wants a step that a text of the program's own offers (`first_step`).
  void StepWanted(const QString& step);

 private:
  void Lay();
  void TakeView();
  void ConnectEngine();

  WebHost& host_;
  SerialId tag_;
  ShownPage page_;
  FolderToolbar* toolbar_;
  std::unique_ptr<EngineView> engine_;
  PageSplit* split_;
  std::unique_ptr<PageReading> reading_;
  std::unique_ptr<PageMaker> maker_;
  std::unique_ptr<PagePrinting> printing_;
  std::unique_ptr<PageRest> rest_;
  std::unique_ptr<PageLoader> loader_;
  std::unique_ptr<ShownFolder> folder_;
  std::unique_ptr<WebNavigation> web_;
  std::unique_ptr<BrowserControls> controls_;
};

}  // namespace vorn
