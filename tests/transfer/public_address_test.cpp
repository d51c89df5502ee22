#include "transfer/net/public_address.h"

#include <gtest/gtest.h>

#include <QHostAddress>

namespace vorn {
namespace {

TEST(PublicAddressTest, NothingOfThisMachineOrItsNetworkIsPublicInAnyForm) {
  for (const char* near : {"127.0.0.1",
                           "127.255.1.2",
                           "0.0.0.0",
                           "10.1.2.3",
                           "100.64.0.1",
                           "169.254.169.254",
                           "172.16.0.1",
                           "172.31.255.255",
                           "192.168.1.1",
                           "224.0.0.251",
                           "255.255.255.255",
                           "::1",
                           "::",
                           "::127.0.0.1",
                           "::ffff:192.168.1.1",
                           "fc00::1",
                           "fd12::1",
                           "fe80::1",
                           "fe80::1%eth0",
                           "fec0::1",
                           "ff02::fb",
                           "64:ff9b::10.0.0.1",
                           "2002:c0a8:0101::1",
                           ""}) {
    EXPECT_FALSE(IsPublicAddress(QHostAddress(QString::fromLatin1(near)))) << near;
  }
  for (const char* far : {"8.8.8.8", "172.32.0.1", "192.169.0.1", "100.128.0.1", "169.253.0.1",
                          "223.255.255.1", "2001:db8::1", "2606:4700::1111", "::ffff:8.8.8.8",
                          "64:ff9b::8.8.8.8", "2002:0808:0808::1"}) {
    EXPECT_TRUE(IsPublicAddress(QHostAddress(QString::fromLatin1(far)))) << far;
  }
}

}  // namespace
}  // namespace vorn
