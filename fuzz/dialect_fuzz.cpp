#include "fuzz_input.h"
#include "storage/sql/like_pattern.h"
#include "storage/sql/sql_dialect.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QString text = QString::fromUtf8(fuzz::Bytes(data, size));
  const auto statement = TranslateSql(text);
  fuzz::Require(statement || !statement.Error().text.isEmpty());
  // Literals are parameters: outside names in double quotes no quote may reach the engine.
  if (statement) {
    bool inName = false;
    for (const char c : statement->sql) {
      fuzz::Require(c != '\0' && (inName || c != '\''));
      if (c == '"') inName = !inName;
    }
  }
  UpdatableTable(text);
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const size_t cut = size / 3;
  LikePattern(bytes.substr(0, cut)).Matches(bytes.substr(cut));
  return 0;
}
