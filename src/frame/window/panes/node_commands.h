#pragma once

#include <QObject>

#include "storage/base/serial_id.h"

class QPoint;

namespace vorn {

class ConsoleTree;

/// What is done with the current node of the tree, by its keys, by its menu and by the main
/// window's.
class NodeCommands : public QObject {
  Q_OBJECT

 public:
  explicit NodeCommands(ConsoleTree& tree);

  void NewObject(const QString& type);
  void ShowProperties();
  void Rename();
  void Delete();

  bool eventFilter(QObject* watched, QEvent* event) override;

 Q_SIGNALS:
  void NewWanted(const QString& type, const SerialId& parent);
  void PropertiesWanted(const SerialId& key, const QString& tag);
  void DeletionWanted(const SerialId& key, const QString& tag);

 private:
  bool TakeKey(int key, bool withAlt);
  void ShowMenu(const QPoint& at);

  ConsoleTree& tree_;
};

}  // namespace vorn
