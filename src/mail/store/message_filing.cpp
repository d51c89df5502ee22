#include "mail/store/message_filing.h"

#include <QSet>
#include <algorithm>
#include <type_traits>

#include "mail/store/mail_row.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_pieces.h"
#include "mail/store/message_rows.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Of those among the messages for which the condition, which that of the messages ends, holds.
Result<MessageFlags> ReadFlags(DataSession& session, const QString& condition,
                               const SerialIds& messages) {
  MessageFlags flags;
  for (const SerialIds& piece : InPieces(messages)) {
    if (!session.OpenRecordset(QStringLiteral("SELECT SERIALID, FIELD_FLAG FROM mail WHERE ") +
                                   condition + Among(piece),
                               CursorKind::ForwardOnly)) {
      return ReasonOf(session);
    }
    const RecordsetPtr rows = session.Recordset();
    const MailRow row(*rows);
    for (; !rows->Eof(); rows->MoveNext()) flags.insert(row.Serial(), row.Flags());
    if (rows->Failed()) return rows->Error();
  }
  return flags;
}

// A mark that was given and taken back leaves zeros behind.
QString Marks(const FlagString& flags) {
  QString marks = flags.Text();
  while (marks.endsWith(u'0')) marks.chop(1);
  return marks;
}

// What a server is being given stays as it is.
const QString kUnderWay =
    QStringLiteral("(SELECT SERIALID FROM send_attempt WHERE STATE = %1)").arg(kAttemptUnderWay);
const QString kMayChange = QStringLiteral(" AND SERIALID NOT IN ") + kUnderWay;

// Adds those that the statement selects.
Result<> Select(DataSession& session, const QString& statement, SerialIds& found) {
  if (!session.OpenRecordset(statement, CursorKind::ForwardOnly)) return ReasonOf(session);
  const RecordsetPtr rows = session.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) found.append(rows->Serial());
  return rows->Failed() ? rows->Error() : Result<>();
}

Result<SerialIds> Select(Context& context, const QString& statement) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  SerialIds found;
  const Result<> selected = Select(context.Data, statement, found);
  if (!selected) return selected.Error();
  return found;
}

// Those among the messages for which the statement, which their condition ends, selects them.
Result<SerialIds> FindAmong(DataSession& session, const QString& statement,
                            const SerialIds& messages) {
  SerialIds found;
  for (const SerialIds& piece : InPieces(messages)) {
    const Result<> selected = Select(session, statement + Among(piece), found);
    if (!selected) return selected.Error();
  }
  return found;
}

Result<SerialIds> FindAmong(Context& context, const QString& statement, const SerialIds& messages) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  return FindAmong(context.Data, statement, messages);
}

// Those among the messages that are being handed over.
Result<UnderWay> ReadUnderWay(DataSession& session, const SerialIds& messages) {
  UnderWay underWay;
  for (const SerialIds& piece : InPieces(messages)) {
    if (!session.OpenRecordset(
            QStringLiteral("SELECT SERIALID, FIELD_SUBJECT FROM mail WHERE%1 AND SERIALID IN %2")
                .arg(Among(piece), kUnderWay),
            CursorKind::ForwardOnly)) {
      return ReasonOf(session);
    }
    const RecordsetPtr rows = session.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      underWay.insert(rows->Serial(), MailRow(*rows).Subject());
    }
    if (rows->Failed()) return rows->Error();
  }
  return underWay;
}

// Does `work`, which gives a result, in a transaction of the mail database.
template <typename Work>
std::invoke_result_t<Work, DataSession&> Transact(Context& context, const Work& work) {
  DataSession& session = context.Data;
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  return Transact(session, [&] { return work(session); });
}

// Runs a statement, which the condition of messages and `rest` end.
bool RunAmong(DataSession& session, const QString& statement, const SerialIds& messages,
              const QString& rest = {}) {
  const QList<SerialIds> pieces = InPieces(messages);
  return std::all_of(pieces.begin(), pieces.end(), [&](const SerialIds& piece) {
    return session.Execute(statement + Among(piece) + rest);
  });
}

bool SetDust(DataSession& session, const SerialIds& messages, bool dust) {
  return RunAmong(session, PutIntoDust(dust) + QStringLiteral(" WHERE"), messages);
}

// Of a move what it changes: what is where it is put, or gone, is not moved.
Result<Move> Narrow(DataSession& session, const Move& move) {
  Move narrowed;
  Result<> found;
  const auto find = [&](const QString& select, const SerialIds& messages, SerialIds& among) {
    if (!found) return;
    Result<SerialIds> those = FindAmong(session, select, messages);
    found = those ? Result<>() : those.Error();
    among = those.ValueOr({});
  };
  const QString select = QStringLiteral("SELECT SERIALID FROM mail WHERE ");
  for (auto folder = move.into.begin(); folder != move.into.end(); ++folder) {
    const QString others =
        select + QStringLiteral("SERIALID NOT IN (SELECT SERIALID FROM folder WHERE FOLDERID = ") +
        QuoteSql(folder.key()) + QStringLiteral(") AND");
    find(others, *folder, narrowed.into[folder.key()]);
  }
  for (auto folder = move.outOf.begin(); folder != move.outOf.end(); ++folder) {
    const QString members = QStringLiteral("SELECT SERIALID FROM folder WHERE FOLDERID = ") +
                            QuoteSql(folder.key()) + QStringLiteral(" AND");
    find(members, *folder, narrowed.outOf[folder.key()]);
  }
  find(select + kOutsideDust + QStringLiteral(" AND"), move.intoDust, narrowed.intoDust);
  find(select + kInDust + QStringLiteral(" AND"), move.outOfDust, narrowed.outOfDust);
  if (!found) return found.Error();
  return narrowed;
}

bool Run(DataSession& session, const Move& move) {
  for (auto folder = move.outOf.begin(); folder != move.outOf.end(); ++folder) {
    const QString take = QStringLiteral("DELETE FROM folder WHERE FOLDERID = ") +
                         QuoteSql(folder.key()) + QStringLiteral(" AND");
    if (!RunAmong(session, take, *folder)) return false;
  }
  for (auto folder = move.into.begin(); folder != move.into.end(); ++folder) {
    const QString put =
        QStringLiteral("INSERT INTO folder (SERIALID, FOLDERID) SELECT SERIALID, ") +
        QuoteSql(folder.key()) + QStringLiteral(" FROM mail WHERE");
    if (!RunAmong(session, put, *folder)) return false;
  }
  return SetDust(session, move.intoDust, true) && SetDust(session, move.outOfDust, false);
}

Result<UnderWay> Delete(DataSession& session, const SerialIds& messages) {
  Result<UnderWay> underWay = ReadUnderWay(session, messages);
  if (!underWay) return underWay;
  const bool deleted =
      RunAmong(session, QStringLiteral("DELETE FROM folder WHERE"), messages, kMayChange) &&
      RunAmong(session, QStringLiteral("DELETE * FROM mail WHERE"), messages, kMayChange);
  if (!deleted) return ReasonOf(session);
  return underWay;
}

// A stored string may be shorter than where the mark stands.
QString WithMark(FlagPosition mark, const QString& value) {
  return QStringLiteral(
             "UPDATE mail SET FIELD_FLAG = SUBSTR(FIELD_FLAG & '0000000', 1, %1) & %2 & "
             "SUBSTR(FIELD_FLAG, %3) WHERE")
      .arg(mark - 1)
      .arg(value)
      .arg(mark + 1);
}

}  // namespace

SerialIds Without(const UnderWay& underWay, SerialIds messages) {
  messages.removeIf([&](const SerialId& message) { return underWay.contains(message); });
  return messages;
}

QString NoFolderWords() {
  return Ui::tr(
      "メッセージを入れられるフォルダがありません。条件のないフォルダを作ると、"
      "そこに入れられます。");
}

SerialIds Move::Messages() const {
  SerialIds all = intoDust + outOfDust;
  for (const Filed& filed : {into, outOf}) {
    for (const SerialIds& messages : filed) all += messages;
  }
  QSet<SerialId> seen;
  all.removeIf([&seen](const SerialId& message) {
    const bool isSeen = seen.contains(message);
    seen.insert(message);
    return isSeen;
  });
  return all;
}

Move Move::Only(const SerialIds& messages) const {
  const QSet<SerialId> wanted(messages.begin(), messages.end());
  Move only = *this;
  const auto narrow = [&wanted](SerialIds& those) {
    those.removeIf([&wanted](const SerialId& message) { return !wanted.contains(message); });
  };
  narrow(only.intoDust);
  narrow(only.outOfDust);
  for (SerialIds& filed : only.into) narrow(filed);
  for (SerialIds& filed : only.outOf) narrow(filed);
  return only;
}

QList<Move> Move::InParts(qsizetype size) const {
  const SerialIds all = Messages();
  QHash<SerialId, qsizetype> partOf;
  for (qsizetype i = 0; i < all.size(); ++i) partOf.insert(all[i], i / size);
  QList<Move> parts((all.size() + size - 1) / size);
  for (const SerialId& message : intoDust) parts[partOf[message]].intoDust.append(message);
  for (const SerialId& message : outOfDust) parts[partOf[message]].outOfDust.append(message);
  const auto deal = [&](const Filed& filed, Filed Move::*member) {
    for (auto folder = filed.begin(); folder != filed.end(); ++folder) {
      for (const SerialId& message : *folder) {
        (parts[partOf[message]].*member)[folder.key()].append(message);
      }
    }
  };
  deal(into, &Move::into);
  deal(outOf, &Move::outOf);
  return parts;
}

void Move::Add(const Move& further) {
  intoDust += further.intoDust;
  outOfDust += further.outOfDust;
  for (auto folder = further.into.begin(); folder != further.into.end(); ++folder) {
    into[folder.key()] += *folder;
  }
  for (auto folder = further.outOf.begin(); folder != further.outOf.end(); ++folder) {
    outOf[folder.key()] += *folder;
  }
}

Result<Moved> MoveMessages(Context& context, const Move& move) {
  return Transact(context, [&](DataSession& session) -> Result<Moved> {
    Result<Move> changes = Narrow(session, move);
    if (!changes) return changes.Error();
    const Result<UnderWay> underWay = ReadUnderWay(session, changes->intoDust + changes->outOfDust);
    if (!underWay) return underWay.Error();
    changes->intoDust = Without(*underWay, changes->intoDust);
    changes->outOfDust = Without(*underWay, changes->outOfDust);
    if (!Run(session, *changes)) return ReasonOf(session);
    return Moved{changes->Back(), *underWay};
  });
}

MovedSome MoveInPieces(Context& context, const Move& move, const FilingProgress& progress) {
  const auto all = static_cast<int>(move.Messages().size());
  MovedSome some;
  for (const Move& part : move.InParts(kMessagesAtOnce)) {
    const Result<Moved> moved = MoveMessages(context, part);
    if (!moved) {
      some.end = moved.Error();
      break;
    }
    some.moved.back.Add(moved->back);
    some.moved.underWay.insert(moved->underWay);
    some.messages += part.Messages();
    const auto done = static_cast<int>(some.messages.size());
    if (done < all && !progress(done, all)) break;
  }
  return some;
}

// They are taken out of all the other folders in which any message is.
Result<Moved> TakeOutOfDust(Context& context, const SerialIds& messages, const SerialId& folder) {
  Move move{.outOfDust = messages};
  if (!folder.IsEmpty()) move.into = {{folder, messages}};
  {
    const OpenedDatabase opened(context, DatabaseKind::Mail);
    if (!opened) return opened.Error();
    if (!context.Data.OpenRecordset(QStringLiteral("SELECT DISTINCT FOLDERID FROM folder"),
                                    CursorKind::ForwardOnly)) {
      return ReasonOf(context.Data);
    }
    const RecordsetPtr rows = context.Data.Recordset();
    for (; !rows->Eof(); rows->MoveNext()) {
      move.outOf[SerialIdOf(rows->Fields(u"FOLDERID"))] = messages;
    }
    if (rows->Failed()) return rows->Error();
  }
  move.outOf.remove(folder);
  return MoveMessages(context, move);
}

Result<Moved> SetDust(Context& context, const SerialIds& messages, bool dust) {
  return MoveMessages(context, dust ? Move{.intoDust = messages} : Move{.outOfDust = messages});
}

Result<SerialIds> ReceivedAmong(Context& context, const SerialIds& messages) {
  return FindAmong(
      context,
      QStringLiteral("SELECT SERIALID FROM mail WHERE ABS(STATUS) = %1 AND").arg(kStatusReceived),
      messages);
}

Result<> SetMark(Context& context, const SerialIds& messages, FlagPosition mark, bool isSet) {
  const QString value = isSet ? QStringLiteral("'1'") : QStringLiteral("'0'");
  const QString received =
      mark == kFlagNew ? QStringLiteral(" AND ABS(STATUS) = %1").arg(kStatusReceived) : QString();
  return Transact(context, [&](DataSession& session) {
    return ResultOf(session, RunAmong(session, WithMark(mark, value), messages, received));
  });
}

Result<> ToggleStar(Context& context, const SerialIds& messages) {
  const QString other = QStringLiteral("(1 - SUBSTR(FIELD_FLAG & '0000000', %1, 1))")
                            .arg(static_cast<int>(kFlagStar));
  return Transact(context, [&](DataSession& session) {
    return ResultOf(session, RunAmong(session, WithMark(kFlagStar, other), messages));
  });
}

Result<UnderWay> DeleteMessages(Context& context, const SerialIds& messages) {
  return Transact(context, [&](DataSession& session) { return Delete(session, messages); });
}

Result<MessageFlags> FlagsOf(Context& context, const SerialIds& messages) {
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  return ReadFlags(context.Data, QString(), messages);
}

Result<SerialIds> UnchangedAmong(Context& context, const MessageFlags& flags,
                                 const SerialId& folder) {
  const QString others = QStringLiteral("SELECT SERIALID FROM folder WHERE FOLDERID <> ");
  const QString filed =
      folder.IsEmpty()
          ? QString()
          : QStringLiteral(" AND SERIALID IN (SELECT SERIALID FROM folder WHERE FOLDERID = %1)")
                .arg(QuoteSql(folder));
  const QString isThere = QStringLiteral("STATUS IN (%1, %2) AND SERIALID NOT IN (%3%4)%5 AND")
                              .arg(QString::number(kStatusReceived), QString::number(kStatusSent),
                                   others, QuoteSql(folder), filed);
  const OpenedDatabase opened(context, DatabaseKind::Mail);
  if (!opened) return opened.Error();
  const Result<MessageFlags> now = ReadFlags(context.Data, isThere, flags.keys());
  if (!now) return now.Error();
  SerialIds unchanged;
  for (auto message = now->cbegin(); message != now->cend(); ++message) {
    if (Marks(flags.value(message.key())) == Marks(*message)) unchanged.append(message.key());
  }
  return unchanged;
}

Result<int> CountWaiting(Context& context, const QString& address) {
  if (address.isEmpty()) return 0;
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  const RecordsetPtr rows = MessageRows(context.Data).Waiting();
  if (rows == nullptr) return ReasonOf(context.Data);
  int count = 0;
  for (; !rows->Eof(); rows->MoveNext()) {
    const QStringList lines = MailRow(*rows).AddressLines().split(QStringLiteral("\r\n"));
    count += std::any_of(lines.begin(), lines.end(), [&address](const QString& line) {
      return line.startsWith(u"FROM:") && line.contains(address, Qt::CaseInsensitive);
    });
  }
  if (rows->Failed()) return rows->Error();
  return count;
}

// What was taken out meanwhile stays.
Emptied EmptyDust(Context& context, const FilingProgress& progress) {
  const QString inDust = QStringLiteral("SELECT SERIALID FROM mail WHERE ") + kInDust;
  Emptied emptied;
  const Result<SerialIds> all = Select(context, inDust);
  if (!all) {
    emptied.end = all.Error();
    return emptied;
  }
  qsizetype done = 0;
  emptied.left = static_cast<int>(all->size());
  for (const SerialIds& piece : InPieces(*all)) {
    emptied.end = Transact(context, [&](DataSession& session) -> Result<> {
      const Result<SerialIds> still = FindAmong(session, inDust + QStringLiteral(" AND"), piece);
      if (!still) return still.Error();
      const Result<UnderWay> underWay = Delete(session, *still);
      if (!underWay) return underWay.Error();
      emptied.count += static_cast<int>(still->size() - underWay->size());
      emptied.underWay.insert(*underWay);
      return {};
    });
    if (!emptied.end) break;
    done += piece.size();
    emptied.left = static_cast<int>(all->size() - done);
    if (progress && !progress(static_cast<int>(done), static_cast<int>(all->size()))) break;
  }
  return emptied;
}

}  // namespace vorn
