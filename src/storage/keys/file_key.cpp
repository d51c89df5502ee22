#include "storage/keys/file_key.h"

#include <argon2.h>
#include <openssl/evp.h>

#include <QCryptographicHash>
#include <QHash>
#include <QMessageAuthenticationCode>
#include <QMutex>
#include <QRandomGenerator>

namespace vorn::FileKey {
namespace {

constexpr qsizetype kKeyBytes = 32;
constexpr qsizetype kSharedBytes = 8;
constexpr qsizetype kOwnBytes = 4;
constexpr int kEngineRounds = 64000;  // of the engine's file format, version 3
// 0.3 s on a small machine of 2022.
constexpr quint32 kMemoryKib = 128 * 1024;
constexpr quint32 kPasses = 3;
constexpr quint32 kLanes = 1;
const QByteArray kKind = "vorn argon2id 1";
const QByteArray kCodeKind = "vorn code 1";

// What nobody can type stands before a secret that nobody can guess: the program's own, and a
// recovery code.
constexpr QChar kUnguessable(u'\u0001');
constexpr QChar kCode(u'\u0002');

// Secrets that were derived in this run, by password and shared bytes. A wrong password leaves one
// as well; they are few.
class Secrets {
 public:
  QByteArray Of(const QByteArray& password, const QByteArray& shared) {
    const QMutexLocker lock(&mutex_);
    QByteArray& secret = secrets_[{password, shared}];
    if (secret.isEmpty()) {
      secret = password.startsWith(char(kCode.unicode()))
                   ? QCryptographicHash::hash(password, QCryptographicHash::Sha256)
                   : Derive(password, shared);
    }
    shared_.insert(password, shared);
    return secret;
  }
  // The shared bytes that go with a password already.
  QByteArray SharedBytes(const QByteArray& password) {
    const QMutexLocker lock(&mutex_);
    return shared_.value(password);
  }

 private:
  static QByteArray Derive(const QByteArray& password, const QByteArray& shared) {
    QByteArray secret(kKeyBytes, Qt::Uninitialized);
    const int result = argon2id_hash_raw(
        kPasses, kMemoryKib, kLanes, password.constData(), static_cast<size_t>(password.size()),
        shared.constData(), static_cast<size_t>(shared.size()), secret.data(), kKeyBytes);
    if (result != ARGON2_OK) qFatal("no memory to derive a key: %s", argon2_error_message(result));
    return secret;
  }

  QMutex mutex_;
  QHash<std::pair<QByteArray, QByteArray>, QByteArray> secrets_;
  QHash<QByteArray, QByteArray> shared_;
};

Secrets& KnownSecrets() {
  static Secrets secrets;
  return secrets;
}

QByteArray RandomBytes(qsizetype count) {
  QByteArray bytes(count, Qt::Uninitialized);
  for (char& byte : bytes) {
    byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
  }
  return bytes;
}

// The end of a salt of ours, which one of the engine's has once in four thousand million files.
QByteArray EndOf(const QByteArray& kind, const QByteArray& begin) {
  return QCryptographicHash::hash(kind + begin, QCryptographicHash::Sha256)
      .first(kSaltBytes - begin.size());
}

bool IsOfKind(const QByteArray& kind, const QByteArray& salt) {
  return salt.size() == kSaltBytes &&
         salt.endsWith(EndOf(kind, salt.first(kSharedBytes + kOwnBytes)));
}

// The kind of key that a password gives; empty where the engine derives it.
QByteArray KindFor(const QString& password) {
  if (password.startsWith(kCode)) return kCodeKind;
  return password.isEmpty() || password.startsWith(kUnguessable) ? QByteArray() : kKind;
}

QByteArray ForDerivation(QString password) {
  if (password.startsWith(kUnguessable)) password.remove(0, 1);
  if (password.startsWith(kCode)) password.clear();
  return QByteArrayLiteral("vorn-file-key:") + password.toUtf8();
}

}  // namespace

QString Unguessable(const QString& secret) {
  return kUnguessable + secret;
}

QString FromCode(const QString& code) {
  return kCode + code;
}

QString CodeIn(const QString& password) {
  return password.startsWith(kCode) ? password.mid(1) : QString();
}

bool IsUnderCode(const QByteArray& salt) {
  return IsOfKind(kCodeKind, salt);
}

QByteArray NewSalt(const QString& password, const QByteArray& old) {
  const QByteArray kind = KindFor(password);
  if (kind.isEmpty()) return {};
  QByteArray begin = KnownSecrets().SharedBytes(password.toUtf8());
  if (begin.isEmpty()) begin = RandomBytes(kSharedBytes);
  begin += old.isEmpty() ? RandomBytes(kOwnBytes) : Identity(old);
  return begin + EndOf(kind, begin);
}

QByteArray Identity(const QByteArray& salt) {
  const bool isOurs = IsOfKind(kKind, salt) || IsOfKind(kCodeKind, salt);
  return isOurs ? salt.sliced(kSharedBytes, kOwnBytes) : salt.first(kOwnBytes);
}

bool IsOurs(const QString& password, const QByteArray& salt) {
  const QByteArray kind = KindFor(password);
  return !kind.isEmpty() && IsOfKind(kind, salt);
}

QByteArray Raw(const QString& password, const QByteArray& salt) {
  if (!IsOurs(password, salt)) return Pbkdf2(ForDerivation(password), salt, kEngineRounds);
  const QByteArray secret = KnownSecrets().Of(password.toUtf8(), salt.first(kSharedBytes));
  return QMessageAuthenticationCode::hash(salt, secret, QCryptographicHash::Sha256);
}

QByteArray ForEngine(const QString& password, const QByteArray& salt) {
  if (!IsOurs(password, salt)) return ForDerivation(password);
  return "x'" + Raw(password, salt).toHex() + salt.toHex() + '\'';
}

QByteArray Pbkdf2(const QByteArray& secret, const QByteArray& salt, int rounds) {
  QByteArray key(kKeyBytes, Qt::Uninitialized);
  const int done =
      PKCS5_PBKDF2_HMAC(secret.constData(), static_cast<int>(secret.size()),
                        reinterpret_cast<const unsigned char*>(salt.constData()),
                        static_cast<int>(salt.size()), rounds, EVP_sha1(),
                        static_cast<int>(key.size()), reinterpret_cast<unsigned char*>(key.data()));
  if (done != 1) qFatal("no memory to derive a key");
  return key;
}

}  // namespace vorn::FileKey
