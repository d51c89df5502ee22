#include "objects/any_object.h"

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

QString TypeCaption(const QString& type) {
  if (type == object_type::kProfile) return Ui::tr("プロファイル");
  if (type == object_type::kAccount) return Ui::tr("アカウント");
  if (type == object_type::kFolder) return Ui::tr("フォルダ");
  if (type == object_type::kBookmark) return Ui::tr("ブックマーク");
  if (type == object_type::kBook) return Ui::tr("アドレスブック");
  if (type == object_type::kEvent) return Ui::tr("イベント");
  return {};
}

// The keys of the "file" page, which every object has.
void AnyObject::Begin(Disk& bag, const QString& type, const QString& name, const QString& draw) {
  bag.Let(kType, type);
  SetName(bag, name);
  SetToolTip(bag, QString());
  SetDraw(bag, draw.isEmpty() ? type : draw);
  SetDefault(bag, false);
  SetSystem(bag, false);
  SetEnabled(bag, false);
  bag.Let(kParent, QString());
}

QDateTime AnyObject::Saved() const {
  return QDateTime::fromString(bag_.Text(kSaved), QStringLiteral("yyyy/MM/dd H:mm:ss"));
}

bool AnyObject::IsMadeWithProfile() const {
  return IsSystem() && (Is(object_type::kFolder) || Is(object_type::kEvent));
}

bool AnyObject::MayComeWithProfile() const {
  return IsMadeWithProfile() || Is(object_type::kBookmark) || Is(object_type::kBook);
}

QString AnyObject::ShownName() const {
  return MayComeWithProfile() ? InLanguage(Name()) : Name();
}

QStringList AnyObject::Names() const {
  QStringList names(Name());
  const auto known = MayComeWithProfile() ? FindStandardText(Name()) : std::nullopt;
  if (!known) return names;
  for (const char16_t* name : known->stored) names.append(QString::fromUtf16(name));
  return names;
}

QString AnyObject::ShownTip() const {
  return IsMadeWithProfile() ? InLanguage(ToolTip()) : ToolTip();
}

}  // namespace vorn
