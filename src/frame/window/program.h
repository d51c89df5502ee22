#pragma once

#include <QObject>
#include <QPointer>
#include <memory>

#include "frame/end_signals.h"
#include "frame/instance_messages.h"
#include "frame/language_texts.h"
#include "frame/single_instance.h"
#include "kit/window/focus_return.h"
#include "kit/window/screen_fit.h"
#include "kit/window/text_keys.h"
#include "kit/window/wheel_guard.h"
#include "storage/context.h"

namespace vorn {

class ParentWindow;

/// The program from its start to its end: one instance per data folder, login or first run, the
/// splash, the main window.
class Program : public QObject {
  Q_OBJECT

 public:
  /// To be called once, before the application object is made: what the browser engine reads only
  /// at its start.
  static void PrepareEngine();

  /// `appFolder` holds the databases; `arguments` are message files and "mailto:" addresses to
  /// open.
  explicit Program(const QString& appFolder, const QStringList& arguments = {});
  ~Program() override;

  /// Shows the first window. False, after the user was told why, when the program has to end.
  bool Start();
  /// Whether `Start` handed the arguments over to a program that runs already, or had it come to
  /// the front.
  bool HandedOver() const { return handedOver_; }
  /// The main window, once a profile is loaded; null before and after.
  ParentWindow* Parent() const;
  Context& GetContext() { return context_; }

 private:
  void Open(const QStringList& arguments);
  bool ComeForward();
  bool Refuse(const QString& reason) const;
  void RemoveWorkingFiles() const;
  void EndAtOnce();
  void CloseFiles();
  void ShowLogin();
  void ShowVersion();
  void ShowParent();

  Context context_;
  WheelGuard wheelGuard_;
  TextKeys textKeys_;
  ScreenFit screenFit_;
  FocusReturn focusReturn_;
  QString appFolder_;
  SingleInstance instance_;
  InstanceMessages messages_;
  EndSignals signals_;
  QStringList toOpen_;  // until there is a main window
  LanguageTexts texts_;
  bool handedOver_ = false;
  QPointer<QWidget> opening_;  // the login or the splash
  QPointer<ParentWindow> parent_;
};

}  // namespace vorn
