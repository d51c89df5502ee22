// The peer of storage-bench: plain, unencrypted SQLite doing the same with columns that are given.
//
// usage: plain-sqlite-bench MESSAGES BODY-BYTES

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

sqlite3* database = nullptr;

void Check(bool ok) {
  if (ok) return;
  std::fprintf(stderr, "%s\n", sqlite3_errmsg(database));
  std::exit(1);
}

void Run(const char* sql) {
  Check(sqlite3_exec(database, sql, nullptr, nullptr, nullptr) == SQLITE_OK);
}

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

void Report(const char* figure, int messages, int rounds, const std::function<void()>& work) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) times.push_back(Milliseconds(work));
  std::sort(times.begin(), times.end());
  std::printf("{\"who\": \"sqlite\", \"figure\": \"%s\", \"messages\": %d, \"median_ms\": %.3f}\n",
              figure, messages, times[times.size() / 2]);
  std::fflush(stdout);
}

class Insertion {
 public:
  Insertion() {
    const char* source = "INSERT INTO source (DATA) VALUES (?)";
    const char* row = "INSERT INTO mail VALUES (?,?,4,?,?,?,?,?,'0210')";
    const char* folder = "INSERT INTO folder VALUES (?, 'f')";
    Check(sqlite3_prepare_v2(database, source, -1, &source_, nullptr) == SQLITE_OK);
    Check(sqlite3_prepare_v2(database, row, -1, &row_, nullptr) == SQLITE_OK);
    Check(sqlite3_prepare_v2(database, folder, -1, &folder_, nullptr) == SQLITE_OK);
  }
  ~Insertion() {
    for (sqlite3_stmt* statement : {source_, row_, folder_}) sqlite3_finalize(statement);
  }

  void Store(int i, const std::string& body) {
    char serial[40];
    std::snprintf(serial, sizeof serial, "mail_%020d", i);
    char stamp[40];
    std::snprintf(stamp, sizeof stamp, "2026-11-24 %02d:%02d:%02d.%03d", i / 3600000 % 24,
                  i / 60000 % 60, i / 1000 % 60, i % 1000);
    const std::string subject = "会議のご案内 " + std::to_string(i);
    const std::string address =
        "FROM: sato" + std::to_string(i % 200) + "@example.jp 佐藤\r\nTO: y@example.org";
    sqlite3_bind_blob(source_, 1, body.data(), static_cast<int>(body.size()), SQLITE_STATIC);
    Step(source_);
    Text(1, serial);
    sqlite3_bind_int64(row_, 2, sqlite3_last_insert_rowid(database));
    Text(3, serial);
    Text(4, stamp);
    Text(5,
         "0\0"
         "120\0text/plain");
    Text(6, subject);
    Text(7, address);
    Step(row_);
    if (i % 100 == 0) {
      sqlite3_bind_text(folder_, 1, serial, -1, SQLITE_TRANSIENT);
      Step(folder_);
    }
  }

 private:
  void Text(int column, const std::string& text) {
    sqlite3_bind_text(row_, column, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }
  static void Step(sqlite3_stmt* statement) {
    Check(sqlite3_step(statement) == SQLITE_DONE);
    sqlite3_reset(statement);
  }

  sqlite3_stmt* source_ = nullptr;
  sqlite3_stmt* row_ = nullptr;
  sqlite3_stmt* folder_ = nullptr;
};

// Reads rows from `skip` on, at most `limit`, touching the columns a page shows.
void Read(const char* select, int skip, int limit) {
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(database, select, -1, &statement, nullptr) == SQLITE_OK);
  for (int row = 0; row < skip + limit && sqlite3_step(statement) == SQLITE_ROW; ++row) {
    if (row < skip) continue;
    for (int column = 2; column < sqlite3_column_count(statement); ++column) {
      sqlite3_column_text(statement, column);
    }
  }
  sqlite3_finalize(statement);
}

}  // namespace

int main(int argc, char** argv) {
  const int messages = argc > 1 ? std::atoi(argv[1]) : 100000;
  const std::string body(argc > 2 ? static_cast<size_t>(std::atoi(argv[2])) : 1000, 'x');
  const auto path =
      std::filesystem::temp_directory_path() / ("plain-" + std::to_string(getpid()) + ".db");
  Check(sqlite3_open(path.c_str(), &database) == SQLITE_OK);
  Run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA wal_autocheckpoint = 4000;"
      "PRAGMA cache_size = -32768;"
      "CREATE TABLE source (ID INTEGER PRIMARY KEY, DATA BLOB);"
      "CREATE TABLE mail (SERIALID TEXT, MAIL INTEGER, STATUS INTEGER, FIELD_ID TEXT,"
      "FIELD_TIMESTAMP TEXT, FIELD_CONTENT TEXT, FIELD_SUBJECT TEXT, FIELD_MAILADDRESS TEXT,"
      "FIELD_FLAG TEXT);"
      "CREATE TABLE folder (SERIALID TEXT, FOLDERID TEXT);"
      "CREATE INDEX a ON mail (SERIALID); CREATE INDEX b ON mail (FIELD_TIMESTAMP);"
      "CREATE INDEX c ON mail (FIELD_ID); CREATE INDEX d ON mail (STATUS, FIELD_TIMESTAMP);"
      "CREATE INDEX e ON folder (SERIALID); CREATE INDEX f ON folder (FOLDERID);");
  {
    Insertion insertion;
    int next = 0;
    Report("store, one transaction each, per 1000", messages, 3, [&] {
      for (int i = 0; i < 1000; ++i) {
        Run("BEGIN");
        insertion.Store(next++, body);
        Run("COMMIT");
      }
    });
    Report("store the rest, groups of 256", messages, 1, [&] {
      Run("BEGIN");
      for (; next < messages; ++next) {
        insertion.Store(next, body);
        if (next % 256 == 255) Run("COMMIT; BEGIN");
      }
      Run("COMMIT");
    });
  }
  const char* all = "SELECT * FROM mail WHERE STATUS = 4 ORDER BY FIELD_TIMESTAMP ASC";
  Report("first page", messages, 11, [&] { Read(all, 0, 100); });
  Report("middle page", messages, 7, [&] { Read(all, messages / 2, 100); });
  Report("subject search", messages, 7, [&] {
    Read("SELECT * FROM mail WHERE FIELD_SUBJECT LIKE '%案内 777%' ORDER BY FIELD_TIMESTAMP ASC", 0,
         messages);
  });
  Report("folder join", messages, 7, [&] {
    Read(
        "SELECT mail.* FROM mail INNER JOIN folder ON mail.SERIALID = folder.SERIALID WHERE "
        "folder.FOLDERID = 'f' ORDER BY FIELD_TIMESTAMP ASC",
        0, messages);
  });
  sqlite3_close(database);
  for (const char* part : {"", "-wal", "-shm"}) std::filesystem::remove(path.string() + part);
}
