#include "transfer/net/public_address.h"

#include <QHostAddress>
#include <QtEndian>
#include <algorithm>
#include <utility>
#include <vector>

namespace vorn {
namespace {

using Subnet = std::pair<QHostAddress, int>;

bool IsInAny(const QHostAddress& address, const std::vector<Subnet>& subnets) {
  return std::any_of(subnets.begin(), subnets.end(),
                     [&address](const Subnet& subnet) { return address.isInSubnet(subnet); });
}

std::vector<Subnet> Subnets(std::initializer_list<const char*> texts) {
  std::vector<Subnet> subnets;
  for (const char* text : texts) {
    subnets.push_back(QHostAddress::parseSubnet(QString::fromLatin1(text)));
  }
  return subnets;
}

// The bytes of an IPv6 address from `at` on as an IPv4 address.
QHostAddress Inside(const Q_IPV6ADDR& bytes, int at) {
  return QHostAddress(qFromBigEndian<quint32>(bytes.c + at));
}

}  // namespace

bool IsPublicAddress(const QHostAddress& address) {
  static const std::vector<Subnet> near4 =
      Subnets({"0.0.0.0/8", "10.0.0.0/8", "100.64.0.0/10", "127.0.0.0/8", "169.254.0.0/16",
               "172.16.0.0/12", "192.0.0.0/24", "192.168.0.0/16", "198.18.0.0/15", "224.0.0.0/3"});
  static const std::vector<Subnet> near6 =
      Subnets({"::/96", "64:ff9b:1::/48", "fc00::/7", "fe80::/9", "ff00::/8"});
  bool isFour = false;
  const QHostAddress four(address.toIPv4Address(&isFour));  // of a mapped one, too
  if (isFour) return !IsInAny(four, near4);
  if (address.protocol() != QAbstractSocket::IPv6Protocol || IsInAny(address, near6)) return false;
  // Translation (RFC 6052) and tunnels (RFC 3056) lead to the address inside.
  static const std::vector<Subnet> translated = Subnets({"64:ff9b::/96"});
  static const std::vector<Subnet> tunnelled = Subnets({"2002::/16"});
  const Q_IPV6ADDR bytes = address.toIPv6Address();
  if (IsInAny(address, translated)) return IsPublicAddress(Inside(bytes, 12));
  return !IsInAny(address, tunnelled) || IsPublicAddress(Inside(bytes, 2));
}

}  // namespace vorn
