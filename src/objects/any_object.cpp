#include "objects/any_object.h"

#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

struct StandardText {
  const char16_t* stored[2];  // in either language
  QString shown;
};

// A name that came with the profile, in either language; any other one as it is.
QString InLanguage(const QString& stored) {
  const StandardText texts[] = {
      {{u"受信", u"Inbox"}, Ui::tr("受信", "folder")},
      {{u"送信", u"Sent"}, Ui::tr("送信", "folder")},
      {{u"待ち", u"Waiting"}, Ui::tr("待ち", "folder")},
      {{u"くずかご", u"Trash"}, Ui::tr("くずかご", "folder")},
      {{u"イベント", u"Events"}, Ui::tr("イベント", "log")},
      {{u"お気に入り。", u"Favorites"}, Ui::tr("お気に入り。")},
      {{u"アドレスブック", u"Address Book"}, Ui::tr("アドレスブック")},
  };
  for (const StandardText& text : texts) {
    for (const char16_t* known : text.stored) {
      if (stored == known) return text.shown;
    }
  }
  return stored;
}

}  // namespace

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

QString AnyObject::ShownName() const {
  const bool isMade = Is(object_type::kFolder) || Is(object_type::kEvent);
  const bool isList = Is(object_type::kBookmark) || Is(object_type::kBook);
  return (isMade && IsSystem()) || isList ? InLanguage(Name()) : Name();
}

}  // namespace vorn
