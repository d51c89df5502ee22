#pragma once

#include <QByteArray>
#include <optional>

#include <QJsonArray>
#include <QSet>
#include <QString>

#include "ctl/arguments.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/session/file_check.h"

namespace vorn::ctl {

/// What scripts can tell apart.
enum ExitCode {
  kExitOk = 0,
  kExitFailure = 1,  ///< the work failed, wholly or in part; the reason is on the error stream
  kExitUsage = 2,    ///< the command line is wrong
  kExitLogin = 3,    ///< the data folder or the profile could not be opened
  kExitPartly = 4,   ///< done, but for messages that cannot be read; they are named
};

int AddAccount(Context& context, const Arguments& arguments);
/// The options of `AddAccount` for who logs in and what proves it, of both servers.
QSet<QString> CredentialOptions();
int Receive(Context& context, const Arguments& arguments);
int Doubtful(Context& context, const Arguments& arguments);
int Send(Context& context, const Arguments& arguments);
int ListFolder(Context& context, const Arguments& arguments);
int WritePage(Context& context, const Arguments& arguments);
int Rules(Context& context, const Arguments& arguments);
int Import(Context& context, const Arguments& arguments);
int Export(Context& context, const Arguments& arguments);
int CheckFiles(Context& context, const Arguments& arguments);
/// Opens a stored message as a window does, which marks it as opened.
int OpenStored(Context& context, const Arguments& arguments);

// These need no data folder.

int Inspect(const Arguments& arguments);
int OpenFile(const Arguments& arguments);
/// Whether what is to be opened is the serial identifier of a message, and no file.
bool IsStoredMessage(const Arguments& arguments);
int Compose(const Arguments& arguments);

// What the commands share.

/// Writes text and a line break to the standard output.
void Print(const QString& text);
/// Writes a sentence to the error stream; returns `code`.
int Complain(const QString& sentence, int code);
/// The messages that could not be read, for a program.
QJsonArray ToJson(const QList<UnreadableMessage>& messages);
/// The bytes of a file, of the standard input for "-".
Result<QByteArray> ReadFile(const QString& name);
/// The serial identifier of the folder with that name, in any language for a folder that came with
/// the profile, or serial identifier.
Result<SerialId> FindFolder(Context& context, const QString& nameOrSerial);

}  // namespace vorn::ctl
