#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include "ctl/command.h"
#include "mail/codec/header/address.h"
#include "mail/search/folder_listing.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "objects/object_types.h"
#include "storage/base/shown_text.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

QString Sender(const QString& addressLines) {
  for (const QString& line : addressLines.split(kLineBreak)) {
    const AddressEntry entry = WithWholeAddress(ParseAddressEntry(line));
    if (entry.kind.compare(u"FROM", Qt::CaseInsensitive) == 0) return PresentableAddress(entry);
  }
  return {};
}

void PrintRow(const MailRow& row, bool asJson) {
  const QString serialId = row.Serial().Text();
  const QString subject = row.Subject();
  const QString from = Sender(row.AddressLines());
  const QString timestamp = row.Timestamp();
  if (!asJson) {
    Print(QStringList{serialId, GeneralTimeText(timestamp), ShownInLine(from), ShownInLine(subject)}
              .join(u'\t'));
    return;
  }
  const QJsonObject object{{QStringLiteral("serialId"), serialId},
                           {QStringLiteral("subject"), subject},
                           {QStringLiteral("from"), from},
                           {QStringLiteral("timestamp"), timestamp},
                           {QStringLiteral("status"), row.State().Stored()},
                           {QStringLiteral("flag"), row.Flags().Text()}};
  Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

// Where the list breaks off, every message is looked for by itself.
int ListTheRest(Context& context, const SerialId& folder, const QSet<SerialId>& printed,
                bool asJson) {
  const Result<FolderListing> listing = ListFolderMessages(context, folder);
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!listing || !mail) {
    return Complain(
        Ui::tr("一覧を最後まで読み込めません。") + (listing ? mail.Error() : listing.Error()).text,
        kExitFailure);
  }
  for (const FolderMessage& message : listing->messages) {
    if (printed.contains(message.serialId)) continue;
    const RecordsetPtr row = MessageRows(context.Data).Of(message.serialId);
    if (row == nullptr || row->Failed()) {
      const UnreadableMessage lost{message.serialId, message.subject, message.timestamp};
      Complain(Ui::tr("読み込めません: ") + lost.Name(), 0);
    } else if (!row->Eof()) {
      PrintRow(MailRow(*row), asJson);
    }
  }
  for (const UnreadableMessage& message : listing->unreadable) {
    Complain(Ui::tr("読み込めません: ") + message.Name(), 0);
  }
  return kExitPartly;
}

}  // namespace

int ListFolder(Context& context, const Arguments& arguments) {
  const QString name = arguments.Words().value(1);
  const bool asJson = arguments.Has(QStringLiteral("json"));
  const Result<SerialId> folder = FindFolder(context, name);
  if (!folder) return Complain(folder.Error().text, kExitFailure);
  QSet<SerialId> printed;
  const Result<> complete = ReadFolderRows(context, *folder, [&](const MailRow& row) {
    PrintRow(row, asJson);
    printed.insert(row.Serial());
  });
  if (!complete && complete.Error().kind == StorageError::Kind::Refused) {
    return Complain(Ui::tr("一覧を最後まで読み込めません。") + complete.Error().text +
                        Ui::tr("フォルダ「%1」のプロパティで条件を見直してください。").arg(name),
                    kExitFailure);
  }
  return complete ? kExitOk : ListTheRest(context, *folder, printed, asJson);
}

}  // namespace vorn::ctl
