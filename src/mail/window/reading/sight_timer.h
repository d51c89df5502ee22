#pragma once

#include <QTimer>

namespace vorn {

/// Tells when a message has been in sight for so long that its user has read it, and not only
/// passed it by.
class SightTimer : public QObject {
  Q_OBJECT

 public:
  explicit SightTimer(QObject* parent);
  /// A message comes into sight; `counts` tells whether anybody wants to hear of it.
  void Begin(bool counts);
  /// It is out of sight, or no longer: then its time begins anew.
  void Cover(bool covered);

 Q_SIGNALS:
  void HasBeenSeen();

 private:
  QTimer timer_;
  bool counts_ = false;
  bool isCovered_ = false;
};

}  // namespace vorn
