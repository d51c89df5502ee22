#include "mail/inspection/word_fields.h"

#include <QRegularExpression>
#include <algorithm>

namespace vorn {

bool ActsAsField(const QString& code) {
  static const QRegularExpression commands(
      QStringLiteral("^[\\s\"\\\\]*(DDE|DDEAUTO|LINK|INCLUDE|INCLUDEPICTURE|INCLUDETEXT|IMPORT|"
                     "DATABASE)(?![A-Z])"),
      QRegularExpression::CaseInsensitiveOption);
  return commands.match(code).hasMatch();
}

void WordFields::Begin() {
  if (!open_.isEmpty() && !open_.last().isResult) {
    const QString& code = open_.last().code;
    const QString command = code.trimmed();
    const bool isBroken = !code.isEmpty() && code.back().isLetter() && !command.contains(u' ');
    acts_ = acts_ || command.isEmpty() || isBroken;
  }
  open_.append(Field());
}

void WordFields::Add(const QString& code) {
  if (open_.isEmpty()) open_.append(Field());
  open_.last().code += code;
}

void WordFields::Separate() {
  if (!open_.isEmpty()) open_.last().isResult = true;
}

void WordFields::End() {
  if (open_.isEmpty()) return;
  acts_ = acts_ || ActsAsField(open_.takeLast().code);
}

bool WordFields::Act() const {
  return acts_ || std::any_of(open_.begin(), open_.end(),
                              [](const Field& field) { return ActsAsField(field.code); });
}

}  // namespace vorn
