#include "storage/condition_run.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <tuple>
#include <utility>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/engine/condition_limit.h"
#include "storage/sql/sql_dialect.h"

namespace vorn {
namespace {

// What reads a file through once finds nothing in a cache again, and many folders may ask at once.
constexpr const char* kSmallCache = "PRAGMA cache_size = -4096";

ConditionRun::Answer Ask(Connection& connection, const QByteArray& sql,
                         const QVariantList& parameters) {
  QVariantList values;
  QElapsedTimer clock;
  clock.start();
  const auto statement = connection.Prepare(sql, StatementTrust::UserCondition);
  Statement::Step step = Statement::Step::Failed;
  if (statement != nullptr) {
    statement->Bind(parameters);
    while ((step = statement->Next()) == Statement::Step::Row) {
      values.append(statement->Value(0));
    }
  }
  if (step == Statement::Step::Failed) return {connection.LastError(), clock.elapsed()};
  return {values, clock.elapsed()};
}

// The allocator has a pool for each thread and keeps what was freed in it, which after a search of
// a large file is tens of megabytes. The answer itself is freed once the event that brought it has
// been dealt with.
void GiveMemoryBackSoon() {
#ifdef __GLIBC__
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { malloc_trim(0); }, Qt::QueuedConnection);
#endif
}

}  // namespace

ConditionRun::ConditionRun(Context& context, const QString& select, int limitMs, Then then,
                           ConditionSieve sieve)
    : context_(context),
      path_(MailDatabasePath(context)),
      then_(std::move(then)),
      sieve_(std::move(sieve)) {
  const auto translated = TranslateSql(select);
  const Result<> connected = translated ? Connect() : translated.Error();
  if (connected) {
    Begin(translated->sql, translated->parameters, limitMs);
  } else {
    QMetaObject::invokeMethod(
        this, [this, connected] { End({connected.Error()}); }, Qt::QueuedConnection);
  }
}

Result<> ConditionRun::Connect() {
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (!mail) return mail.Error();
  // What is only gathered cannot be seen by another connection.
  std::ignore = context_.Data.Group().FlushForReading();
  const auto opened =
      Connection::Open(path_, ProfileBag(*context_.Session).Password(), Connection::Mode::ReadOnly);
  if (!opened) return opened.Error();
  connection_ = *opened;
  std::ignore = connection_->Run(kSmallCache);  // else it takes more memory
  return {};
}

ConditionRun::~ConditionRun() {
  Stop();
}

void ConditionRun::Begin(const QByteArray& sql, const QVariantList& parameters, int limitMs) {
  thread_.reset(QThread::create([this, sql, parameters, limitMs] {
    const ConditionLimit limit(limitMs, &stop_);
    Answer answer = Ask(*connection_, sql, parameters);
    if (sieve_.keeps && answer.values) answer.values = Sift(*answer.values);
    QMetaObject::invokeMethod(
        this, [this, answer] { End(answer); }, Qt::QueuedConnection);
  }));
  thread_->start();
}

QVariantList ConditionRun::Sift(const QVariantList& values) {
  QVariantList kept;
  toSift_ = values.size();
  for (const QVariant& value : values) {
    if (stop_ || kept.size() >= sieve_.most) break;
    if (sieve_.keeps(*connection_, value.toString())) kept.append(value);
    ++sifted_;
  }
  return kept;
}

void ConditionRun::Stop() {
  stop_ = true;
  then_ = {};
  if (thread_ != nullptr) thread_->wait();
  thread_.reset();
  connection_.reset();
}

// `then` may let go of this.
void ConditionRun::End(const Answer& answer) {
  const Then then = std::move(then_);
  if (connection_ != nullptr) context_.Data.Damage().Add(path_, connection_->Damage());
  Stop();
  GiveMemoryBackSoon();
  if (then) then(answer);
}

}  // namespace vorn
