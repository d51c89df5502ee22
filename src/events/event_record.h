#pragma once

#include <QString>

#include "events/event_kinds.h"
#include "storage/bags/disk.h"
#include "storage/ui.h"

namespace vorn {

/// A recorded event, by the names that its bag has for what it holds. That of a message says in the
/// same bag where the message is stored (`MessageBag`). A view: the bag outlives it.
class EventRecord {
 public:
  explicit EventRecord(const Disk& bag) : bag_(bag) {}
  /// `time` is shown as it is.
  static void Begin(Disk& bag, EventMode mode, const SerialId& reference, const QString& time,
                    const QString& text);
  /// Notes what kind of event it is, as its icon tells.
  static void SetKind(Disk& bag, const QString& icon) { bag.Let(kKind, icon); }
  /// The same has happened once more.
  static void Renew(Disk& bag, const QString& time, const QString& text);

  /// What it told of is over, as `words` say; it is of another kind from now on.
  static void Settle(Disk& bag, const QString& icon, const QString& words);

  bool IsAboutMessage() const { return bag_.Number(kMode) == kEventMessage; }
  bool Is(const SerialId& reference, const QString& icon) const {
    return Reference() == reference && bag_.Text(kKind) == icon;
  }
  /// The serial identifier of the object or message.
  SerialId Reference() const { return SerialId(bag_.Text(kReference)); }
  QString Text() const { return bag_.Text(kText); }

 private:
  static inline const QString kReference = QStringLiteral("reference");
  static inline const QString kTime = QStringLiteral("daytime");
  static inline const QString kText = QStringLiteral("message");
  static inline const QString kMode = QStringLiteral("mode");
  static inline const QString kKind = QStringLiteral("kind");

  const Disk& bag_;
};

inline void EventRecord::Begin(Disk& bag, EventMode mode, const SerialId& reference,
                               const QString& time, const QString& text) {
  bag.Let(kReference, reference.Text());
  bag.Let(kTime, time);
  bag.Let(kText, text);
  bag.Let(kMode, mode);
}

inline void EventRecord::Renew(Disk& bag, const QString& time, const QString& text) {
  bag.Let(kTime, time);
  bag.Let(kText, text);
}

inline void EventRecord::Settle(Disk& bag, const QString& icon, const QString& words) {
  SetKind(bag, icon);
  bag.Let(kText, words + kLineBreak + kLineBreak + EventRecord(bag).Text());
}

}  // namespace vorn
