#include "mail/import_messages.h"

#include <QCryptographicHash>
#include <QMultiHash>
#include <QSet>
#include <algorithm>

#include "mail/mail_archive.h"
#include "mail/mail_store.h"
#include "mail/message_date.h"
#include "mail/message_index.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/time_text.h"

namespace vorn {
namespace {

constexpr int kGroupMessages = 100;

class Importer {
 public:
  Importer(Context& context, const QString& folder, ImportCounts& counts)
      : context_(context), store_(context), folder_(folder), counts_(counts) {
    options_.textTypes = TextTypes(context);
    options_.standardHeaders = Settings(context)->Flag(u"StandardHeaders");
    ReadStored();
  }

  bool Take(const QByteArray& source) {
    const QString id =
        QStringLiteral("import/") +
        QString::fromLatin1(QCryptographicHash::hash(source, QCryptographicHash::Sha256).toHex());
    if (IsKnown(id, source)) {
      ++counts_.known;
      return true;
    }
    Disk message(context_.Data.NewSerialID(QStringLiteral("mail_")));
    message.Let(QStringLiteral("MessageID"), id);
    message.Let(QStringLiteral("Flag"), QStringLiteral("000"));
    message.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    message.Let(QStringLiteral("folder"), folder_);
    const QDateTime date = MessageDate(source);
    if (date.isValid()) message.Let(QStringLiteral("Timestamp"), StoredTimeText(date));
    if (store_.StoreMessage(message, source).isEmpty()) return false;
    ++counts_.imported;
    return counts_.imported % kGroupMessages != 0 || context_.Data.FlushGroup();
  }

 private:
  static size_t Key(const QString& subject, const QString& addressLines) {
    return qHash(subject + QChar(u'\0') + addressLines);
  }
  // What is stored, by what can be told without its source.
  void ReadStored() {
    if (!OpenDatabase(context_, DatabaseKind::Mail)) return;
    if (context_.Data.OpenRecordset(QStringLiteral("SELECT * FROM mail"),
                                    CursorKind::ForwardOnly)) {
      const RecordsetPtr rows = context_.Data.Recordset();
      for (; !rows->Eof(); rows->MoveNext()) {
        ids_.insert(rows->Fields(u"FIELD_ID").toString());
        stored_.insert(Key(rows->Fields(u"FIELD_SUBJECT").toString(),
                           rows->Fields(u"FIELD_MAILADDRESS").toString()),
                       rows->SerialID());
      }
    }
    context_.Data.Close();
  }
  // Known is what was imported before, and what came another way and is the same to the byte.
  bool IsKnown(const QString& id, const QByteArray& source) {
    if (ids_.contains(id)) return true;
    ids_.insert(id);
    const MessageIndex index = IndexMessage(source, QString(), options_);
    const QList<QString> alike = stored_.values(Key(index.subject, index.addressLines));
    return std::any_of(alike.begin(), alike.end(), [&](const QString& serialId) {
      return store_.LoadMessageSource(Disk(serialId)) == source;
    });
  }

  Context& context_;
  MailStore store_;
  QString folder_;
  ImportCounts& counts_;
  IndexOptions options_;
  QSet<QString> ids_;
  QMultiHash<size_t, QString> stored_;  // serial identifiers
};

}  // namespace

bool ImportMessages(Context& context, const QString& path, const QString& folder,
                    ImportCounts* counts, QString* error) {
  Importer importer(context, folder, *counts);
  context.Data.BeginGroup(MailDatabasePath(context));
  bool stored = true;
  const bool read = ReadArchive(
      path, [&](const QByteArray& source) { return stored = importer.Take(source); }, error);
  const bool written = context.Data.EndGroup();
  if (stored && written) return read;
  *error = QStringLiteral("メッセージを保存できません。") + context.Data.LastError().text;
  return false;
}

}  // namespace vorn
