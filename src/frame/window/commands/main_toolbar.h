#pragma once

#include <QToolBar>

namespace vorn {

class BrowserArea;
class BrowserHost;
class Opener;
enum class PageCommand;

/// The main window's tool bar "tbMain": mail comes and goes, and commands of the page that was used
/// last.
class MainToolbar : public QToolBar {
  Q_OBJECT

 public:
  /// `host` tells when there is no page for a command.
  MainToolbar(BrowserArea& area, Opener& opener, BrowserHost& host, QWidget* parent);

 Q_SIGNALS:
  void TrafficWanted();

 private:
  void AddPageCommand(const QString& text, PageCommand command, const QKeySequence& key);

  BrowserArea& area_;
  BrowserHost& host_;
};

}  // namespace vorn
