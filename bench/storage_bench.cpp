// Figures of the store with many messages. Prints one JSON line each, medians of several rounds.
//
// usage: storage-bench [MESSAGES]   (default 100000)

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/mail_store.h"
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

QByteArray Source(int i) {
  static const QByteArray body(3000, 'x');
  return "From: =?UTF-8?B?5L2Q6Jek?= <sato" + QByteArray::number(i % 200) +
         "@example.jp>\r\nTo: yamada@example.org\r\nSubject: "
         "=?UTF-8?B?5Lya6K2w44Gu44GU5qGI5YaF?= " +
         QByteArray::number(i) + "\r\nContent-Type: text/plain; charset=us-ascii\r\n\r\n" + body +
         "\r\n";
}

void Fill(Context& context, int messages) {
  MailStore store(context);
  context.Data.BeginGroup(MailDatabasePath(context));
  for (int i = 0; i < messages; ++i) {
    Disk request(context.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    if (store.StoreMessage(request, Source(i)).isEmpty()) Give(context.Data.LastError().text);
    if (i % 256 == 255 && !context.Data.FlushGroup()) Give(context.Data.LastError().text);
  }
  if (!context.Data.EndGroup()) Give(context.Data.LastError().text);
}

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

void Run(int messages) {
  const QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  Context context;
  QString error;
  if (!StartUp(context, folder.path() + QStringLiteral("/data"), &error) ||
      CreateFirstProfile(context) == nullptr || !LogIn(context, {}, {}, &error)) {
    Give(error);
  }
  Report("store all, groups of 256", messages, 1, [&] { Fill(context, messages); });

  MessageListPages pages(context);
  const auto page = [&](int number) {
    bool before = false;
    bool next = false;
    const QString path = pages.CreateMessageListPage(fixed_serial::kInbox, number, before, next);
    if (path.isEmpty()) Give(context.Data.LastError().text);
    QFile::remove(path);
  };
  Report("first page of 100 rows", messages, 21, [&] { page(1); });
  Report("middle page of 100 rows", messages, 11, [&] { page(messages / 200); });
  Report("warm open and close", messages, 101, [&] {
    if (!OpenDatabase(context, DatabaseKind::Mail)) Give(context.Data.LastError().text);
    context.Data.Close();
  });
  Report("cold open and close", messages, 11, [&] {
    context.Data.CloseAll();
    if (!OpenDatabase(context, DatabaseKind::Mail)) Give(context.Data.LastError().text);
    context.Data.Close();
  });
  int found = 0;
  Report("subject search", messages, 11, [&] {
    found = CountRows(context, QStringLiteral("SELECT * FROM mail WHERE mail.FIELD_SUBJECT LIKE "
                                              "'*案内 777*' ORDER BY FIELD_TIMESTAMP ASC"));
  });
  if (found == 0) Give(QStringLiteral("the search found nothing"));
  context.Data.CloseAll();
}

}  // namespace
}  // namespace vorn

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  vorn::Run(argc > 1 ? std::atoi(argv[1]) : 100000);
}
