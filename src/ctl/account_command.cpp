#include <QStringList>

#include "ctl/command.h"
#include "objects/account.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

StorageError Wrong(const QString& sentence) {
  return {StorageError::Kind::Other, sentence};
}

// Clear text only where it is asked for: what listens on this machine need not be the user's.
Result<Security> ReadSecurity(const Arguments& arguments, const QString& name) {
  const QStringList choices{QStringLiteral("none"), QStringLiteral("starttls"),
                            QStringLiteral("tls")};
  const auto chosen = choices.indexOf(arguments.Text(name, choices.last()).toLower());
  if (chosen < 0) {
    return Wrong(Ui::tr("--in-security と --out-security は none か starttls か tls です。"));
  }
  return static_cast<Security>(chosen);
}

const QString kIn = QStringLiteral("in-");
const QString kOut = QStringLiteral("out-");

// A secret is read from a file descriptor.
QString OptionOf(const QString& server, const CredentialPart& part) {
  const QString name = server + QString(part.key).toLower();
  return part.isSecret ? name + QStringLiteral("-fd") : name;
}

// Parts that are not given stay empty.
Result<Credentials> ReadCredentials(const Arguments& arguments, const QString& server) {
  Credentials who;
  for (const CredentialPart& part : kCredentialParts) {
    const QString option = OptionOf(server, part);
    if (!arguments.Has(option)) continue;
    const Result<QString> text =
        part.isSecret ? ReadSecret(arguments, option) : Result<QString>(arguments.Text(option));
    if (!text) return text.Error();
    who.*part.text = *text;
  }
  return who;
}

// Receiving needs something that proves the user.
Result<Credentials> ReadIncomingCredentials(const Arguments& arguments) {
  QStringList due;
  for (const CredentialPart& part : kCredentialParts) {
    if (part.isSecret) due.append(OptionOf(kIn, part));
  }
  for (const QString& option : due) {
    if (arguments.Has(option)) return ReadCredentials(arguments, kIn);
  }
  return Wrong(Ui::tr("--%1 を読み込めません。").arg(due.join(QStringLiteral(", --"))));
}

Result<InProtocol> ReadProtocol(const Arguments& arguments) {
  const QString protocol =
      arguments.Text(QStringLiteral("in-protocol"), QStringLiteral("pop3")).toLower();
  if (protocol == u"pop3") return InProtocol::Pop3;
  if (protocol == u"apop") return InProtocol::Apop;
  return Wrong(Ui::tr("--in-protocol は pop3 か apop です。"));
}

// Without who logs in there.
Result<Endpoint> ReadEndpoint(const Arguments& arguments, const QString& server,
                              const QString& portWords, const auto& ports) {
  const Result<Security> security = ReadSecurity(arguments, server + QStringLiteral("security"));
  if (!security) return security.Error();
  const auto port =
      arguments.Number(server + QStringLiteral("port"), ports[static_cast<size_t>(*security)]);
  if (!port) return Wrong(portWords);
  return Endpoint{.host = arguments.Text(server + QStringLiteral("server")),
                  .port = *port,
                  .security = *security};
}

Result<AccountValues> ReadValues(const Arguments& arguments) {
  const Result<InProtocol> protocol = ReadProtocol(arguments);
  if (!protocol) return protocol.Error();
  Result<Endpoint> incoming =
      ReadEndpoint(arguments, kIn, Ui::tr("--in-port は数です。"), kPop3Ports);
  if (!incoming) return incoming.Error();
  Result<Endpoint> outgoing =
      ReadEndpoint(arguments, kOut, Ui::tr("--out-port は数です。"), kSmtpPorts);
  if (!outgoing) return outgoing.Error();
  const Result<Credentials> sender = ReadCredentials(arguments, kOut);
  if (!sender) return sender.Error();
  const Result<Credentials> receiver = ReadIncomingCredentials(arguments);
  if (!receiver) return receiver.Error();
  incoming->who = *receiver;
  outgoing->who = *sender;
  return AccountValues{.name = arguments.Text(QStringLiteral("name")),
                       .address = arguments.Text(QStringLiteral("address")),
                       .display = arguments.Text(QStringLiteral("display")),
                       .incoming = *incoming,
                       .protocol = *protocol,
                       .deletesOnServer = arguments.Has(QStringLiteral("delete-on-server")),
                       .outgoing = *outgoing,
                       .isDefault = arguments.Has(QStringLiteral("default"))};
}

}  // namespace

QSet<QString> CredentialOptions() {
  QSet<QString> options;
  for (const CredentialPart& part : kCredentialParts) {
    options += {OptionOf(kIn, part), OptionOf(kOut, part)};
  }
  return options;
}

int AddAccount(Context& context, const Arguments& arguments) {
  const Result<AccountValues> values = ReadValues(arguments);
  if (!values) return Complain(values.Error().text, kExitUsage);
  const Result<> valid = ValidateAccount(context, *values);
  if (!valid) return Complain(valid.Error().text, kExitFailure);
  const Result<DiskPtr> account = CreateAccount(context, *values);
  if (!account) {
    return Complain(Ui::tr("アカウントを保存できません。") + account.Error().text, kExitFailure);
  }
  Print((*account)->SerialID());
  return kExitOk;
}

}  // namespace vorn::ctl
