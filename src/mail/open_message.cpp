#include "mail/open_message.h"

#include "mail/flag_string.h"
#include "mail/mail_store.h"
#include "mail/text_extraction.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

struct CopiedColumn {
  const char16_t* column;
  const char16_t* key;
};

constexpr CopiedColumn kCopiedColumns[] = {
    {u"FIELD_CONTENT", u"content"},          {u"FIELD_SUBJECT", u"work_subject"},
    {u"FIELD_TIMESTAMP", u"work_timestamp"}, {u"STATUS", u"process"},
    {u"FIELD_MAILADDRESS", u"mailaddress"},  {u"FIELD_FLAG", u"flag"},
};

QString Where(const Disk& request) {
  return QStringLiteral(" WHERE SERIALID = ") + QuoteSql(request.SerialID());
}

// The source, with the row's columns copied into the request; null when there is no row.
QByteArray ReadRow(DataSession& data, Disk& request) {
  if (!data.OpenRecordset(QStringLiteral("SELECT * FROM mail") + Where(request),
                          CursorKind::ForwardOnly) ||
      data.Recordset()->Eof()) {
    return {};
  }
  const RecordsetPtr row = data.Recordset();
  for (const CopiedColumn& copied : kCopiedColumns) {
    request.Let(QString::fromUtf16(copied.key), row->Fields(QStringView(copied.column)));
  }
  QByteArray source = row->Fields(u"MAIL").toByteArray();
  return source.isNull() ? QByteArrayLiteral("") : source;
}

QString ReadFolders(DataSession& data, const Disk& request) {
  QStringList folders;
  if (data.OpenRecordset(QStringLiteral("SELECT * FROM folder") + Where(request),
                         CursorKind::ForwardOnly)) {
    const RecordsetPtr rows = data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) folders.append(rows->Fields(u"FOLDERID").toString());
  }
  return folders.join(kLineBreak);
}

void MarkOpened(Context& context, Disk& request) {
  const QString flags = request.Text(u"flag");
  if (GetFlagChar(flags, kFlagNew, QStringLiteral("0")) == u"0") return;
  request.Let(QStringLiteral("flag"), SetFlagChar(flags, kFlagNew, QStringLiteral("0")));
  MailStore(context).UpdateMessageState(kStateFlag, request, false);
}

}  // namespace

OpenedMessage OpenMessage(Context& context, Disk& request) {
  OpenedMessage message;
  TextRequest textRequest;
  textRequest.textTypes = TextTypes(context);
  const auto kind =
      static_cast<DatabaseKind>(request.Number(u"db", static_cast<int>(DatabaseKind::MailByPath)));
  if (!OpenDatabase(context, kind, request.Text(u"file", MailDatabasePath(context)))) {
    return message;
  }
  const QByteArray source = ReadRow(context.Data, request);
  message.found = !source.isNull();
  if (message.found) {
    request.Let(QStringLiteral("folder"), ReadFolders(context.Data, request));
    MarkOpened(context, request);
  }
  context.Data.Close();
  if (!message.found) return message;

  message.subject = request.Text(u"work_subject");
  message.timestamp = request.Text(u"work_timestamp");
  for (const QString& line : request.Text(u"mailaddress").split(kLineBreak, Qt::SkipEmptyParts)) {
    message.addresses.append(ParseAddressEntry(line));
  }
  const QString content = request.Text(u"content");
  textRequest.charset =
      CharsetChoiceOf(GetFlagChar(request.Text(u"flag"), kFlagCode, QStringLiteral("0")));
  message.text = GetMessageText(source, content, textRequest).text;
  message.attachments =
      ListAttachments(MimeCodec::ParseContentIndex(content), textRequest.textTypes);
  return message;
}

}  // namespace vorn
