#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>

#include "objects/endpoint.h"

namespace vorn {

/// What a session does, by the numbers of the property `Mode`.
enum PopMode { kPopReceive = 0, kPopSend = 1, kPopSendOther = 2, kPopReceiveApop = 3 };

/// How long a session waits for its server, in milliseconds.
struct ServerPatience {
  /// How long each of the server's addresses may take to answer, and an encryption to be agreed.
  int ConnectMs = 30000;
  /// How long the server may be silent.
  int ReplyMs = 60000;
  /// How long it may be silent after a whole message was handed over (RFC 5321 section 4.5.3.2.6).
  int DecisionMs = 600000;
  /// The period in which `kLeastBytes` must move or a whole reply must come, however often the
  /// server gives a sign of life.
  int RatePeriodMs = 60000;
  static constexpr qint64 kLeastBytes = 256;
  /// How long a connection in clear waits for its greeting before it is tried whether the port
  /// speaks TLS; both sides would wait for ever.
  int TlsProbeMs = 3000;
};

/// The properties of the transfer control `Pop`: which session it runs next.
struct PopProperties {
  PopProperties() = default;
  PopProperties(const PopProperties&) = delete;
  PopProperties& operator=(const PopProperties&) = delete;

  /// The server, set as a whole, and the names of its parts.
  Endpoint Target;
  QString& Server = Target.host;
  int& ServerPort = Target.port;
  QString& User = Target.who.user;
  QString& Password = Target.who.password;
  PopMode Mode = kPopReceive;
  QString MailFrom;
  QString MailTo;
  /// Whether a send session logs in.
  bool Authenticate = false;
  /// Ends the session after the login.
  bool LoginOnly = false;
  /// Free text kept for the owner: the plan job that the session serves.
  QString Tag;
  ServerPatience Patience;
  /// The server's addresses in the order in which they are tried; when empty, which is usual, the
  /// name service is asked for them.
  QList<QHostAddress> Addresses;
};

}  // namespace vorn
