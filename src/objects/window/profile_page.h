#pragma once

#include "objects/window/form_page.h"
#include "storage/base/result.h"
#include "storage/base/serial_id.h"

class QCheckBox;
class QFileInfo;
class QLabel;

namespace vorn {

/// The page "profile": the profile's database files and its password.
class ProfilePage : public FormPage {
  Q_OBJECT

 public:
  ProfilePage(Context& context, const SerialId& serialId);

  void Loaded(const Disk& object) override;
  PageFault Check() override;
  /// Changes the password when a new one was typed.
  Result<> ChangePassword(const Disk& profile);
  /// Deletes the files that the user took from the list and wanted deleted. False when one could
  /// not be.
  bool DeleteRemoved();
  QString Line(const QTableWidget& list, int row) const override;
  void AddLine(QTableWidget& list, const QString& line) override;

  /// Adds a mail database to the list.
  void cmNewDatabase_Click();
  /// Puts the databases that a profile begins with into its own folder.
  void cmDefaultDatabase_Click();

 private:
  void WarnOfNoPassword(bool none);
  void AddProtection();
  void UseDatabase();
  void RemoveDatabase();
  void AddExisting();
  /// A sentence; empty when the file can be added.
  QString WhyNotAdded(const QFileInfo& file, const QString& stored);
  Result<> Open(const QString& stored);
  Result<> OpenOrAdopt(const QString& stored);
  Result<> Adopt(const QString& stored, const QString& former);
  QString ProtectionText() const;
  QString Folder() const;
  bool IsNew() const;
  void MarkUsed();
  bool IsLoggedIn() const;
  bool HasPassword() const;
  QString SelectedFile() const;

  Context& context_;
  SerialId serialId_;
  QLineEdit* txProfile_;
  QLineEdit* txMail_;
  QTableWidget* lvHistory_;
  QLineEdit* txPasswordNow_;
  QLineEdit* txPassword_;
  QLineEdit* txPasswordAgain_;
  QCheckBox* ckNoPassword_;
  QStringList toDelete_;
};

}  // namespace vorn
