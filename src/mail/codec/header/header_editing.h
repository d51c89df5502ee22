#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace vorn::MimeCodec {

/// The source without every field of that name (given with its colon) in its header block,
/// continuation lines included.
QByteArray RemoveField(const QByteArray& source, QByteArrayView name);

/// The source with `fields`, whole lines, put at the start of its header block.
QByteArray InsertFields(const QByteArray& source, const QByteArray& fields);

}  // namespace vorn::MimeCodec
