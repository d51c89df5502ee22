#include "storage/engine/source_walk.h"

#include <QElapsedTimer>
#include <QList>
#include <optional>
#include <tuple>
#include <utility>

#include "storage/engine/connection.h"
#include "storage/engine/long_binary_table.h"
#include "storage/engine/schema.h"
#include "storage/engine/source_digest.h"
#include "storage/files/found_damage.h"

namespace vorn {
namespace {

class Walk {
 public:
  Walk(Connection& connection, const WalkPlace& from, int milliseconds)
      : connection_(connection), milliseconds_(milliseconds) {
    outcome_.place = from;
    clock_.start();
  }

  WalkOutcome Run() {
    const bool allDigested = Digest() && Store();
    if (allDigested && Verify()) {
      outcome_.atEnd = true;
      outcome_.place.verified = 0;
    }
    outcome_.parts = connection_.Damage();
    // The session looked at the log when it opened the file, and may be writing to it now.
    outcome_.parts.remove(kDamagedLog);
    return outcome_;
  }

 private:
  bool IsOver() const { return clock_.elapsed() >= milliseconds_; }

  // The next entry, 0 at the end; nothing when it cannot be read.
  std::optional<qint64> Next(const QByteArray& condition, qint64 after) {
    const auto statement = connection_.Prepare("SELECT ID FROM long_binary WHERE ID > ? " +
                                               condition + " ORDER BY ID LIMIT 1");
    if (statement == nullptr) return std::nullopt;
    statement->Bind({after});
    const Statement::Step step = statement->Next();
    if (step == Statement::Step::Failed) return std::nullopt;
    return step == Statement::Step::Row ? statement->Value(0).toLongLong() : 0;
  }

  Result<QByteArray> Read(qint64 id) {
    Result<QByteArray> source = LongBinaryTable(connection_).Read(id);
    if (source) outcome_.bytes += source->size();
    return source;
  }

  // True when no source without a digest is left.
  bool Digest() {
    while (!IsOver() || digests_.isEmpty()) {
      const auto id = Next("AND DIGEST IS NULL", outcome_.place.digested);
      if (!id) return false;
      if (*id == 0) return true;
      outcome_.place.digested = *id;
      if (const auto source = Read(*id)) digests_.append({*id, SourceDigest(*source)});
      if (IsOver()) break;
    }
    Store();
    return false;
  }

  // All at once, since every transaction makes others wait for a moment.
  bool Store() {
    if (digests_.isEmpty()) return true;
    const WalkPlace before{digests_.first().first - 1, outcome_.place.verified};
    bool stored = connection_.Begin();
    if (stored) {
      stored = CreateLateDigests(connection_);
      for (const auto& [id, digest] : std::as_const(digests_)) {
        // Unless the source was deleted meanwhile.
        stored = stored && connection_.Run(
                               "INSERT OR IGNORE INTO late_digest (ID, DIGEST) SELECT "
                               "ID, ? FROM long_binary WHERE ID = ? AND DIGEST IS NULL",
                               {digest, id});
      }
      stored = stored && connection_.Commit();
      if (!stored) connection_.Rollback();
    }
    if (!stored) outcome_.place = before;
    digests_.clear();
    return stored;
  }

  // True when all are verified.
  bool Verify() {
    bool any = outcome_.bytes > 0;
    while (!IsOver() || !any) {
      const auto id = Next({}, outcome_.place.verified);
      if (!id) return false;
      if (*id == 0) return true;
      std::ignore = Read(*id);
      any = true;
      outcome_.place.verified = *id;
    }
    return false;
  }

  Connection& connection_;
  int milliseconds_;
  QElapsedTimer clock_;
  QList<std::pair<qint64, QByteArray>> digests_;
  WalkOutcome outcome_;
};

}  // namespace

WalkOutcome WalkSources(const QString& path, const QString& password, const WalkPlace& from,
                        int milliseconds) {
  const auto connection =
      Connection::Open(path, password, Connection::Mode::Existing).ValueOr(nullptr);
  WalkOutcome nothing;
  nothing.place = from;
  // A file of another version gets its tables when the program opens it.
  if (connection == nullptr || connection->SchemaVersion() != kSchemaVersion) return nothing;
  return Walk(*connection, from, milliseconds).Run();
}

}  // namespace vorn
