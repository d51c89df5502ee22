#pragma once

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// A message's Date field for a reader, as his own clock tells it and, where that differs, in its
/// sender's zone: "2026/11/24 9:05 (+0900)". Empty for a message without a date.
QString DateLine(QByteArrayView source);

/// Says when a message was stored (the stored form), where its Date field is off by more than a
/// day; else empty.
QString ArrivalNote(QByteArrayView source, const QString& stored);

}  // namespace vorn
