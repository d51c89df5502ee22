#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <functional>

#include "mail/codec/mime/flag_string.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/message_state.h"

namespace vorn {

// Acts on messages of the profile's mail database by their serial identifiers, on all of them or on
// none. What is being handed over to a server stays as it is.

/// Messages that are being handed over: their subjects by their serial identifiers.
using UnderWay = QMap<SerialId, QString>;
/// The messages that are not among them.
SerialIds Without(const UnderWay& underWay, SerialIds messages);
/// Messages by the hand-filled folders that they are in.
using Filed = QMap<SerialId, SerialIds>;

/// What the user is told where there is no hand-filled folder.
QString NoFolderWords();

/// Where messages are put, and what they are taken out of. The inbox shows what is in no
/// hand-filled folder and not in the dust bin.
struct Move {
  Filed into = {};
  Filed outOf = {};
  SerialIds intoDust = {};
  SerialIds outOfDust = {};

  /// The way back.
  Move Back() const { return {outOf, into, outOfDust, intoDust}; }
  /// All that are moved, each once.
  SerialIds Messages() const;
  /// What it does with those messages.
  Move Only(const SerialIds& messages) const;
  /// The same in parts, each of which does what is done with the next `size` of `Messages`.
  QList<Move> InParts(qsizetype size) const;
  /// Makes it do what `further` does as well.
  void Add(const Move& further);
};

/// What came of a move.
struct Moved {
  /// What takes back what was changed by it, and nothing else: a message that was in a folder or in
  /// the dust bin before stays there.
  Move back;
  UnderWay underWay;  ///< what was to be put into the dust bin, or taken out, and stays
};
/// Moves messages, all at once.
Result<Moved> MoveMessages(Context& context, const Move& move);
/// How far a long work on messages is; false ends it.
using FilingProgress = std::function<bool(int done, int total)>;
/// What came of a move that somebody may have ended.
struct MovedSome {
  Moved moved;
  SerialIds messages;  ///< those that it came to, the first ones of `Move::Messages`
  Result<> end;
};
/// Moves messages some hundreds at a time.
MovedSome MoveInPieces(Context& context, const Move& move, const FilingProgress& progress);
/// Takes messages out of the dust bin into that hand-filled folder alone, or into none where it is
/// empty.
Result<Moved> TakeOutOfDust(Context& context, const SerialIds& messages, const SerialId& folder);
/// Puts messages into the dust bin or takes them out of it.
Result<Moved> SetDust(Context& context, const SerialIds& messages, bool dust);
/// Those of the messages that were received.
Result<SerialIds> ReceivedAmong(Context& context, const SerialIds& messages);
/// Sets or takes away a mark that is only there or not: unopened, answered, forwarded, starred.
/// What was not received is never unopened.
Result<> SetMark(Context& context, const SerialIds& messages, FlagPosition mark, bool isSet);
/// Stars the messages that have no star, and takes it from the others.
Result<> ToggleStar(Context& context, const SerialIds& messages);
/// Deletes messages, and what is filed of them, for good. Returns those that stay.
Result<UnderWay> DeleteMessages(Context& context, const SerialIds& messages);
/// The flag strings of messages, by their serial identifiers.
using MessageFlags = QHash<SerialId, FlagString>;
Result<MessageFlags> FlagsOf(Context& context, const SerialIds& messages);
/// Those received or sent messages that are as they were: with these flags, in that hand-filled
/// folder alone, or in none where it is empty, and not in the dust bin.
Result<SerialIds> UnchangedAmong(Context& context, const MessageFlags& flags,
                                 const SerialId& folder);
/// How many messages from that address wait to be sent.
Result<int> CountWaiting(Context& context, const QString& address);
/// What came of emptying the dust bin, which somebody may have ended.
struct Emptied {
  int count = 0;      ///< deleted
  int left = 0;       ///< not come to
  UnderWay underWay;  ///< what is being sent, and stays
  Result<> end;

  explicit operator bool() const { return static_cast<bool>(end); }
};
/// Deletes everything in the dust bin for good, some hundred messages at once.
Emptied EmptyDust(Context& context, const FilingProgress& progress = {});

}  // namespace vorn
