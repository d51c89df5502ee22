#pragma once

#include <QString>
#include <utility>

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "storage/context.h"

namespace vorn {

/// The receive-stop rules as their object "rule" has them.
class RulesObject {
 public:
  RulesObject(DiskPtr bag) : bag_(std::move(bag)) {}
  /// Those of the logged-in profile, loaded when they are not yet; none without their object.
  explicit RulesObject(Context& context) : bag_(LoadObject(context, fixed_serial::kRules)) {
    if (bag_ == nullptr) bag_ = std::make_shared<Disk>(fixed_serial::kRules);
  }

  const DiskPtr& Bag() const { return bag_; }
  /// One a line (`ReceiveStopRules`).
  QString Lines() const { return bag_->Text(kLines); }
  void SetLines(const QString& lines) { bag_->Let(kLines, lines); }
  /// Whether what they stop is deleted on the server.
  bool DeletesOnServer() const { return bag_->Flag(kDeletes); }

  // The keys. A prefix before one makes the name of the control that edits it.
  static inline const QString kLines = QStringLiteral("ReceiveStop");
  static inline const QString kDeletes = QStringLiteral("ReceiveStopDelete");

 private:
  DiskPtr bag_;
};

}  // namespace vorn
