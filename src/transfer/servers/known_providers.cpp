#include "transfer/servers/known_providers.h"

#include <QStringList>

namespace vorn {
namespace {

enum class UserForm { Address, LocalPart };

// A domain that begins with a dot stands for those below it, whose servers "%" names. All receive
// by TLS at port 995.
struct Provider {
  const char16_t* domains;  // blank-separated
  const char16_t* receiving;
  const char16_t* sending;
  UserForm user = UserForm::Address;
  Security security = Security::Tls;
};

constexpr int kPop3s = 995;
constexpr int kSubmissions = 465;
constexpr int kSubmission = 587;

// Who offers no POP3, or no login by password, is not here.
constexpr Provider kProviders[] = {
    {u"yahoo.co.jp", u"pop.mail.yahoo.co.jp", u"smtp.mail.yahoo.co.jp", UserForm::LocalPart},
    {u"nifty.com", u"pop.nifty.com", u"smtp.nifty.com", UserForm::LocalPart},
    {u"ocn.ne.jp .ocn.ne.jp", u"pop.ocn.ne.jp", u"smtp.ocn.ne.jp"},
    {u"biglobe.ne.jp .biglobe.ne.jp", u"mail.biglobe.ne.jp", u"mail.biglobe.ne.jp"},
    {u".so-net.ne.jp", u"pop.so-net.ne.jp", u"mail.so-net.ne.jp"},
    {u".sakura.ne.jp", u"%", u"%"},
    {u"gmail.com googlemail.com", u"pop.gmail.com", u"smtp.gmail.com"},
    {u"yahoo.com ymail.com rocketmail.com", u"pop.mail.yahoo.com", u"smtp.mail.yahoo.com"},
    {u"aol.com", u"pop.aol.com", u"smtp.aol.com"},
    {u"fastmail.com fastmail.fm", u"pop.fastmail.com", u"smtp.fastmail.com"},
    {u"zohomail.com zoho.com", u"pop.zoho.com", u"smtp.zoho.com"},
    {u"mail.com", u"pop.mail.com", u"smtp.mail.com", UserForm::Address, Security::StartTls},
    {u"gmx.com", u"pop.gmx.com", u"mail.gmx.com"},
    {u"gmx.net gmx.de gmx.at gmx.ch", u"pop.gmx.net", u"mail.gmx.net"},
    {u"web.de", u"pop3.web.de", u"smtp.web.de", UserForm::Address, Security::StartTls},
    {u"t-online.de", u"securepop.t-online.de", u"securesmtp.t-online.de"},
    {u"posteo.de posteo.net", u"posteo.de", u"posteo.de"},
    {u"mailbox.org", u"pop3.mailbox.org", u"smtp.mailbox.org"},
    {u"orange.fr wanadoo.fr", u"pop.orange.fr", u"smtp.orange.fr"},
    {u"seznam.cz", u"pop3.seznam.cz", u"smtp.seznam.cz"},
    {u"mail.ru inbox.ru list.ru bk.ru", u"pop.mail.ru", u"smtp.mail.ru"},
    {u"yandex.com yandex.ru", u"pop.yandex.com", u"smtp.yandex.com"},
    {u"qq.com foxmail.com", u"pop.qq.com", u"smtp.qq.com"},
    {u"163.com", u"pop.163.com", u"smtp.163.com"},
    {u"126.com", u"pop.126.com", u"smtp.126.com"},
    {u"yeah.net", u"pop.yeah.net", u"smtp.yeah.net"},
    {u"sina.com", u"pop.sina.com", u"smtp.sina.com"},
    {u"naver.com", u"pop.naver.com", u"smtp.naver.com", UserForm::LocalPart},
    {u"daum.net hanmail.net", u"pop.daum.net", u"smtp.daum.net", UserForm::LocalPart},
};

bool IsOf(const Provider& provider, const QString& domain) {
  for (const QString& known : QString::fromUtf16(provider.domains).split(u' ')) {
    const bool isBelow = domain.size() > known.size() && domain.endsWith(known);
    if (known.startsWith(u'.') ? isBelow : domain == known) return true;
  }
  return false;
}

QString HostOf(const char16_t* host, const QString& domain) {
  const QString name = QString::fromUtf16(host);
  return name == u"%" ? domain : name;
}

}  // namespace

std::optional<MailServers> KnownServers(const QString& address) {
  const qsizetype at = address.lastIndexOf(u'@');
  if (at <= 0) return std::nullopt;
  const QString domain = address.sliced(at + 1).toLower();
  for (const Provider& provider : kProviders) {
    if (!IsOf(provider, domain)) continue;
    const QString user = provider.user == UserForm::Address ? address : address.first(at);
    const int port = provider.security == Security::Tls ? kSubmissions : kSubmission;
    return MailServers{{HostOf(provider.receiving, domain), kPop3s, Security::Tls, {user}},
                       {HostOf(provider.sending, domain), port, provider.security, {user}}};
  }
  return std::nullopt;
}

}  // namespace vorn
