#pragma once

#include <gtest/gtest.h>

#include "support/loopback_pop3_server.h"
#include "support/traffic.h"

namespace vorn {

/// Receiving from a server that the test controls, into a real store.
class ReceiveTest : public test::TrafficTest {
 protected:
  void SetUp() override { ASSERT_TRUE(server_.Listen()); }

  void AddMessages(int count) {
    for (int i = 0; i < count; ++i) {
      server_.AddMessage("uid" + QByteArray::number(i),
                         "Subject: " + QByteArray::number(i) + "\r\n\r\n.leading dot\r\ntext\r\n");
    }
  }

  // One whose password is asked for.
  DiskPtr AddAccountWithoutPassword() {
    const DiskPtr account =
        profile_.AddAccount(server_.Port(), false, false, QStringLiteral("user"), QString());
    account->Let(QStringLiteral("InMailServerPasswordSave"), false);
    return account;
  }

  test::LoopbackPop3Server server_;
};

}  // namespace vorn
