#include "storage/session/file_error.h"

#include <QFileInfo>

#include "storage/engine/raw_pages.h"
#include "storage/ui.h"

namespace vorn {

StorageError FileError(const QString& path, StorageError error) {
  // The engine writes whole pages; anything else is no question of the password.
  if (error.kind == StorageError::Kind::WrongPassword && QFileInfo(path).size() % kPageBytes != 0) {
    error = {StorageError::Kind::Damaged, Ui::tr("ファイルが途中で切れているか、壊れています。")};
  }
  error.text = Ui::tr("「%1」: ").arg(QFileInfo(path).fileName()) + error.text;
  return error;
}

}  // namespace vorn
