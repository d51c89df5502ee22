#pragma once

#include <QList>
#include <QString>

#include "mail/codec/header/address.h"

namespace vorn {

/// The line that stands above a quotation: in `pattern` "%d" is the date, "%n" the writer's name
/// and
/// "%a" his address. Empty for an empty pattern.
QString AttributionLine(const QString& pattern, const AddressEntry& writer, const QString& date);

/// What stands above the text of a message that is handed on: who wrote it to whom, when and about
/// what. Lines end with CR LF, the last one is empty.
QString ForwardHead(const QString& subject, const QList<AddressEntry>& written,
                    const QString& date);

/// A signature as it stands in a text, behind its line "-- " (RFC 3676 section 4.3) unless it
/// begins with a line of its own that sets it off. Empty for a blank one. Lines end with CR LF.
QString SignatureBlock(const QString& signature);

enum class SignaturePlace { UnderQuote, AboveQuote };

/// The text of a new message: a line to begin on, the signature, and what is quoted under its
/// attribution. With neither signature nor attribution it is what is quoted alone.
QString FormText(const QString& attribution, const QString& quoted, const QString& signature,
                 SignaturePlace place);

}  // namespace vorn
