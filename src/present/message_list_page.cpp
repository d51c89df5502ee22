#include "present/message_list_page.h"

#include <QDir>
#include <QFile>

#include "mail/code_page_932.h"
#include "objects/object_loader.h"
#include "objects/search_condition.h"
#include "objects/settings.h"
#include "present/folder_layout.h"
#include "present/page_filler.h"
#include "present/page_template.h"
#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

constexpr qint32 kDefaultRows = 100;

PageContent ReadContent(Context& context, const QString& folder) {
  const DiskPtr settings = Settings(context);
  PageContent content;
  content.folder = LoadObject(context, folder);
  if (content.folder == nullptr) content.folder = std::make_shared<Disk>(folder);
  content.textTypes = TextTypes(context);
  content.escape = settings->Flag(u"PageEscape");
  if (settings->Flag(u"MessagesEdit")) {
    content.rowsPerPage = settings->Number(u"Messages", kDefaultRows);
  }
  return content;
}

// The folder's statement, narrowed to what holds a text.
QString Searched(const QString& select, const QString& search) {
  if (search.isEmpty() || select.isEmpty()) return select;
  return QStringLiteral(
             "SELECT * FROM (%1) WHERE FIELD_SUBJECT LIKE %2 OR FIELD_MAILADDRESS LIKE %2")
      .arg(select, QuoteSql(u'*' + search + u'*'));
}

bool SkipRows(const RecordsetPtr& rows, qint64 count) {
  bool skipped = false;
  for (; count > 0 && !rows->Eof(); --count) {
    rows->MoveNext();
    skipped = true;
  }
  return skipped;
}

}  // namespace

MessageListPages::MessageListPages(Context& context)
    : context_(context), tags_(CreatePageTagTable()), template_(DefaultPageTemplate()) {}

QString MessageListPages::CreateMessageListPage(const QString& folder, qint32 page, bool& before,
                                                bool& next, const QString& search) {
  before = next = false;
  // Everything that may load objects comes before the mail database is opened.
  const PageContent content = ReadContent(context_, folder);
  const FolderLayout layout = GetFolderLayout(context_, folder, template_);
  const QString select = Searched(FolderSqlBuilder(context_).CreateFolderSql(folder), search);
  if (select.isEmpty() || !OpenDatabase(context_, DatabaseKind::Mail)) return {};
  if (!context_.Data.OpenRecordset(select + QStringLiteral(" ORDER BY FIELD_TIMESTAMP ASC"),
                                   CursorKind::ForwardOnly, StatementTrust::UserCondition)) {
    context_.Data.Close();
    return {};
  }
  const RecordsetPtr rows = context_.Data.Recordset();
  if (page > 1) before = SkipRows(rows, (page - 1) * static_cast<qint64>(content.rowsPerPage));
  const QByteArray pageTemplate = ToCodePage932(layout.html);
  const QByteArray bytes = PageFiller(tags_, pageTemplate, rows, content).Run(next);
  context_.Data.Close();
  return bytes.isEmpty() ? QString() : Write(bytes, layout.path);
}

QString MessageListPages::Write(const QByteArray& bytes, const QString& pageFolder) {
  QString folder = pageFolder;
  if (!QDir().mkpath(folder)) {
    folder = context_.AppFolder;
    if (!QDir().mkpath(folder)) return {};
  }
  QFile file(folder + context_.Data.NewSerialID() + QStringLiteral(".html"));
  if (!file.open(QIODevice::WriteOnly)) return {};
  if (file.write(bytes) != bytes.size() || !file.flush()) {
    file.remove();  // half a page would read like a folder that lost messages
    return {};
  }
  return file.fileName();
}

}  // namespace vorn
