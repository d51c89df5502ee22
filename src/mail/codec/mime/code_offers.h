#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <vector>

#include "mail/codec/charset/charset.h"

namespace vorn {

/// A code in which a message can be read by hand.
struct CodeOffer {
  QString name;  ///< as MIME or IANA call it, else as ICU does
  Charset charset;
  QString preview;           ///< the first line that tells codes apart, in this code
  bool isPlausible = false;  ///< neither errors nor characters that no text has
  bool isUsual = false;      ///< in mail
};

/// All codes that can be decoded, with what the message gives in each: the plausible ones first, of
/// these the one that is recognised, what is usual in mail, then the better text, then by name.
std::vector<CodeOffer> OfferCodes(QByteArrayView source, const QString& contentIndex,
                                  const QStringList& textTypes);

/// The labels of text parts that are not read as they say, each once; "" for a part without
/// one that is not ASCII either.
QStringList WrongLabels(QByteArrayView source, const QString& contentIndex,
                        const QStringList& textTypes);

}  // namespace vorn
