#pragma once

#include "storage/base/result.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class MessageDocument;
class MessageForm;
class MessageHost;

/// Gives the message of a window out, as it stands there: into a file, onto paper, as its source.
class MessageOutput {
 public:
  /// Dialogs stand before `window`.
  MessageOutput(Context& context, MessageHost& host, MessageDocument& document, MessageForm& form,
                QWidget& window)
      : context_(context), host_(host), document_(document), form_(form), window_(window) {}

  /// `subject` names the file.
  void SaveToFile(const QString& subject);
  void Print();
  void ShowSource(const QString& subject);

 private:
  Result<QByteArray> Source() const;

  Context& context_;
  MessageHost& host_;
  MessageDocument& document_;
  MessageForm& form_;
  QWidget& window_;
};

}  // namespace vorn
