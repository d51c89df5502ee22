#pragma once

#include <QStringList>
#include <QStyledItemDelegate>
#include <functional>

namespace vorn {

/// Edits a list's rows in place in a box of a given name. It may offer texts while the user types,
/// and shows "($追加)" in an empty row.
class NamedEditorDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  /// `offers` is asked when an edit begins; none when it is empty.
  NamedEditorDelegate(const QString& editorName, std::function<QStringList()> offers,
                      QObject* parent);

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  QString displayText(const QVariant& value, const QLocale& locale) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 Q_SIGNALS:
  /// The user changed the text in the box, which the list does not hold yet.
  void Typed();

 protected:
  bool eventFilter(QObject* editor, QEvent* event) override;
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  QString editorName_;
  std::function<QStringList()> offers_;
};

}  // namespace vorn
