#pragma once

#include <QString>
#include <utility>

#include "storage/bags/disk.h"

namespace vorn {

/// How it stands with what a browser window shows, by the names that the window's request has for
/// it (see `PageRequest`).
class PageState {
 public:
  explicit PageState(DiskPtr bag) : bag_(std::move(bag)) {}

  bool IsLoading() const { return bag_->Flag(kLoading); }
  void SetLoading(bool loading) { bag_->Let(kLoading, loading); }
  /// Whether one can go back and on.
  bool HasBefore() const { return bag_->Flag(kBefore); }
  bool HasNext() const { return bag_->Flag(kNext); }
  void SetNeighbours(bool before, bool next) {
    bag_->Let(kBefore, before);
    bag_->Let(kNext, next);
  }

  /// A new window that a web page asked for, and that is not yet shown.
  bool IsNew() const { return bag_->Flag(kNew); }
  void SetNew(bool isNew) { bag_->Let(kNew, isNew); }
  /// The target name that the window answers to.
  QString WindowName() const { return bag_->Text(kWindowName); }
  void SetWindowName(const QString& name) { bag_->Let(kWindowName, name); }
  /// The window is done with.
  bool IsDust() const { return bag_->Flag(kDust); }
  void BeDust() { bag_->Let(kDust, true); }

 private:
  static inline const QString kLoading = QStringLiteral("onLoad");
  static inline const QString kBefore = QStringLiteral("before");
  static inline const QString kNext = QStringLiteral("next");
  static inline const QString kNew = QStringLiteral("init");
  static inline const QString kWindowName = QStringLiteral("windowname");
  static inline const QString kDust = QStringLiteral("dust");

  DiskPtr bag_;
};

}  // namespace vorn
