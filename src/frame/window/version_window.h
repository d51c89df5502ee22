#pragma once

#include <QTimer>
#include <QWidget>

#include "storage/context.h"

namespace vorn {

/// The window "version": the product line, and during a login the splash whose timer loads the
/// profile one step per tick.
class VersionWindow : public QWidget {
  Q_OBJECT

 public:
  explicit VersionWindow(Context& context);

  /// A request whose "mode" is "login" starts the initialisation with its "password". Returns true.
  bool LoadDefaultProperty(const DiskPtr& request);

 Q_SIGNALS:
  /// The profile is loaded; the main window may be shown.
  void ProfileLoaded();
  /// The profile cannot be used; `reason` is a sentence for the user.
  void Failed(const QString& reason);

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void tmInitialization_Timer();

  Context& context_;
  QTimer tmInitialization_;
  int step_ = 0;
  QString password_;
};

}  // namespace vorn
