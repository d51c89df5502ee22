#include "storage/known_damage.h"

#include <QFileInfo>
#include <algorithm>
#include <utility>

#include "storage/databases.h"
#include "storage/sql_text.h"

namespace vorn {
namespace {

const QString kPrefix = QStringLiteral("damage_");
const QString kLineBreak = QStringLiteral("\r\n");

// The files of a profile share a folder, so that a name is enough.
QString NameOf(const QString& file) {
  return QFileInfo(file).fileName();
}

// Works on the open profile database, as all below. Null when it cannot be read.
DiskPtr Load(DataSession& data, const QString& name) {
  auto note = std::make_shared<Disk>(kPrefix + name);
  return note->DatabaseToDisk(data) ? note : nullptr;
}

KnownDamage Read(const Disk& note) {
  return {note.SerialID().mid(kPrefix.size()), note.Text(u"Since"),
          note.Text(u"Parts").split(kLineBreak, Qt::SkipEmptyParts), note.Flag(u"Decided")};
}

bool Write(DataSession& data, const KnownDamage& damage) {
  Disk note(kPrefix + damage.file);
  note.Let(QStringLiteral("FormName"), QStringLiteral("damage"));
  note.Let(QStringLiteral("Since"), damage.since);
  note.Let(QStringLiteral("Parts"), damage.parts.join(kLineBreak));
  note.Let(QStringLiteral("Decided"), damage.decided);
  return note.DiskToDatabase(data);
}

bool Add(DataSession& data, const QString& name, const QSet<QString>& parts) {
  const DiskPtr note = Load(data, name);
  if (note == nullptr) return false;
  KnownDamage damage = Read(*note);
  const bool isKnown = std::all_of(parts.begin(), parts.end(), [&damage](const QString& part) {
    return damage.parts.contains(part);
  });
  if (isKnown) return true;
  if (damage.since.isEmpty()) damage.since = data.Now();
  damage.parts += QStringList(parts.begin(), parts.end());
  damage.parts.removeDuplicates();
  damage.decided = false;
  return Write(data, damage);
}

}  // namespace

bool KeepDamage(Context& context) {
  DataSession& data = context.Data;
  if (!data.HasDamage()) return true;
  const QHash<QString, QSet<QString>> found = data.TakeDamage();
  bool kept = OpenDatabase(context, DatabaseKind::Profile);
  for (auto file = found.begin(); file != found.end(); ++file) {
    if (kept && Add(data, NameOf(file.key()), file.value())) continue;
    data.PutDamage(file.key(), file.value());
    kept = false;
  }
  data.Close();
  return kept;
}

std::optional<KnownDamage> FindDamage(Context& context, const QString& file) {
  if (!KeepDamage(context) || !OpenDatabase(context, DatabaseKind::Profile)) return std::nullopt;
  const DiskPtr note = Load(context.Data, NameOf(file));
  context.Data.Close();
  if (note == nullptr) return std::nullopt;
  return Read(*note);
}

bool IsKnownDamaged(Context& context, const QString& file) {
  const std::optional<KnownDamage> damage = FindDamage(context, file);
  return !damage || damage->WaitsForDecision();
}

QString FirstDamaged(Context& context, const QStringList& files) {
  for (const QString& file : files) {
    if (IsKnownDamaged(context, file)) return file;
  }
  return {};
}

QList<KnownDamage> UndecidedDamage(Context& context) {
  QList<KnownDamage> undecided;
  KeepDamage(context);
  if (!OpenDatabase(context, DatabaseKind::Profile)) return undecided;
  QStringList serials;
  if (context.Data.OpenRecordset(
          QStringLiteral("SELECT DISTINCT SERIALID FROM object WHERE SERIALID LIKE ") +
              QuoteSql(kPrefix + u'*'),
          CursorKind::ForwardOnly)) {
    for (const RecordsetPtr rows = context.Data.Recordset(); !rows->Eof(); rows->MoveNext()) {
      serials.append(rows->SerialID());
    }
  }
  for (const QString& serial : std::as_const(serials)) {
    const DiskPtr note = Load(context.Data, serial.mid(kPrefix.size()));
    if (note == nullptr) continue;
    const KnownDamage damage = Read(*note);
    if (damage.WaitsForDecision()) undecided.append(damage);
  }
  context.Data.Close();
  return undecided;
}

bool AcceptDamage(Context& context, const QString& file) {
  if (!KeepDamage(context) || !OpenDatabase(context, DatabaseKind::Profile)) return false;
  const DiskPtr note = Load(context.Data, NameOf(file));
  bool accepted = note != nullptr;
  if (accepted) {
    KnownDamage damage = Read(*note);
    damage.decided = true;
    accepted = damage.parts.isEmpty() || Write(context.Data, damage);
  }
  context.Data.Close();
  return accepted;
}

bool ForgetDamage(Context& context, const QString& file) {
  if (!OpenDatabase(context, DatabaseKind::Profile)) return false;
  const bool forgotten = Disk(kPrefix + NameOf(file)).Delete(context.Data);
  context.Data.Close();
  return forgotten;
}

}  // namespace vorn
