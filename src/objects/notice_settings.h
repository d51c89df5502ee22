#pragma once

#include <QString>

#include "objects/settings.h"

namespace vorn {

/// How new messages are announced, by the names that the object of settings has for it.
class NoticeSettings {
 public:
  explicit NoticeSettings(Context& context) : bag_(Settings(context).Bag()) {}

  /// Whether they are announced in any way.
  bool IsWanted() const;
  /// Whether the user is asked if they shall be opened.
  bool Asks() const { return bag_->Flag(setting::kNoticeDialog); }
  bool TellsDesktop() const { return bag_->Flag(setting::kNoticeDesktop); }
  bool HasSound() const { return bag_->Flag(setting::kNoticeSound); }
  /// Whether the sound also comes where the user is not asked.
  bool SoundsAlone() const { return bag_->Flag(setting::kNoticeSoundAlone); }
  QString SoundFile() const { return bag_->Text(setting::kNoticeSoundFile); }

 private:
  DiskPtr bag_;
};

inline bool NoticeSettings::IsWanted() const {
  return bag_->Flag(setting::kNotice) &&
         (Asks() || TellsDesktop() || (HasSound() && SoundsAlone()));
}

}  // namespace vorn
