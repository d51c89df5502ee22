#pragma once

#include "objects/window/form_page.h"
#include "storage/base/serial_id.h"

class QTreeWidget;

namespace vorn {

/// The page "file", which every object has: its name, description, place in the tree and marks.
class FilePage : public FormPage {
  Q_OBJECT

 public:
  /// For an object of a type; `serialId` is that of the one that is edited.
  FilePage(const Context& context, const QString& type, const SerialId& serialId);

  /// Chooses the object under which a new one hangs.
  void LetParent(const SerialId& serialId);
  PageFault Check() override;
  QLineEdit* Name() const { return txObject_; }

 private:
  void FillTree(const Context& context, const QString& type, const SerialId& serialId);

  QString type_;
  QLineEdit* txObject_;
  QTreeWidget* tvParent_;
};

}  // namespace vorn
