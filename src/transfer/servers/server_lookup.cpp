#include "transfer/servers/server_lookup.h"

#include <QDnsLookup>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "transfer/net/http_fetcher.h"

namespace vorn {
namespace {

constexpr qint64 kMostBytes = 65536;
constexpr int kMostNameLength = 253;

struct Service {
  const char* name;
  bool isSending;
  Security security;
};

// The safer one of each first.
constexpr Service kServices[] = {{"_pop3s", false, Security::Tls},
                                 {"_pop3", false, Security::StartTls},
                                 {"_submissions", true, Security::Tls},
                                 {"_submission", true, Security::StartTls}};
constexpr int kServiceCount = static_cast<int>(std::size(kServices));

bool IsHostName(const QString& name) {
  static const QRegularExpression form(
      QStringLiteral("\\A([a-z0-9]([a-z0-9-]*[a-z0-9])?\\.)+[a-z0-9-]+\\z"),
      QRegularExpression::CaseInsensitiveOption);
  return name.size() <= kMostNameLength && form.match(name).hasMatch();
}

// In the form of the domain name system; empty when it cannot be one.
QString DomainOf(const QString& address) {
  const qsizetype at = address.lastIndexOf(u'@');
  if (at <= 0) return {};
  const QString domain = QString::fromLatin1(QUrl::toAce(address.sliced(at + 1).trimmed()));
  return IsHostName(domain) ? domain : QString();
}

QString Replaced(QString text, const QString& address) {
  const qsizetype at = address.lastIndexOf(u'@');
  return text.replace(QStringLiteral("%EMAILADDRESS%"), address)
      .replace(QStringLiteral("%EMAILLOCALPART%"), address.first(at))
      .replace(QStringLiteral("%EMAILDOMAIN%"), address.sliced(at + 1))
      .simplified();
}

// The element that the reader is at, when it can be used.
Endpoint ReadServer(QXmlStreamReader& xml, const QString& address) {
  Endpoint server;
  bool isEncrypted = false;
  bool takesPassword = false;
  while (xml.readNextStartElement()) {
    const QString name = xml.name().toString();
    const QString text = xml.readElementText(QXmlStreamReader::SkipChildElements).trimmed();
    if (name == u"hostname") server.host = Replaced(text, address);
    if (name == u"port") server.port = text.toInt();
    if (name == u"username") server.who.user = Replaced(text, address);
    if (name == u"authentication") {
      takesPassword = takesPassword || text.startsWith(u"password") || text == u"plain";
    }
    if (name != u"socketType") continue;
    isEncrypted = text == u"SSL" || text == u"STARTTLS";
    server.security = text == u"STARTTLS" ? Security::StartTls : Security::Tls;
  }
  const bool isPort = server.port > 0 && server.port <= 0xFFFF;
  if (!isEncrypted || !takesPassword || !isPort || !IsHostName(server.host)) return {};
  return server;
}

}  // namespace

MailServers ReadConfiguration(const QByteArray& document, const QString& address) {
  MailServers servers;
  if (!address.contains(u'@')) return servers;
  QXmlStreamReader xml(document);
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    const bool sends = xml.name() == u"outgoingServer";
    if (!sends && xml.name() != u"incomingServer") continue;
    const bool isOurs = xml.attributes().value(QLatin1String("type")) ==
                        (sends ? QLatin1String("smtp") : QLatin1String("pop3"));
    const Endpoint server = ReadServer(xml, address);
    Endpoint& place = sends ? servers.sending : servers.receiving;
    if (isOurs && place.host.isEmpty()) place = server;
  }
  return xml.hasError() ? MailServers() : servers;
}

ServerLookup::ServerLookup(QObject* parent) : QObject(parent) {
  step_.setSingleShot(true);
  step_.setInterval(kStepMs);
  connect(&step_, &QTimer::timeout, this, [this] {
    if (dns_ != nullptr) dns_->abort();
  });
}

ServerLookup::~ServerLookup() {
  Stop();
}

QList<QUrl> ServerLookup::DocumentsOf(const QString& domain) {
  const QString file = QStringLiteral("mail/config-v1.1.xml");
  return {QUrl(QStringLiteral("https://autoconfig.") + domain + u'/' + file),
          QUrl(QStringLiteral("https://") + domain + QStringLiteral("/.well-known/autoconfig/") +
               file)};
}

void ServerLookup::Start(const QString& address) {
  Stop();
  isRunning_ = true;
  address_ = address.trimmed();
  domain_ = DomainOf(address_);
  found_ = {};
  service_ = 0;
  if (domain_.isEmpty()) return End();
  documents_ = places_.isEmpty() ? DocumentsOf(domain_) : places_;
  AskNextDocument();
}

void ServerLookup::Stop() {
  isRunning_ = false;
  step_.stop();
  asked_ = 0;
  fetcher_.reset();
  if (dns_ != nullptr) {
    dns_->disconnect(this);
    dns_->abort();
    dns_.release()->deleteLater();
  }
}

void ServerLookup::AskNextDocument() {
  if (documents_.isEmpty()) return AskNextService();
  FetchLimits limits;
  limits.eachBytes = kMostBytes;
  limits.eachMs = step_.interval();
  limits.accept = "*/*";
  fetcher_ = std::make_unique<HttpFetcher>(limits);
  connect(fetcher_.get(), &HttpFetcher::Fetched, this, &ServerLookup::TakeDocument);
  asked_ = fetcher_->Fetch(documents_.takeFirst());
}

void ServerLookup::TakeDocument(int number, const QByteArray& document) {
  if (number != asked_) return;
  found_ = ReadConfiguration(document, address_);
  found_.receiving.host.isEmpty() ? AskNextDocument() : End();
}

void ServerLookup::AskNextService() {
  const auto isKnown = [this](const Service& service) {
    return !(service.isSending ? found_.sending : found_.receiving).host.isEmpty();
  };
  while (service_ < kServiceCount && isKnown(kServices[service_])) ++service_;
  if (service_ >= kServiceCount || !asksNames_) return End();
  dns_ = std::make_unique<QDnsLookup>(QDnsLookup::SRV, QLatin1String(kServices[service_].name) +
                                                           QStringLiteral("._tcp.") + domain_);
  if (!nameServer_.isNull()) dns_->setNameserver(nameServer_);
  connect(dns_.get(), &QDnsLookup::finished, this, &ServerLookup::TakeService,
          Qt::QueuedConnection);
  dns_->lookup();
  step_.start();
}

// The records are in the order of their priorities. A target "." says that there is no such
// service.
void ServerLookup::TakeService() {
  if (dns_ == nullptr) return;
  const Service& service = kServices[service_++];
  const QList<QDnsServiceRecord> records = dns_->serviceRecords();
  dns_.reset();
  if (!records.isEmpty() && IsHostName(records.first().target())) {
    (service.isSending ? found_.sending : found_.receiving) = {
        records.first().target(), records.first().port(), service.security, {address_}};
  }
  AskNextService();
}

void ServerLookup::End() {
  step_.stop();
  isRunning_ = false;
  Q_EMIT Found(found_);
}

}  // namespace vorn
