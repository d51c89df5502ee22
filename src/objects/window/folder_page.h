#pragma once

#include <QTimer>

#include "objects/window/condition_editor.h"
#include "objects/window/form_page.h"
#include "storage/base/serial_id.h"
#include "storage/condition_run.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace vorn {

/// The page "folder": which messages the folder shows, by a condition list or by SQL of the user's
/// own, with how many match now.
class FolderPage : public FormPage {
  Q_OBJECT

 public:
  FolderPage(Context& context, const SerialId& serialId);

  /// The list of conditions.
  ConditionEditor& Conditions() const { return *lvCondition_; }
  void Loaded(const Disk& object) override;
  PageFault Check() override;
  void Finish(Disk& bag) override;
  QString Line(const QTableWidget& list, int row) const override;
  void AddLine(QTableWidget& list, const QString& line) override;

 private:
  /// The folder as the controls say.
  DiskPtr Edited() const;
  void ShowMatches();
  void CountElsewhere();
  void StopCounting(const QString& says);
  void FollowSqlUse(bool useSql);

  Context& context_;
  SerialId serialId_;
  QCheckBox* ckSqlUse_;
  QPlainTextEdit* txSql_;
  ConditionEditor* lvCondition_;
  QWidget* buttons_;
  QLabel* matches_;
  QPushButton* stop_;
  ConditionRunPtr run_;  // counts what takes long
  QTimer delay_;
};

}  // namespace vorn
