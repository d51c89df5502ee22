#include "mail/store/drafts.h"

#include <tuple>

#include "mail/store/answer_notes.h"
#include "mail/store/mail_row.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_rows.h"
#include "objects/any_object.h"
#include "objects/save_object.h"
#include "storage/ui.h"

namespace vorn::Drafts {
namespace {

const QString kPrefix = QStringLiteral("draft_");

SerialId KeyOf(const SerialId& message) {
  return SerialId(kPrefix + message.Text());
}

// A draft, by the names that its object's bag has. A bag holds text; base64 keeps any bytes.
class DraftObject {
 public:
  explicit DraftObject(const Disk& bag) : bag_(bag) {}

  QByteArray Source() const { return QByteArray::fromBase64(bag_.Text(kSource).toLatin1()); }
  static void SetSource(Disk& bag, const QByteArray& source) {
    bag.Let(kSource, QString::fromLatin1(source.toBase64()));
  }
  QStringList LeftOut() const { return bag_.Text(kLeftOut).split(kLineBreak, Qt::SkipEmptyParts); }
  static void SetLeftOut(Disk& bag, const QStringList& files) {
    bag.Let(kLeftOut, files.join(kLineBreak));
  }

 private:
  static inline const QString kSource = QStringLiteral("Source");
  static inline const QString kLeftOut = QStringLiteral("LeftOut");

  const Disk& bag_;
};

// The folders that the message is in already, when it was stored before.
Result<SerialIds> ReadStoredFolders(Context& context, const SerialId& message) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  return MessageRows(context.Data).FoldersOf(message);
}

// Whether the message waits or was sent.
bool HasGoneOn(Context& context, const SerialId& message) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return false;
  const RecordsetPtr row = MessageRows(context.Data).Of(message);
  const bool hasGone = row != nullptr && !row->Eof() && MailRow(*row).Status() > kStatusEdit;
  return hasGone;
}

bool IsStored(Context& context, const SerialId& message) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  return !opened || MessageRows(context.Data).Has(message);
}

}  // namespace

Result<> Keep(Context& context, const SerialId& message, const QByteArray& source,
              const QStringList& leftOut) {
  DiskPtr draft = context.Objects.Find(KeyOf(message));
  if (draft == nullptr) {
    draft = std::make_shared<Disk>(KeyOf(message));
    context.Objects.Add(draft);
  }
  AnyObject::SetType(*draft, QStringLiteral("draft"));
  DraftObject::SetSource(*draft, source);
  DraftObject::SetLeftOut(*draft, leftOut);
  return SaveObject(context, DatabaseKind::Profile, *draft);
}

void Forget(Context& context, const SerialId& message) {
  ForgetObject(context, KeyOf(message));
}

SerialIds LeftBehind(Context& context) {
  SerialIds messages;
  for (const DiskPtr& object : context.Objects) {
    const QString key = object->SerialID();
    if (key.startsWith(kPrefix)) messages.append(SerialId(key.sliced(kPrefix.size())));
  }
  // What was sent since is not written any more: a power failure can take back that it was
  // forgotten.
  for (const SerialId& message : SerialIds(messages)) {
    if (!HasGoneOn(context, message)) continue;
    messages.removeAll(message);
    Forget(context, message);
  }
  return messages;
}

Result<Restored> Restore(Context& context, const SerialId& message, const SerialId& apart) {
  const DiskPtr draft = context.Objects.Find(KeyOf(message));
  if (draft == nullptr) return StorageError{StorageError::Kind::NotFound, {}};
  const QStringList leftOut = DraftObject(*draft).LeftOut();
  const bool isApart = !leftOut.isEmpty() && IsStored(context, message);
  Disk request(isApart ? apart : message);
  MessageBag::SetStatus(request, kStatusEdit);
  MessageBag::SetFlags(request, kWrittenFlags);
  const Result<SerialIds> folders = ReadStoredFolders(context, message);
  if (!folders) return folders.Error();
  MessageBag::SetFolders(request, *folders);
  const Result<SerialId> stored =
      MailStore(context).StoreMessage(request, DraftObject(*draft).Source());
  if (!stored) return stored.Error();
  if (const auto answered = AnswerNotes::Find(context, message)) {
    std::ignore = AnswerNotes::Keep(context, *stored, *answered);
  }
  Forget(context, message);
  return Restored{*stored, leftOut};
}

}  // namespace vorn::Drafts
