#pragma once

#include <QToolButton>

#include "present/page_rows.h"

namespace vorn {

/// The button that lists the links of the page. When it is clicked, whoever has the page asks it
/// for them.
class LinkButton : public QToolButton {
  Q_OBJECT

 public:
  explicit LinkButton(QWidget* parent = nullptr);
  /// Lists these links below the button.
  void List(const QList<PageRows::Link>& links);

 Q_SIGNALS:
  void Followed(const QString& address);
};

}  // namespace vorn
