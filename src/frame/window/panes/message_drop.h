#pragma once

#include <QObject>

#include "storage/context.h"

class QRubberBand;
class QTreeWidget;

namespace vorn {

/// Lets a message of a folder's page be dropped onto a folder in the tree that takes messages,
/// which is lit meanwhile.
class MessageDrop : public QObject {
  Q_OBJECT

 public:
  MessageDrop(Context& context, QTreeWidget& tree);

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  void Dropped(const SerialId& message, const SerialId& folder);

 private:
  SerialId TakingFolderAt(const QPoint& at) const;
  void Light(const QRect& place);

  Context& context_;
  QTreeWidget& tree_;
  QRubberBand* light_;  // over the folder
};

}  // namespace vorn
