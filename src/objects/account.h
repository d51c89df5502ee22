#pragma once

#include <QString>
#include <QStringList>
#include <utility>

#include "objects/endpoint.h"
#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// The choices of "InMailServerProtocol" by their stored numbers.
enum class InProtocol { Pop3 = 0, Apop = 1 };

/// An account, by the names that its object's bag has for what it holds. The bag of any account is
/// one.
class Account {
 public:
  Account(DiskPtr bag) : bag_(std::move(bag)) {}

  SerialId Serial() const { return bag_->Serial(); }
  QString Name() const;
  bool IsDefault() const;
  QString Address() const;
  /// The name that stands beside the address.
  QString Display() const;
  QString Signature() const;
  /// Whether the event log records its sessions.
  bool LogsEvents() const;

  Endpoint Incoming() const;
  /// It has no incoming server.
  bool OnlySends() const { return Incoming().host.isEmpty(); }
  InProtocol Protocol() const;
  bool DeletesOnServer() const;
  /// The work of receiving for it (`WorkLock`).
  QString Work() const;

  /// Where it logs in to send as the incoming user with a password that is not stored, it has that
  /// user's as far as they are known.
  Endpoint Outgoing() const;
  /// Whether it logs in to send.
  bool Authenticates() const;
  /// Whether it logs in at the incoming server before it sends.
  bool IsPopBeforeSmtp() const;

  /// Whether the incoming password is stored with the account, and not asked for in each run.
  bool SavesPassword() const;
  /// Whether it logs in to send by what the user is asked for to receive.
  bool SendsByAskedPassword() const;
  /// Whether what proves the incoming user is known.
  bool HasCredentials() const { return SavesPassword() || Incoming().who.IsKnown(); }
  void SetPassword(const QString& password);
  /// How a server is spoken with, by the name that the bag has for it: an account that says nothing
  /// of it is used without, and what no program has written is no leave to go in clear.
  static Security SecurityOf(const Disk& bag, const QString& server);
  /// The names that the bag has for the incoming user, for what proves him, and for what of that
  /// the user may not want to be stored.
  static QString UserKey();
  static QStringList SecretKeys();
  static QStringList AskedKeys();

 private:
  DiskPtr bag_;
};

/// What makes an account, for callers that have no window: the values of its pages.
struct AccountValues {
  QString name;
  QString address;
  QString display;
  Endpoint incoming = {.port = 110};
  InProtocol protocol = InProtocol::Pop3;
  bool deletesOnServer = false;
  /// Without a host: the incoming one; without a user: no login.
  Endpoint outgoing = {.port = 25};
  bool isDefault = false;
};

/// Whether a server can listen there (RFC 6335); and the sentence for the user when not.
constexpr bool IsPort(int port) {
  return port >= 1 && port <= 65535;
}
QString PortWords();

/// Whether nothing is wrong with the values.
Result<> ValidateAccount(const Context& context, const AccountValues& values);

/// Stores a new enabled account.
Result<DiskPtr> CreateAccount(Context& context, const AccountValues& values);

}  // namespace vorn
