// What happens to a damaged store: nothing is given out that is not what was stored, and whoever
// needs to know is told.

#include <gtest/gtest.h>

#include "frame/source_watch.h"
#include "mail/archive/export_messages.h"
#include "mail/archive/import_messages.h"
#include "mail/search/folder_listing.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "mail/store/stored_copy.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/engine/raw_pages.h"
#include "storage/engine/source_walk.h"
#include "storage/known_damage.h"
#include "storage/session/file_check.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;
using test::WriteFile;

QByteArray Source(int number, qsizetype size) {
  const QByteArray line = "line " + QByteArray::number(number) + " of a message\r\n";
  return "Subject: m" + QByteArray::number(number) + "\r\nFrom: a@example.jp\r\n\r\n" +
         line.repeated(size / line.size() + 1);
}

// Of a page that a disk lost the engine takes zeros for an empty one; any other bytes it refuses by
// their mark, and with them whatever else is read in the same transaction.
class DamageTest : public testing::TestWithParam<char> {
 protected:
  void SetUp() override {
    for (int i = 0; i < 12; ++i) {
      sources_.append(Source(i, i == 5 ? 60000 : 100 + 800 * i));
      serials_.append(profile_.Store(sources_.last()));
    }
    Context().Data.CloseAll();
    file_ = MailDatabasePath(Context());
    sound_ = ReadFile(file_);
  }
  vorn::Context& Context() { return profile_.Get(); }

  // Puts the file back, with one page overwritten.
  void Overwrite(qsizetype page) {
    Context().Data.CloseAll();
    Context().Data.Damage().Take();
    for (const char* ending : {"-wal", "-shm"}) QFile::remove(file_ + QLatin1String(ending));
    QByteArray damaged = sound_;
    damaged.replace(page * kPageBytes, kPageBytes, QByteArray(kPageBytes, GetParam()));
    WriteFile(file_, damaged);
  }

  // A page that holds nothing but a part of the large source: its last one, whose loss the engine
  // does not see.
  qsizetype LastPageOfLarge() {
    for (qsizetype page = sound_.size() / kPageBytes - 1; page > 0; --page) {
      Overwrite(page);
      MailStore store(Context());
      bool onlyLarge = true;
      for (qsizetype i = 0; i < serials_.size(); ++i) {
        onlyLarge =
            onlyLarge && static_cast<bool>(store.LoadMessageSource(Disk(serials_[i]))) == (i != 5);
      }
      if (onlyLarge) return page;
    }
    return -1;
  }

  TestProfile profile_;
  QList<QByteArray> sources_;
  SerialIds serials_;
  QString file_;
  QByteArray sound_;
};

TEST_P(DamageTest, AnyPageLostIsToldAndNothingElseIsGivenOut) {
  int told = 0;
  for (qsizetype page = 1; page < sound_.size() / kPageBytes; ++page) {
    Overwrite(page);
    MailStore store(Context());
    int unreadable = 0;
    for (qsizetype i = 0; i < serials_.size(); ++i) {
      const auto source = store.LoadMessageSource(Disk(serials_[i]));
      if (!source || source->isEmpty()) {
        ++unreadable;
      } else {
        ASSERT_EQ(*source, sources_[i]) << page;
      }
    }
    EXPECT_EQ(unreadable > 0, !Context().Data.Damage().IsEmpty()) << page;
    Context().Data.CloseAll();
    const FileFindings findings =
        CheckDatabaseFile(file_, Context().Session->Text(u"password"), FileContents::Messages,
                          Context().Data.Damage().TakeOf(file_));
    if (unreadable > 0) {
      EXPECT_FALSE(findings.IsSound()) << page;
      if (unreadable < serials_.size()) {  // else it is a page by which all are found
        EXPECT_EQ(findings.unreadable.size(), unreadable) << page;
      }
      ++told;
    }
  }
  EXPECT_GT(told, 10);
}

TEST_P(DamageTest, AnExportLeavesOutAndNamesWhatCannotBeRead) {
  ASSERT_GT(LastPageOfLarge(), 0);
  const QString out = profile_.Folder() + QStringLiteral("out.mbox");
  const ExportOutcome outcome =
      ExportMessages(Context(), {fixed_serial::kInbox, ArchiveFormat::Mbox, out, false});
  EXPECT_TRUE(outcome.complete);
  EXPECT_EQ(outcome.count, 11);
  ASSERT_EQ(outcome.unreadable.size(), 1);
  EXPECT_EQ(outcome.unreadable[0].subject, QStringLiteral("m5"));
  EXPECT_TRUE(outcome.unreadable[0].Name().startsWith(QStringLiteral("「m5」（20")));
  EXPECT_FALSE(ReadFile(out).contains("Subject: m5"));
}

// What lies in the dust bin broken does not stand in the way of a whole copy.
TEST_P(DamageTest, AnImportStoresAnewWhatTheDustBinHasLost) {
  const QString archive = profile_.Folder() + QStringLiteral("archive.eml");
  WriteFile(archive, Source(20, 60000));
  const SerialIds first = ImportMessages(Context(), archive, {}).counts.back.intoDust;
  ASSERT_EQ(first.size(), 1);
  ASSERT_TRUE(SetDust(Context(), first, true));
  profile_.Store(Source(21, 60000));  // what is stored next stands beside this
  Context().Data.CloseAll();
  sound_ = ReadFile(file_);
  MailStore store(Context());
  // A page that holds nothing but a part of that source.
  for (qsizetype page = sound_.size() / kPageBytes - 1; page > 0; --page) {
    Overwrite(page);
    const bool isLost = !store.LoadMessageSource(Disk(first[0]));
    if (isLost && store.LoadMessageSource(Disk(serials_[5]))) break;
  }
  ASSERT_FALSE(store.LoadMessageSource(Disk(first[0])));
  for (const int imported : {1, 0}) {
    const ImportOutcome outcome = ImportMessages(Context(), archive, {});
    EXPECT_TRUE(outcome.complete) << qPrintable(outcome.complete.Error().text);
    EXPECT_EQ(outcome.counts.imported, imported);
    EXPECT_EQ(outcome.counts.returned, 0);
    EXPECT_EQ(outcome.counts.known, 1 - imported);
    for (const SerialId& brought : outcome.counts.back.intoDust) {
      EXPECT_EQ(store.LoadMessageSource(Disk(brought)), ReadFile(archive));
    }
  }
}

TEST_P(DamageTest, ADamagedStoreWaitsForTheUsersDecision) {
  EXPECT_FALSE(IsKnownDamaged(Context(), file_));
  ASSERT_GT(LastPageOfLarge(), 0);
  EXPECT_TRUE(IsKnownDamaged(Context(), file_));
  profile_.Restart();  // it lasts
  ASSERT_EQ(UndecidedDamage(Context()).size(), 1);
  EXPECT_EQ(UndecidedDamage(Context())[0].file, QFileInfo(file_).fileName());
  ASSERT_TRUE(AcceptDamage(Context(), file_));
  // The same damage met again changes nothing, another one does.
  EXPECT_FALSE(MailStore(Context()).LoadMessageSource(Disk(serials_[5])));
  EXPECT_FALSE(IsKnownDamaged(Context(), file_));
  Context().Data.Damage().Add(file_, {QStringLiteral("source 99")});
  EXPECT_TRUE(IsKnownDamaged(Context(), file_));
  ASSERT_TRUE(AcceptDamage(Context(), file_));
  EXPECT_FALSE(IsKnownDamaged(Context(), file_));
  ASSERT_TRUE(NoteDamage(file_, {QStringLiteral("log")}));
  EXPECT_TRUE(IsKnownDamaged(Context(), file_));
  // Also what befell the profile's database outlasts the program.
  const QString profile = QFileInfo(file_).path() + QStringLiteral("/profile.mbx");
  Context().Data.Damage().Add(profile, {QStringLiteral("file")});
  ASSERT_TRUE(KeepDamage(Context()));
  Context().Data.CloseAll();
  WriteFile(profile, QByteArray(8 * kPageBytes, 'x'));
  EXPECT_TRUE(IsKnownDamaged(Context(), profile));
  WriteFile(file_ + kDamageEnding, "cut");  // what cannot be read may say anything
  EXPECT_TRUE(IsKnownDamaged(Context(), file_));
  ASSERT_TRUE(ForgetDamage(file_));
  EXPECT_FALSE(IsKnownDamaged(Context(), file_));
}

TEST_P(DamageTest, OnlyAWholeCopyStandsInForAnother) {
  EXPECT_TRUE(StoredCopyIsWhole(Context(), file_, serials_[5].Text()));
  EXPECT_FALSE(StoredCopyIsWhole(Context(), file_, QStringLiteral("nobody")));
  ASSERT_GT(LastPageOfLarge(), 0);
  EXPECT_FALSE(StoredCopyIsWhole(Context(), file_, serials_[5].Text()));
  EXPECT_TRUE(StoredCopyIsWhole(Context(), file_, serials_[4].Text()));
}

TEST_P(DamageTest, SourcesOfAnOlderVersionGetTheirDigestsInTheBackground) {
  ASSERT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
  ASSERT_TRUE(Context().Data.Execute(QStringLiteral("UPDATE long_binary SET DIGEST = NULL")));
  Context().Data.CloseAll();
  SourceWatch watch(Context(), [] { return true; });
  watch.RestMs = 1;
  watch.Start();
  ASSERT_TRUE(test::WaitFor([&watch] { return watch.IsDone(); }));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT COUNT(0) AS V FROM late_digest")),
            QList<QVariant>{12});
  // From now on such a source is read against its digest, which goes with it.
  ASSERT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
  ASSERT_TRUE(Context().Data.Execute(
      QStringLiteral("UPDATE long_binary SET DATA = 'something else' WHERE ID = 3")));
  Context().Data.Close();
  EXPECT_FALSE(MailStore(Context()).LoadMessageSource(Disk(serials_[2])));
  EXPECT_TRUE(MailStore(Context()).DeleteMessage(Disk(serials_[2])));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT COUNT(0) AS V FROM late_digest")),
            QList<QVariant>{11});
}

TEST_P(DamageTest, DamageIsFoundBeforeTheMessageIsNeeded) {
  ASSERT_GT(LastPageOfLarge(), 0);
  Context().Data.Damage().Take();
  int told = 0;
  {
    SourceWatch watch(Context(), [] { return true; });
    watch.RestMs = 1;
    watch.OnDamage([&told] { ++told; });
    watch.Start();
    ASSERT_TRUE(test::WaitFor([&watch] { return watch.IsDone(); }));
  }
  EXPECT_GT(told, 0);
  EXPECT_EQ(UndecidedDamage(Context()).size(), 1);
}

TEST_P(DamageTest, AWalkGoesOnWhereItStopped) {
  WalkPlace place;
  qint64 bytes = 0;
  int stretches = 0;
  for (bool atEnd = false; !atEnd && stretches < 100; ++stretches) {
    const WalkOutcome outcome = WalkSources(file_, Context().Session->Text(u"password"), place, 0);
    EXPECT_TRUE(outcome.parts.isEmpty());
    bytes += outcome.bytes;
    atEnd = outcome.atEnd;
    place = outcome.place;
  }
  qint64 stored = 0;
  for (const QByteArray& source : std::as_const(sources_)) stored += source.size();
  EXPECT_EQ(bytes, stored);
  EXPECT_EQ(stretches, 13);  // one source each, and the end
  EXPECT_EQ(place.verified, 0) << "the next round begins anew";
}

// Also where the row itself is lost, and its subject with it.
TEST_P(DamageTest, ALostRowIsNamedByItsTime) {
  int named = 0;
  for (qsizetype page = 1; page < sound_.size() / kPageBytes; ++page) {
    Overwrite(page);
    const FileFindings findings =
        CheckDatabaseFile(file_, Context().Session->Text(u"password"), FileContents::Messages,
                          Context().Data.Damage().TakeOf(file_));
    for (const UnreadableMessage& message : findings.unreadable) {
      if (message.subject.isEmpty() && serials_.contains(message.serialId)) ++named;
    }
  }
  EXPECT_GE(named, 12);
}

// As on a disk that lost a write. What the page no longer leads to is missing, and what is stored
// after that takes nothing's place.
TEST_P(DamageTest, APageAsItWasBeforeGivesNoMessageAnothersSource) {
  for (int i = 12; i < 40; ++i) {
    sources_.append(Source(i, 300));
    serials_.append(profile_.Store(sources_.last()));
  }
  Context().Data.CloseAll();
  const QByteArray later = ReadFile(file_);
  int missing = 0;
  for (qsizetype page = 1; page < sound_.size() / kPageBytes; ++page) {
    const QByteArray before = sound_.sliced(page * kPageBytes, kPageBytes);
    if (later.sliced(page * kPageBytes, kPageBytes) == before) continue;
    Overwrite(page);
    WriteFile(file_, QByteArray(later).replace(page * kPageBytes, kPageBytes, before));
    for (int i = 100; i < 140; ++i) profile_.Store(Source(i, 300));
    MailStore store(Context());
    for (qsizetype i = 0; i < serials_.size(); ++i) {
      const auto source = store.LoadMessageSource(Disk(serials_[i]));
      if (source) {
        EXPECT_EQ(*source, sources_[i]) << "page " << page;
      }
      missing += source ? 0 : 1;
    }
  }
  EXPECT_GT(missing, 10) << "no page led to them";
}

// Also a page of the table itself, through which the engine finds the others when it lists.
TEST_P(DamageTest, AnExportGoesOnBehindLostRows) {
  for (int i = 12; i < 120; ++i) profile_.Store(Source(i, 100));
  Context().Data.CloseAll();
  sound_ = ReadFile(file_);
  int damaged = 0;
  const QString out = file_ + QStringLiteral(".mbox");
  for (qsizetype page = 5; page < sound_.size() / kPageBytes; ++page) {
    Overwrite(page);
    if (!OpenedDatabase(Context(), DatabaseKind::Mail)) continue;  // a page of the schema
    const ExportOutcome outcome = ExportMessages(
        Context(), {fixed_serial::kInbox, ArchiveFormat::Mbox, out, true, std::nullopt});
    const auto lost = static_cast<int>(outcome.unreadable.size());
    if (outcome.complete && lost == 0) continue;
    ++damaged;
    ASSERT_TRUE(outcome.complete) << page << outcome.complete.Error().text.toStdString();
    EXPECT_EQ(outcome.count + lost, 120) << page;
    // An index that is lost takes no message with it.
    const FileFindings findings =
        CheckDatabaseFile(file_, Context().Session->Text(u"password"), FileContents::Messages, {});
    EXPECT_LE(lost, findings.unreadable.size()) << page;
  }
  EXPECT_GT(damaged, 0);
}

INSTANTIATE_TEST_SUITE_P(WithZerosAndOthers, DamageTest, testing::Values('\0', 'x'));

class ExportTargetTest : public testing::Test {
 protected:
  bool Write(ArchiveFormat format, const QString& path, bool overwrite, bool finish = true) {
    ArchiveWriter writer(format, path, overwrite);
    Result<> written = writer.Open();
    if (written) {
      written = writer.Write("Subject: new\r\n\r\nx\r\n", {QStringLiteral("new"), true});
    }
    error_ = written.Error().text;
    return written && (!finish || writer.Close());
  }
  QStringList Names() const {
    return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
  }
  QTemporaryDir folder_;
  QString error_;
};

TEST_F(ExportTargetTest, AnUnfinishedExportLeavesNothingAndALeftOverGoes) {
  for (const ArchiveFormat format :
       {ArchiveFormat::Mbox, ArchiveFormat::Maildir, ArchiveFormat::Eml}) {
    const QString path = folder_.filePath(QStringLiteral("out"));
    ASSERT_TRUE(Write(format, path, false, false));
    EXPECT_TRUE(Names().isEmpty()) << Names().join(u' ').toStdString();
    // As a killed program leaves it.
    ASSERT_TRUE(QDir(folder_.path()).mkpath(QStringLiteral("out.vorn-part/cur/x")));
    ASSERT_TRUE(Write(format, path, false));
    EXPECT_EQ(Names(), QStringList{QStringLiteral("out")});
    // Killed while it took the place of another one, which is the only whole one then.
    ASSERT_TRUE(QDir().rename(path, path + QStringLiteral(".vorn-old")));
    ASSERT_TRUE(Write(format, path, true, false));
    EXPECT_EQ(Names(), QStringList{QStringLiteral("out")});
    QFile::remove(path);
    QDir(path).removeRecursively();
  }
}

TEST_F(ExportTargetTest, AnExistingTargetIsReplacedOnlyWhenToldAndOnlyOwnFolders) {
  const QString path = folder_.filePath(QStringLiteral("out"));
  WriteFile(path, "\x8Fwhat may be a database");
  EXPECT_FALSE(Write(ArchiveFormat::Mbox, path, true));
  WriteFile(path, "From old");
  EXPECT_FALSE(Write(ArchiveFormat::Mbox, path, false));
  EXPECT_TRUE(error_.contains(QStringLiteral("もうあります")));
  EXPECT_EQ(ReadFile(path), "From old");
  EXPECT_TRUE(Write(ArchiveFormat::Mbox, path, true, false));  // ended before its end
  EXPECT_EQ(ReadFile(path), "From old");
  EXPECT_TRUE(Write(ArchiveFormat::Mbox, path, true));
  EXPECT_TRUE(ReadFile(path).contains("Subject: new"));

  const QString folder = folder_.filePath(QStringLiteral("folder"));
  ASSERT_TRUE(Write(ArchiveFormat::Eml, folder, false));
  ASSERT_TRUE(Write(ArchiveFormat::Eml, folder, true));
  WriteFile(folder + QStringLiteral("/thesis.txt"), "precious");
  EXPECT_FALSE(Write(ArchiveFormat::Eml, folder, true));
  EXPECT_EQ(ReadFile(folder + QStringLiteral("/thesis.txt")), "precious");
}

}  // namespace
}  // namespace vorn
