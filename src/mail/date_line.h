#pragma once

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// A message's Date field for a reader, in its sender's zone: "2026/11/24 9:05 (+0900)", and beside
/// it when it was stored (the stored form) where that differs by more than a day. Empty for a
/// message without a date.
QString DateLine(QByteArrayView source, const QString& stored);

}  // namespace vorn
