#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// How the key of a database file follows from its password and from the 16 bytes at its begin, the
/// file's salt.
///
/// A file under a password has a salt of ours: 8 bytes that the files of a profile share, 4 of its
/// own, and 4 that tell it from a salt of the engine's. Argon2id (RFC 9106) over the shared bytes
/// gives the secret of all of the profile's files, once in a run of the program; HMAC-SHA-256 over
/// the whole salt gives each file a key of its own. Its costs are constants, so that nobody can
/// write smaller ones into a file.
///
/// Under a recovery code, which is the password of a profile that has none of its user's, the
/// secret is a hash of the code: nobody can guess it, so a costly derivation adds nothing. Another
/// end of the salt tells such a file. A code opens files without any password too, so that a
/// profile whose files are only partly re-keyed, and older copies of them, can be read.
///
/// Files of earlier versions, files without a password, and those under a secret of the program's
/// own have the key that the engine derives (PBKDF2).
namespace FileKey {

inline constexpr qsizetype kSaltBytes = 16;

/// A secret that nobody can guess, to be used as a password: a costly derivation adds nothing.
QString Unguessable(const QString& secret);

/// A recovery code as a password, and the code of such a one; empty for another.
QString FromCode(const QString& code);
QString CodeIn(const QString& password);

/// Whether a file with that salt is under a recovery code.
bool IsUnderCode(const QByteArray& salt);

/// A salt for a file that is made, or re-keyed from `old`; empty where the engine chooses its own
/// or keeps the old one. What the files of one password share is the same while the program runs.
QByteArray NewSalt(const QString& password, const QByteArray& old = {});

/// What is the same in all salts that a file ever has: 4 random bytes that were made with it.
QByteArray Identity(const QByteArray& salt);

/// Whether a file with that salt has a key of ours under that password.
bool IsOurs(const QString& password, const QByteArray& salt);

/// What the engine is given to open or re-key a file with that salt. Never empty: with an empty
/// password the file is encrypted too, and can be re-keyed from and to it. Takes about 0.3 s the
/// first time for a password and the bytes that a profile's files share.
QByteArray ForEngine(const QString& password, const QByteArray& salt);

/// The key itself, 32 bytes.
QByteArray Raw(const QString& password, const QByteArray& salt);

/// PBKDF2 with HMAC-SHA-1 (RFC 8018, section 5.2), 32 bytes.
QByteArray Pbkdf2(const QByteArray& secret, const QByteArray& salt, int rounds);

}  // namespace FileKey
}  // namespace vorn
