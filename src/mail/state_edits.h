#pragma once

#include <optional>

#include "mail/codec/charset/charset.h"
#include "mail/store/mail_store.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// What is changed of a message's state in its window, in the request's bag at once and in its file
/// when it is stored.
class StateEdits {
 public:
  explicit StateEdits(Context& context) : context_(context) {}

  /// Another message is edited from now on; what was not stored is forgotten.
  void Begin(const DiskPtr& request);

  void ToggleDust();
  void SetFolders(const SerialIds& folders);
  /// Keeps the code that the user picked with the message.
  void KeepCode(CharsetChoice charset);
  /// Follows a star that has been stored.
  void FollowStar(bool star);

  /// Whether it takes the message into the dust bin or out of it; nothing for neither.
  std::optional<bool> Dust() const;
  bool HasAny() const { return static_cast<bool>(changed_); }
  /// Stores what was changed here, and nothing else: the folder's page may have changed the rest
  /// meanwhile.
  Result<> Store();

 private:
  void SetFlag(FlagPosition place, const QString& value);

  Context& context_;
  DiskPtr request_;
  bool wasDust_ = false;
  StateMask changed_;
};

}  // namespace vorn
