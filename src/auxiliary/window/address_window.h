#pragma once

#include <QDialog>

#include "storage/context.h"

class QLineEdit;
class QListWidget;
class QSplitter;
class QTreeWidget;

namespace vorn {

/// The window "address": finds addresses in the address books and hands the chosen lines back.
class AddressWindow : public QDialog {
  Q_OBJECT

 public:
  AddressWindow(Context& context, QWidget* parent);
  ~AddressWindow() override;

  /// Fills the tree with the objects of the types in the request's "draw" and searches once.
  void LoadDefaultProperty(const DiskPtr& request);

 private:
  void BuildControls();
  void FillTree(const QString& draw);
  void Seek();
  void Select();

  Context& context_;
  DiskPtr request_;
  QTreeWidget* tvObject_;
  QListWidget* lvCandidacy_;
  QLineEdit* txString_;
  QSplitter* piSplit_;
};

/// Lets the user choose addresses; `types` are the object types that the tree shows. Returns the
/// chosen address lines, CR LF between them, empty when nothing was chosen.
QString SelectAddresses(Context& context, QWidget* parent, const QString& types);

}  // namespace vorn
