#include "storage/session/file_check.h"

#include <QFile>
#include <QFileInfo>
#include <functional>
#include <limits>
#include <tuple>

#include "storage/base/time_text.h"
#include "storage/engine/connection.h"
#include "storage/engine/long_binary_table.h"
#include "storage/engine/raw_pages.h"
#include "storage/engine/schema.h"
#include "storage/files/found_damage.h"
#include "storage/session/own_statement.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kEngineRows = 1000;

struct Row {
  qint64 id;
  qint64 source;
};

class FileCheck {
 public:
  FileCheck(Connection& connection, FileFindings& findings)
      : connection_(connection), findings_(findings) {}

  void Run(FileContents contents) {
    BeginMoment();
    AskEngine();
    if (contents == FileContents::Messages && HasTable("mail")) {
      ReadRows();
      CountOrphans();
      ReadSources();
    } else if (contents == FileContents::Objects && HasTable("object")) {
      ReadObjects();
    } else {
      Problem(Ui::tr("必要な表がありません。"));
    }
    EndMoment();
    findings_.parts += connection_.Damage();
    if (findings_.parts.contains(kDamagedLog)) findings_.AddLostLog();
    // What was met on the way and falls under none of the above.
    if (findings_.IsSound() && !findings_.parts.isEmpty()) {
      Problem(Ui::tr("データベースファイルが壊れています。"));
    }
    if (!findings_.IsSound() && findings_.parts.isEmpty()) findings_.parts = {kDamagedFile};
  }

 private:
  // All of the file as it is at one moment, whatever others write meanwhile.
  void BeginMoment() { std::ignore = connection_.Run("BEGIN"); }
  void EndMoment() { std::ignore = connection_.Run("ROLLBACK"); }  // nothing was written
  // As long as one reads, the engine refuses every page after one whose mark is wrong: what lies
  // behind damage is read at a later moment.
  void GoOnBehindDamage() {
    EndMoment();
    BeginMoment();
  }
  void Problem(const QString& sentence) {
    if (!findings_.problems.contains(sentence)) findings_.problems.append(sentence);
  }
  // Nothing that cannot be read counts as none: reading it is what is being checked.
  qint64 Number(const QByteArray& sql) {
    const QVariant number = connection_.Scalar(sql);
    if (!number.isValid()) Unreadable();  // by now its statement is gone
    return number.toLongLong();
  }
  bool HasTable(const QByteArray& name) {
    return Number("SELECT COUNT(0) FROM sqlite_master WHERE type = 'table' AND name = '" + name +
                  "'") > 0;
  }
  // What of the answer can be read.
  void ForEachRow(const QByteArray& select, const std::function<void(Statement& row)>& take) {
    auto statement = connection_.Prepare(select);
    Statement::Step step = statement == nullptr ? Statement::Step::Failed : statement->Next();
    for (; step == Statement::Step::Row; step = statement->Next()) take(*statement);
    statement.reset();
    if (step == Statement::Step::Failed) Unreadable();
  }
  void Unreadable() {
    Problem(Ui::tr("データベースファイルに読み込めない部分があります。"));
    GoOnBehindDamage();
  }

  // The engine's own words are English and say nothing to a user; their number does.
  void AskEngine() {
    int found = 0;
    ForEachRow("PRAGMA integrity_check(" + QByteArray::number(kEngineRows) + ")",
               [&](Statement& row) {
                 if (row.Value(0).toString() != u"ok") ++found;
               });
    if (found == 0) return;
    Problem(Ui::tr("データベースの構造に%1件の異常があります。").arg(found));
    findings_.parts.insert(kDamagedFile);
  }

  qint64 LastSource() {
    const QVariant last = connection_.Scalar("SELECT MAX(ID) FROM long_binary");
    if (last.isValid()) return last.toLongLong();
    GoOnBehindDamage();
    return std::numeric_limits<qint64>::max();
  }

  // The numbers of the rows from an index, which is narrow, and from the table, as far as either
  // can be read; each row is then read by itself, so that a bad page hides no other.
  void ReadRows() {
    lastSource_ = LastSource();
    QList<qint64> ids;
    QSet<qint64> known;
    for (const char* from : {"mail ORDER BY rowid",
                             "mail INDEXED BY mail_FIELD_TIMESTAMP ORDER BY "
                             "FIELD_TIMESTAMP"}) {
      ForEachRow(QByteArray("SELECT rowid FROM ") + from, [&](Statement& row) {
        const qint64 id = row.Value(0).toLongLong();
        if (!known.contains(id)) ids.append(id);
        known.insert(id);
      });
    }
    for (const qint64 id : ids) {
      const Read read = ReadRow(id);
      if (read == Read::Whole) continue;
      GoOnBehindDamage();
      if (read == Read::Nothing) RowIsLost(id);
    }
  }

  enum class Read { Whole, WithoutSource, Nothing };
  Read ReadRow(qint64 id) {
    const auto row = connection_.Prepare(
        "SELECT SERIALID, FIELD_SUBJECT, FIELD_TIMESTAMP, MAIL, FIELD_FLAG FROM mail WHERE rowid = "
        "?");
    if (row == nullptr) return Read::Nothing;
    row->Bind({id});
    const Statement::Step step = row->Next();
    if (step == Statement::Step::Done) return Read::Whole;  // deleted meanwhile
    if (step == Statement::Step::Failed) return Read::Nothing;
    const UnreadableMessage message{SerialIdOf(row->Value(0)), row->Value(1).toString(),
                                    row->Value(2).toString()};
    const qint64 source = row->Value(3).toLongLong();
    sources_.insert(source);
    if (row->EndsWithNul(4)) {
      findings_.parts.insert(kDamagedFile);
    } else if (LongBinaryTable(connection_).Read(source)) {
      return Read::Whole;
    }
    findings_.unreadable.append(message);
    return Read::WithoutSource;
  }

  // Its indexes may still tell which it was.
  void RowIsLost(qint64 id) {
    UnreadableMessage message;
    const auto find = [&](const QByteArray& column) {
      const auto statement = connection_.Prepare(
          "SELECT " + column + " FROM mail INDEXED BY mail_" + column + " WHERE rowid = ?");
      if (statement == nullptr) return QString();
      statement->Bind({id});
      return statement->Next() == Statement::Step::Row ? statement->Value(0).toString() : QString();
    };
    message.serialId = SerialId(find("SERIALID"));
    GoOnBehindDamage();
    message.timestamp = find("FIELD_TIMESTAMP");
    GoOnBehindDamage();
    findings_.unreadable.append(message);
  }

  void CountOrphans() {
    const qint64 orphans =
        Number("SELECT COUNT(0) FROM folder WHERE SERIALID NOT IN (SELECT SERIALID FROM mail)");
    if (orphans > 0) {
      Problem(Ui::tr("メッセージのないフォルダの登録が%1件あります。").arg(orphans));
    }
  }

  // Sources that no message refers to any more.
  void ReadSources() {
    qint64 orphans = 0;
    ForEachRow("SELECT ID FROM long_binary", [&](Statement& row) {
      const qint64 source = row.Value(0).toLongLong();
      if (source <= lastSource_ && !sources_.contains(source)) ++orphans;
    });
    if (orphans > 0) {
      Problem(Ui::tr("どのメッセージのものか分からない本文が%1件あります。").arg(orphans));
    }
    if (!findings_.unreadable.isEmpty()) {
      Problem(Ui::tr("読み込めないメッセージが%1通あります。").arg(findings_.unreadable.size()));
    }
  }

  void ReadObjects() {
    qint64 cut = 0;
    ForEachRow("SELECT SERIALID, NAME, PROPERTY FROM object", [&](Statement& row) {
      if (row.EndsWithNul(2, kLeastSpread)) ++cut;
    });
    if (cut > 0) Problem(Ui::tr("壊れた設定の値が%1件あります。").arg(cut));
  }

  Connection& connection_;
  FileFindings& findings_;
  QSet<qint64> sources_;
  qint64 lastSource_ = 0;  // what came since is of messages that were not read
};

FileFindings Check(const QString& path, const QString& password, FileContents contents) {
  FileFindings findings;
  const QFileInfo file(path);
  if (!file.exists()) {
    findings.problems.append(Ui::tr("ファイルがありません。"));
    findings.parts.insert(kDamagedFile);
    return findings;
  }
  if (file.size() % kPageBytes != 0) {
    findings.problems.append(Ui::tr("ファイルが途中で切れています。"));
    findings.parts.insert(kDamagedFile);
  }
  // Without a log there is nothing that closing could bring into the file.
  const bool hasLog = QFileInfo(path + QStringLiteral("-wal")).size() > 0;
  const auto opened = Connection::Open(
      path, password, hasLog ? Connection::Mode::ReadOnly : Connection::Mode::Existing);
  if (!opened) {
    findings.problems.append(opened.Error().text);
    findings.parts.insert(kDamagedFile);
    return findings;
  }
  FileCheck(**opened, findings).Run(contents);
  return findings;
}

}  // namespace

void FileFindings::AddLostLog() {
  const QString sentence =
      Ui::tr("記録ファイル（-wal）が壊れていました。最後の変更が失われた可能性があります。");
  if (!problems.contains(sentence)) problems.append(sentence);
  parts.insert(kDamagedLog);
}

void FileFindings::AddOlderFile() {
  problems.append(Ui::tr(
      "前に使ったときより古い状態です。その後に受信したメッセージはこのファイルにありません。"));
  parts.insert(kOlderFile);
}

QString UnreadableMessage::Name() const {
  const QString shown = subject.isEmpty() ? Ui::tr("件名不明") : Ui::tr("「%1」").arg(subject);
  return shown +
         Ui::tr("（%1）").arg(timestamp.isEmpty() ? Ui::tr("日付不明") : ShownTimeText(timestamp));
}

Result<> RequireContents(DataSession& data, FileContents contents) {
  const QByteArray table = contents == FileContents::Messages ? "mail" : "object";
  const Result<RecordsetPtr> rows =
      AskOwn(data, "SELECT SERIALID FROM " + table + " WHERE SERIALID = ''", {});
  return rows ? Result<>() : rows.Error();
}

FileFindings CheckDatabaseFile(const QString& path, const QString& password, FileContents contents,
                               const QSet<QString>& known) {
  FileFindings findings = Check(path, password, contents);
  if (known.contains(kDamagedLog)) findings.AddLostLog();
  return findings;
}

}  // namespace vorn
