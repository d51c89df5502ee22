#pragma once

#include <QToolBar>

class QAction;

namespace vorn {

class BrowserArea;
class BrowserHost;
class Opener;
enum class PageCommand;

/// The main window's tool bar "tbMain": mail comes and goes, and commands of the page that was used
/// last. Where it is too narrow for all words, only the first buttons have them beside their
/// pictures.
class MainToolbar : public QToolBar {
  Q_OBJECT

 public:
  /// `host` tells when there is no page for a command.
  MainToolbar(BrowserArea& area, Opener& opener, BrowserHost& host, QWidget* parent);

  /// With words, as far as there is room, or with pictures alone.
  void ShowWords(bool shows);
  /// Whether there is a button that shows the tree, or the page again.
  void OfferTree(bool offers);

 Q_SIGNALS:
  void TrafficWanted();
  void TreeWanted();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Fit();
  void AddPageCommand(const QString& text, PageCommand command, const QKeySequence& key);

  BrowserArea& area_;
  BrowserHost& host_;
  QAction* tree_;
  bool showsWords_ = true;
};

}  // namespace vorn
