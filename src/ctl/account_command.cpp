#include "ctl/command.h"
#include "objects/account.h"

namespace vorn::ctl {
namespace {

constexpr int kPop3Port = 110;  // RFC 1939

// An empty sentence when all of the command line could be read.
QString ReadValues(const Arguments& arguments, AccountValues& values) {
  const QString protocol =
      arguments.Text(QStringLiteral("in-protocol"), QStringLiteral("pop3")).toLower();
  if (protocol != u"pop3" && protocol != u"apop") {
    return QStringLiteral("--in-protocol は pop3 か apop です。");
  }
  bool ok = true;
  values.name = arguments.Text(QStringLiteral("name"));
  values.address = arguments.Text(QStringLiteral("address"));
  values.display = arguments.Text(QStringLiteral("display"));
  values.inServer = arguments.Text(QStringLiteral("in-server"));
  values.inPort = arguments.Number(QStringLiteral("in-port"), kPop3Port, &ok);
  if (!ok) return QStringLiteral("--in-port は数です。");
  values.inUser = arguments.Text(QStringLiteral("in-user"));
  values.inProtocol = protocol == u"apop" ? InProtocol::Apop : InProtocol::Pop3;
  values.deleteOnServer = arguments.Has(QStringLiteral("delete-on-server"));
  values.isDefault = arguments.Has(QStringLiteral("default"));
  const int descriptor = arguments.Number(QStringLiteral("in-password-fd"), -1, &ok);
  if (ok) values.inPassword = ReadSecret(descriptor, &ok);
  return ok ? QString() : QStringLiteral("--in-password-fd を読み込めません。");
}

}  // namespace

int AddAccount(Context& context, const Arguments& arguments) {
  AccountValues values;
  const QString unread = ReadValues(arguments, values);
  if (!unread.isEmpty()) return Complain(unread, kExitUsage);
  const QString invalid = ValidateAccount(context, values);
  if (!invalid.isEmpty()) return Complain(invalid, kExitFailure);
  const DiskPtr account = CreateAccount(context, values);
  if (account == nullptr) {
    return Complain(QStringLiteral("アカウントを保存できません。") + context.Data.LastError().text,
                    kExitFailure);
  }
  Print(account->SerialID());
  return kExitOk;
}

}  // namespace vorn::ctl
