#include "transfer/rules/receive_stop_rules.h"

#include <algorithm>

#include "mail/codec/header/address.h"
#include "mail/codec/mime/mime_codec.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString TrimmedStart(const QString& text) {
  qsizetype at = 0;
  while (at < text.size() && text[at].isSpace()) ++at;
  return text.sliced(at);
}

// Every sender's address and display name.
QStringList SenderTexts(const QString& header) {
  QStringList texts;
  for (const QString& line : ParseAddressList(header).split(kLineBreak, Qt::SkipEmptyParts)) {
    const AddressEntry entry = ParseAddressEntry(line);
    texts << entry.address << entry.displayName;
  }
  return texts;
}

}  // namespace

ReceiveStopRules::ReceiveStopRules(const QString& text) {
  for (const QString& line : text.split(kLineBreak)) {
    const qsizetype colon = line.indexOf(u':');
    if (colon < 0) continue;
    const QString name = line.first(colon + 1).toLower();
    const bool isSender = name == kSenderHeader;
    if (!isSender && name != kMailerHeader) continue;
    const QString pattern = TrimmedStart(line.sliced(colon + 1));
    if (pattern.isEmpty()) continue;  // it would match every sender without a name
    rules_.push_back(
        {line, isSender, LikePattern(pattern, isSender ? LetterCase::Exact : LetterCase::Ignored)});
  }
}

std::optional<QString> ReceiveStopRules::FirstMatch(QByteArrayView header) const {
  // Both fields are decoded once, however many rules there are.
  const QByteArray mailer = MimeCodec::HeaderField(header, "X-Mailer:");
  const QByteArray from = MimeCodec::HeaderField(header, "From:");
  const QString mailerText =
      MimeCodec::DecodeHeader(mailer, static_cast<qsizetype>(kMailerHeader.size())).trimmed();
  const QStringList senders = SenderTexts(MimeCodec::DecodeHeader(
      from, 0, CharsetChoice::Automatic, MimeCodec::HeaderUse::AddressList));
  for (const Rule& rule : rules_) {
    if (rule.isSender ? from.isEmpty() : mailer.isEmpty()) continue;
    const bool matches =
        rule.isSender ? std::any_of(senders.begin(), senders.end(),
                                    [&](const QString& text) { return rule.pattern.Matches(text); })
                      : rule.pattern.Matches(mailerText);
    if (matches) return rule.line;
  }
  return std::nullopt;
}

QString SenderRule(const QString& address) {
  QString pattern = kSenderHeader;
  for (const QChar c : address) {
    pattern += QStringLiteral("*?#[").contains(c) ? u'[' + QString(c) + u']' : QString(c);
  }
  return pattern;
}

bool StopsEverything(const QString& line) {
  const QString pattern = line.mid(line.indexOf(u':') + 1).trimmed();
  return pattern.contains(u'*') && pattern.count(u'*') + pattern.count(u'?') == pattern.size();
}

}  // namespace vorn
