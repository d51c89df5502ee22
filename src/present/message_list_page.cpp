#include "present/message_list_page.h"

#include <QDir>
#include <QFile>

#include "mail/codec/charset/code_page_932.h"
#include "mail/search/folder_rows.h"
#include "mail/search/search_condition.h"
#include "mail/store/message_rows.h"
#include "mail/store/outbox.h"
#include "mail/store/send_refusals.h"
#include "objects/list_settings.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "objects/shown_object.h"
#include "present/folder_layout.h"
#include "present/page_content.h"
#include "present/page_filler.h"
#include "present/page_template.h"
#include "storage/databases.h"
#include "storage/files/private_files.h"
#include "storage/message_state.h"
#include "storage/session/session_result.h"
#include "storage/sql/sql_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qint32 kPreviewRows = 30;
constexpr qsizetype kKnownFolders = 16;
constexpr qint64 kRowsTried = 100;

PageContent ReadContent(Context& context, const SerialId& folder) {
  const Settings settings(context);
  PageContent content;
  content.folder = LoadObject(context, folder);
  if (content.folder == nullptr) content.folder = std::make_shared<Disk>(folder);
  content.textTypes = settings.TextTypes();
  content.withHtml = settings.Standards().readsHtml;
  content.escape = ListSettings(context).EscapesPages();
  content.rowsPerPage = ListSettings(context).RowsPerPage();
  content.today = QDate::currentDate();
  // A page whose rows cannot be read says so itself.
  const QString file = MailDatabasePath(context);
  const auto doubtful = Outbox(context, file).Doubtful().ValueOr({});
  for (const DoubtfulMessage& message : doubtful) content.doubtful.insert(message.serialId);
  const auto refused = SendRefusals(context, file).All().ValueOr({});
  content.refused = {refused.keyBegin(), refused.keyEnd()};
  return content;
}

QString NameOf(const Context& context, const SerialId& folder) {
  const DiskPtr object = context.Objects.Find(folder);
  return object == nullptr ? QString() : ShownObject(*object).Name();
}

// The hand-filled folders of a message, or else the one of its state.
QString PlaceOf(Context& context, const SerialId& serialId, StoredState state) {
  QStringList names;
  for (const SerialId& folder : MessageRows(context.Data).FoldersOf(serialId).ValueOr({})) {
    names.append(NameOf(context, folder));
  }
  names.removeAll(QString());  // folders that are gone
  if (!names.isEmpty()) return names.join(Ui::tr("、"));
  switch (state.status) {
    case kStatusReceived:
      return NameOf(context, fixed_serial::kInbox);
    case kStatusSent:
      return NameOf(context, fixed_serial::kOutbox);
    default:
      return NameOf(context, fixed_serial::kEditWait);
  }
}

StorageError CannotWrite(const QString& folder) {
  return {StorageError::Kind::Other,
          Ui::tr("フォルダ「%1」に書き込めません。").arg(QDir::toNativeSeparators(folder))};
}

bool HasRow(DataSession& session, FolderRows& rows) {
  return rows.Open(session, 0, 1) && !session.Recordset()->Eof();
}

}  // namespace

MessageListPages::MessageListPages(Context& context)
    : context_(context), tags_(CreatePageTagTable()), template_(DefaultPageTemplate()) {}

Result<MadePage<QByteArray>> MessageListPages::FolderPage(const SerialId& folder, qint32 page,
                                                          const FolderSearch& search) {
  const QString html = GetFolderLayout(context_, folder, template_).html;
  PageContent content = ReadContent(context_, folder);
  if (search.isEverywhere && !search.isEmpty()) {
    content.placeOf = [this](const SerialId& serialId, StoredState state) {
      return PlaceOf(context_, serialId, state);
    };
  }
  return Fill(html, content, page, RowsOf(folder, search));
}

Result<MadePage<QString>> MessageListPages::CreateMessageListPage(const SerialId& folder,
                                                                  qint32 page,
                                                                  const FolderSearch& search) {
  const auto made = FolderPage(folder, page, search);
  if (!made) return made.Error();
  const auto path = Write(made->content, GetFolderLayout(context_, folder, template_).path);
  if (!path) return path.Error();
  return MadePage<QString>{*path, made->hasBefore, made->hasNext};
}

Result<QByteArray> MessageListPages::Preview(const SerialId& folder, const QString& html) {
  PageContent content = ReadContent(context_, folder);
  content.rowsPerPage = kPreviewRows;
  const auto made = Fill(html, content, 1, RowsOf(folder, {}));
  if (!made) return made.Error();
  return made->content;
}

Result<MadePage<QByteArray>> MessageListPages::Fill(const QString& html, const PageContent& content,
                                                    qint32 page, FolderRows* rows) {
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  if (rows == nullptr) return StorageError{StorageError::Kind::NotFound, {}};
  const qint64 skipped = page > 1 ? (page - 1) * qint64{qMax(0, content.rowsPerPage)} : 0;
  // One more row than the page shows, to know whether any follows.
  const qint64 limit = content.rowsPerPage > 0 ? content.rowsPerPage + 1 : 0;
  PageContent rest = content;
  rest.rowsAfter = [&](qint64 passed) { return RowsAfter(*rows, skipped, limit, passed); };
  const auto [shown, lost] = rest.rowsAfter(0);
  if (shown == nullptr) return ReasonOf(context_.Data);
  hasNone_ = shown->Eof();
  MadePage<QByteArray> made;
  made.hasBefore = skipped > 0 && (!shown->Eof() || HasRow(context_.Data, *rows));
  const QByteArray pageTemplate = ToCodePage932(html);
  PageFiller filler(tags_, pageTemplate, shown, rest, lost);
  made.content = filler.Run();
  made.hasNext = filler.HasNext();
  if (made.content.isEmpty()) return StorageError::Wordless();
  return made;
}

// A page of the file that cannot be read may hold the next rows, but hardly a hundred of them.
RowsBehind MessageListPages::RowsAfter(FolderRows& rows, qint64 first, qint64 limit,
                                       qint64 skipped) {
  for (qint64 at = skipped; at < skipped + kRowsTried; ++at) {
    const Result<> opened = rows.Open(context_.Data, first + at, limit);
    if (opened) return {context_.Data.Recordset(), at};
    if (opened.Error().kind != StorageError::Kind::Damaged) break;
  }
  return {nullptr, skipped};
}

// What is known of the folder's rows; null when there is no such folder.
FolderRows* MessageListPages::RowsOf(const SerialId& folder, const FolderSearch& search) {
  const FolderQuery query = FolderSqlBuilder(context_).Query(folder).Searched(search);
  if (query.IsEmpty()) return nullptr;
  const bool newestFirst = ListSettings(context_).IsNewestFirst();
  const RowOrder order = newestFirst ? RowOrder::NewestFirst : RowOrder::OldestFirst;
  const QString key = query.Listing() + (newestFirst ? u'-' : u'+');
  auto known = rows_.find(key);
  if (known == rows_.end()) {
    if (rows_.size() >= kKnownFolders) rows_.clear();
    known = rows_.insert(key, FolderRows(query, order));
  }
  return &*known;
}

qint32 MessageListPages::CountPages(const SerialId& folder, const FolderSearch& search,
                                    bool count) {
  const qint32 rowsPerPage = ListSettings(context_).RowsPerPage();
  if (rowsPerPage < 1) return 1;
  FolderRows* rows = RowsOf(folder, search);
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (rows == nullptr || !mail) return 0;
  const auto found = count ? rows->Count(context_.Data) : rows->KnownCount(context_.Data);
  if (!found) return 0;
  return static_cast<qint32>(qMax(qint64{1}, (*found + rowsPerPage - 1) / rowsPerPage));
}

std::optional<qint64> MessageListPages::CountFound(const SerialId& folder,
                                                   const FolderSearch& search) {
  FolderRows* rows = RowsOf(folder, search);
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (rows == nullptr || !mail) return std::nullopt;
  return rows->Count(context_.Data);
}

qint32 MessageListPages::PageOf(qint64 rowsBefore) const {
  const qint32 rowsPerPage = ListSettings(context_).RowsPerPage();
  return rowsPerPage < 1 ? 1 : static_cast<qint32>(rowsBefore / rowsPerPage) + 1;
}

QString MessageListPages::Question(const SerialId& folder, const FolderSearch& search) {
  const FolderRows* rows = RowsOf(folder, search);
  return rows == nullptr ? QString() : rows->Question();
}

QString MessageListPages::ScopeQuestion(const SerialId& folder, const FolderSearch& search) const {
  return FolderSqlBuilder(context_).Query(folder).Scope(search).Identifiers(RowOrder::NewestFirst);
}

void MessageListPages::TakeAnswer(const SerialId& folder, const FolderSearch& search,
                                  const SerialIds& serialIds) {
  FolderRows* rows = RowsOf(folder, search);
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (rows != nullptr && mail) rows->Take(context_.Data, serialIds);
}

void MessageListPages::Forget(const SerialId& folder, const FolderSearch& search) {
  if (FolderRows* rows = RowsOf(folder, search)) rows->Forget();
}

bool MessageListPages::Explore(const SerialId& folder, const FolderSearch& search) {
  FolderRows* rows = RowsOf(folder, search);
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  return rows != nullptr && mail && rows->Explore(context_.Data);
}

Result<QString> MessageListPages::Write(const QByteArray& bytes, const QString& pageFolder) {
  QString folder = pageFolder;
  if (!MakePrivateFolder(folder)) {
    folder = context_.AppFolder;
    if (!MakePrivateFolder(folder)) return CannotWrite(folder);
  }
  QFile file(folder + context_.Data.NewSerialID().Text() + QStringLiteral(".html"));
  if (!OpenPrivate(file, QIODevice::WriteOnly)) return CannotWrite(folder);
  if (file.write(bytes) != bytes.size() || !file.flush()) {
    file.remove();  // half a page would read like a folder that lost messages
    return CannotWrite(folder);
  }
  return file.fileName();
}

}  // namespace vorn
