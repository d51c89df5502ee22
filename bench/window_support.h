#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "bench_support.h"

#include "storage/base/serial_id.h"

namespace vorn::bench {

/// Prints a figure as one line of JSON.
inline void Report(const QString& figure, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const QJsonObject object{{QStringLiteral("figure"), figure},
                           {QStringLiteral("median_ms"), times[times.size() / 2]},
                           {QStringLiteral("min_ms"), times.front()},
                           {QStringLiteral("max_ms"), times.back()}};
  std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
  std::fflush(stdout);
}

/// When something of the widgets of this name was first and last painted since the start, as long
/// as it lives; 0 for never.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QString name) : name_(std::move(name)) { qApp->installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && watched->inherits("QWidget") && clock_.isValid()) {
      const auto* widget = static_cast<QWidget*>(watched);
      for (; widget != nullptr; widget = widget->parentWidget()) {
        if (widget->objectName() != name_) continue;
        last_ = Milliseconds(clock_);
        if (first_ == 0) first_ = last_;
      }
    }
    return false;
  }
  void Start() { clock_.start(); }
  double Now() const { return Milliseconds(clock_); }
  double First() const { return first_; }
  double Last() const { return last_; }

 private:
  const QString name_;
  QElapsedTimer clock_;
  double first_ = 0;
  double last_ = 0;
};

inline void Click(QTreeWidget& tree, QTreeWidgetItem* item) {
  const QPointF place = tree.visualItemRect(item).center();
  const QPointF global = tree.viewport()->mapToGlobal(place);
  for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, place, global, Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(tree.viewport(), &event);
  }
}

inline QTreeWidgetItem* Node(const QTreeWidget& tree, const SerialId& serialId) {
  for (QTreeWidgetItemIterator item(const_cast<QTreeWidget*>(&tree)); *item != nullptr; ++item) {
    if (SerialIdOf((*item)->data(0, Qt::UserRole)) == serialId) return *item;
  }
  Require(false, QStringLiteral("no such node"));
  return nullptr;
}

}  // namespace vorn::bench
