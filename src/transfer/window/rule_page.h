#pragma once

#include "objects/window/form_page.h"

class QMenu;

namespace vorn {

/// The page of receive-stop rules: a list that is edited in place. Its last row, "($追加)", adds a
/// rule; the right mouse button, Enter or F2 on a row opens it for editing.
class RulePage : public FormPage {
  Q_OBJECT

 public:
  RulePage();

  QTableWidget& List() const { return *lvReceiveStop_; }
  /// Adds a rule and chooses it; an empty line or one that is there already is only chosen.
  void Propose(const QString& line);
  void Loaded(const Disk& object) override;
  PageFault Check() override;
  QString Line(const QTableWidget& list, int row) const override;
  void AddLine(QTableWidget& list, const QString& line) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool ListKey(int key);
  void OpenCurrentRow();
  void AddRule(const QString& prefix);
  void BeginEdit(int row, const QString& text, const QString& lock);
  void EndEdit();
  void FitEditor();
  void KeepLock(const QString& text);
  void RemoveRules();
  bool IsPlaceholder(int row) const;

  QTableWidget* lvReceiveStop_;
  QLineEdit* txInput_;
  QMenu* menuReceiveStop_;
  int editedRow_ = -1;
  QString lock_;     // the fixed beginning of the line being edited
  QString pattern_;  // and what followed it before the last key
};

}  // namespace vorn
