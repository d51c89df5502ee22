#pragma once

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// Reads Shift_JIS of which a byte was lost, changed or brought in. Behind such a place the bytes
/// of two characters can form others: of all readings this is the most usual one, with U+FFFD for
/// what it leaves out, each of which costs `errorCost` (see `JapaneseCost`).
QString RealignShiftJis(QByteArrayView bytes, int errorCost);

}  // namespace vorn
