// A process to be killed: stores messages, changes states and the password without end, or so many
// times, and says on its standard output what has been done.
//
// usage: store-worker DATA-FOLDER PASSWORD [ROUNDS]
//        store-worker DATA-FOLDER PASSWORD disable ACCOUNT
// Lines: "stored SERIAL", "opened SERIAL", "changing PASSWORD", then "changed PASSWORD" or "refused
// REASON"; "error REASON" at the end.

#include <QCoreApplication>
#include <QRandomGenerator>
#include <climits>
#include <cstdio>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile/profile.h"
#include "objects/profile/profile_password.h"
#include "objects/save_object.h"

namespace {

void Say(const char* what, const QString& value) {
  std::printf("%s %s\n", what, qPrintable(value));
  std::fflush(stdout);
}

[[noreturn]] void Die(const QString& reason) {
  Say("error", reason);
  std::exit(1);
}

// Takes the mark "enabled" off an account, as its window does.
int Disable(vorn::Context& context, const QString& name) {
  const vorn::DiskPtr account = vorn::FindObjectByName(context, vorn::object_type::kAccount, name);
  if (account == nullptr) Die(name);
  account->Let(QStringLiteral("Enabled"), false);
  const auto saved = vorn::SaveObject(context, vorn::DatabaseKind::Profile, *account);
  if (!saved) Die(saved.Error().text);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace vorn;
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  Context context;
  Result<> entered = StartUp(context, arguments.value(1));
  if (entered) entered = LogIn(context, {}, arguments.value(2));
  if (!entered) Die(entered.Error().text);
  if (arguments.value(3) == u"disable") return Disable(context, arguments.value(4));
  MailStore store(context);
  QString password = arguments.value(2);
  const int rounds = arguments.value(3, QString::number(INT_MAX)).toInt();
  for (int round = 0; round < rounds; ++round) {
    Disk request(context.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), 4);
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    request.Let(QStringLiteral("folder"), QStringLiteral("f1\r\nf2"));
    const int size = QRandomGenerator::global()->bounded(100, 60000);
    const Result<SerialId> stored =
        store.StoreMessage(request, "Subject: x\r\n\r\n" + QByteArray(size, 'x'));
    if (!stored) Die(stored.Error().text);
    Say("stored", request.SerialID());
    request.Let(QStringLiteral("flag"), QStringLiteral("0200"));
    const Result<> opened = store.UpdateMessageState(kStateFlag, request, true);
    if (!opened) Die(opened.Error().text);
    Say("opened", request.SerialID());
    if (round % 3 != 2) continue;
    // Every third time to none, which is a recovery code.
    const QString next = round % 9 == 5
                             ? QString()
                             : QStringLiteral("p%1").arg(QRandomGenerator::global()->generate());
    Say("changing", next);
    const Result<> changed = ChangeProfilePassword(context, *context.Session, password, next);
    if (!changed) {
      Say("refused", changed.Error().text);
      continue;
    }
    Say("changed", next);
    password = next;
  }
}
