#pragma once

#include "objects/window/form_page.h"
#include "transfer/connection_check.h"

class QLabel;
class QPushButton;

namespace vorn {

/// The page "account": who the user is.
class AccountPage : public FormPage {
  Q_OBJECT

 public:
  AccountPage();
  PageFault Check() override;

 private:
  QLineEdit* txMailaddress_;
  QLineEdit* txDisplay_;
};

/// What the pages "receive" and "send" share: a server, its port that follows the security, and the
/// button that tries the connection.
class ServerPage : public FormPage {
  Q_OBJECT

 public:
  ServerPage(const QString& page, const QString& title, const QString& prefix);
  PageFault Check() override;
  void Loaded(const Disk& object) override;
  void Finish(Disk& bag) override;

 protected:
  void AddSecurity();
  void AddCheckButton();
  void UsePorts(const QList<int>& ports) { ports_ = ports; }
  QLineEdit* Server() const { return server_; }
  /// What the connection is tried with.
  virtual ConnectionTrial Trial() const;

 private:
  void FollowSecurity();
  void TryConnection();
  void ShowResult(bool ok, const QString& text);
  void ShowException();

  QString prefix_;
  QList<int> ports_;  // by security
  QLineEdit* server_;
  QLineEdit* port_ = nullptr;
  QComboBox* security_ = nullptr;
  QPushButton* try_ = nullptr;
  QPushButton* trust_ = nullptr;
  QLabel* exception_ = nullptr;
  QLabel* result_ = nullptr;
  QLineEdit* trusted_ = nullptr;
  ConnectionCheck check_;
};

class ReceivePage : public ServerPage {
  Q_OBJECT

 public:
  ReceivePage();
  PageFault Check() override;
  void Finish(Disk& bag) override;

 protected:
  ConnectionTrial Trial() const override;

 private:
  QLineEdit* user_;
  QLineEdit* password_;
  QCheckBox* savePassword_;
  QComboBox* protocol_;
};

class SendPage : public ServerPage {
  Q_OBJECT

 public:
  SendPage();
  PageFault Check() override;

 protected:
  ConnectionTrial Trial() const override;

 private:
  QCheckBox* authenticate_;
  QLineEdit* user_;
  QLineEdit* password_;
};

}  // namespace vorn
