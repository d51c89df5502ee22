#include "objects/settings.h"

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString kFontKeys[] = {setting::kListFont, setting::kMessageFont,
                             setting::kEditFont};  // by `FontUse`

}  // namespace

QStringList DefaultTextTypes() {
  return {QStringLiteral("text/plain")};
}

Settings::Settings(Context& context) : bag_(LoadObject(context, fixed_serial::kSettings)) {
  if (bag_ == nullptr) bag_ = std::make_shared<Disk>(fixed_serial::kSettings);
}

PanePlace Settings::ReadingPane() const {
  return static_cast<PanePlace>(qBound(0, bag_->Number(setting::kReadingPane), 2));
}

RowHeight Settings::Rows() const {
  return static_cast<RowHeight>(qBound(0, bag_->Number(setting::kRowHeight), 2));
}

LanguageChoice Settings::Language() const {
  return static_cast<LanguageChoice>(qBound(0, bag_->Number(setting::kLanguage), 2));
}

int Settings::CheckMinutes() const {
  return bag_->Flag(setting::kChecks) ? qMax(bag_->Number(setting::kCheckMinutes, 1), 1) : 0;
}

QStringList Settings::TextTypes() const {
  return bag_->Text(setting::kTextTypes, DefaultTextTypes().join(kLineBreak)).split(kLineBreak);
}

FontChoice Settings::Font(FontUse use) const {
  const QString& key = kFontKeys[static_cast<int>(use)];
  return {bag_->Text(key), bag_->Number(key + QStringLiteral("Size"))};
}

}  // namespace vorn
