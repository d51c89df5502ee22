#pragma once

#include <QLocale>
#include <QString>
#include <QTranslator>

namespace vorn {

/// Puts the interface into a language as long as it lives: the program's texts, the toolkit's own,
/// such as those of file dialogs and buttons, and the form of dates and numbers.
class LanguageTexts {
 public:
  /// "ja" or "en".
  explicit LanguageTexts(const QString& language);
  ~LanguageTexts();
  LanguageTexts(const LanguageTexts&) = delete;
  LanguageTexts& operator=(const LanguageTexts&) = delete;

 private:
  QLocale before_;  // the locale that had been set
  QTranslator program_;
  QTranslator toolkit_;
  QTranslator toolkitGaps_;
};

}  // namespace vorn
