#pragma once

#include <QString>

#include "storage/disk.h"

namespace vorn {

/// How a request's window is shown.
enum RequestShow { kShowHidden = -1, kShowModeless = 0, kShowModal = 1 };

/// A request for a window, by the names that its bag has for what every request says; its serial
/// identifier becomes the window's tag. A view: the bag outlives it.
class WindowRequest {
 public:
  enum class Kind { Dialog, Window, MessageBox };

  explicit WindowRequest(const Disk& bag) : bag_(bag) {}
  /// `status` tells which window of that kind.
  static void Begin(Disk& bag, Kind kind, const QString& status);
  /// That new messages have come; `serials` has one a line.
  static DiskPtr NewMessages(const QString& serial, const QString& serials);

  bool Is(Kind kind) const;
  QString Status() const { return bag_.Text(kStatus); }
  bool IsForNewMessages() const;
  QString NewMessages() const { return bag_.Text(kMessage); }

  /// The window is a new one even where one with that tag is open.
  bool OpensAnother() const { return bag_.Flag(kDirect); }
  static void SetOpensAnother(Disk& bag, bool another) { bag.Let(kDirect, another); }
  /// What the window's loader is given beside the request.
  bool Updates() const { return bag_.Flag(kUpdate); }
  static void SetUpdates(Disk& bag, bool updates) { bag.Let(kUpdate, updates); }
  RequestShow Show(RequestShow byDefault) const;
  static void SetShow(Disk& bag, RequestShow show) { bag.Let(kShow, show); }
  /// What is done afterwards: "public", "delete", "rename" or anything else for nothing more.
  QString After() const { return bag_.Text(kAfter); }
  static void SetAfter(Disk& bag, const QString& after) { bag.Let(kAfter, after); }

 private:
  static inline const QString kMode = QStringLiteral("mode");
  static inline const QString kStatus = QStringLiteral("status");
  static inline const QString kMessage = QStringLiteral("message");
  static inline const QString kDirect = QStringLiteral("direct");
  static inline const QString kUpdate = QStringLiteral("update");
  static inline const QString kShow = QStringLiteral("show");
  static inline const QString kAfter = QStringLiteral("after");

  const Disk& bag_;
};

}  // namespace vorn
