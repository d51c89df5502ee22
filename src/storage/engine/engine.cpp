#include "storage/engine/engine.h"

#include <string_view>

#include "storage/engine/schema.h"
#include "storage/ui.h"

namespace vorn {

namespace {

// What the engine says of a statement, in the user's words; the name that it complains of counts.
QString WhatIsWrong(sqlite3* handle) {
  const QString words = QString::fromUtf8(sqlite3_errmsg(handle));
  const auto after = [&words](QLatin1String begin) { return words.mid(begin.size()); };
  for (const QLatin1String begin :
       {QLatin1String("no such column: "), QLatin1String("no such table: "),
        QLatin1String("no such function: ")}) {
    if (words.startsWith(begin)) return Ui::tr("「%1」はありません。").arg(after(begin));
  }
  const QLatin1String near("near \"");
  if (words.startsWith(near)) {
    return Ui::tr("「%1」の近くに誤りがあります。").arg(after(near).section(u'"', 0, 0));
  }
  return {};
}

}  // namespace

StorageError EngineError(sqlite3* handle) {
  using Kind = StorageError::Kind;
  const int code = handle == nullptr ? SQLITE_NOMEM : sqlite3_extended_errcode(handle);
  switch (code & 0xFF) {
    case SQLITE_OK:
      return {};
    case SQLITE_NOTADB:
      return {Kind::WrongPassword, Ui::tr("パスワードが違うか、ファイルの先頭が壊れています。")};
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
    case SQLITE_INTERRUPT:
      return {Kind::Refused,
              Ui::tr("条件に合うメッセージを探すのに時間がかかりすぎるため、中止しました。")};
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
      // Only a page that cannot be decrypted leaves no words of its own.
      if (std::string_view(sqlite3_errmsg(handle)) == sqlite3_errstr(SQLITE_ERROR)) {
        return {Kind::Damaged, Ui::tr("データベースファイルが壊れています。")};
      }
      return {Kind::BadStatement, Ui::tr("文を実行できません。") + WhatIsWrong(handle)};
    default:
      return {Kind::Other, Ui::tr("データベースのエラーです（番号%1）。").arg(code)};
  }
}

}  // namespace vorn
