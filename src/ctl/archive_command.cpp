#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "mail/archive/export_messages.h"
#include "mail/archive/import_messages.h"
#include "mail/archive/mail_archive.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

std::optional<ArchiveFormat> FormatOf(const QString& name) {
  if (name == u"mbox") return ArchiveFormat::Mbox;
  if (name == u"maildir") return ArchiveFormat::Maildir;
  if (name == u"eml") return ArchiveFormat::Eml;
  return std::nullopt;
}

void Report(const QJsonObject& counts, const QString& text, bool asJson) {
  Print(asJson ? QString::fromUtf8(QJsonDocument(counts).toJson(QJsonDocument::Compact)) : text);
}

}  // namespace

int Import(Context& context, const Arguments& arguments) {
  const QStringList paths = arguments.Words().mid(1);
  if (paths.isEmpty()) {
    return Complain(Ui::tr("使い方: vornctl import パス... [--folder フォルダ] [--json]"),
                    kExitUsage);
  }
  SerialId folder;
  if (arguments.Has(QStringLiteral("folder"))) {
    const QString name = arguments.Text(QStringLiteral("folder"));
    const Result<SerialId> named = FindFolder(context, name);
    if (!named) return Complain(named.Error().text, kExitFailure);
    folder = *named;
  }
  ImportCounts counts;
  Result<> complete;
  for (const QString& path : paths) {
    if (!complete) break;
    const ImportOutcome outcome = ImportMessages(context, path, folder);
    counts.Add(outcome.counts);
    complete = outcome.complete;
  }
  for (const UnreadableMessage& message : std::as_const(counts.unreadable)) {
    Complain(Ui::tr("保存済みですが読み込めません: ") + message.Name(), 0);
  }
  QString text = Ui::tr("取り込み %1通、くずかごから %2通、保存済み %3通")
                     .arg(counts.imported)
                     .arg(counts.returned)
                     .arg(counts.known);
  if (counts.kept > 0) {
    text += u'\n' + Ui::tr("保存済みのうち %1通は書きかけか送信待ちで、くずかごに入ったままです。")
                        .arg(counts.kept);
  }
  Report({{QStringLiteral("imported"), counts.imported},
          {QStringLiteral("returned"), counts.returned},
          {QStringLiteral("known"), counts.known},
          {QStringLiteral("kept"), counts.kept},
          {QStringLiteral("unreadable"), ToJson(counts.unreadable)}},
         text, arguments.Has(QStringLiteral("json")));
  if (!complete) return Complain(complete.Error().text, kExitFailure);
  if (!counts.notice.isEmpty()) Complain(counts.notice, 0);
  return counts.unreadable.isEmpty() ? kExitOk : kExitPartly;
}

int Export(Context& context, const Arguments& arguments) {
  const QString name = arguments.Words().value(1);
  const auto format = FormatOf(arguments.Text(QStringLiteral("format"), QStringLiteral("mbox")));
  const QString out = arguments.Text(QStringLiteral("out"));
  if (name.isEmpty() || !format || out.isEmpty()) {
    return Complain(Ui::tr("使い方: vornctl export フォルダ [--format mbox|maildir|eml] --out パス "
                           "[--overwrite]"),
                    kExitUsage);
  }
  const Result<SerialId> folder = FindFolder(context, name);
  if (!folder) return Complain(folder.Error().text, kExitFailure);
  const ExportOutcome outcome =
      ExportMessages(context, {*folder, *format, out, arguments.Has(QStringLiteral("overwrite"))});
  for (const UnreadableMessage& message : outcome.unreadable) {
    Complain(Ui::tr("読み込めません: ") + message.Name(), 0);
  }
  if (!outcome.complete) return Complain(outcome.complete.Error().text, kExitFailure);
  Report({{QStringLiteral("exported"), outcome.count},
          {QStringLiteral("unreadable"), ToJson(outcome.unreadable)}},
         Ui::tr("書き出し %n通", nullptr, outcome.count) +
             (outcome.unreadable.isEmpty()
                  ? QString()
                  : Ui::tr("、読み込めないもの %1通").arg(outcome.unreadable.size())),
         arguments.Has(QStringLiteral("json")));
  return outcome.unreadable.isEmpty() ? kExitOk : kExitPartly;
}

}  // namespace vorn::ctl
