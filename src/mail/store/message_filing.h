#pragma once

#include <QMap>
#include <QStringList>

#include "mail/codec/flag_string.h"
#include "storage/context.h"
#include "storage/result.h"

namespace vorn {

// Acts on messages of the profile's mail database by their serial identifiers, on all of them or on
// none. What is being handed over to a server stays as it is; `underWay` gets those.

/// Messages that are being handed over: their subjects by their serial identifiers.
using UnderWay = QMap<QString, QString>;
/// Messages by the hand-filled folders that they are in.
using Filed = QMap<QString, QStringList>;

/// What the user is told where there is no hand-filled folder.
QString NoFolderWords();

/// Puts messages into the dust bin or takes them out of it.
Result<> SetDust(Context& context, const QStringList& messages, bool dust,
                 UnderWay* underWay = nullptr);
/// Files messages into the hand-filled folder `into`, which may be empty, and takes them out of
/// others, each out of those that `from` names for it.
Result<> FileMessages(Context& context, const QStringList& messages, const QString& into,
                      const Filed& from = {});
/// The way back: takes messages out of the folder `from` and puts others into those that `into`
/// names for them.
Result<> UnfileMessages(Context& context, const QStringList& messages, const QString& from,
                        const Filed& into);
/// Takes messages out of hand-filled folders, each out of those that `filed` names for it, and all
/// of them out of the dust bin: the inbox shows what is in neither.
Result<> PutIntoInbox(Context& context, const QStringList& messages, const Filed& filed,
                      UnderWay* underWay);
/// The way back; those in the dust bin are `dust`.
Result<> TakeOutOfInbox(Context& context, const Filed& filed, const QStringList& dust);
/// Those of the messages that were received.
Result<QStringList> Received(Context& context, const QStringList& messages);
/// Those of the messages that are in a hand-filled folder.
Result<QStringList> Members(Context& context, const QStringList& messages, const QString& folder);
/// Sets or takes away a mark that is only there or not: unopened, answered, forwarded, starred.
/// What was not received is never unopened.
Result<> SetMark(Context& context, const QStringList& messages, FlagPosition mark, bool isSet);
/// Stars the messages that have no star, and takes it from the others.
Result<> ToggleStar(Context& context, const QStringList& messages);
/// Deletes messages, and what is filed of them, for good.
Result<> DeleteMessages(Context& context, const QStringList& messages,
                        UnderWay* underWay = nullptr);
/// How many messages from that address wait to be sent; 0 as well when the file cannot
/// be read.
int CountWaiting(Context& context, const QString& address);
/// Deletes everything in the dust bin for good.
Result<> EmptyDust(Context& context);

}  // namespace vorn
