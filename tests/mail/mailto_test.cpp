#include "mail/mailto.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

namespace vorn {
namespace {

QStringList Lines(const MessageModel& model) {
  QStringList lines;
  for (const AddressEntry& entry : model.addresses) lines.append(CanonicalLine(entry));
  return lines;
}

MessageModel Applied(const char* address) {
  return WithMailto({}, QString::fromUtf8(address));
}

TEST(Mailto, FieldsOfANewMessageAreFilled) {
  const MessageModel model = Applied(
      "mailto:a@example.jp,b%2Cc@example.jp?cc=d@example.jp&BCC=e@example.jp&to=f@example.jp&"
      "subject=%E4%BC%9A%E8%AD%B0%20%26%20more&body=one%0D%0Atwo&In-Reply-To=%3C1@x%3E#part");
  EXPECT_EQ(Lines(model),
            QStringList({QStringLiteral("TO: a@example.jp"), QStringLiteral("TO: b,c@example.jp"),
                         QStringLiteral("CC: d@example.jp"), QStringLiteral("BC: e@example.jp"),
                         QStringLiteral("TO: f@example.jp")}));
  EXPECT_EQ(model.subject, QStringLiteral("会議 & more"));
  EXPECT_EQ(model.text.Get(), QStringLiteral("one\ntwo"));
  EXPECT_EQ(model.inReplyTo, QStringLiteral("<1@x>"));
}

TEST(Mailto, SignsOfAnAddressInATextArePartsOfIt) {
  const MessageModel model = Applied("mailto:a@x?subject=what?&body=https://x.example/?a=1%26b=2");
  EXPECT_EQ(model.subject, QStringLiteral("what?"));
  EXPECT_EQ(model.text.Get(), QStringLiteral("https://x.example/?a=1&b=2"));
}

TEST(Mailto, WhatItMayNotAskForIsLeftOut) {
  const MessageModel model = Applied(
      "MAILTO:a@x?subject=s%0D%0ABcc:%20evil@x&attach=/etc/passwd&attachment=file&from=b@x&body");
  EXPECT_EQ(Lines(model), QStringList({QStringLiteral("TO: a@x")}));
  EXPECT_EQ(model.subject, QStringLiteral("s Bcc: evil@x")) << "one line stays one line";
  EXPECT_TRUE(model.attachments.empty());
  EXPECT_TRUE(Applied("mailto:").addresses.isEmpty());
  EXPECT_TRUE(Applied("mailto:?%zz=%zz&&=").subject.isEmpty());
  EXPECT_FALSE(IsMailto(QStringLiteral("/tmp/mailto:x")));
}

}  // namespace
}  // namespace vorn
