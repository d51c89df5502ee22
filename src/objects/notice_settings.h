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
  bool Asks() const { return bag_->Flag(kDialog); }
  bool TellsDesktop() const { return bag_->Flag(kDesktop); }
  bool HasSound() const { return bag_->Flag(kSound); }
  /// Whether the sound also comes where the user is not asked.
  bool SoundsAlone() const { return bag_->Flag(kSoundAlone); }
  QString SoundFile() const { return bag_->Text(kSoundFile); }

 private:
  static inline const QString kWanted = QStringLiteral("MessageNotice");
  static inline const QString kDialog = QStringLiteral("MessageNoticeDialog");
  static inline const QString kDesktop = QStringLiteral("MessageNoticeDesktop");
  static inline const QString kSound = QStringLiteral("MessageNoticeSound");
  static inline const QString kSoundAlone = QStringLiteral("MessageNoticeSoundAlone");
  static inline const QString kSoundFile = QStringLiteral("MessageNoticeSoundFile");

  DiskPtr bag_;
};

inline bool NoticeSettings::IsWanted() const {
  return bag_->Flag(kWanted) && (Asks() || TellsDesktop() || (HasSound() && SoundsAlone()));
}

}  // namespace vorn
