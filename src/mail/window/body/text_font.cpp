#include "mail/window/body/text_font.h"

#include <QFontDatabase>

namespace vorn {

QFont TextFont(Context& context, FontUse use) {
  const FontChoice choice = Settings(context).Font(use);
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (!choice.family.isEmpty()) font.setFamily(choice.family);
  if (choice.points > 0) font.setPointSize(choice.points);
  return font;
}

}  // namespace vorn
