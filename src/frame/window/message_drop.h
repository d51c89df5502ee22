#pragma once

#include <QObject>

#include "storage/context.h"

class QTreeWidget;

namespace vorn {

/// Lets a message of a folder's page be dropped onto a folder in the tree that takes messages.
class MessageDrop : public QObject {
  Q_OBJECT

 public:
  /// `keyRole` gives the serial identifier of a node's object.
  MessageDrop(Context& context, QTreeWidget& tree, int keyRole);

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  void Dropped(const QString& message, const QString& folder);

 private:
  QString TakingFolderAt(const QPoint& at) const;

  Context& context_;
  QTreeWidget& tree_;
  int keyRole_;
};

}  // namespace vorn
