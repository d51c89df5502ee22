#include "mail/export_messages.h"

#include <vector>

#include "mail/flag_string.h"
#include "mail/mail_store.h"
#include "objects/search_condition.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

struct Listed {
  QString serialId;
  QString subject;
  bool opened;
};

// Read to its end before anything is written, since other work may open the database meanwhile.
bool ListFolder(Context& context, const QString& folder, std::vector<Listed>& messages) {
  const QString select = FolderSqlBuilder(context).CreateFolderSql(folder);
  if (select.isEmpty() || !OpenDatabase(context, DatabaseKind::Mail)) return false;
  bool listed = context.Data.OpenRecordset(select + QStringLiteral(" ORDER BY FIELD_TIMESTAMP ASC"),
                                           CursorKind::ForwardOnly, StatementTrust::UserCondition);
  if (listed) {
    const RecordsetPtr rows = context.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      const QString flags = rows->Fields(u"FIELD_FLAG").toString();
      messages.push_back({rows->SerialID(), rows->Fields(u"FIELD_SUBJECT").toString(),
                          GetFlagChar(flags, kFlagNew, QStringLiteral("0")) == u"0"});
    }
    listed = !rows->Failed();
  }
  context.Data.Close();
  return listed;
}

}  // namespace

bool ExportMessages(Context& context, const QString& folder, ArchiveFormat format,
                    const QString& path, int* count, QString* error, const WorkProgress& progress) {
  *count = 0;
  std::vector<Listed> messages;
  if (!ListFolder(context, folder, messages)) {
    *error = Ui::tr("フォルダを読み込めません。") + context.Data.LastError().text;
    return false;
  }
  ArchiveWriter writer(format, path);
  bool goesOn = writer.Open();
  MailStore store(context);
  for (const Listed& message : messages) {
    if (!goesOn) break;
    const std::optional<QByteArray> source = store.LoadMessageSource(Disk(message.serialId));
    if (!source || source->isEmpty()) {
      *error = Ui::tr("メッセージを読み込めません。") + context.Data.LastError().text;
      return false;
    }
    goesOn = writer.Write(*source, message.subject, message.opened);
    if (!goesOn) break;
    ++*count;
    if (progress && !progress(*count)) {
      *error = Ui::tr("中止しました。");
      goesOn = false;
    }
  }
  const bool closed = writer.Close();
  if (error->isEmpty()) *error = writer.Error();
  return goesOn && closed;
}

}  // namespace vorn
