#include "mail/window/composing/shown_signature.h"

#include <QTextCursor>

#include "mail/compose_message.h"
#include "mail/message_document.h"
#include "mail/window/body/message_body.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/fields/address_list.h"
#include "storage/ui.h"

namespace vorn {

QString ShownBlock(const QString& signature) {
  return SignatureBlock(signature).replace(kLineBreak, QStringLiteral("\n"));
}

void FollowSender(Context& context, MessageDocument& document, MessageForm& form) {
  if (!document.IsEditable()) return;
  for (const AddressEntry& entry : form.Addresses().Addresses()) {
    if (entry.kind.compare(u"FROM", Qt::CaseInsensitive) != 0) continue;
    // While another address is being typed the row is nobody's.
    if (OwnAddress(context, {entry.address}).isEmpty()) return;
    const QString signature = SignatureOf(context, entry.address);
    const QString before = ShownBlock(document.Model().signature);
    if (signature == document.Model().signature || before.isEmpty()) return;
    const qsizetype at = form.Body().Text()->toPlainText().indexOf(before);
    if (at < 0) return;
    QTextCursor cursor(form.Body().Text()->document());
    cursor.setPosition(static_cast<int>(at));
    cursor.setPosition(static_cast<int>(at + before.size()), QTextCursor::KeepAnchor);
    cursor.insertText(ShownBlock(signature));
    document.Model().signature = signature;
    return;
  }
}

}  // namespace vorn
