#include "mail/mailto.h"

#include <QStringList>
#include <QUrl>

#include "mail/codec/header/address.h"
#include "mail/codec/header/list_splitting.h"

namespace vorn {
namespace {

const QString kScheme = QStringLiteral("mailto:");

QString Decoded(const QString& text) {
  return QUrl::fromPercentEncoding(text.toUtf8());
}

// Of one line, without what could begin a field of its own.
QString OneLine(const QString& text) {
  return MimeCodec::OneLine(Decoded(text));
}

// A comma separates addresses before it is decoded; an encoded one belongs to an address.
QList<AddressEntry> Recipients(const QString& kind, const QString& list) {
  QList<AddressEntry> entries;
  for (const QString& address : list.split(u',', Qt::SkipEmptyParts)) {
    const QString text = OneLine(address);
    if (!text.isEmpty()) entries.append(ParseAddressEntry(kind + QStringLiteral(": ") + text));
  }
  return entries;
}

}  // namespace

bool IsMailto(const QString& text) {
  return text.startsWith(kScheme, Qt::CaseInsensitive);
}

MessageModel WithMailto(MessageModel model, const QString& address) {
  const QString rest = address.mid(kScheme.size()).section(u'#', 0, 0);
  model.addresses += Recipients(QStringLiteral("TO"), rest.section(u'?', 0, 0));
  for (const QString& field : rest.section(u'?', 1).split(u'&', Qt::SkipEmptyParts)) {
    const QString name = Decoded(field.section(u'=', 0, 0)).toLower();
    const QString value = field.section(u'=', 1);
    if (name == u"to") {
      model.addresses += Recipients(QStringLiteral("TO"), value);
    } else if (name == u"cc") {
      model.addresses += Recipients(QStringLiteral("CC"), value);
    } else if (name == u"bcc") {
      model.addresses += Recipients(QStringLiteral("BC"), value);
    } else if (name == u"subject") {
      model.subject = OneLine(value);
    } else if (name == u"body") {
      model.text = Decoded(value).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    } else if (name == u"in-reply-to") {
      model.inReplyTo = OneLine(value);
    }
  }
  return model;
}

}  // namespace vorn
