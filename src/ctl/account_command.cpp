#include <QStringList>
#include <optional>

#include "ctl/command.h"
#include "objects/account.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

// Clear text only where it is asked for: what listens on this machine need not be the user's.
bool ReadSecurity(const Arguments& arguments, const QString& name, Security& security) {
  const QStringList choices{QStringLiteral("none"), QStringLiteral("starttls"),
                            QStringLiteral("tls")};
  const auto chosen = choices.indexOf(arguments.Text(name, choices.last()).toLower());
  security = static_cast<Security>(chosen);
  return chosen >= 0;
}

const QString kIn = QStringLiteral("in-");
const QString kOut = QStringLiteral("out-");

// A secret is read from a file descriptor.
QString OptionOf(const QString& server, const CredentialPart& part) {
  const QString name = server + QString(part.key).toLower();
  return part.isSecret ? name + QStringLiteral("-fd") : name;
}

// Parts that are not given stay empty.
Result<> ReadCredentials(const Arguments& arguments, const QString& server, Credentials& who) {
  for (const CredentialPart& part : kCredentialParts) {
    const QString option = OptionOf(server, part);
    if (!arguments.Has(option)) continue;
    const Result<QString> text =
        part.isSecret ? ReadSecret(arguments, option) : Result<QString>(arguments.Text(option));
    if (!text) return text.Error();
    who.*part.text = *text;
  }
  return {};
}

// Receiving needs something that proves the user.
Result<> ReadIncomingCredentials(const Arguments& arguments, Credentials& who) {
  QStringList due;
  for (const CredentialPart& part : kCredentialParts) {
    if (part.isSecret) due.append(OptionOf(kIn, part));
  }
  for (const QString& option : due) {
    if (arguments.Has(option)) return ReadCredentials(arguments, kIn, who);
  }
  return StorageError{StorageError::Kind::Other,
                      Ui::tr("--%1 を読み込めません。").arg(due.join(QStringLiteral(", --")))};
}

// Why the command line cannot be read; nothing when it could be.
std::optional<QString> ReadValues(const Arguments& arguments, AccountValues& values) {
  const QString protocol =
      arguments.Text(QStringLiteral("in-protocol"), QStringLiteral("pop3")).toLower();
  if (protocol != u"pop3" && protocol != u"apop") {
    return Ui::tr("--in-protocol は pop3 か apop です。");
  }
  values.name = arguments.Text(QStringLiteral("name"));
  values.address = arguments.Text(QStringLiteral("address"));
  values.display = arguments.Text(QStringLiteral("display"));
  values.incoming.host = arguments.Text(QStringLiteral("in-server"));
  values.outgoing.host = arguments.Text(QStringLiteral("out-server"));
  if (!ReadSecurity(arguments, QStringLiteral("in-security"), values.incoming.security) ||
      !ReadSecurity(arguments, QStringLiteral("out-security"), values.outgoing.security)) {
    return Ui::tr("--in-security と --out-security は none か starttls か tls です。");
  }
  const auto inPort = arguments.Number(QStringLiteral("in-port"),
                                       kPop3Ports[static_cast<size_t>(values.incoming.security)]);
  if (!inPort) return Ui::tr("--in-port は数です。");
  values.incoming.port = *inPort;
  values.protocol = protocol == u"apop" ? InProtocol::Apop : InProtocol::Pop3;
  values.deletesOnServer = arguments.Has(QStringLiteral("delete-on-server"));
  values.isDefault = arguments.Has(QStringLiteral("default"));
  const auto outPort = arguments.Number(QStringLiteral("out-port"),
                                        kSmtpPorts[static_cast<size_t>(values.outgoing.security)]);
  if (!outPort) return Ui::tr("--out-port は数です。");
  values.outgoing.port = *outPort;
  if (const Result<> out = ReadCredentials(arguments, kOut, values.outgoing.who); !out) {
    return out.Error().text;
  }
  const Result<> in = ReadIncomingCredentials(arguments, values.incoming.who);
  return in ? std::nullopt : std::optional(in.Error().text);
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
  AccountValues values;
  if (const auto unread = ReadValues(arguments, values)) return Complain(*unread, kExitUsage);
  const Result<> valid = ValidateAccount(context, values);
  if (!valid) return Complain(valid.Error().text, kExitFailure);
  const Result<DiskPtr> account = CreateAccount(context, values);
  if (!account) {
    return Complain(Ui::tr("アカウントを保存できません。") + account.Error().text, kExitFailure);
  }
  Print((*account)->SerialID());
  return kExitOk;
}

}  // namespace vorn::ctl
