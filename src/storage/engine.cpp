#include "storage/engine.h"
#include "storage/schema.h"
#include "storage/ui.h"

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
              Ui::tr("パスワードが違うか、データベースではないファイルです。")};
    case SQLITE_CANTOPEN:
      return {Kind::NotFound,
              Ui::tr("データベースファイルを開けません。ファイルとフォルダに書き込めるかどうかを"
                     "確認してください。")};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return {Kind::Busy, Ui::tr("データベースが使用中です。しばらくしてからやり直してください。")};
    case SQLITE_IOERR:
      if (code == SQLITE_IOERR_WRITE || code == SQLITE_IOERR_SHMSIZE ||
          code == SQLITE_IOERR_TRUNCATE) {
        return {Kind::DiskFull, Ui::tr("ディスクに書き込めません。空き容量を確認してください。")};
      }
      return {Kind::Damaged, Ui::tr("データベースファイルを読み書きできません。")};
    case SQLITE_FULL:
      return {Kind::DiskFull,
              Ui::tr("ディスクの空き容量が足りません。空きを作ってからやり直してください。")};
    case SQLITE_CORRUPT:
      return {Kind::Damaged, Ui::tr("データベースファイルが壊れています。")};
    case SQLITE_AUTH:
      return {Kind::Refused, Ui::tr("条件に使えるのはメッセージの検索だけです。")};
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return {Kind::Other, Ui::tr("データベースファイルに書き込めません。")};
    case SQLITE_CONSTRAINT:
      if (kInTransferWords == sqlite3_errmsg(handle)) {
        return {Kind::InTransfer, Ui::tr("送信中か、送信の結果が分からないメッセージです。")};
      }
      return {Kind::Other, Ui::tr("同じメッセージが既に保存されています。")};
    case SQLITE_ERROR:
      return {Kind::BadStatement, Ui::tr("この条件や文は実行できません。（コード%1）").arg(code)};
    default:
      return {Kind::Other, Ui::tr("データベースのエラーです。（コード%1）").arg(code)};
  }
}

}  // namespace vorn
