#include "storage/engine.h"

namespace vorn {

QByteArray FileKey(const QString& password) {
  return QByteArrayLiteral("vorn-file-key:") + password.toUtf8();
}

StorageError EngineError(sqlite3* handle) {
  using Kind = StorageError::Kind;
  const int code = handle == nullptr ? SQLITE_NOMEM : sqlite3_extended_errcode(handle);
  switch (code & 0xFF) {
    case SQLITE_OK:
      return {};
    case SQLITE_NOTADB:
      return {Kind::WrongPassword,
              QStringLiteral("パスワードが違うか、データベースではないファイルです。")};
    case SQLITE_CANTOPEN:
      return {Kind::NotFound,
              QStringLiteral(
                  "データベースファイルを開けません。ファイルとフォルダに書き込めるかどうかを"
                  "確認してください。")};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return {Kind::Busy,
              QStringLiteral("データベースが使用中です。しばらくしてからやり直してください。")};
    case SQLITE_IOERR:
      if (code == SQLITE_IOERR_WRITE || code == SQLITE_IOERR_SHMSIZE ||
          code == SQLITE_IOERR_TRUNCATE) {
        return {Kind::DiskFull,
                QStringLiteral("ディスクに書き込めません。空き容量を確認してください。")};
      }
      return {Kind::Damaged, QStringLiteral("データベースファイルを読み書きできません。")};
    case SQLITE_FULL:
      return {
          Kind::DiskFull,
          QStringLiteral("ディスクの空き容量が足りません。空きを作ってからやり直してください。")};
    case SQLITE_CORRUPT:
      return {Kind::Damaged, QStringLiteral("データベースファイルが壊れています。")};
    case SQLITE_AUTH:
      return {Kind::Refused, QStringLiteral("条件に使えるのはメッセージの検索だけです。")};
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return {Kind::Other, QStringLiteral("データベースファイルに書き込めません。")};
    case SQLITE_ERROR:
      return {Kind::BadStatement,
              QStringLiteral("文を実行できません: ") + QString::fromUtf8(sqlite3_errmsg(handle))};
    default:
      return {Kind::Other, QStringLiteral("データベースのエラーです: ") +
                               QString::fromUtf8(sqlite3_errmsg(handle))};
  }
}

}  // namespace vorn
