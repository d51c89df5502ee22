#pragma once

#include <QString>
#include <QStringList>

#include "storage/bags/disk.h"

namespace vorn {

/// A profile, by the names that its object's bag has for what it holds. The bag of the logged-in
/// one is the session's (`Context::Session`) and has beside it what only the running program may
/// know. A view: the bag outlives it.
class ProfileBag {
 public:
  explicit ProfileBag(const Disk& bag) : bag_(bag) {}

  /// The stored path of the profile's own database.
  QString File() const { return bag_.Text(kFile); }
  static void SetFile(Disk& bag, const QString& path) { bag.Let(kFile, path); }
  /// The stored paths of its mail databases, one a line; the first is in use.
  QString MailFiles() const { return bag_.Text(kMailFiles); }
  static void SetMailFiles(Disk& bag, const QString& paths) { bag.Let(kMailFiles, paths); }
  /// Those that it has had.
  QString History() const { return bag_.Text(kHistory); }
  static void SetHistory(Disk& bag, const QString& paths) { bag.Let(kHistory, paths); }
  /// What it remembers of them (`FileNotes`), one a line.
  QString NoteLines() const { return bag_.Text(kNotes); }
  static void SetNoteLines(Disk& bag, const QString& lines) { bag.Let(kNotes, lines); }
  /// It was made anew from the files in a folder.
  bool IsRebuilt() const { return bag_.Flag(kRebuilt); }
  static void SetRebuilt(Disk& bag) { bag.Let(kRebuilt, true); }
  static void ForgetRebuilt(Disk& bag) { bag.Remove(kRebuilt); }

  /// The keys of what follows, which only the running program may know: they are never stored.
  static const QStringList& SessionKeys();
  /// The password that all its files have, as it was typed.
  QString Password() const { return bag_.Text(kPassword); }
  static void SetPassword(Disk& bag, const QString& password) { bag.Let(kPassword, password); }
  bool IsLoggedIn() const { return bag_.Flag(kLoggedIn); }
  static void SetLoggedIn(Disk& bag, bool isIn) { bag.Let(kLoggedIn, isIn); }
  /// That the profile named by the answer is to be entered.
  bool IsLogin() const;
  static void SetLogin(Disk& bag);
  /// What the last dialog came to, and whether the user left it.
  QString Answer() const { return bag_.Text(kAnswer); }
  static void SetAnswer(Disk& bag, const QVariant& answer) { bag.Let(kAnswer, answer); }
  bool IsCancelled() const { return bag_.Flag(kCancelled); }
  static void SetCancelled(Disk& bag, bool isCancelled) { bag.Let(kCancelled, isCancelled); }

  // The keys. A prefix before one makes the name of the control that edits it.
  static inline const QString kFile = QStringLiteral("Profile");
  static inline const QString kMailFiles = QStringLiteral("Mail");
  static inline const QString kHistory = QStringLiteral("History");
  static inline const QString kNotes = QStringLiteral("FileNotes");
  static inline const QString kRebuilt = QStringLiteral("Rebuilt");
  static inline const QString kPassword = QStringLiteral("password");
  static inline const QString kLoggedIn = QStringLiteral("login");
  static inline const QString kMode = QStringLiteral("mode");
  static inline const QString kAnswer = QStringLiteral("status");
  static inline const QString kCancelled = QStringLiteral("cancel");

 private:
  const Disk& bag_;
};

}  // namespace vorn
