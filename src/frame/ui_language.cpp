#include "frame/ui_language.h"

#include <QLocale>

#include "frame/user_store.h"

namespace vorn {
namespace {

const QString kLanguageEntry = QStringLiteral("infomation/language");
const QString kJapanese = QStringLiteral("ja");
const QString kEnglish = QStringLiteral("en");

}  // namespace

QString UiLanguage() {
  const QString chosen = UserStore()->value(kLanguageEntry).toString();
  if (chosen == kJapanese || chosen == kEnglish) return chosen;
  const QLocale::Language system = QLocale::system().language();
  return system == QLocale::Japanese || system == QLocale::C ? kJapanese : kEnglish;
}

void KeepUiLanguage(const QString& language) {
  const auto store = UserStore();
  if (store->value(kLanguageEntry).toString() != language)
    store->setValue(kLanguageEntry, language);
}

}  // namespace vorn
