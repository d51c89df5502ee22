#include "transfer/smtp/smtp_envelope.h"

#include <algorithm>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/header/address.h"
#include "mail/codec/header/envelope_address.h"
#include "mail/codec/mime/mime_codec.h"
#include "storage/ui.h"
#include "transfer/protocol/server_words.h"

namespace vorn {
namespace {

// A receipt has no sender that a report on it could go to (RFC 8098 section 3).
bool IsReceipt(const QByteArray& source) {
  const QByteArrayView name = "Content-Type:";
  const MimeCodec::HeaderParameters type(
      MimeCodec::HeaderValue(MimeCodec::HeaderField(source, name), name.size()));
  return type.Main() == "multipart/report" &&
         type.Bytes("report-type").toLower() == "disposition-notification";
}

}  // namespace

std::optional<QString> SmtpEnvelope::Plan(const QString& from, const QStringList& recipients,
                                          const QByteArray& wire,
                                          const SmtpExtensions& extensions) {
  if (recipients.isEmpty()) return Ui::tr("宛先がありません。");
  if (auto refusal = TakeAddresses(QStringList{from} + recipients, extensions)) return refusal;
  pipelining_ = extensions.Has("PIPELINING");
  QByteArray mail = "MAIL FROM:<" + (IsReceipt(wire) ? QByteArray() : paths_.first()) + '>';
  if (const std::optional<qint64> limit = extensions.SizeLimit()) {
    if (*limit > 0 && wire.size() > *limit) {
      return Ui::tr("メッセージが大きすぎます。サーバーが受け付けるのは%1バイトまでです。")
          .arg(*limit);
    }
    mail += " SIZE=" + QByteArray::number(wire.size());
  }
  if (extensions.Has("8BITMIME") && HasHighBytes(wire)) mail += " BODY=8BITMIME";
  if (needsUtf8_) mail += " SMTPUTF8";
  commands_.push_back(mail);
  for (const QByteArray& path : paths_.mid(1)) commands_.push_back("RCPT TO:<" + path + '>');
  return {};
}

std::optional<QString> SmtpEnvelope::TakeAddresses(const QStringList& addresses,
                                                   const SmtpExtensions& extensions) {
  for (const QString& address : addresses) {
    const std::optional<EnvelopeAddress> path = ToEnvelope(address);
    if (!path || address == kUnknownAddress) {
      return Ui::tr("送信できないアドレスです: ") + ServerWords(address.toUtf8());
    }
    if (path->needsUtf8 && !extensions.Has("SMTPUTF8")) {
      return Ui::tr(
                 "アドレス「%1」の@より前に、このサーバーが扱えない文字があります（SMTPUTF8に"
                 "対応していません）。半角の英数字のアドレスを使ってください。")
          .arg(address);
    }
    needsUtf8_ = needsUtf8_ || path->needsUtf8;
    // Who stands in two rows gets one copy; the sender comes first and may be a recipient.
    const bool isTwice = !paths_.isEmpty() && std::any_of(paths_.begin() + 1, paths_.end(),
                                                          [&](const QByteArray& other) {
                                                            return IsSameMailbox(other, path->path);
                                                          });
    if (isTwice) continue;
    paths_.append(path->path);
    addresses_.append(address);
  }
  return {};
}

QByteArray SmtpEnvelope::NextCommands() {
  QByteArray lines;
  do {
    lines += commands_.front() + "\r\n";
    commands_.pop_front();
    ++awaited_;
  } while (pipelining_ && !commands_.empty());
  return lines;
}

QString SmtpEnvelope::TakeReply() {
  --awaited_;
  return addresses_.value(answered_++);
}

}  // namespace vorn
