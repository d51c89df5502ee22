#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>

#include "storage/context.h"

class QMessageBox;
class QSoundEffect;
class QWidget;

namespace vorn {

/// Tells the user of new messages as the settings say: by a question whether to open them, by a
/// sound.
class NewMessageNotice : public QObject {
  Q_OBJECT

 public:
  /// `open` opens a message by its serial identifier.
  NewMessageNotice(Context& context, QWidget& window,
                   std::function<void(const QString& serialId)> open);
  void Tell(const QStringList& messages);

 private:
  void Ask(const QStringList& messages);
  void Open(const QStringList& messages);
  void PlaySound();

  Context& context_;
  QWidget& window_;
  std::function<void(const QString&)> open_;
  QSoundEffect* mmSound_;
  QPointer<QMessageBox> question_;
};

}  // namespace vorn
