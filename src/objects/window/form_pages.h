#pragma once

#include <QWidget>
#include <vector>

#include "objects/window/form_page.h"
#include "storage/window/control_state.h"

class QLabel;
class QTabWidget;

namespace vorn {

/// The pages of an editing window, one in front, with the line below them that tells what is wrong.
class FormPages : public QWidget, public FormWindow {
  Q_OBJECT

 public:
  explicit FormPages(QWidget* parent = nullptr);

  /// Adds a page as the last one. What was told goes with the next change of its controls.
  void Add(FormPage* page);
  /// Brings a page to the front.
  void ShowPage(const FormPage* page);
  QTabWidget& Tabs() { return *tsPage_; }

  /// Whether every page can be saved; the first fault is told.
  bool Check();
  /// Shows what is wrong, with that page in front and the keyboard in the field.
  void Tell(const PageFault& fault, const FormPage* page);
  void TellNothing();
  /// Whether a fault is told, as soon as the window is shown.
  bool TellsFault() const;

  /// Names the pages in the tag of the tabs.
  void TellNames();
  /// Lets every page complete the bag that is about to be saved.
  void Finish(Disk& bag) const;
  /// What stands in the controls, as texts to be compared, with what is not saved.
  QStringList Entries();

  // FormWindow
  QWidget& Form() override { return *this; }
  QStringList ShownPages() const override;
  QString ListViewLine(const QTableWidget& list, int row) const override;
  void ControlListViewItem(QTableWidget& list, const QString& line) override;
  void CallBackFormData(const Disk& object) override;

 private:
  std::vector<FormPage*> pages_;
  QTabWidget* tsPage_;
  QLabel* lbError_;
};

}  // namespace vorn
