#include "mail/codec/text/report_summary.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "mail/codec/header/header_fields.h"
#include "mail/codec/header/list_splitting.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// The value of a field in a group of fields.
QString Value(QByteArrayView fields, QByteArrayView name) {
  const QByteArray value =
      MimeCodec::HeaderValue(MimeCodec::HeaderField(fields, name), name.size());
  return MimeCodec::OneLine(QString::fromUtf8(value));
}

// Without its kind: "rfc822; a@example.jp", "smtp; 550 unknown".
QString BehindKind(const QString& value) {
  return value.contains(u';') ? value.section(u';', 1).trimmed() : value;
}

QString Recipient(QByteArrayView fields) {
  const QString final = BehindKind(Value(fields, "Final-Recipient:"));
  return final.isEmpty() ? BehindKind(Value(fields, "Original-Recipient:")) : final;
}

// RFC 3464 section 2.3.3.
QString Outcome(const QString& action) {
  const QString name = action.toLower();
  if (name == u"failed") return Ui::tr("配信できませんでした。");
  if (name == u"delayed") return Ui::tr("配信が遅れています。サーバーが送り直します。");
  if (name == u"delivered") return Ui::tr("配信されました。");
  if (name == u"relayed") return Ui::tr("配信を知らせないサーバーに渡されました。");
  if (name == u"expanded") return Ui::tr("複数の宛先に配信されました。");
  return action;
}

// The enhanced status codes (RFC 3463 section 3) that users can do something about.
QString Reason(const QString& status) {
  const std::pair<const char*, QString> reasons[] = {
      {"1.1", Ui::tr("宛先のメールアドレスがありません。")},
      {"1.2", Ui::tr("宛先のドメイン（@の後）がありません。")},
      {"1.10", Ui::tr("宛先のドメインはメールを受け取りません。")},
      {"2.1", Ui::tr("受信者のメールボックスが使われていません。")},
      {"2.2", Ui::tr("受信者のメールボックスがいっぱいです。")},
      {"2.3", Ui::tr("メッセージが大きすぎます。")},
      {"3.4", Ui::tr("メッセージが大きすぎます。")},
      {"4.1", Ui::tr("受信者のサーバーが応答しません。")},
      {"4.4", Ui::tr("受信者のサーバーが見つかりません。")},
      {"4.7", Ui::tr("決められた時間のうちに配信できませんでした。")},
      {"7.1", Ui::tr("受信者のサーバーに受け取りを断られました。")},
      {"7.26", Ui::tr("差出人を確かめられないので、受け取りを断られました。")}};
  const QString detail = status.section(u'.', 1);
  const auto known = std::find_if(std::begin(reasons), std::end(reasons), [&](const auto& reason) {
    return detail == QLatin1String(reason.first);
  });
  return known == std::end(reasons) ? QString() : known->second;
}

// RFC 8098 section 3.2.6: "manual-action/MDN-sent-manually; displayed".
QString Disposition(const QString& value) {
  const QString name = BehindKind(value).section(u'/', 0, 0).trimmed().toLower();
  if (name == u"displayed") return Ui::tr("開封されました。");
  if (name == u"deleted") return Ui::tr("開封されずに削除されました。");
  if (name == u"dispatched" || name == u"processed") return Ui::tr("自動的に処理されました。");
  if (name == u"denied") return Ui::tr("開封したかどうかを知らせないとのことです。");
  return value;
}

void Add(QString& lines, const QString& name, const QString& value) {
  if (!value.isEmpty()) lines += name + value + kLineBreak;
}

QString DeliverySummary(QByteArrayView fields) {
  QString lines;
  Add(lines, Ui::tr("宛先: "), Recipient(fields));
  if (lines.isEmpty()) return lines;  // the group that is about the message as a whole
  const QString status = Value(fields, "Status:").section(u' ', 0, 0);
  Add(lines, Ui::tr("結果: "), Outcome(Value(fields, "Action:")));
  Add(lines, Ui::tr("理由: "), Reason(status));
  const QString words = BehindKind(Value(fields, "Diagnostic-Code:"));
  Add(lines, Ui::tr("サーバーの応答: "), words.isEmpty() ? status : words);
  return lines;
}

QString OpeningSummary(QByteArrayView fields) {
  QString lines;
  Add(lines, Ui::tr("受信者: "), Recipient(fields));
  Add(lines, Ui::tr("結果: "), Disposition(Value(fields, "Disposition:")));
  return lines;
}

bool IsOpening(const QString& type) {
  return type.endsWith(u"disposition-notification");
}

}  // namespace

bool IsReport(const QString& type) {
  return type == u"message/delivery-status" || type == u"message/global-delivery-status" ||
         type == u"message/disposition-notification" ||
         type == u"message/global-disposition-notification";
}

QString ReportSummary(const QString& type, QByteArrayView report) {
  constexpr int kMostGroups = 100;
  const QByteArray plain = report.toByteArray().replace("\r\n", "\n");
  QStringList groups;
  for (qsizetype at = 0; at < plain.size() && groups.size() < kMostGroups;) {
    const qsizetype found = plain.indexOf("\n\n", at);
    const qsizetype end = found < 0 ? plain.size() : found + 1;
    const QByteArrayView fields = QByteArrayView(plain).sliced(at, end - at);
    const QString lines = IsOpening(type) ? OpeningSummary(fields) : DeliverySummary(fields);
    if (!lines.isEmpty()) groups.append(lines);
    at = end + 1;
  }
  return groups.join(kLineBreak);
}

}  // namespace vorn
