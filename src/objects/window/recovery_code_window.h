#pragma once

#include <QDialog>

namespace vorn {

/// Shows the recovery code of the profile with that name, to be written down or printed.
class RecoveryCodeWindow : public QDialog {
  Q_OBJECT

 public:
  RecoveryCodeWindow(const QString& profile, const QString& code, QWidget* parent);

 private:
  void Print();

  QString profile_;
  QString code_;
};

}  // namespace vorn
