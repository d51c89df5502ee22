#include "transfer/results/told_stops.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <utility>

#include "storage/databases.h"
#include "storage/session/own_statement.h"
#include "storage/session/session_result.h"

namespace vorn {
namespace {

// So many bits are enough: what is taken for another one is only not told of.
qint64 DigestOf(const QByteArray& header) {
  const QByteArray digest = QCryptographicHash::hash(header, QCryptographicHash::Sha256);
  return qFromBigEndian<qint64>(digest.constData());
}

}  // namespace

bool ToldStops::IsFresh(const QByteArray& header) {
  const qint64 digest = DigestOf(header);
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (mail) {
    const auto told =
        AskOwn(context_.Data, "SELECT DIGEST FROM told_stop WHERE DIGEST = ?1", {digest});
    if (told && !(*told)->Eof()) return false;
  }
  fresh_.insert(digest);
  return true;
}

Result<> ToldStops::Store() {
  if (fresh_.isEmpty()) return {};
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  return Transact(context_.Data, [this]() -> Result<> {
    for (const qint64 digest : std::as_const(fresh_)) {
      const Result<> stored =
          RunOwn(context_.Data, "INSERT OR IGNORE INTO told_stop VALUES (?1)", {digest});
      if (!stored) return stored;
    }
    return {};
  });
}

}  // namespace vorn
