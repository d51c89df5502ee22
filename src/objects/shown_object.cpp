#include "objects/shown_object.h"

#include <optional>

#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

struct StandardText {
  const char16_t* stored[2];  // in either language
  QString shown;
};

// Null for a text that did not come with the profile.
std::optional<StandardText> FindStandardText(const QString& stored) {
  const StandardText texts[] = {
      {{u"受信", u"Inbox"}, Ui::tr("受信", "folder")},
      {{u"送信", u"Sent"}, Ui::tr("送信", "folder")},
      {{u"待ち", u"Waiting"}, Ui::tr("待ち", "folder")},
      {{u"くずかご", u"Trash"}, Ui::tr("くずかご", "folder")},
      {{u"イベント", u"Events"}, Ui::tr("イベント", "log")},
      {{u"お気に入り。", u"Favorites"}, Ui::tr("お気に入り。")},
      {{u"アドレスブック", u"Address Book"}, Ui::tr("アドレスブック")},
      {{u"受信メッセージが保存されているフォルダです。", u"Holds the messages that were received."},
       Ui::tr("受信メッセージが保存されているフォルダです。")},
      {{u"送信済みメッセージが保存されているフォルダです。", u"Holds the messages that were sent."},
       Ui::tr("送信済みメッセージが保存されているフォルダです。")},
      {{u"編集中および送信待ちのメッセージが保存されているフォルダです。",
        u"Holds the messages that are being written or wait to be sent."},
       Ui::tr("編集中および送信待ちのメッセージが保存されているフォルダです。")},
      {{u"くずかごに入れられたメッセージが保存されているフォルダです。",
        u"Holds the messages that were thrown away."},
       Ui::tr("くずかごに入れられたメッセージが保存されているフォルダです。")},
  };
  for (const StandardText& text : texts) {
    for (const char16_t* known : text.stored) {
      if (stored == known) return text;
    }
  }
  return std::nullopt;
}

// A text that came with the profile, in either language; any other one as it is.
QString InLanguage(const QString& stored) {
  const auto known = FindStandardText(stored);
  return known ? known->shown : stored;
}

}  // namespace

bool ShownObject::IsMadeWithProfile() const {
  return any_.IsSystem() && (any_.Is(object_type::kFolder) || any_.Is(object_type::kEvent));
}

bool ShownObject::MayComeWithProfile() const {
  return IsMadeWithProfile() || any_.Is(object_type::kBookmark) || any_.Is(object_type::kBook);
}

QString ShownObject::Name() const {
  return MayComeWithProfile() ? InLanguage(any_.Name()) : any_.Name();
}

QStringList ShownObject::Names() const {
  QStringList names(any_.Name());
  const auto known = MayComeWithProfile() ? FindStandardText(any_.Name()) : std::nullopt;
  if (!known) return names;
  for (const char16_t* name : known->stored) names.append(QString::fromUtf16(name));
  return names;
}

QString ShownObject::Tip() const {
  return IsMadeWithProfile() ? InLanguage(any_.ToolTip()) : any_.ToolTip();
}

}  // namespace vorn
