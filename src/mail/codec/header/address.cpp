#include "mail/codec/header/address.h"

#include <QRegularExpression>

#include <QStringList>
#include <algorithm>

#include "mail/codec/header/envelope_address.h"
#include "mail/codec/header/list_splitting.h"
#include "storage/ui.h"

namespace vorn {
namespace {

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

// What a comment says (RFC 5322 section 3.2.2), others within it included; null when the text is
// not one comment as a whole.
QString CommentText(const QString& comment) {
  QString text = QStringLiteral("");
  int depth = 0;
  for (qsizetype at = 0; at < comment.size(); ++at) {
    const QChar c = comment[at];
    const bool isQuoted = c == u'\\' && at + 1 < comment.size();
    if (isQuoted) {
      text += comment[++at];
      continue;
    }
    if (c == u'(') ++depth;
    if (c == u')' && --depth == 0 && at + 1 < comment.size()) return {};
    const bool isOuter = (c == u'(' && depth == 1) || (c == u')' && depth == 0);
    if (!isOuter) text += c;
  }
  return depth == 0 ? text : QString();
}

// An address alone with a comment before or behind it, which is how names were written once
// (RFC 5322 section 3.4, at its end), and one whose closing bracket was lost.
void TakeUnbracketed(Mailbox& mailbox) {
  static const QRegularExpression kBehind(QStringLiteral("^([^\\s()]+@[^\\s()]+) *(\\(.*\\))$"));
  // The closing bracket is missing.
  static const QRegularExpression kOpen(QStringLiteral("^([^<]*)<([^<>\\s]+@[^<>\\s]+)$"));
  static const QRegularExpression kBefore(QStringLiteral("^(\\(.*\\)) *([^\\s()]+@[^\\s()]+)$"));
  const auto behind = kBehind.match(mailbox.name);
  const auto before = kBefore.match(mailbox.name);
  const QString comment = CommentText(behind.hasMatch() ? behind.captured(2) : before.captured(1));
  if (!comment.isNull() && (behind.hasMatch() || before.hasMatch())) {
    mailbox = {behind.hasMatch() ? behind.captured(1) : before.captured(2), comment};
  } else if (const auto open = kOpen.match(mailbox.name); open.hasMatch()) {
    mailbox = {open.captured(2), open.captured(1).trimmed()};
  }
}

// What stands in brackets, without the route that it once could have (RFC 5322 section 4.4) and
// what an address has in links.
QString AddressInBrackets(const QString& word) {
  const QString scheme = QStringLiteral("mailto:");
  QString address = word.sliced(1).chopped(1).trimmed();
  if (address.startsWith(scheme, Qt::CaseInsensitive)) address.remove(0, scheme.size());
  const qsizetype routeEnd = address.startsWith(u'@') ? address.indexOf(u':') : -1;
  return address.sliced(routeEnd + 1).trimmed();
}

// An address whose local part is quoted and may hold blanks (RFC 5322 section 3.4.1).
bool IsQuotedLocalPart(const QString& word) {
  return word.startsWith(u'"') && !word.endsWith(u'"') && word.contains(QStringLiteral("\"@"));
}

// Of several addresses in brackets servers take the first; the others are shown with the name.
Mailbox ReadItem(const QString& item) {
  Mailbox mailbox;
  for (const QString& word : MimeCodec::SplitWords(item)) {
    if (mailbox.address.isEmpty() && IsBracketedAddress(word)) {
      mailbox.address = AddressInBrackets(word);
      continue;
    }
    if (!mailbox.name.isEmpty()) mailbox.name += u' ';
    if (IsQuotedLocalPart(word)) {
      mailbox.name += word;
      continue;
    }
    // Each quoted word loses its own quotes; a quote that stands alone at an end goes as well, and
    // one that was written inside quotes stays.
    const QString text = Unquoted(word);
    mailbox.name += text;
    if (text == word) RemoveOuterQuotes(mailbox.name);
  }
  // What is marked in a comment beside the name stands for itself (RFC 5322 section 3.2.1).
  static const QRegularExpression kMarked(QStringLiteral("\\\\([()\"\\\\])"));
  const bool isBeside = !mailbox.address.isEmpty() && mailbox.name.contains(u'(');
  if (isBeside) mailbox.name.replace(kMarked, QStringLiteral("\\1"));
  mailbox.name = mailbox.name.trimmed();  // quotes may have held blanks alone
  if (mailbox.address.isEmpty()) TakeUnbracketed(mailbox);
  if (mailbox.address.isEmpty()) std::swap(mailbox.address, mailbox.name);
  return mailbox;
}

struct LongKind {
  QString kind;       // with its colon, lower-case
  QString shortForm;  // likewise accepted
  QString rewritten;
};

// The line in the form that is taken apart at its first colon.
QString NormalizedLine(const QString& line, bool keepsCase) {
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
    QString rewritten = keepsCase ? line : line.toLower();
    if (kind == entry.kind) rewritten.replace(0, entry.kind.size(), entry.rewritten);
    return rewritten;
  }
  return QStringLiteral("to: ") + line;
}

// "Team" in "a@b, Team: c@d": the name of a group, rather than a colon in an address.
bool EndsWithGroupName(const QString& text) {
  const QString name = MimeCodec::SplitList(text, u',').last();
  return !name.isEmpty() && !name.contains(u'@') && !name.contains(u'<');
}

// Groups replaced by their members: "Team: a@b, c@d;" by "a@b, c@d". A semicolon outside of groups
// separates, as many programs write it, where all it separates are addresses.
QString WithoutGroups(const QString& text, qsizetype start) {
  const QStringView list = QStringView(text).sliced(start);
  if (!list.contains(u';') && !list.contains(u':')) return text;
  const QStringList parts = MimeCodec::SplitList(text, u';', start);
  QStringList items;
  bool hasGroup = false;
  for (const QString& part : parts) {
    const QStringList head = MimeCodec::SplitList(part, u':');
    QString members = part;
    if (head.size() > 1 && EndsWithGroupName(head.first())) {
      hasGroup = true;
      // What stands before the group's name are ordinary items.
      QStringList before = MimeCodec::SplitList(head.first(), u',');
      before.removeLast();
      members = (before + QStringList{head.mid(1).join(u':')}).join(u',');
    }
    for (const QString& item : MimeCodec::SplitList(members, u',')) {
      if (!item.isEmpty()) items.append(item);
    }
  }
  const bool separates = parts.size() > 1 && !items.isEmpty() &&
                         std::all_of(items.begin(), items.end(),
                                     [](const QString& item) { return item.contains(u'@'); });
  if (!hasGroup && !separates) return text;
  return text.left(start) + u' ' + items.join(QStringLiteral(", "));
}

// An address that an input method wrote in wide forms ("ａ＠ｘ") in the usual ones, without the
// invisible marks that come along from web pages. Behind one that turns letters round the user saw
// another address than it would be without it.
QString Narrowed(const QString& address) {
  const auto turns = [](QChar c) {
    return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
  };
  QString narrow = address.normalized(QString::NormalizationForm_KC);
  narrow.removeIf([&turns](QChar c) { return c.category() == QChar::Other_Format && !turns(c); });
  return IsMailAddress(narrow) ? narrow : address;
}

// A recipient without brackets: an address, perhaps with its name as a comment.
AddressEntry ReadWithoutBrackets(const QString& text) {
  QString usual = text;
  usual.replace(u'（', u'(').replace(u'）', u')').replace(u'＠', u'@');
  Mailbox mailbox{{}, usual};
  TakeUnbracketed(mailbox);
  if (!IsMailAddress(Narrowed(mailbox.address))) mailbox = {text, {}};
  AddressEntry entry;
  entry.address = Narrowed(mailbox.address);
  entry.displayName = mailbox.name.trimmed();
  return entry;
}

// One recipient as it is typed.
AddressEntry ReadTyped(const QString& typed) {
  AddressEntry entry;
  QString text = MimeCodec::OneLine(typed);
  if (text.endsWith(u'＞')) text.replace(u'＜', u'<').replace(u'＞', u'>');
  const qsizetype bracket = text.lastIndexOf(u'<');
  if (bracket < 0 || !text.endsWith(u'>')) return ReadWithoutBrackets(text);
  const QString name = text.left(bracket).trimmed();
  entry.displayName = Unquoted(name);
  // Marks of addresses in a name that stands without quotes mean that it is none.
  const bool isOdd = entry.displayName == name &&
                     (name.contains(u'<') || name.contains(u'>') || name.contains(u'"'));
  entry.address = isOdd ? text : Narrowed(text.mid(bracket + 1).chopped(1).trimmed());
  if (isOdd) entry.displayName.clear();
  return entry;
}

bool IsGood(const AddressEntry& entry) {
  return IsMailAddress(entry.address);
}

constexpr qsizetype kLongestAddress = 254;  // without the brackets around it

// The items that blanks separate, where each of them is an address alone.
QStringList AtBlanks(const QString& item) {
  const QStringList words = MimeCodec::OneLine(item).split(u' ', Qt::SkipEmptyParts);
  const bool areAddresses = std::all_of(words.begin(), words.end(), [](const QString& word) {
    return IsMailAddress(Narrowed(word));
  });
  return areAddresses ? words : QStringList{item};
}

}  // namespace

bool IsMailAddress(const QString& text) {
  const qsizetype at = text.lastIndexOf(u'@');
  if (text.size() > kLongestAddress || at <= 0 || at == text.size() - 1 || !ToEnvelope(text))
    return false;
  const QStringView local = QStringView(text).first(at);
  const bool isQuoted = local.size() > 2 && local.startsWith(u'"') && local.endsWith(u'"');
  const auto isOdd = [](QChar c) {
    // What nobody sees makes another address of one that looks like it; joiners shape letters.
    const bool isHidden =
        c.category() == QChar::Other_Format && c != QChar(0x200C) && c != QChar(0x200D);
    return c.isSpace() || isHidden || c.category() == QChar::Other_Control ||
           QStringView(u"<>()[],;:\\\"@").contains(c);
  };
  const QStringView domain = QStringView(text).sliced(at + 1);
  const bool isLiteral = domain.startsWith(u'[') && domain.endsWith(u']');
  return (isQuoted || std::none_of(local.begin(), local.end(), isOdd)) &&
         (isLiteral ||
          (std::none_of(domain.begin(), domain.end(), isOdd) && !domain.startsWith(u'.') &&
           !domain.endsWith(u'.') && !domain.contains(QStringView(u".."))));
}

bool HasKind(const QList<AddressEntry>& addresses, QStringView kind) {
  return std::any_of(addresses.begin(), addresses.end(), [kind](const AddressEntry& entry) {
    return entry.kind.compare(kind, Qt::CaseInsensitive) == 0;
  });
}

QList<AddressEntry> ReadTypedAddresses(const QString& typed) {
  QStringList items{typed};
  for (const QChar separator : QStringLiteral("\n,;、，；")) {
    QStringList parts;
    for (const QString& item : std::as_const(items)) {
      parts += MimeCodec::SplitList(item, separator);
    }
    items = parts;
  }
  items.removeAll(QString());
  QList<AddressEntry> entries;
  for (const QString& item : std::as_const(items)) {
    for (const QString& one : AtBlanks(item)) entries.append(ReadTyped(one));
  }
  const auto isGood = [](const AddressEntry& entry) { return IsGood(entry); };
  if (std::all_of(entries.begin(), entries.end(), isGood)) return entries;
  // One whose name holds separators. A name that holds another's address is none.
  AddressEntry one = ReadTyped(typed);
  const bool holdsOthers = std::any_of(entries.begin(), entries.end() - 1, isGood);
  if (holdsOthers || !IsGood(one)) one = {{}, MimeCodec::OneLine(typed), {}};
  return {one};
}

QString ParseAddressList(const QString& header) {
  if (header.isEmpty()) return {};
  const qsizetype start = header.indexOf(u':') + 1;
  const QString name = header.left(start).toUpper();
  const QString members = WithoutGroups(header, start);
  if (members != header && members.size() == start + 1) return {};  // groups without members
  QString lines;
  lines.reserve(members.size());
  MimeCodec::ForEachItem(members, u',', start, [&](QStringView item) {
    const Mailbox mailbox = ReadItem(item.toString());
    if (!lines.isEmpty()) lines += kLineBreak;
    lines += name + u' ' + (mailbox.address.isEmpty() ? kUnknownAddress : mailbox.address);
    if (!mailbox.name.isEmpty()) lines += u' ' + mailbox.name;
  });
  return lines;
}

QString CanonicalLine(const AddressEntry& entry) {
  if (entry.address.isEmpty()) return {};
  const QString name = entry.displayName.isEmpty() ? QString() : u' ' + entry.displayName;
  return entry.kind.toUpper() + QStringLiteral(": ") + entry.address + name;
}

QString PresentableAddress(const QString& name, const QString& address) {
  if (address == kNoAddress) return name;
  const QString shown = address == kUnknownAddress ? Ui::tr("(不明なメールアドレス)") : address;
  if (name.isEmpty() || address.isEmpty()) return name + shown;
  return name + QStringLiteral(" <") + shown + u'>';
}

QString QuotedString(const QString& name) {
  QString marked = name;
  marked.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
  return u'"' + marked + u'"';
}

AddressEntry WithWholeAddress(const AddressEntry& entry) {
  if (entry.address.contains(u'@') || entry.displayName.isEmpty()) return entry;
  static const QRegularExpression kBracketed(QStringLiteral("^([^<]+) <([^<>]+)>$"));
  static const QRegularExpression kCommented(QStringLiteral("^(\\S+) \\(([^()]+)\\)$"));
  AddressEntry whole{entry.kind, entry.address + u' ' + entry.displayName, {}};
  if (const auto bracketed = kBracketed.match(whole.address); bracketed.hasMatch()) {
    whole.displayName = bracketed.captured(1);
    whole.address = bracketed.captured(2);
  } else if (const auto commented = kCommented.match(whole.address); commented.hasMatch()) {
    whole.displayName = commented.captured(2);
    whole.address = commented.captured(1);
  }
  return whole;
}

QList<AddressEntry> EntriesOfKind(const QString& addressLines, QStringView kind) {
  QList<AddressEntry> entries;
  for (const QString& line : addressLines.split(kLineBreak)) {
    const AddressEntry entry = ParseAddressEntry(line);
    if (entry.kind.compare(kind, Qt::CaseInsensitive) == 0) entries.append(entry);
  }
  return entries;
}

AddressEntry ParseAddressEntry(const QString& line, bool keepsCase) {
  AddressEntry entry;
  entry.kind = QStringLiteral("TO");
  QString rest = line;
  if (line.contains(u':')) {
    const QString normalized = NormalizedLine(line, keepsCase);
    const qsizetype colon = normalized.indexOf(u':');
    entry.kind = normalized.left(colon);
    rest = normalized.mid(colon + 1);
  }
  while (rest.startsWith(u' ')) rest.remove(0, 1);
  if (rest.isEmpty()) return entry;

  // A quoted local part may hold blanks (RFC 5322 section 3.4.1).
  const qsizetype quoteEnd = rest.startsWith(u'"') ? rest.indexOf(QStringLiteral("\"@"), 1) : 0;
  const qsizetype blank = rest.indexOf(u' ', qMax(quoteEnd, qsizetype{0}));
  entry.address = blank < 0 ? rest : rest.left(blank);
  if (blank >= 0) entry.displayName = rest.mid(blank + 1);
  if (entry.displayName.startsWith(u' ')) entry.displayName.remove(0, 1);
  return entry;
}

QString TypedForm(const AddressEntry& entry) {
  if (entry.address == kNoAddress) return entry.displayName;
  const QString plain = PresentableAddress(entry);
  if (entry.displayName.isEmpty()) return plain;
  const QList<AddressEntry> read = ReadTypedAddresses(plain);
  const bool isRead = read.size() == 1 && read[0].address == entry.address &&
                      read[0].displayName == entry.displayName;
  return isRead ? plain : PresentableAddress(QuotedString(entry.displayName), entry.address);
}

}  // namespace vorn
