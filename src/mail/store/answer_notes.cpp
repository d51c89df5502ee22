#include "mail/store/answer_notes.h"

#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "objects/any_object.h"
#include "objects/save_object.h"
#include "storage/databases.h"

namespace vorn::AnswerNotes {
namespace {

const QString kNotePrefix = QStringLiteral("answer_");
const QString kOriginal = QStringLiteral("Original");
const QString kMark = QStringLiteral("Mark");

SerialId NoteOf(const SerialId& message) {
  return SerialId(kNotePrefix + message.Text());
}

// Of those that a file tells: one that cannot be read may still be edited.
bool IsEditedNoMore(DataSession& mail, const SerialId& message) {
  const RecordsetPtr row = MessageRows(mail).Of(message);
  if (row == nullptr || row->Failed()) return false;
  return row->Eof() || MailRow(*row).Status() != kStatusEdit;
}

}  // namespace

Result<> Keep(Context& context, const SerialId& message, const Answered& answered) {
  if (Find(context, message) == answered) return {};
  const auto note = std::make_shared<Disk>(NoteOf(message));
  AnyObject::SetType(*note, QStringLiteral("answer"));
  note->Let(kOriginal, answered.original.Text());
  note->Let(kMark, static_cast<int>(answered.mark));
  const Result<> saved = SaveObject(context, DatabaseKind::Profile, *note);
  if (!saved) return saved;  // and is tried again
  context.Objects.Remove(NoteOf(message));
  context.Objects.Add(note);
  return {};
}

std::optional<Answered> Find(const Context& context, const SerialId& message) {
  const DiskPtr note = context.Objects.Find(NoteOf(message));
  if (note == nullptr) return std::nullopt;
  const auto mark = note->Number(kMark) == kFlagForwarded ? kFlagForwarded : kFlagAnswered;
  return Answered{SerialId(note->Text(kOriginal)), mark};
}

void Forget(Context& context, const SerialId& message) {
  ForgetObject(context, NoteOf(message));
}

void Sweep(Context& context, const SerialIds& drafts) {
  SerialIds past;
  {
    const OpenedDatabase mail(context, DatabaseKind::Mail);
    if (!mail) return;
    for (const DiskPtr& object : context.Objects) {
      const QString key = object->SerialID();
      if (!key.startsWith(kNotePrefix)) continue;
      const SerialId message(key.sliced(kNotePrefix.size()));
      if (!drafts.contains(message) && IsEditedNoMore(context.Data, message)) past.append(message);
    }
  }
  for (const SerialId& message : std::as_const(past)) Forget(context, message);
}

}  // namespace vorn::AnswerNotes
