#include "storage/context.h"

namespace vorn {
namespace {
const QString kMarker = QStringLiteral("/current/");
}

QString CurrentPath(const Context& context, const QString& path) {
  return QString(path).replace(kMarker, context.AppFolder);
}

QString PlatformPath(const Context& context, const QString& stored) {
  QString path = stored;
  // Other paths come from this platform itself, where a backslash can be part of a name.
  if (path.startsWith(kMarker)) path.replace(u'\\', u'/');
  return CurrentPath(context, path);
}

}  // namespace vorn
