#pragma once

#include "objects/window/form_page.h"

class QTreeWidget;

namespace vorn {

/// The page "file", which every object has: its name, description, place in the tree and marks.
class FilePage : public FormPage {
  Q_OBJECT

 public:
  explicit FilePage(const Context& context, const QString& type);

  /// Chooses the object under which a new one hangs.
  void LetParent(const QString& serialId);
  PageFault Check() override;
  QLineEdit* Name() const { return txObject_; }

 private:
  void FillTree(const Context& context, const QString& type);

  QLineEdit* txObject_;
  QTreeWidget* tvParent_;
};

}  // namespace vorn
