#pragma once

#include <QDialog>

#include "storage/context.h"

class QComboBox;
class QLineEdit;

namespace vorn {

struct LostFileChoice;

/// The window "login": choosing a profile and typing its password.
class LoginWindow : public QDialog {
  Q_OBJECT

 public:
  explicit LoginWindow(Context& context, QWidget* parent = nullptr);

  /// Fills the list of profiles; with a request whose "login" is set, with that name alone.
  void LoadDefaultProperty(const DiskPtr& request);
  /// Chooses the profile that was logged in last.
  void ChooseLast();
  /// Tries the login. On success the session bag holds it, and `LoggedIn` is emitted.
  void cmOk_Click();

 Q_SIGNALS:
  void LoggedIn();
  void Cancelled();

 protected:
  void reject() override;

 private:
  /// False when the login is given up.
  bool ConfirmFirst(const Disk& profile, const QString& password);
  bool AskAboutLostFiles(const DiskPtr& profile, const QString& password);
  /// False when it is not given.
  bool AskFormerPassword(const QString& reason, LostFileChoice& choice);

  Context& context_;
  QComboBox* cbProfile_;
  QLineEdit* txPassword_;
};

}  // namespace vorn
