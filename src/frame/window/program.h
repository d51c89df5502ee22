#pragma once

#include <QObject>
#include <QPointer>
#include <QTranslator>
#include <memory>

#include "frame/single_instance.h"
#include "storage/context.h"

namespace vorn {

class ParentWindow;

/// The program from its start to its end: one instance per data folder, login or first run, the
/// splash, the main window.
class Program : public QObject {
  Q_OBJECT

 public:
  /// `appFolder` holds the databases.
  explicit Program(const QString& appFolder);
  ~Program() override;

  /// Shows the first window. False, after the user was told why, when the program has to end.
  bool Start();
  /// The main window, once a profile is loaded; null before and after.
  ParentWindow* Parent() const;
  Context& GetContext() { return context_; }

 private:
  bool Refuse(const QString& reason) const;
  void RemoveOldPages() const;
  void ShowLogin();
  void ShowVersion();
  void ShowParent();

  Context context_;
  QTranslator toolkitTexts_;
  QString appFolder_;
  SingleInstance instance_;
  QPointer<QWidget> opening_;  // the login or the splash
  QPointer<ParentWindow> parent_;
};

}  // namespace vorn
