#pragma once

#include <QLineEdit>

namespace vorn {

/// Where a page comes from: an address that the user may replace by another, or a title.
class LocationBox : public QLineEdit {
  Q_OBJECT

 public:
  explicit LocationBox(QWidget* parent);

  void Show(const QString& text, bool isEditable);
  /// The page has gone to another address by itself: shows that unless the user is typing one.
  void Follow(const QString& address);

 Q_SIGNALS:
  void Typed(const QString& address);

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace vorn
