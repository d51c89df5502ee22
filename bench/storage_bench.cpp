// Figures of the store with many messages. Prints one JSON line each, medians of several rounds.
//
// usage: storage-bench [MESSAGES [BODY-BYTES]]   (default 100000 of 1000)

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "bench_support.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/known_addresses.h"
#include "mail/store/mail_store.h"
#include "objects/object_types.h"
#include "present/message_list_page.h"
#include "storage/databases.h"

namespace vorn {
namespace {

double Milliseconds(const std::function<void()>& work) {
  QElapsedTimer timer;
  timer.start();
  work();
  return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void Report(const char* figure, int messages, int rounds, const std::function<void()>& work) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) times.push_back(Milliseconds(work));
  std::sort(times.begin(), times.end());
  std::printf(
      "{\"figure\": \"%s\", \"messages\": %d, \"median_ms\": %.3f, \"min_ms\": %.3f, "
      "\"max_ms\": %.3f}\n",
      figure, messages, times[times.size() / 2], times.front(), times.back());
  std::fflush(stdout);
}

[[noreturn]] void Give(const QString& reason) {
  std::fprintf(stderr, "%s\n", qPrintable(reason));
  std::exit(1);
}

class Filling {
 public:
  Filling(Context& context, int bodyBytes) : context_(context), body_(bodyBytes, 'x') {}

  void Store(int i) {
    Disk request(context_.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    if (i % 100 == 0) request.Let(QStringLiteral("folder"), QStringLiteral("f"));
    const Result<SerialId> stored = store_.StoreMessage(request, Source(i));
    if (!stored) Give(stored.Error().text);
  }
  void StoreSent(int i) {
    Disk request(context_.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusSent));
    const Result<SerialId> stored = store_.StoreMessage(
        request, "To: friend" + QByteArray::number(i) + "@example.jp\r\n\r\n" + body_);
    if (!stored) Give(stored.Error().text);
  }
  void StoreGrouped(int from, int to) {
    context_.Data.Group().Gather(MailDatabasePath(context_));
    for (int i = from; i < to; ++i) {
      Store(i);
      if (i % 256 == 255) bench::Require(context_.Data.Group().Flush());
    }
    bench::Require(context_.Data.Group().End());
  }

 private:
  QByteArray Source(int i) const {
    return "From: =?UTF-8?B?5L2Q6Jek?= <sato" + QByteArray::number(i % 200) +
           "@example.jp>\r\nTo: y@example.org\r\nSubject: "
           "=?UTF-8?B?5Lya6K2w44Gu44GU5qGI5YaF?= " +
           QByteArray::number(i) + "\r\nContent-Type: text/plain; charset=us-ascii\r\n\r\n" +
           body_ + "\r\n";
  }

  Context& context_;
  QByteArray body_;
  MailStore store_{context_};
};

int CountRows(Context& context, const QString& select) {
  if (!OpenDatabase(context, DatabaseKind::Mail) ||
      !context.Data.OpenRecordset(select, CursorKind::ForwardOnly)) {
    Give(context.Data.LastError().text);
  }
  int rows = 0;
  for (const RecordsetPtr set = context.Data.Recordset(); !set->Eof(); set->MoveNext()) ++rows;
  context.Data.Close();
  return rows;
}

void Run(int messages, int bodyBytes) {
  const QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  Context context;
  if (!StartUp(context, folder.path() + QStringLiteral("/data")) || !CreateFirstProfile(context) ||
      !LogIn(context, {}, {})) {
    Give(QStringLiteral("cannot log in"));
  }
  Filling filling(context, bodyBytes);
  int next = 0;
  Report("store, one transaction each, per 1000", messages, 3, [&] {
    for (int i = 0; i < 1000; ++i) filling.Store(next++);
  });
  Report("store the rest, groups of 256", messages, 1,
         [&] { filling.StoreGrouped(next, messages); });

  MessageListPages pages(context);
  const auto page = [&](int number) {
    const QString path =
        pages.CreateMessageListPage(fixed_serial::kInbox, number).ValueOr({}).content;
    if (path.isEmpty()) Give(QStringLiteral("no page"));
    QFile::remove(path);
  };
  Report("first page", messages, 11, [&] { page(1); });
  Report("middle page", messages, 7, [&] { page(messages / 200); });
  Report("warm open and close", messages, 101, [&] {
    if (!OpenDatabase(context, DatabaseKind::Mail)) Give(QStringLiteral("cannot open"));
    context.Data.Close();
  });
  Report("cold open and close", messages, 11, [&] {
    context.Data.CloseAll();
    if (!OpenDatabase(context, DatabaseKind::Mail)) Give(QStringLiteral("cannot open"));
    context.Data.Close();
  });
  int found = 0;
  Report("subject search", messages, 7, [&] {
    found = CountRows(context, QStringLiteral("SELECT * FROM mail WHERE mail.FIELD_SUBJECT LIKE "
                                              "'*案内 777*' ORDER BY FIELD_TIMESTAMP ASC"));
  });
  if (found == 0) Give(QStringLiteral("the search found nothing"));
  Report("folder join", messages, 7, [&] {
    found = CountRows(context,
                      QStringLiteral("SELECT mail.* FROM mail INNER JOIN folder ON mail.SERIALID = "
                                     "folder.SERIALID WHERE folder.FOLDERID = 'f' ORDER BY "
                                     "FIELD_TIMESTAMP ASC"));
  });
  if (found != (messages + 99) / 100) Give(QStringLiteral("the join found something else"));
  for (int i = 0; i < 1000; ++i) filling.StoreSent(i);
  Report("addresses to offer, read for the first time", messages, 11,
         [&] { KnownAddresses(context).Offers(); });
  KnownAddresses known(context);
  Report("addresses to offer", messages, 11, [&] { known.Offers(); });
  std::printf(
      "{\"who\": \"vorn\", \"figure\": \"peak memory\", \"messages\": %d, \"megabytes\": "
      "%lld}\n",
      messages, static_cast<long long>(bench::MemoryKilobytes("VmHWM:") / 1024));
  context.Data.CloseAll();
}

}  // namespace
}  // namespace vorn

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  vorn::Run(argc > 1 ? std::atoi(argv[1]) : 100000, argc > 2 ? std::atoi(argv[2]) : 1000);
}
