#include "mail/office_parts.h"

#include <QDeadlineTimer>
#include <QIODevice>

#include "mail/codec/zip_files.h"
#include "mail/office_part.h"

namespace vorn {
namespace {

constexpr qint64 kMostBytes = 256 * 1024 * 1024;
constexpr qint64 kLargestPart = 32 * 1024 * 1024;
constexpr qint64 kMostMs = 3000;

bool LooksLikeXml(const QByteArray& head) {
  static const QByteArray kMarks[] = {"\xEF\xBB\xBF",
                                      "\xFF\xFE",
                                      "\xFE\xFF",
                                      QByteArray("\0<", 2),
                                      QByteArray("\0\0\xFE\xFF", 4),
                                      QByteArray("\0\0\0<", 4)};
  for (const QByteArray& mark : kMarks) {
    if (head.startsWith(mark)) return true;
  }
  const QByteArray begin = head.trimmed();
  return begin.startsWith('<') || (begin.isEmpty() && !head.isEmpty());
}

// Keeps a part when it is XML, and counts what it does not keep.
class PartReader : public QIODevice {
 public:
  PartReader() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

  void Begin(const QString& name) {
    name_ = name.toLower();
    part_.clear();
    isKept_ = true;
  }
  // What is called XML and is none is encrypted.
  OfficeHolds Look() const {
    if (deadline_.hasExpired()) return OfficeHolds::Unreadable;
    if (isKept_ && LooksLikeXml(part_.first(qMin(part_.size(), kHead)))) {
      const OfficeHolds holds = HoldsOfPart(part_, deadline_);
      // Notes of spreadsheets are drawn in a form that is not always well-formed.
      const bool isDrawing = name_.endsWith(u".vml") && !part_.contains("http");
      return isDrawing && holds == OfficeHolds::Unreadable ? OfficeHolds::Nothing : holds;
    }
    const bool isCalledXml = name_.endsWith(u".xml") || name_.endsWith(u".rels");
    return isCalledXml && !part_.isEmpty() ? OfficeHolds::Unreadable : OfficeHolds::Nothing;
  }

 protected:
  qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    total_ += size;
    if (total_ > kMostBytes || deadline_.hasExpired()) return -1;
    if (!isKept_) return size;
    part_.append(data, size);
    if (part_.size() > kLargestPart) return -1;
    isKept_ = part_.size() < kHead || LooksLikeXml(part_.first(kHead));
    return size;
  }

 private:
  static constexpr qsizetype kHead = 64;

  QString name_;
  QByteArray part_;
  bool isKept_ = true;
  qint64 total_ = 0;
  QDeadlineTimer deadline_{kMostMs};
};

bool IsCommands(const QString& name) {
  static const QString kNames[] = {QStringLiteral("basic/"), QStringLiteral("scripts/"),
                                   QStringLiteral("vbaproject"), QStringLiteral("/activex/"),
                                   QStringLiteral("dialogs/")};
  const QString lower = name.toLower();
  // A chart keeps its table there.
  if (lower.contains(u"/embeddings/") && !lower.endsWith(u".xlsx")) return true;
  for (const QString& part : kNames) {
    if (lower.contains(part)) return true;
  }
  return false;
}

}  // namespace

OfficeHolds PartsOfOffice(const QByteArray& file) {
  const std::vector<ZipEntry> entries = ListZip(file);
  if (entries.empty() || entries.size() >= kMostZipFiles || HasHiddenFiles(file)) {
    return OfficeHolds::Unreadable;
  }
  for (const ZipEntry& entry : entries) {
    if (IsCommands(entry.name)) return OfficeHolds::Commands;
  }
  PartReader reader;
  OfficeHolds holds = OfficeHolds::Nothing;
  const auto begin = [&reader, &entries](size_t index) -> QIODevice* {
    if (index >= entries.size()) return nullptr;
    reader.Begin(entries[index].name);
    return &reader;
  };
  const auto look = [&reader, &holds] {
    holds = reader.Look();
    return holds == OfficeHolds::Nothing;
  };
  const ZipResult result = UnpackZip(file, {}, begin, look);
  if (holds != OfficeHolds::Nothing || result == ZipResult::Done) return holds;
  return OfficeHolds::Unreadable;
}

}  // namespace vorn
