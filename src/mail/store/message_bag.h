#pragma once

#include <QString>

#include "mail/codec/mime/flag_string.h"
#include "storage/context.h"
#include "storage/databases.h"
#include "storage/message_state.h"

namespace vorn {

/// A message as the store is given it and gives it, by the names that its bag has for what it
/// holds; the bag's serial identifier is the message's. A view: the bag outlives it.
class MessageBag {
 public:
  explicit MessageBag(const Disk& bag) : bag_(bag) {}

  /// Where it is stored: in the file of that path, unless another kind is named.
  DatabaseKind Database() const;
  static void SetDatabase(Disk& bag, DatabaseKind kind);
  /// The stored path of that file, by default that of the profile's mail.
  QString File(const Context& context) const;
  static void SetFile(Disk& bag, const QString& file) { bag.Let(kFile, file); }
  /// The password of that file.
  QString Password() const { return bag_.Text(kPassword); }
  static void SetPassword(Disk& bag, const QString& password) { bag.Let(kPassword, password); }
  /// Makes another one a message of the same database.
  void CopyPlace(Disk& other) const;

  /// The identifier under which it came, by default its own.
  QString MessageId() const { return bag_.Text(kMessageId, bag_.SerialID()); }
  static void SetMessageId(Disk& bag, const QString& id) { bag.Let(kMessageId, id); }
  StoredState State() const { return StoredState::Of(bag_.Number(kStatus, kStatusEdit)); }
  static void SetState(Disk& bag, StoredState state) { bag.Let(kStatus, state.Stored()); }
  /// Its status, in the dust or not.
  MessageStatus Status() const { return State().status; }
  bool IsDust() const { return State().isDust; }
  bool HasStatus() const { return bag_.Get(kStatus).isValid(); }
  /// Out of the dust.
  static void SetStatus(Disk& bag, MessageStatus status) { SetState(bag, {status}); }
  FlagString Flags() const { return FlagString(bag_.Text(kFlags)); }
  static void SetFlags(Disk& bag, const FlagString& flags) { bag.Let(kFlags, flags.Text()); }
  /// The folders that it is filed in.
  SerialIds Folders() const { return SerialIdsOfLines(bag_.Text(kFolders)); }
  static void SetFolders(Disk& bag, const SerialIds& folders) {
    bag.Let(kFolders, LinesOf(folders));
  }
  /// When it came, in the stored form.
  QString Timestamp(const QString& byDefault) const { return bag_.Text(kTimestamp, byDefault); }
  static void SetTimestamp(Disk& bag, const QString& time) { bag.Let(kTimestamp, time); }

 private:
  static inline const QString kFile = QStringLiteral("file");
  static inline const QString kPassword = QStringLiteral("password");
  static inline const QString kMessageId = QStringLiteral("MessageID");
  static inline const QString kStatus = QStringLiteral("process");
  static inline const QString kFlags = QStringLiteral("flag");
  static inline const QString kFolders = QStringLiteral("folder");
  static inline const QString kTimestamp = QStringLiteral("Timestamp");

  const Disk& bag_;
};

}  // namespace vorn
