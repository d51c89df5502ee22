#include "mail/window/host/message_printing.h"

#include <QFile>

#include "kit/window/plain_text.h"
#include "mail/codec/mime/inline_images.h"
#include "mail/mail_request_bag.h"
#include "mail/open_message.h"
#include "mail/print_page.h"
#include "mail/store/message_bag.h"
#include "mail/window/host/message_host.h"
#include "storage/databases.h"
#include "storage/files/private_files.h"
#include "storage/ui.h"

namespace vorn {

void PrintMessagePage(Context& context, QWidget* window, MessageHost& host,
                      const MessageModel& model, const QString& html) {
  const QByteArray page = PrintPage(model, html);
  const QString path = context.TempFolder + QStringLiteral("print_") +
                       context.Data.NewSerialID().Text() + QStringLiteral(".html");
  QFile file(path);
  if (MakePrivateFolder(context.TempFolder) && OpenPrivate(file, QIODevice::WriteOnly) &&
      file.write(page) == page.size() && file.flush()) {
    host.PrintPageFile(path, model.subject.isEmpty() ? Ui::tr("（件名なし）") : model.subject);
    return;
  }
  file.remove();
  ShowBox(window, QMessageBox::Critical,
          Ui::tr("印刷するページを書き込めません。ディスクの空き容量を確認して"
                 "ください。"));
}

void PrintStoredMessage(Context& context, QWidget* window, MessageHost& host,
                        const SerialId& serialId) {
  Disk request(serialId);
  MessageBag::SetFile(request, MailDatabasePath(context));
  const OpenedMessage opened = LookAtMessage(context, request);
  if (!opened.found || opened.unreadable) {
    ShowBox(window, QMessageBox::Critical,
            Ui::tr("メッセージを読み込めません。") + opened.reason.text);
    return;
  }
  const QString html =
      opened.html.isEmpty() || !OpensAsHtml(context, opened.model)
          ? QString()
          : WithInlineImages(opened.html, opened.source, MailRequestBag(request).ContentIndex());
  PrintMessagePage(context, window, host, opened.model, html);
}

}  // namespace vorn
