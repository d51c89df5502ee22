#pragma once

#include <QString>
#include <QStringList>

#include "objects/any_object.h"

namespace vorn {

/// An object as the user knows it: what came with the profile has its name and its tool tip in the
/// interface's language. A view: the bag outlives it.
class ShownObject {
 public:
  explicit ShownObject(const Disk& bag) : any_(bag) {}

  QString Name() const;
  /// Every name by which the user may know it: the stored one and, of what came with the profile,
  /// the names in all languages.
  QStringList Names() const;
  QString Tip() const;

 private:
  bool IsMadeWithProfile() const;
  bool MayComeWithProfile() const;

  AnyObject any_;
};

}  // namespace vorn
