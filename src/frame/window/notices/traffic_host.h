#pragma once

#include <QObject>
#include <QTimer>

#include "events/event_log.h"
#include "frame/request_queue.h"
#include "storage/base/serial_id.h"
#include "transfer/mail_traffic.h"

class QWidget;

namespace vorn {

class MainStatusBar;

/// The mail traffic in the main window: a timer drives it, its questions stand before the windows,
/// what comes of it goes into the event log and the status bar.
class TrafficHost : public QObject, public PlanHost {
  Q_OBJECT

 public:
  TrafficHost(Context& context, QWidget& window, RequestQueue& queue, MainStatusBar& status,
              EventView& view);

  MailTraffic& Traffic() { return traffic_; }
  CheckPlan& Plan() { return traffic_.Plan(); }
  bool IsBusy() { return traffic_.Control().Busy(); }
  EventLog& Events() { return events_; }
  /// While it is stopped or its signals are blocked, no transfer begins.
  QTimer& Timer() { return tmPlan_; }

  void PostRequest(const DiskPtr& request) override { queue_.Post(request); }
  void AddEvent(EventLevel level, EventMode mode, const SerialId& reference, const QString& title,
                const QString& category, const QString& text) override;
  void SendAndReceive() override;
  SerialId ChooseAccount(const QString& title, const QString& prompt) override;
  QString AskPassword(const PasswordQuestion& question) override;
  void WorkIsHeld(const QString& sentence) override;
  void WaitingChanged() override { Q_EMIT ListsChanged(); }

 Q_SIGNALS:
  /// An error was recorded.
  void Failed();
  /// Lists show something else of a message than before.
  void ListsChanged();
  /// The traffic has gone on by one step.
  void Ticked();

 private:
  void Tick();

  Context& context_;
  QWidget& window_;
  RequestQueue& queue_;
  MainStatusBar& status_;
  EventLog events_;
  MailTraffic traffic_;
  QTimer tmPlan_;
};

}  // namespace vorn
