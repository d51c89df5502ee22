#include "storage/files/file_replace.h"

#include <filesystem>
#include <system_error>

namespace vorn {

bool ReplaceFile(const QString& from, const QString& to) {
  std::error_code error;
  std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), error);
  return !error;
}

}  // namespace vorn
