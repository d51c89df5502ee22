#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>

#include "desktop/notification_service.h"
#include "present/window/page/browser_host.h"
#include "storage/context.h"

class QMessageBox;
class QSoundEffect;
class QWidget;

namespace vorn {

/// Tells the user of new messages as the settings say: by a question whether to open them, by a
/// notification of the desktop, by a sound.
class NewMessageNotice : public QObject {
  Q_OBJECT

 public:
  /// `open` opens a message by its serial identifier, `act` acts on messages of any folder.
  NewMessageNotice(Context& context, QWidget& window,
                   std::function<void(const SerialId& serialId)> open,
                   std::function<void(MessageAction, const SerialIds& messages)> act);
  void Tell(const SerialIds& messages);

 private:
  void Ask(const SerialIds& messages);
  void Open(const SerialIds& messages);
  void Notify(const SerialIds& messages);
  void Chosen(const QString& action, const SerialIds& messages);
  void PlaySound();

  Context& context_;
  QWidget& window_;
  std::function<void(const SerialId&)> open_;
  std::function<void(MessageAction, const SerialIds&)> act_;
  QSoundEffect* mmSound_;
  QPointer<QMessageBox> question_;
  NotificationService desktop_;
  SerialIds notified_;  // and not yet dealt with
};

}  // namespace vorn
