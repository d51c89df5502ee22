#pragma once

#include <QHash>
#include <QString>

#include "events/event_record.h"
#include "storage/context.h"

namespace vorn {

/// Where recorded events are shown: the console tree.
class EventView {
 public:
  virtual ~EventView() = default;
  /// `icon` is the category with the level's name, such as "accounterror". An event that is shown
  /// already gets the title and the icon.
  virtual void ShowEvent(const SerialId& serialId, const QString& title, const QString& icon) = 0;
};

/// What happened in the background: the records of the running program, kept in memory alone.
class EventLog {
 public:
  EventLog(Context& context, EventView& view) : context_(context), view_(view) {}

  /// With the setting "EventsFolded" an event that is about the same as an earlier one, and went
  /// as that did, is recorded with it; the titles of all tell the time.
  void AddEvent(EventLevel level, EventMode mode, const SerialId& reference, const QString& title,
                const QString& category, const QString& text);
  /// Failures of messages that have been sent by now, whoever sent them, are no failures any more:
  /// they say so, and are shown as what else is told.
  void SettleSent();
  /// Forgets all records.
  void Clear() {
    records_ = {};
    failures_.clear();
  }
  /// The record with that serial identifier (`EventRecord`), or null.
  DiskPtr Find(const SerialId& serialId) const { return records_.Find(serialId); }

 private:
  // What is shown of an error about a message.
  struct Failure {
    QString title;
    QString category;
  };

  DiskPtr Begin(EventMode mode, const SerialId& reference, const QString& text) const;
  DiskPtr Like(const SerialId& reference, const QString& icon) const;

  Context& context_;
  EventView& view_;
  DiskCollection records_;
  QHash<SerialId, Failure> failures_;  // by record
};

}  // namespace vorn
