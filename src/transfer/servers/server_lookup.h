#pragma once

#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QTimer>
#include <QUrl>
#include <memory>

#include "transfer/servers/mail_servers.h"

class QDnsLookup;

namespace vorn {

class HttpFetcher;

/// What a provider's own configuration document says of POP3 and SMTP, for an address. Servers
/// without encryption, and whatever is no host name, are left out.
MailServers ReadConfiguration(const QByteArray& document, const QString& address);

/// Looks for the servers of a mail address at its domain: in the document that the domain offers
/// mail programs, else in its service records (RFC 6186, RFC 8314). What is found is only told.
class ServerLookup : public QObject {
  Q_OBJECT

 public:
  static constexpr int kStepMs = 8000;  // for one answer

  explicit ServerLookup(QObject* parent = nullptr);
  ~ServerLookup() override;

  /// Begins anew. `Found` tells the outcome, also when it is nothing.
  void Start(const QString& address);
  /// Ends it; nothing is told.
  void Stop();
  bool IsRunning() const { return isRunning_; }

  /// The places of the document, in the order in which they are asked.
  static QList<QUrl> DocumentsOf(const QString& domain);
  /// For tests, which ask nobody but themselves: other places than those, each for so long, and the
  /// domain's records of that name server alone, or not at all.
  void AskOnly(const QList<QUrl>& places, int stepMs = kStepMs,
               const QHostAddress& nameServer = {}) {
    places_ = places;
    nameServer_ = nameServer;
    asksNames_ = !nameServer.isNull();
    step_.setInterval(stepMs);
  }

 Q_SIGNALS:
  void Found(const MailServers& servers);

 private:
  void AskNextDocument();
  void TakeDocument(int number, const QByteArray& document);
  void AskNextService();
  void TakeService();
  void End();

  QString address_;
  QString domain_;
  QList<QUrl> places_;
  QList<QUrl> documents_;  // still to be asked
  int service_ = 0;
  bool asksNames_ = true;
  QHostAddress nameServer_;  // null: the system's
  bool isRunning_ = false;
  QTimer step_;  // the time of one answer of the name system
  MailServers found_;
  std::unique_ptr<HttpFetcher> fetcher_;
  int asked_ = 0;  // the fetch whose document is awaited
  std::unique_ptr<QDnsLookup> dns_;
};

}  // namespace vorn
