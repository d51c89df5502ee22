#include "mail/address.h"

#include <QStringList>

#include "mail/list_splitting.h"

namespace vorn {
namespace {

const QString kUnknownAddress = QStringLiteral("(不明なメールアドレス)");
const QString kLineBreak = QStringLiteral("\r\n");

// The pattern "<*@*>".
bool IsBracketedAddress(const QString& word) {
  return word.size() >= 3 && word.startsWith(u'<') && word.endsWith(u'>') && word.contains(u'@');
}

void RemoveOuterQuotes(QString& name) {
  if (name.startsWith(u'"')) name.remove(0, 1);
  if (name.endsWith(u'"')) name.chop(1);
}

QString Unquoted(const QString& word) {
  const bool isQuoted = word.size() >= 2 && word.startsWith(u'"') && word.endsWith(u'"');
  if (!isQuoted) return word;
  QString text;
  for (qsizetype i = 1; i + 1 < word.size(); ++i) {
    if (word[i] == u'\\' && i + 2 < word.size()) ++i;
    text += word[i];
  }
  return text;
}

struct Mailbox {
  QString address;
  QString name;
};

Mailbox ReadItem(const QString& item) {
  Mailbox mailbox;
  for (const QString& word : MimeCodec::SplitWords(item)) {
    if (IsBracketedAddress(word)) {
      mailbox.address = word.mid(1, word.size() - 2);
      continue;
    }
    if (!mailbox.name.isEmpty()) mailbox.name += u' ';
    // Each quoted word loses its own quotes; a quote that stands alone at an end goes as well.
    mailbox.name += Unquoted(word);
    RemoveOuterQuotes(mailbox.name);
  }
  mailbox.name = mailbox.name.trimmed();  // quotes may have held blanks alone
  if (mailbox.address.isEmpty()) std::swap(mailbox.address, mailbox.name);
  return mailbox;
}

struct LongKind {
  QString kind;       // with its colon, lower-case
  QString shortForm;  // likewise accepted
  QString rewritten;
};

// The line in the form that is taken apart at its first colon.
QString NormalizedLine(const QString& line) {
  static const QStringList kPlain = {QStringLiteral("from:"), QStringLiteral("to:"),
                                     QStringLiteral("cc:"), QStringLiteral("bc:"),
                                     QStringLiteral("grp:")};
  static const LongKind kLong[] = {
      {QStringLiteral("disposition-notification-to:"), QStringLiteral("no:"),
       QStringLiteral("NO:")},
      {QStringLiteral("replay-to:"), QStringLiteral("re:"), QStringLiteral("RE:")},
      {QStringLiteral("bcc:"), QString(), QStringLiteral("BC:")},
  };
  const QString kind = line.left(line.indexOf(u':') + 1).toLower();
  if (kPlain.contains(kind)) return line;
  for (const LongKind& entry : kLong) {
    if (kind != entry.kind && kind != entry.shortForm) continue;
    QString lower = line.toLower();
    if (kind == entry.kind) lower.replace(0, entry.kind.size(), entry.rewritten);
    return lower;
  }
  return QStringLiteral("to: ") + line;
}

}  // namespace

QString ParseAddressList(const QString& header) {
  if (header.isEmpty()) return {};
  const qsizetype start = header.indexOf(u':') + 1;
  const QString name = header.left(start).toUpper();
  QStringList lines;
  for (const QString& item : MimeCodec::SplitList(header, u',', start)) {
    const Mailbox mailbox = ReadItem(item);
    QString line = name + u' ' + (mailbox.address.isEmpty() ? kUnknownAddress : mailbox.address);
    if (!mailbox.name.isEmpty()) line += u' ' + mailbox.name;
    lines.append(line);
  }
  return lines.join(kLineBreak);
}

AddressEntry ParseAddressEntry(const QString& line) {
  AddressEntry entry;
  entry.kind = QStringLiteral("TO");
  QString rest = line;
  if (line.contains(u':')) {
    const QString normalized = NormalizedLine(line);
    const qsizetype colon = normalized.indexOf(u':');
    entry.kind = normalized.left(colon);
    rest = normalized.mid(colon + 1);
  }
  while (rest.startsWith(u' ')) rest.remove(0, 1);
  if (rest.isEmpty()) return entry;

  const qsizetype blank = rest.indexOf(u' ');
  entry.address = blank < 0 ? rest : rest.left(blank);
  if (blank >= 0) entry.displayName = rest.mid(blank + 1);
  if (entry.displayName.startsWith(u' ')) entry.displayName.remove(0, 1);
  entry.canonical = entry.kind.toUpper() + QStringLiteral(": ") + entry.address;
  entry.presentable = entry.address;
  if (!entry.displayName.isEmpty()) {
    entry.canonical += u' ' + entry.displayName;
    entry.presentable = entry.displayName + QStringLiteral(" <") + entry.address + u'>';
  }
  return entry;
}

}  // namespace vorn
