#pragma once

#include <initializer_list>

namespace vorn::test {

/// Conditions that are true when the program itself asks, so that nothing but the trust in them
/// refuses them.
inline constexpr std::initializer_list<const char16_t*> kForeignReads = {
    // Tables beside the messages'
    u"0 < (SELECT COUNT(name) FROM sqlite_master)", u"EXISTS (SELECT 1 FROM sqlite_master)",
    u"0 < (SELECT COUNT(*) FROM main.SQLITE_MASTER)",
    u"0 < (SELECT COUNT(name) FROM `sqlite_master`)",
    u"0 < (SELECT COUNT([name]) FROM [sqlite_master])",
    u"0 < (SELECT COUNT(mail.name) FROM sqlite_master AS mail)",
    u"0 = (SELECT COUNT(name) FROM sqlite_temp_master)",
    u"0 < (SELECT COUNT(DATA) FROM long_binary)", u"0 < (SELECT COUNT(0) FROM long_binary_last)",
    u"0 <= (SELECT COUNT(0) FROM late_digest)", u"0 = (SELECT COUNT(STATE) FROM send_attempt)",
    u"NOT EXISTS (SELECT * FROM send_attempt)",
    u"SERIALID NOT IN (SELECT SERIALID FROM send_attempt)",
    u"0 <= (SELECT COUNT(0) FROM mail, send_attempt)",
    u"EXISTS (SELECT 1 FROM mail a LEFT JOIN send_attempt b ON a.SERIALID = b.SERIALID)",
    u"0 <= (SELECT COUNT(0) FROM erased)", u"0 <= (SELECT COUNT(MAILBOX) FROM on_server)",
    u"0 <= (SELECT COUNT(0) FROM doubtful_answer)",
    u"0 <= (SELECT COUNT(SERIALID) FROM received_identity)",
    // At the end of the condition and behind it
    u"STATUS = 4 AND FIELD_SUBJECT & (SELECT MAX(name) FROM sqlite_master) <> ''",
    u"STATUS = 9 UNION SELECT * FROM mail WHERE EXISTS (SELECT sql FROM sqlite_master)",
    u"STATUS = 4 GROUP BY SERIALID HAVING 0 < (SELECT COUNT(sql) FROM sqlite_master)",
    u"STATUS = 4 ORDER BY (SELECT COUNT(name) FROM sqlite_master)",
    u"STATUS = 4 LIMIT (SELECT COUNT(name) FROM sqlite_master)",
    // Functions that make much of little, tell of the engine or compare without bounds
    u"LENGTH(RANDOMBLOB(1)) = 1", u"LENGTH(ZEROBLOB(9)) = 9", u"PRINTF('%9d', 1) <> ''",
    u"HEX('a') = '61'", u"QUOTE('a') = '''a'''", u"CHAR(97) = 'a'", u"UNICODE('a') = 97",
    u"RANDOM() IS NOT NULL", u"TYPEOF(1) = 'integer'", u"FIELD_SUBJECT GLOB 'f*'",
    u"SQLITE_VERSION() LIKE '3*'", u"TOTAL_CHANGES() >= 0", u"LAST_INSERT_ROWID() >= 0",
    u"SQLITE_COMPILEOPTION_USED('x') = 0",
    u"'found' = (SELECT GROUP_CONCAT(FIELD_SUBJECT) FROM mail)"};

/// Statements in the place of one that reads messages.
inline constexpr std::initializer_list<const char16_t*> kWrites = {
    u"DELETE FROM mail",
    u"DELETE * FROM mail",
    u"UPDATE mail SET STATUS = 1",
    u"INSERT INTO folder DEFAULT VALUES",
    u"REPLACE INTO send_attempt (SERIALID) VALUES ('x')",
    u"WITH a AS (SELECT 1) DELETE FROM mail",
    u"EXPLAIN DELETE FROM mail",
    u"CREATE TABLE x (a)",
    u"CREATE TEMP TABLE x (a)",
    u"CREATE VIEW x AS SELECT * FROM mail",
    u"CREATE INDEX x ON mail (STATUS)",
    u"CREATE TRIGGER x AFTER INSERT ON mail BEGIN DELETE FROM mail; END",
    u"DROP TABLE mail",
    u"ALTER TABLE mail ADD COLUMN X",
    u"ATTACH ':memory:' AS x",
    u"DETACH x",
    u"VACUUM",
    u"REINDEX",
    u"ANALYZE",
    u"BEGIN",
    u"SAVEPOINT x",
    u"PRAGMA user_version = 9",
    u"PRAGMA user_version",
    u"PRAGMA cipher_version",
    u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT * FROM n, mail"};

/// Conditions that are no whole condition, or in another dialect.
inline constexpr std::initializer_list<const char16_t*> kNoConditions = {
    u"1 = 1; DELETE FROM mail",
    u"1 = 1 --",
    u"1 = 1 /* x",
    u"1 = 1 /* x */",
    u"1 = 1 OR 'x",
    u"FIELD_SUBJECT LIKE 'f%' ESCAPE '!'",
    u"0 < (WITH a AS (SELECT STATUS FROM mail) SELECT COUNT(0) FROM a)"};

}  // namespace vorn::test
