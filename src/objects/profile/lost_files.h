#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "storage/base/result.h"
#include "storage/file_notes.h"

namespace vorn {

/// A database file that a profile had and that is not there any more, or is empty, or in whose
/// place something else stands.
struct LostFile {
  QString path;  ///< platform path
  FileNote note;
  QStringList found;       ///< files in the profile's folder that carry its mark
  bool isDamaged = false;  ///< it is there, and too damaged to be opened
};

/// Brings the logged-in profile's notes of its files up to date and keeps its object, without the
/// password, in its own database too, from where it returns when the list of profiles is lost.
/// Messages are counted only where their database is in use and has changed. What cannot be
/// stored is tried again next time.
Result<> NoteFiles(Context& context);

/// What of a profile is lost. A profile that never had a file does not miss it.
QList<LostFile> LostFiles(const Context& context, const Disk& profile);
/// The same; the files of which older copies stand there, from before the password changed:
/// `password` opens others of the profile, but not them; and the profile's own database where it is
/// too damaged to be opened, without which there is no login.
QList<LostFile> LostFiles(Context& context, const Disk& profile, const QString& password);

/// Whether a file, given by its path, has had another key when the profile last noted it: it is an
/// older copy. False for notes of earlier versions, which do not tell.
bool IsUnderOtherKeyThanNoted(const Context& context, const Disk& profile, const QString& path);

/// The loss as sentences for the user: what is missing, how many messages it held, and what lies in
/// the folder.
QString LostFilesText(const QList<LostFile>& lost);

/// Puts a copy of a file that carries the mark of the lost one into its place, with what its log
/// holds; the file and its log stay as they are. One that was away when the password changed opens
/// with one of the `former` ones, or the recovery code beside it; its copy is under the password
/// then. Gives the password that the file opened with.
Result<QString> ReconnectFile(Context& context, const LostFile& lost, const QString& file,
                              const QString& password, const QStringList& former = {});

/// Makes an empty file in the place of a lost one, on the user's word.
Result<> ReplaceLostFile(Context& context, Disk& profile, const LostFile& lost,
                         const QString& password);

/// After the list of profiles was made anew: takes a profile's own object from its database, which
/// the password opens. One without such an object stays as it was guessed.
void RestoreProfile(Context& context, Disk& profile, const QString& password);

/// The profiles whose folders lie in the data folder, made from what can be seen without a password
/// and not yet stored anywhere.
QList<DiskPtr> ProfilesFromFolders(const Context& context);

}  // namespace vorn
