#pragma once

#include <QDialog>
#include <QTimer>

#include "present/message_list_page.h"
#include "present/window/engine/browser_profiles.h"
#include "storage/context.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTableWidget;
class QWebEngineView;

namespace vorn {

class LinkPage;
class PageSource;

/// The window "layout": edits the template of one folder's pages beside a preview of the folder's
/// own messages, which follows the typing. OK keeps the template in the object "layout", or takes
/// it out when it is the default one.
class LayoutWindow : public QDialog {
  Q_OBJECT

 public:
  LayoutWindow(Context& context, MessageListPages& pages, const BrowserProfiles& profiles,
               const SerialId& folder, QWidget* parent = nullptr);
  ~LayoutWindow() override;

  void cmOk_Click();

 Q_SIGNALS:
  /// The preview shows what is written.
  void Previewed();

 protected:
  void reject() override;

 private:
  QWidget* BuildEditor();
  void BuildTags();
  void Fill();
  void TakeReady(int index);
  void InsertTag(int row);
  void Preview();
  void RemovePage();
  void RemoveReadPage();
  Result<> Save();

  Context& context_;
  MessageListPages& pages_;
  SerialId folder_;
  QString stored_;  // the template as it was
  QComboBox* cbLayout_;
  QPlainTextEdit* txHtml_;
  QTableWidget* lvTag_;
  QLineEdit* txPath_;
  QLabel* lbError_;
  QWebEngineView* wbPreview_;
  PageSource& source_;
  LinkPage* page_;
  QString shownPage_;
  QTimer typing_;
};

}  // namespace vorn
