#pragma once

#include <QStringList>

#include "mail/window/fields/row_list.h"

namespace vorn {

/// The list "lvHeader": a message's extension header lines. While it can be edited its last row
/// takes the next line. A line that does not begin with "X-" gets it.
class HeaderList : public RowList {
  Q_OBJECT

 public:
  explicit HeaderList(QWidget* parent = nullptr);

  void Show(const QStringList& rows, bool editable);
  QStringList Rows() const;
  /// Sets the line of a header, with its colon, or adds it.
  void SetHeader(const QString& name, const QString& value);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void AddRow(const QString& line);
  void KeepEmptyRow();

  bool editable_ = false;
  bool filling_ = false;
};

}  // namespace vorn
