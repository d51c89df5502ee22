#pragma once

#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// How a request's window is shown.
enum RequestShow { kShowHidden = -1, kShowModeless = 0, kShowModal = 1 };

/// Which window a request wants.
enum class WantedWindow { Pages, Message, Settings, Rules, Object };

/// What is done after a request's window was loaded and shown, besides showing its object anew.
enum class AfterStep { None, ApplySettings, DeleteObject, RenameObject };

/// A request for a window, by the names that its bag has for what every request says; its serial
/// identifier becomes the window's tag. A view: the bag outlives it.
class WindowRequest {
 public:
  enum class Kind { Dialog, Window, MessageBox };

  explicit WindowRequest(const Disk& bag) : bag_(bag) {}
  /// A request for a window that edits an object; `type` is that of the object, and of settings and
  /// rules their serial identifier.
  static void BeginDialog(Disk& bag, const QString& type);
  /// A request for a window of pages or of a message.
  static void BeginWindow(Disk& bag, WantedWindow window);
  /// That new messages have come.
  static DiskPtr NewMessages(const SerialId& serial, const SerialIds& messages);

  bool Is(Kind kind) const;
  WantedWindow Wanted() const;
  /// The type of the object that is edited.
  QString ObjectType() const { return bag_.Text(kStatus); }
  bool IsForNewMessages() const;
  SerialIds NewMessages() const { return SerialIdsOfLines(bag_.Text(kMessage)); }

  /// The window is a new one even where one with that tag is open.
  bool OpensAnother() const { return bag_.Flag(kDirect); }
  static void SetOpensAnother(Disk& bag, bool another) { bag.Let(kDirect, another); }
  /// What the window's loader is given beside the request.
  bool Updates() const { return bag_.Flag(kUpdate); }
  static void SetUpdates(Disk& bag, bool updates) { bag.Let(kUpdate, updates); }
  RequestShow Show(RequestShow byDefault) const;
  static void SetShow(Disk& bag, RequestShow show) { bag.Let(kShow, show); }
  AfterStep After() const;
  static void SetAfter(Disk& bag, AfterStep after);

 private:
  static void Begin(Disk& bag, Kind kind, const QString& status);

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
