#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "mail/flag_string.h"
#include "mail/import_messages.h"
#include "mail/mail_archive.h"
#include "objects/search_condition.h"
#include "storage/databases.h"

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

// Writes the rows of an open record set; the number written, or nothing after a failure.
std::optional<int> WriteRows(Recordset& rows, ArchiveWriter& writer) {
  int count = 0;
  for (; !rows.Eof(); rows.MoveNext(), ++count) {
    const bool opened =
        GetFlagChar(rows.Fields(u"FIELD_FLAG").toString(), kFlagNew, QStringLiteral("0")) == u"0";
    if (!writer.Write(rows.Fields(u"MAIL").toByteArray(), rows.Fields(u"FIELD_SUBJECT").toString(),
                      opened)) {
      return std::nullopt;
    }
  }
  if (rows.Failed()) return std::nullopt;
  return count;
}

}  // namespace

int Import(Context& context, const Arguments& arguments) {
  const QStringList paths = arguments.Words().mid(1);
  if (paths.isEmpty()) {
    return Complain(QStringLiteral("使い方: vornctl import パス... [--folder フォルダ] [--json]"),
                    kExitUsage);
  }
  QString folder;
  if (arguments.Has(QStringLiteral("folder"))) {
    const QString name = arguments.Text(QStringLiteral("folder"));
    folder = FindFolder(context, name);
    if (folder.isEmpty()) {
      return Complain(QStringLiteral("フォルダ「%1」はありません。").arg(name), kExitFailure);
    }
  }
  ImportCounts counts;
  QString error;
  bool complete = true;
  for (const QString& path : paths) {
    complete = complete && ImportMessages(context, path, folder, &counts, &error);
  }
  Report({{QStringLiteral("imported"), counts.imported}, {QStringLiteral("known"), counts.known}},
         QStringLiteral("取り込み %1通、保存済み %2通").arg(counts.imported).arg(counts.known),
         arguments.Has(QStringLiteral("json")));
  return complete ? kExitOk : Complain(error, kExitFailure);
}

int Export(Context& context, const Arguments& arguments) {
  const QString name = arguments.Words().value(1);
  const auto format = FormatOf(arguments.Text(QStringLiteral("format"), QStringLiteral("mbox")));
  const QString out = arguments.Text(QStringLiteral("out"));
  if (name.isEmpty() || !format || out.isEmpty()) {
    return Complain(
        QStringLiteral("使い方: vornctl export フォルダ [--format mbox|maildir|eml] --out パス"),
        kExitUsage);
  }
  const QString folder = FindFolder(context, name);
  if (folder.isEmpty()) {
    return Complain(QStringLiteral("フォルダ「%1」はありません。").arg(name), kExitFailure);
  }
  ArchiveWriter writer(*format, out);
  if (!writer.Open()) return Complain(writer.Error(), kExitFailure);
  const QString select = FolderSqlBuilder(context).CreateFolderSql(folder) +
                         QStringLiteral(" ORDER BY FIELD_TIMESTAMP ASC");
  std::optional<int> count;
  if (OpenDatabase(context, DatabaseKind::Mail) &&
      context.Data.OpenRecordset(select, CursorKind::ForwardOnly, StatementTrust::UserCondition)) {
    count = WriteRows(*context.Data.Recordset(), writer);
  }
  const QString reason = context.Data.LastError().text;
  context.Data.Close();
  if (!writer.Close() || !count) {
    return Complain(writer.Error().isEmpty() ? reason : writer.Error(), kExitFailure);
  }
  Report({{QStringLiteral("exported"), *count}}, QStringLiteral("書き出し %1通").arg(*count),
         arguments.Has(QStringLiteral("json")));
  return kExitOk;
}

}  // namespace vorn::ctl
