#include "frame/source_watch.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <tuple>
#include <utility>

#include "objects/profile/profile.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/known_damage.h"

namespace vorn {
namespace {

constexpr int kStretchMs = 200;

// How far the walk through a file has come, as the profile's database keeps it.
class KeptPlace {
 public:
  explicit KeptPlace(const QString& file)
      : bag_(QStringLiteral("walk_") + QFileInfo(file).fileName()) {}

  WalkPlace Load(DataSession& data) {
    if (!bag_.DatabaseToDisk(data)) return {};
    return {bag_.Get(kDigested).toLongLong(), bag_.Get(kVerified).toLongLong()};
  }
  bool Store(DataSession& data, const WalkPlace& place) {
    bag_.Let(kDigested, QString::number(place.digested));
    bag_.Let(kVerified, QString::number(place.verified));
    return bag_.DiskToDatabase(data);
  }

 private:
  static inline const QString kDigested = QStringLiteral("Digested");
  static inline const QString kVerified = QStringLiteral("Verified");

  Disk bag_;
};

}  // namespace

SourceWatch::SourceWatch(Context& context, std::function<bool()> mayWork, QObject* parent)
    : QObject(parent), context_(context), mayWork_(std::move(mayWork)) {
  rest_.setSingleShot(true);
  connect(&rest_, &QTimer::timeout, this, &SourceWatch::Begin);
}

SourceWatch::~SourceWatch() {
  if (thread_ != nullptr) thread_->wait();
}

void SourceWatch::Start() {
  files_ = ProfileFiles(context_, *context_.Session).mid(1);  // the first one holds objects
  hasPlace_ = false;
  verified_ = 0;
  rest_.start(RestMs);
}

void SourceWatch::Begin() {
  while (!files_.isEmpty() && !QFile::exists(files_.first())) files_.removeFirst();
  if (files_.isEmpty()) return;
  if (!mayWork_()) {
    rest_.start(RestMs);
    return;
  }
  const QString file = files_.first();
  if (!std::exchange(hasPlace_, true)) place_ = LoadPlace(file);
  const QString password = ProfileBag(*context_.Session).Password();
  thread_.reset(QThread::create([this, file, password, from = place_] {
    const WalkOutcome outcome = WalkSources(file, password, from, kStretchMs);
    QMetaObject::invokeMethod(
        this, [this, outcome] { End(outcome); }, Qt::QueuedConnection);
  }));
  // Not at idle priority: where other programs keep the machine busy, the thread would stand for
  // minutes with the file's locks in its hands, and sending and storing would fail.
  thread_->start();
}

void SourceWatch::End(const WalkOutcome& outcome) {
  thread_->wait();
  const QString file = files_.first();
  const bool stuck = outcome.place == place_ && !outcome.atEnd;
  if (outcome.place != place_) StorePlace(file, outcome.place);
  if (outcome.place.digested == place_.digested) verified_ += outcome.bytes;
  place_ = outcome.place;
  if (!outcome.parts.isEmpty()) {
    context_.Data.Damage().Add(file, outcome.parts);
    std::ignore = KeepDamage(context_);  // else it is still to be kept
    if (onDamage_) onDamage_();
  }
  if (outcome.atEnd || stuck || verified_ >= VerifiedBytes) {
    files_.removeFirst();
    hasPlace_ = false;
    verified_ = 0;
  }
  if (!files_.isEmpty()) rest_.start(RestMs);
}

WalkPlace SourceWatch::LoadPlace(const QString& file) {
  const OpenedDatabase opened(context_, DatabaseKind::Profile);
  return opened ? KeptPlace(file).Load(context_.Data) : WalkPlace();
}

// One that cannot be stored costs the next start some work.
void SourceWatch::StorePlace(const QString& file, const WalkPlace& place) {
  const OpenedDatabase opened(context_, DatabaseKind::Profile);
  if (opened) std::ignore = KeptPlace(file).Store(context_.Data, place);
}

}  // namespace vorn
