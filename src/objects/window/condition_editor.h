#pragma once

#include <QTableWidget>

#include "mail/search/search_condition.h"
#include "storage/context.h"

namespace vorn {

/// The list "lvCondition": one row per condition line, with an editor that fits the line's kind.
class ConditionEditor : public QTableWidget {
  Q_OBJECT

 public:
  explicit ConditionEditor(const Context& context, QWidget* parent = nullptr);

  /// Adds a row for a stored line. It stays as it is stored until the user changes the row: also
  /// what the editors cannot show, such as a folder that was deleted, which they mark.
  void AddLine(const QString& line);
  /// A row's line in the stored form.
  QString Line(int row) const;
  /// Adds a row for another condition and puts the focus there.
  void AddRow();
  void RemoveRow();

 Q_SIGNALS:
  void Changed();

 private:
  enum Column { kConnector = 0, kKind, kNegation, kValue, kColumns };

  void AddCondition(const ConditionLine& line);
  ConditionLine Condition(int row) const;
  void Touch(const QWidget* editor);
  int RowOf(const QWidget* editor) const;
  void KindChosen(int row);
  void ShowConnectors();
  QWidget* MakeValueEditor(const ConditionKind& kind, const QStringList& values);
  const ConditionKind& KindOf(int row) const;

  const Context& context_;
};

}  // namespace vorn
