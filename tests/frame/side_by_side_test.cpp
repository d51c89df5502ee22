// Two programs over one data folder: what one does to the files must not end what the other holds.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "objects/profile/file_age.h"
#include "objects/profile/lost_files.h"
#include "objects/save_object.h"
#include "storage/databases.h"
#include "storage/file_notes.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

// As another program sees it: a process's own locks are never in its way.
bool IsHeldForOthers(const QString& path) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    const bool held = ::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    ::_exit(held ? 1 : 0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

QStringList Databases(const QString& folder) {
  QStringList paths;
  const QDir profile(folder + QDir(folder).entryList({QStringLiteral("_profile*")}).value(0));
  for (const QString& name : profile.entryList({QStringLiteral("*.mbx")})) {
    paths.append(profile.filePath(name));
  }
  return paths;
}

// Without its locks a program is not seen by another one, which at its end deletes the log that the
// first one goes on writing to.
TEST(SideBySide, LooksAtTheFilesTakeNoLockAway) {
  TestProfile profile;
  profile.Store("Subject: x\r\n\r\nx\r\n");
  const QStringList paths = Databases(profile.Folder());
  ASSERT_EQ(paths.size(), 2);
  for (const QString& path : paths) ASSERT_TRUE(IsHeldForOthers(path)) << path.toStdString();
  EXPECT_TRUE(NoteFiles(profile.Get()));
  EXPECT_TRUE(LostFiles(profile.Get(), *profile.Get().Session).isEmpty());
  // As a file dialog does that looks at their types.
  const QDir folder = QFileInfo(paths[0]).dir();
  for (const QFileInfo& entry : folder.entryInfoList(QDir::Files | QDir::Hidden)) {
    QFile file(entry.filePath());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  }
  for (const QString& path : paths) {
    EXPECT_TRUE(IsHeldForOthers(path + QStringLiteral("-shm"))) << path.toStdString();
  }
  for (const QString& path : paths) EXPECT_TRUE(IsHeldForOthers(path)) << path.toStdString();
}

// A program that was started earlier and ends later knows an older count of what was sent and
// received; an older copy of the mail file would then pass for the file.
TEST(SideBySide, AnEarlierLoginDoesNotTakeTheCountOfWorkBack) {
  TestProfile profile;
  Context& early = profile.Get();
  ASSERT_TRUE(CountWork(early));
  const auto works = [](const Context& context) {
    qint64 most = 0;
    for (const FileNote& note : FileNotes(*context.Session)) most = std::max(most, note.works);
    return most;
  };
  qint64 counted = 0;
  {
    Context late;
    ASSERT_TRUE(test::Enter(late, profile.Folder()));
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(CountWork(late));
    counted = works(late);
    late.Data.CloseAll();
  }
  ASSERT_GT(counted, works(early));
  EXPECT_TRUE(NoteFiles(early));
  for (const DatabaseKind kind : {DatabaseKind::Navigator, DatabaseKind::Profile}) {
    EXPECT_TRUE(SaveObject(early, kind, *early.Session));
  }
  Context next;
  ASSERT_TRUE(test::Enter(next, profile.Folder()));
  EXPECT_EQ(works(next), counted);
  next.Data.CloseAll();
}

// A log that is being written to may look torn or foreign to whoever reads it at that moment.
TEST(SideBySide, ALogInUseIsNotJudged) {
  TestProfile profile;
  profile.Store("Subject: x\r\n\r\nx\r\n");
  for (const QString& path : Databases(profile.Folder())) {
    const QString log = path + QStringLiteral("-wal");
    if (QFileInfo(log).size() == 0) continue;
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QByteArray header = file.read(32);
    ASSERT_TRUE(file.seek(0));
    file.write(QByteArray(header.size(), 'x'));
    file.flush();
    Context other;
    EXPECT_TRUE(other.Data.TestPassword(path, profile.Get().Session->Text(u"password")))
        << other.Data.LastError().text.toStdString();
    other.Data.CloseAll();
    EXPECT_TRUE(QFile::exists(log));
    ASSERT_TRUE(file.seek(0));
    file.write(header);
  }
}

}  // namespace
}  // namespace vorn
