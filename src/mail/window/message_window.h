#pragma once

#include <QMainWindow>

#include "frame/request_window.h"
#include "mail/open_message.h"
#include "storage/context.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;

namespace vorn {

/// The message window "Mail": shows one message for reading.
class MessageWindow : public QMainWindow, public RequestWindow {
  Q_OBJECT

 public:
  explicit MessageWindow(Context& context);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  QString Tag() const override { return tag_; }
  bool IsChild() const override { return false; }
  void ShowModeless() override;
  void ShowModal() override;
  void Activate() override;
  void Unload() override { deleteLater(); }

 private:
  void BuildControls();
  void Fill(const OpenedMessage& message);

  Context& context_;
  DiskPtr request_;
  QString tag_;
  QLineEdit* txSubject_ = nullptr;
  QListWidget* lvMailaddress_ = nullptr;
  QLabel* lbClip_ = nullptr;
  QListWidget* lvClip_ = nullptr;
  QPlainTextEdit* txMemo_ = nullptr;
};

}  // namespace vorn
