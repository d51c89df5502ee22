#include "storage/keys/recovery_code.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QRandomGenerator>

namespace vorn::RecoveryCode {
namespace {

constexpr qsizetype kRandomLetters = 26;
constexpr qsizetype kCheckLetters = 4;
constexpr qsizetype kLetters = kRandomLetters + kCheckLetters;
constexpr qsizetype kGroup = 5;
constexpr quint32 kValues = 32;
const QByteArray kAlphabet = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";

char Letter(quint32 value) {
  return kAlphabet.at(static_cast<qsizetype>(value % kValues));
}

QByteArray CheckOf(const QByteArray& letters) {
  const QByteArray hash =
      QCryptographicHash::hash("vorn recovery code " + letters, QCryptographicHash::Sha256);
  QByteArray check;
  for (const char byte : hash.first(kCheckLetters)) check += Letter(static_cast<uchar>(byte));
  return check;
}

QString InGroups(const QByteArray& letters) {
  QString text = QString::fromLatin1(letters);
  for (qsizetype at = kGroup; at < text.size(); at += kGroup + 1) text.insert(at, u'-');
  return text;
}

// Whatever comes along when it is copied from a sentence.
bool Separates(QChar c) {
  constexpr QChar kLongVowel(u'ー');  // what a Japanese keyboard gives for a dash
  return c.isSpace() || c == kLongVowel || c.category() == QChar::Punctuation_Dash ||
         c.category() == QChar::Other_Format || QStringView(u"−.,。、「」\"'_").contains(c);
}

// Empty where there is something that no code holds.
QByteArray LettersOf(const QString& typed) {
  QByteArray letters;
  for (const QChar c : typed.normalized(QString::NormalizationForm_KC).toUpper()) {
    if (Separates(c)) continue;
    char letter = c.unicode() < 0x80 ? static_cast<char>(c.unicode()) : '?';
    if (letter == 'O') letter = '0';
    if (letter == 'I' || letter == 'L') letter = '1';
    if (!kAlphabet.contains(letter)) return {};
    letters += letter;
  }
  return letters;
}

}  // namespace

QString Make() {
  QByteArray letters;
  for (qsizetype i = 0; i < kRandomLetters; ++i) {
    letters += Letter(QRandomGenerator::system()->bounded(kValues));
  }
  return InGroups(letters + CheckOf(letters));
}

QString Read(const QString& typed) {
  const QByteArray letters = LettersOf(typed);
  const bool isCode =
      letters.size() == kLetters && letters.endsWith(CheckOf(letters.first(kRandomLetters)));
  return isCode ? InGroups(letters) : QString();
}

bool IsMistyped(const QString& typed) {
  const qsizetype length = LettersOf(typed).size();
  return length >= kLetters - kGroup && length <= kLetters + kGroup && Read(typed).isEmpty();
}

}  // namespace vorn::RecoveryCode
