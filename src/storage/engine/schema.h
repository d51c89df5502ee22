#pragma once

#include <QString>
#include <string_view>

#include "storage/message_state.h"

namespace vorn {

class Connection;

/// Marks a file as ours ("Vorn" in ASCII, the engine's application_id).
inline constexpr int kApplicationId = 0x566F726E;
/// The version of the tables. A file with a higher one is refused and left untouched.
inline constexpr int kSchemaVersion = 12;

/// The declared type of a column whose bytes are kept in the table `long_binary`; the column itself
/// holds the entry's identifier. Lists and searches then never read past the message sources.
inline constexpr std::string_view kLongBinaryType = "LONGBINARY";

/// Of the messages that are not yet opened. Word for word the condition of the index over them: the
/// engine takes that one for no other.
inline constexpr std::string_view kUnopenedCondition =
    "CAST(SUBSTR(FIELD_FLAG, 3, 1) AS INTEGER) = 1";
static_assert(kFlagNew == 3);

/// What the engine says when a message is changed that is being sent.
inline constexpr std::string_view kInTransferWords = "message in transfer";

/// Rows with fewer bytes lie in one page: they cannot have lost their end alone.
inline constexpr int kLeastSpread = 2048;

/// Type codes of `DataSession::CreateField`.
enum class FieldType { Integer = 3, DateTime = 8, Text = 10, LongBinary = 11, Memo = 12 };

/// Adds a column, creating the table on its first one; an existing column stays as it is.
/// `indexed` asks for an index: statements select or sort by the column.
[[nodiscard]] bool CreateColumn(Connection& connection, const QString& table, const QString& column,
                                FieldType type, bool indexed);

/// Completes the tables after their columns: the indexes over more than one column, the tables that
/// stand beside them and their rules, and the version mark.
[[nodiscard]] bool CompleteSchema(Connection& connection);

/// The table of the digests of sources that an earlier version stored: with the source itself they
/// would cost writing all of it anew.
[[nodiscard]] bool CreateLateDigests(Connection& connection);

/// Brings the tables of a file of an older version up to this one, all at once or not at all.
[[nodiscard]] bool MigrateSchema(Connection& connection);

}  // namespace vorn
