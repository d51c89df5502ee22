#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <utility>
#include <vector>

#include "mail/store/message_bag.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/databases.h"

namespace vorn {

struct MessageIndex;

/// What `UpdateMessageState` writes; an empty mask means all of them.
enum StatePart { kStateStatus = 1, kStateFlag = 2, kStateFolders = 4 };
Q_DECLARE_FLAGS(StateMask, StatePart)
Q_DECLARE_OPERATORS_FOR_FLAGS(StateMask)

/// The message store: rows of `mail` and their membership rows in `folder`.
///
/// Every operation is given the message's bag, as a `MessageBag` tells of it.
class MailStore {
 public:
  explicit MailStore(Context& context) : context_(context) {}

  /// Creates or replaces the message's row with its index columns, and its folder membership.
  /// All or nothing. Returns the serial identifier.
  Result<SerialId> StoreMessage(const Disk& request, const QByteArray& source);

  /// The same for several messages of one database: all of them or none.
  Result<> StoreMessages(const std::vector<std::pair<DiskPtr, QByteArray>>& messages);

  enum class Received {
    Stored,
    Known,  ///< the file has one with that identifier
    Alike,  ///< the file has the same message (`MessageIdentity`) under another
  };
  /// Stores a message that came from outside under its "MessageID", unless the file holds it
  /// already, whoever stored it.
  Result<Received> StoreReceived(const Disk& request, const QByteArray& source);

  /// Stores a message that its server has accepted, with the source as it was transmitted: it is
  /// sent, and the attempt ends (see `Outbox`), both or neither.
  Result<> StoreSent(const Disk& request, const QByteArray& source);

  /// The message's source, exactly as it was stored. Fails when there is no such row (`NotFound`),
  /// or when it cannot be read or no longer is what was stored.
  Result<QByteArray> LoadMessageSource(const Disk& request);
  /// The same of the profile's mail file by the number of its row, which needs no index.
  Result<QByteArray> LoadSourceOfRow(qint64 row);

  /// Deletes the message's row. The folder rows are not touched.
  Result<> DeleteMessage(const Disk& request);

  /// Writes whichever of status, flag and folders the mask names. Without `openDatabase` it works
  /// on the database that is open, whichever the bag names.
  Result<> UpdateMessageState(StateMask mask, const Disk& request, bool openDatabase);

  /// Puts the message into the dust bin or takes it out, whatever its state is by now.
  Result<> UpdateDust(const Disk& request, bool dust);

  /// Makes a message that still waits to be sent one that is edited. Fails, as `NotFound`, when
  /// it does not wait any more.
  Result<> CancelWaiting(const Disk& request);

  /// Whether a content type is shown as text (the setting "TextMime").
  bool IsTextMime(const QString& contentType);

 private:
  OpenedDatabase Open(const Disk& request);
  MessageIndex Index(const Disk& request, const QByteArray& source);
  Result<> Store(const Disk& request, const QByteArray& source, const QString& statementBefore);
  [[nodiscard]] bool WriteMessage(const Disk& request, const QByteArray& source,
                                  const MessageIndex& index);
  /// What came of it, and the message that has the same identity where it is `Alike`.
  struct Taken {
    Received received;
    SerialId alike;
  };
  Result<Taken> StoreUnlessKnown(const Disk& request, const QByteArray& source,
                                 const std::optional<qint64>& identity, bool besideAlike);
  Result<QByteArray> ReadSource(const QString& select);
  [[nodiscard]] bool WriteState(StateMask mask, const Disk& request);
  [[nodiscard]] bool WriteFolders(const Disk& request);

  Context& context_;
};

}  // namespace vorn
