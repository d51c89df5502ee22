#include "frame/language_texts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace vorn {
namespace {

// Another country that reads English keeps its own dates; a system without a language has none.
QLocale LocaleFor(const QString& language) {
  const QLocale system = QLocale::system();
  const bool isJapanese = language == u"ja";
  if (system.language() != QLocale::C && isJapanese == (system.language() == QLocale::Japanese))
    return system;
  return QLocale(isJapanese ? QLocale::Japanese : QLocale::English);
}

}  // namespace

LanguageTexts::LanguageTexts(const QString& language) {
  QLocale::setDefault(LocaleFor(language));
  const auto use = [](QTranslator& texts, const QString& name, const QString& folder) {
    if (texts.load(name, folder)) QCoreApplication::installTranslator(&texts);
  };
  const QString own = QStringLiteral(":/texts");
  // The program's texts are Japanese, the toolkit's English.
  use(program_, QStringLiteral("vorn_") + language, own);
  use(toolkit_, QStringLiteral("qtbase_") + language,
      QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  use(toolkitGaps_, QStringLiteral("toolkit_") + language, own);
}

LanguageTexts::~LanguageTexts() {
  QLocale::setDefault(before_);
}

}  // namespace vorn
