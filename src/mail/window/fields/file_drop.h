#pragma once

#include <QObject>
#include <functional>

class QMimeData;
class QWidget;

namespace vorn {

/// Lets files be dropped anywhere on a window, whatever its widgets would make of them.
class FileDrop : public QObject {
 public:
  /// Of what is dragged, `takes` tells whether it is taken and `take` takes it.
  FileDrop(QWidget& window, std::function<bool(const QMimeData&)> takes,
           std::function<void(const QMimeData&)> take);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::function<bool(const QMimeData&)> takes_;
  std::function<void(const QMimeData&)> take_;
};

}  // namespace vorn
