#include "mail/inspection/office_parts.h"

#include <QHash>
#include <QIODevice>
#include <algorithm>
#include <iterator>
#include <optional>

#include "mail/codec/mime/zip_files.h"
#include "mail/inspection/office_part.h"

namespace vorn {
namespace {

constexpr qint64 kMostBytes = 1024 * 1024 * 1024;
constexpr qsizetype kLargestDrawing = 32 * 1024 * 1024;

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

// Notes of spreadsheets are drawn in a form that is not always well-formed. Whether one that cannot
// be read holds nothing but that, in the usual code.
bool IsPlain(const QByteArray& drawing) {
  static const char* const kOthers[] = {"http",     "ftp",  "file:", "://",   "\\\\",
                                        "src",      "href", "fld",   "instr", "&#",
                                        "encoding", "<!",   "script"};
  const QByteArray lower = drawing.toLower().replace("encoding=\"utf-8\"", "");
  return !lower.contains('\0') &&
         std::none_of(std::begin(kOthers), std::end(kOthers),
                      [&lower](const char* other) { return lower.contains(other); });
}

// Looks into a part when it is XML, and counts what it is not.
class PartReader : public QIODevice {
 public:
  explicit PartReader(const LookBound& bound) : bound_(bound) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  }

  void Begin(const QString& name) {
    name_ = name.toLower();
    head_.clear();
    drawing_.clear();
    part_.reset();
    isEmpty_ = true;
  }
  // What is called XML and is none is encrypted.
  OfficeHolds Look() {
    if (bound_.IsReached()) return OfficeHolds::Unreadable;
    if (head_.size() < kHead) Recognise();
    if (part_) {
      const OfficeHolds holds = part_->Holds();
      NoteIdentifiers();
      const bool isDrawing = IsDrawing() && holds == OfficeHolds::Unreadable && IsPlain(drawing_);
      return isDrawing ? OfficeHolds::Nothing : holds;
    }
    const bool isCalledXml = name_.endsWith(u".xml") || name_.endsWith(u".rels");
    return isCalledXml && !isEmpty_ ? OfficeHolds::Unreadable : OfficeHolds::Nothing;
  }

  // Whether an element takes for its own contents what calls itself a hyperlink.
  bool LoadsLink() const {
    for (auto links = links_.begin(); links != links_.end(); ++links) {
      const auto loads = loads_.constFind(links.key());
      if (loads != loads_.constEnd() && loads->intersects(*links)) return true;
    }
    return false;
  }

 protected:
  qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
  qint64 writeData(const char* data, qint64 size) override {
    total_ += size;
    isEmpty_ = isEmpty_ && size == 0;
    if (total_ > kMostBytes || bound_.IsReached()) return -1;
    if (IsDrawing()) drawing_.append(data, size);
    if (drawing_.size() > kLargestDrawing) return -1;
    const QByteArrayView bytes(data, size);
    if (head_.size() < kHead) {
      head_.append(bytes);
      if (head_.size() < kHead) return size;
      Recognise();
    } else if (part_) {
      part_->Add(bytes);
    }
    return size;
  }

 private:
  static constexpr qsizetype kHead = 64;

  // The relationships of a part "x/y" stand in "x/_rels/y.rels" (Open Packaging Conventions).
  void NoteIdentifiers() {
    const QString folder = QStringLiteral("_rels/");
    const qsizetype at = name_.lastIndexOf(folder);
    if (at >= 0 && name_.endsWith(u".rels")) {
      const QString part = name_.first(at) + name_.sliced(at + folder.size()).chopped(5);
      if (!part_->Links().isEmpty()) links_.insert(part, part_->Links());
    } else if (!part_->Loads().isEmpty()) {
      loads_.insert(name_, part_->Loads());
    }
  }

  bool IsDrawing() const { return name_.endsWith(u".vml"); }
  void Recognise() {
    if (!LooksLikeXml(head_)) return;
    part_.emplace(bound_);
    part_->Add(head_);
  }

  const LookBound& bound_;
  QString name_;
  QByteArray head_;  // until it tells whether this is XML
  QByteArray drawing_;
  std::optional<OfficePart> part_;
  QHash<QString, QSet<QByteArray>> links_;  // by the name of the file whose relationships they are
  QHash<QString, QSet<QByteArray>> loads_;
  bool isEmpty_ = true;
  qint64 total_ = 0;
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

OfficeHolds PartsOfOffice(const QByteArray& file, const LookBound& bound) {
  const std::vector<ZipEntry> entries = ListZip(file);
  if (entries.empty() || entries.size() >= kMostZipFiles || HasHiddenFiles(file)) {
    return OfficeHolds::Unreadable;
  }
  for (const ZipEntry& entry : entries) {
    if (IsCommands(entry.name)) return OfficeHolds::Commands;
  }
  PartReader reader(bound);
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
  if (holds == OfficeHolds::Nothing && reader.LoadsLink()) return OfficeHolds::Contact;
  if (holds != OfficeHolds::Nothing || result == ZipResult::Done) return holds;
  return OfficeHolds::Unreadable;
}

}  // namespace vorn
