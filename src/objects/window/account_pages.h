#pragma once

#include "objects/window/form_page.h"
#include "transfer/control/connection_check.h"
#include "transfer/servers/server_lookup.h"

class QLabel;
class QPushButton;

namespace vorn {

class ReceivePage;
class SendPage;

/// The page "account": who the user is. From the address follow the account's name, the login, and
/// the servers of a well-known provider, and by a button those that its domain names, unless the
/// user has named others.
class AccountPage : public FormPage {
  Q_OBJECT

 public:
  /// `name` is the account's.
  AccountPage(QLineEdit& name, ReceivePage& receiving, SendPage& sending);
  PageFault Check() override;
  void Loaded(const Disk& object) override;

 private:
  void AddLookup();
  void ProposeKnown();
  void LookUp();
  void TakeFound(const MailServers& servers);
  void ProposeName();
  bool Propose(MailServers servers);

  QLineEdit& name_;
  ReceivePage& receiving_;
  SendPage& sending_;
  QLineEdit* txMailaddress_;
  QString answered_;  // the address for which servers were proposed
  QString named_;     // the name that was proposed
  QPushButton* find_ = nullptr;
  QLabel* result_ = nullptr;
  ServerLookup* lookup_;
};

/// What the pages "receive" and "send" share: a server, its port that follows the security, and the
/// button that tries the connection.
class ServerPage : public FormPage {
  Q_OBJECT

 public:
  ServerPage(const QString& page, const QString& title, const QString& prefix);
  PageFault Check() override;
  void Loaded(const Disk& object) override;
  /// Whether nobody has named a server here but `Propose`.
  bool IsUntouched() const;
  /// Who logs in, as it stands in the boxes.
  Credentials Who() const;
  /// Whether a server stands here.
  bool HasServer() const;
  /// Writes what proves the user into an account, as it stands in the boxes.
  void LetSecrets(Disk& account) const;
  /// Fills the page; with an empty server it is as in the beginning but for the user.
  virtual void Propose(const Endpoint& server);

 protected:
  void AddSecurity();
  void AddCredentials();
  void AddCheckButton();
  void UsePorts(const QList<int>& ports) { ports_ = ports; }
  QLineEdit* Server() const { return server_; }
  QLineEdit* User() const { return credentials_[0]; }
  /// The boxes of the credentials, one for each of their parts.
  const QList<QLineEdit*>& CredentialBoxes() const { return credentials_; }
  /// What the connection is tried with.
  virtual ConnectionTrial Trial() const;

 private:
  void FollowSecurity();
  void TryConnection();
  void ShowResult(bool ok, const QString& text);
  void TellResult(const QString& text);
  void ShowException();

  QString prefix_;
  QList<int> ports_;  // by security
  Endpoint proposed_;
  QLineEdit* server_;
  QList<QLineEdit*> credentials_;
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
  /// An account that sends may receive nothing.
  void MayBeUnusedBeside(const ServerPage& sending) { sending_ = &sending; }
  PageFault Check() override;
  void Finish(Disk& bag) override;
  /// Whether what proves the user is to be stored.
  bool SavesPassword() const;

 protected:
  ConnectionTrial Trial() const override;

 private:
  const ServerPage* sending_ = nullptr;
  QCheckBox* savePassword_;
  QComboBox* protocol_;
};

class SendPage : public ServerPage {
  Q_OBJECT

 public:
  explicit SendPage(const ReceivePage& receiving);
  PageFault Check() override;
  void Finish(Disk& bag) override;
  void Propose(const Endpoint& server) override;

 protected:
  ConnectionTrial Trial() const override;
  void showEvent(QShowEvent* event) override;

 private:
  void FollowReceiving();
  bool SharesAskedPassword() const;

  const ReceivePage& receiving_;
  bool follows_ = false;  // the login is the one of receiving until it is changed
  Credentials given_;     // by that
  QCheckBox* authenticate_;
};

}  // namespace vorn
