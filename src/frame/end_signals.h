#pragma once

#include <QObject>

namespace vorn {

/// Tells, inside the event loop, that the system wants the program to end at once: a terminating
/// signal, where there are signals. One object for the program.
class EndSignals : public QObject {
  Q_OBJECT

 public:
  explicit EndSignals(QObject* parent = nullptr);

 Q_SIGNALS:
  void Wanted();
};

}  // namespace vorn
