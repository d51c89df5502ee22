#pragma once

#include <QByteArray>

namespace vorn {

/// The digest that is kept with a message source (XXH3, 128 bits): it tells damage by accident,
/// while the file's encryption guards against change by others.
QByteArray SourceDigest(const QByteArray& source);

}  // namespace vorn
