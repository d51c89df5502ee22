#include "objects/any_object.h"

namespace vorn {

// The keys of the "file" page, which every object has.
void AnyObject::Begin(Disk& bag, const QString& type, const QString& name, const QString& draw) {
  bag.Let(kType, type);
  SetName(bag, name);
  SetToolTip(bag, QString());
  SetDraw(bag, draw.isEmpty() ? type : draw);
  SetDefault(bag, false);
  SetSystem(bag, false);
  SetEnabled(bag, false);
  bag.Let(kParent, QString());
}

QDateTime AnyObject::Saved() const {
  return QDateTime::fromString(bag_.Text(kSaved), QStringLiteral("yyyy/MM/dd H:mm:ss"));
}

}  // namespace vorn
