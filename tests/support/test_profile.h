#pragma once

#include <gtest/gtest.h>
#include <QtCore/QtCore>

#include <functional>
#include <memory>

#include "frame/profile_login.h"
#include "storage/context.h"
#include "support/serial_literal.h"

// How values print in failed expectations.
void PrintTo(const QString& text, std::ostream* out);
void PrintTo(const QByteArray& bytes, std::ostream* out);

namespace vorn::test {

/// Makes the process that of a user with an empty home, which goes with the process, in the neutral
/// locale. To be made before the application object.
class PrivateUser {
 public:
  PrivateUser();

 private:
  QTemporaryDir folder_;
};

/// `StartUp` and `LogIn`, as at the start of a program.
Result<> Enter(Context& context, const QString& folder, const QString& password = {},
               const LostFileChoice& choice = {}, const QString& name = {});

/// The column "V" of every row that a statement selects from the mail database.
QList<QVariant> Select(Context& context, const QString& select);

/// Those of the messages that are filed in a folder.
SerialIds Filed(Context& context, SerialIds messages, const SerialId& folder);

/// A data folder on disk with the first profile logged in, as after a first run.
class TestProfile {
 public:
  explicit TestProfile(const QString& password = {});
  ~TestProfile();

  Context& Get() { return *context_; }
  QString Folder() const { return folder_.path() + u'/'; }
  /// Ends the program's state and logs in again, as at the next start.
  void Restart(const QString& password = {});
  /// Adds an enabled receive account for a server on 127.0.0.1.
  DiskPtr AddAccount(int port, bool deleteOnServer = false, bool apop = false,
                     const QString& user = QStringLiteral("user"),
                     const QString& password = QStringLiteral("secret"));
  /// Stores a received message.
  SerialId Store(const QByteArray& source, int status = 4);
  /// The column "V" of every row that a statement selects from the mail database.
  QList<QVariant> Select(const QString& select) { return test::Select(*context_, select); }

 private:
  void LogInAgain(const QString& password);

  QTemporaryDir folder_;
  std::unique_ptr<Context> context_;
};

/// Runs the event loop until the condition holds; false when it did not in so long a time that it
/// will not, on a slow machine either.
bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 300000);

/// Runs what has been posted in the event loop, and timers that are due.
void RunPosted();

/// Runs the event loop for a while in which something must not happen.
void RunFor(int milliseconds);

/// How often a random test repeats itself: `few` times, or `many` in the long form of the suite.
int Rounds(int few, int many);

/// Where a random test begins: with the number in an environment variable, else at random in the
/// long form of the suite and always alike in the short one.
quint32 Seed(const char* variable);

/// The bytes of a file; fails the test when it cannot be read.
QByteArray ReadFile(const QString& path);

/// Makes a file of these bytes, or puts them in the place of those that it has; fails the test when
/// that cannot be done.
void WriteFile(const QString& path, const QByteArray& bytes);

/// The sources of all sample messages, by file name.
QMap<QString, QByteArray> Samples();

}  // namespace vorn::test
