#include "transfer/results/known_messages.h"

#include <algorithm>

#include "objects/settings.h"
#include "storage/engine/source_digest.h"
#include "transfer/pop3/announced_size.h"

namespace vorn {
namespace {

// The usual port with TLS leads where the usual one without it does.
constexpr int kPlainPort = 110;
constexpr int kTlsPort = 995;

QString MailboxName(const QString& scope, int port) {
  return scope.chopped(1) + u':' + QString::number(port == kTlsPort ? kPlainPort : port);
}

}  // namespace

void KnownMessages::BeginSession(bool deletes) {
  deletes_ = deletes;
  listing_.Clear();
  answers_.Clear();
  scope_.clear();
  files_.Begin();
  unsure_.clear();
  absent_.clear();
}

Result<> KnownMessages::TakeListing(const QString& scope, int port,
                                    const QList<ListedMessage>& messages) {
  scope_ = scope;
  copies_.Begin(files_.Paths(), scope_, [this](const QString& id) { return IsVouchedFor(id); });
  const QString mailbox = MailboxName(scope, port);
  const Result<> begun = listing_.Begin(mailbox, messages);
  return begun ? answers_.Begin(mailbox, messages) : begun;
}

bool KnownMessages::HadIdentifiers(const QString& scope, int port) {
  MailboxNotes notes(context_);
  return notes.Read(MailboxName(scope, port)) && notes.HasIdentifiers();
}

Result<KnownMessages::Known> KnownMessages::Ask(const QString& messageId) {
  const Result<KnownFiles::Holders> holders = files_.Ask(messageId);
  if (!holders) return holders.Error();  // neither stored twice nor deleted
  return Known{NameOf(messageId, *holders), holders->files};
}

KnownMessages::Name KnownMessages::NameOf(const QString& messageId,
                                          const KnownFiles::Holders& holders) {
  const QStringList& files = holders.files;
  if (files.isEmpty()) absent_.insert(messageId);
  if (files.isEmpty() && !holders.isErased) {
    // It may have had another name, or none, until now.
    const bool mayHaveHadAnother = listing_.IsUpset() || files_.HasUnnamed(scope_);
    const bool isElsewhere = listing_.IsElsewhere(messageId);
    if (isElsewhere && !deletes_) return Name::Stored;
    if (!mayHaveHadAnother && !isElsewhere) {
      listing_.Believe(messageId);
    } else if (listing_.IsListed(messageId)) {
      listing_.Doubt(messageId);
    }
    return Name::New;
  }
  // Where nothing was noted yet, the size tells.
  if (listing_.TellsBySize() && files_.HasSize(messageId, listing_.SizeOf(messageId))) {
    listing_.Believe(messageId);
  }
  // Names without a listing are made of the contents.
  const bool mayBeAnother =
      listing_.Doubts(messageId) || (deletes_ && listing_.IsListed(messageId));
  if (!mayBeAnother) return files.isEmpty() ? Name::Erased : Name::Stored;
  listing_.Doubt(messageId);
  if (files.isEmpty()) return Name::New;
  if (listing_.HasOtherSize(messageId)) return Name::New;
  unsure_.insert(messageId, files);
  return Name::Unsure;
}

bool KnownMessages::ProvesHeader(const QString& messageId, const QByteArray& header) {
  const QStringList files = unsure_.take(messageId);
  const auto isWhole = [size = listing_.SizeOf(messageId)](const QByteArray& stored) {
    return IsExact(FitOf(stored, size));
  };
  const bool proves =
      !files.isEmpty() && std::all_of(files.begin(), files.end(), [&](const QString& file) {
        return StoredCopyHasHeader(context_, file, messageId, header, isWhole);
      });
  // Names may be moving, and what has a new one be known.
  if (!proves) listing_.Upset();
  return proves;
}

// A server that is wrong about sizes may also write a message anew each time.
bool KnownMessages::SaysWhatIsStored(const QString& messageId, const QByteArray& data) {
  const QStringList& files = files_.Paths();
  return HasIdentifiers() && std::any_of(files.begin(), files.end(), [&](const QString& file) {
           return StoredCopySaysTheSame(context_, file, messageId, data);
         });
}

// Asked of what a name does not tell for sure: the server may have given it to another message, or
// usually gives names and gave this one none.
Result<StoredCopies::Copy> KnownMessages::FindStored(const QString& messageId,
                                                     const QByteArray& data, bool isTornOff) {
  const bool lacksName = HasIdentifiers() && !listing_.IsListed(messageId);
  if (!listing_.Doubts(messageId) && !listing_.IsUpset() && !lacksName) {
    return StoredCopies::Copy{StoredCopies::Found::None, messageId};
  }
  return FindByContents(messageId, data, isTornOff);
}

// Where something is deleted, no name counts before its message was compared.
bool KnownMessages::IsVouchedFor(const QString& messageId) const {
  if (deletes_) return listing_.IsProven(messageId);
  return listing_.IsListed(messageId) && !listing_.Doubts(messageId);
}

Result<StoredCopies::Copy> KnownMessages::FindByContents(const QString& messageId,
                                                         const QByteArray& data, bool isTornOff) {
  using Copy = StoredCopies::Copy;
  using Found = StoredCopies::Found;
  using Trust = StoredCopies::Trust;
  const Copy none{Found::None, messageId};
  if (scope_.isEmpty()) return none;
  // Asked for the second time when another program has stored one meanwhile.
  const bool isNamed = !absent_.remove(messageId);
  const Trust trust = isTornOff                      ? Trust::Doubtful
                      : listing_.IsListed(messageId) ? Trust::Named
                                                     : Trust::Nameless;
  const Result<Copy> copy = copies_.Find(messageId, data, isNamed, trust);
  if (!copy) return copy;
  switch (copy->found) {
    case Found::Moved:
      // From one that is there to another; else the names of all have changed, and count from now.
      if (listing_.IsListed(copy->storedAs)) listing_.Distrust();
      listing_.ForgetAbsent(copy->storedAs);
      return Copy{Found::Stored, copy->storedAs};
    case Found::Elsewhere:
      listing_.NoteElsewhere(messageId);
      return copy;
    case Found::Renewed:
      listing_.NoteRenewed(messageId);
      return none;
    case Found::Erased:
      return Settings(context_).Care().knowsErased ? *copy : none;  // it is stored once more
    default:
      return copy;
  }
}

// One of an archive or one that went missing has this name from now on; any other keeps its own.
Result<QString> KnownMessages::NoteAlike(const QString& messageId, const QByteArray& data,
                                         bool isTornOff) {
  if (!HasIdentifiers()) return messageId;
  const auto copy = FindByContents(messageId, data, isTornOff);
  if (!copy) return copy.Error();
  if (copy->found != StoredCopies::Found::None) return copy->storedAs;
  listing_.NoteElsewhere(messageId);
  return QString::fromLatin1(SourceDigest(data).toHex());
}

void KnownMessages::TakeBack(const QString& messageId) {
  listing_.TakeBack(messageId);
  answers_.Note(messageId, messageId);
}

Result<> KnownMessages::Store() {
  const Result<> stored = listing_.Store();
  return stored ? answers_.Store() : stored;
}

Result<> KnownMessages::NoteWhole() {
  listing_.Settle();
  return Store();
}

Result<> KnownMessages::NoteDeleted() {
  listing_.ForgetReleased();
  return listing_.Store();
}

void KnownMessages::NoteStored(const QString& messageId, bool proven) {
  if (proven) {
    answers_.Forget(messageId);  // by a name alone another account does not know of the doubt
    listing_.Prove(messageId);
  } else {
    listing_.Confirm(messageId);
  }
}

}  // namespace vorn
