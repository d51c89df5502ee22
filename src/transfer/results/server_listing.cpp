#include "transfer/results/server_listing.h"

#include <algorithm>

namespace vorn {

void ServerListing::Clear() {
  notes_.Clear();
  listed_.clear();
  doubted_.clear();
  proven_.clear();
  elsewhere_.clear();
  isFirst_ = upset_ = false;
}

Result<> ServerListing::Begin(const QString& mailbox, const QList<ListedMessage>& messages) {
  Clear();
  if (const Result<> read = notes_.Read(mailbox); !read) return read;
  isFirst_ = !notes_.Has(MailboxNotes::kItself);
  for (const ListedMessage& message : messages) {
    listed_.insert(message.id, message.size);
    if (!notes_.Holds(message)) doubted_.insert(message.id);
  }
  const bool hasReleased = notes_.HasReleased();
  const bool hasAbsent = notes_.NoteMissing(listed_);
  const bool isSettled = notes_.Of(MailboxNotes::kItself).state == State::Listed;
  if (isFirst_ || hasReleased || hasAbsent || !isSettled) Upset();
  upset_ = upset_ || notes_.IsShared();
  return {};
}

void ServerListing::Upset() {
  upset_ = true;
  const bool isMoving = notes_.Of(MailboxNotes::kItself).state == State::Moving;
  if (isMoving || notes_.IsChanged(MailboxNotes::kItself)) return;
  notes_.Note(MailboxNotes::kItself, {0, State::Unsettled});
}

bool ServerListing::HasOtherSize(const QString& id) const {
  return notes_.Has(id) && notes_.Of(id).size != listed_.value(id);
}

void ServerListing::NoteElsewhere(const QString& id) {
  elsewhere_.insert(id);
  notes_.NoteShared();
}

void ServerListing::NoteRenewed(const QString& id) {
  if (notes_.Of(id).state != State::Released) Upset();
}

void ServerListing::Distrust() {
  notes_.Note(MailboxNotes::kItself, {0, State::Moving});
  for (auto message = listed_.constBegin(); message != listed_.constEnd(); ++message) {
    if (!IsProven(message.key())) doubted_.insert(message.key());
  }
  upset_ = true;
}

bool ServerListing::IsElsewhere(const QString& id) const {
  return notes_.Of(id).state == State::Elsewhere && !Doubts(id);
}

// Messages without identifiers are not listed, and are known by what they hold.
void ServerListing::Confirm(const QString& id) {
  const auto listed = listed_.constFind(id);
  if (listed == listed_.constEnd()) return;
  const bool isElsewhere = elsewhere_.contains(id) || IsElsewhere(id);
  const Entry entry{*listed, isElsewhere ? State::Elsewhere : State::Listed};
  if (!notes_.Has(id) || !(notes_.Of(id) == entry)) notes_.Note(id, entry);
}

void ServerListing::Prove(const QString& id) {
  Confirm(id);
  doubted_.remove(id);
  if (IsListed(id)) proven_.insert(id);
}

void ServerListing::TakeBack(const QString& id) {
  if (!IsListed(id)) return;
  proven_.remove(id);
  doubted_.insert(id);
  notes_.Forget(id);
}

void ServerListing::Release(const QString& id) {
  const auto listed = listed_.constFind(id);
  if (listed != listed_.constEnd()) notes_.Note(id, {*listed, State::Released});
}

void ServerListing::ForgetAbsent(const QString& id) {
  if (notes_.Has(id) && !IsListed(id)) notes_.Forget(id);
}

void ServerListing::Settle() {
  if (notes_.Current(MailboxNotes::kItself).state != State::Unsettled) return;
  const bool isWhole = std::all_of(listed_.keyBegin(), listed_.keyEnd(), [&](const QString& id) {
    return notes_.Current(id).state != State::Absent;
  });
  if (isWhole) notes_.Note(MailboxNotes::kItself, {0, State::Listed});
}

}  // namespace vorn
