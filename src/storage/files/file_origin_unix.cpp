#include <QFile>

#include "storage/files/file_origin.h"

#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace vorn {

// The attribute that freedesktop.org lists for it.
void MarkForeign([[maybe_unused]] const QString& path, [[maybe_unused]] const QString& address) {
#ifdef __linux__
  const QByteArray value = address.toUtf8();
  setxattr(QFile::encodeName(path).constData(), "user.xdg.origin.url", value.constData(),
           static_cast<size_t>(value.size()), 0);
#endif
}

}  // namespace vorn
