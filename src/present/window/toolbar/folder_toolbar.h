#pragma once

#include <QWidget>

#include "present/page_rows.h"
#include "storage/context.h"

class QAction;
class QBoxLayout;
class QToolBar;

namespace vorn {

class LinkButton;
class LocationBox;
class PageBox;
class SearchBox;

/// The line above a browser window's page: turning pages, loading anew, the links, the address, the
/// search of the folder.
class FolderToolbar : public QWidget {
  Q_OBJECT

 public:
  /// Its keys act in all of `window`.
  FolderToolbar(Context& context, QWidget* window);

  struct State {
    bool isFolder = false;
    bool canSearch = false;
    bool isLoading = false;
    bool hasBefore = false;
    bool hasNext = false;
    int page = 1;
  };
  /// Shows how it stands with the page.
  void Show(const State& state);
  /// Lists the links of the page.
  void ListLinks(const QList<PageRows::Link>& links);
  PageBox& Pages() const { return *pages_; }
  LocationBox& Location() const { return *location_; }
  /// Where the user types what the folder is searched for.
  SearchBox& Search() const { return *search_; }
  /// Where there is too little room the folder's name is left out first, then the words of the
  /// buttons; what else there is to search goes into a line of its own.
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void BeforeWanted();
  void NextWanted();
  /// The page is to be loaded anew, or its loading to be stopped.
  void SeekWanted();
  void LinksWanted();
  void LinkFollowed(const QString& address);

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Lay();
  void BuildButtons();
  void BuildPageBox();
  void MeasureButtons();
  int LeastBesideButtons() const;
  void Fit();
  QAction* AddButton(const QString& name, const QKeySequence& key, void (FolderToolbar::*wanted)());

  Context& context_;
  QToolBar* tbLocation_;
  LocationBox* location_ = nullptr;
  SearchBox* search_ = nullptr;
  LinkButton* links_ = nullptr;
  PageBox* pages_ = nullptr;
  QAction* before_ = nullptr;
  QAction* seek_ = nullptr;
  QAction* next_ = nullptr;
  QBoxLayout* line_ = nullptr;
  QWidget* choices_ = nullptr;  // of what is searched
  bool hasWords_ = false;       // where there is room
  int leastButtons_ = 0;        // the width of the buttons without words, the last ones in a menu
  int allButtons_ = 0;          // that of all as they are to be
};

}  // namespace vorn
