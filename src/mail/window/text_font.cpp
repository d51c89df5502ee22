#include "mail/window/text_font.h"

#include <QFontDatabase>

#include "objects/settings.h"

namespace vorn {

QFont TextFont(Context& context, TextUse use) {
  const DiskPtr settings = Settings(context);
  const bool isRead = use == TextUse::Read;
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  const QString family = settings->Text(isRead ? u"MessageFont" : u"EditFont");
  const int points = settings->Number(isRead ? u"MessageFontSize" : u"EditFontSize");
  if (!family.isEmpty()) font.setFamily(family);
  if (points > 0) font.setPointSize(points);
  return font;
}

}  // namespace vorn
