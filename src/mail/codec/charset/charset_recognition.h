#pragma once

#include <QByteArrayView>

#include "mail/codec/charset/charset.h"

namespace vorn {

/// The likeliest character set of text that says nothing of its own: JIS by its escape sequences,
/// else whichever of UTF-8, EUC and Shift-JIS decodes it without error to usual Japanese, else the
/// one of these and windows-1252 that explains most of it, errors counted. Plain ASCII is `Ascii`;
/// bytes that fit nothing are `Unknown`. With `atCut` the end may cut a character off.
Charset RecognizeCharset(QByteArrayView bytes, bool atCut = false);

/// As much of bytes as is needed to tell their code: from some letters before what is not ASCII.
QByteArrayView Telling(QByteArrayView bytes, qsizetype enough);

/// Whether bytes shift between the sets of ISO-2022-JP. To every other code they are ASCII.
bool HasJisEscape(QByteArrayView bytes);

/// Whether among them are sets that ISO-2022-JP-2 adds: Chinese, Korean, Latin and Greek (RFC
/// 1554).
bool HasForeignEscape(QByteArrayView bytes);

/// Whether what is not ASCII in a text are half-width kana alone, as words have them.
bool AreHalfKanaWords(const QString& text);

/// How usual on average what is not ASCII in a text is in Japanese, from -25 for U+FFFD to 12 for
/// hiragana; 0 when all is ASCII.
double Likelihood(const QString& text);

/// Whether a text has more of what is usual in Japanese than of what a wrong code gives.
bool LooksJapanese(const QString& text);

/// The stored number of a recognised code: 0 JIS, 1 EUC, 2 Shift-JIS, -1 for everything else, UTF-8
/// and plain ASCII among it.
int CodeNumber(const Charset& charset);

}  // namespace vorn
