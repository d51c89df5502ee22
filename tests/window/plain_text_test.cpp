// Text from outside in labels, boxes, tooltips and titles.

#include "kit/window/plain_text.h"

#include "mail/window/fields/address_list.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

TEST(PlainText, ControlsAndMarksOfDirectionAreShownAndLengthIsBounded) {
  EXPECT_EQ(ShownText(QStringLiteral("a\r\nb\tc")), QStringLiteral("a\nb\tc"));
  EXPECT_EQ(ShownText(QString::fromUtf16(u"x\x202Egnp.exe")), QStringLiteral("x[U+202E]gnp.exe"));
  EXPECT_EQ(ShownText(QString::fromUtf16(u"\x1B[2J\x7F\x85")), QStringLiteral("␛[2J␡[U+0085]"));
  EXPECT_EQ(ShownText(QString(300, u'x'), 200), QString(200, u'x') + u'…');
  EXPECT_EQ(ShownText(QStringLiteral("日本語 😀")), QStringLiteral("日本語 😀"));
  EXPECT_EQ(ShownToolTip(QStringLiteral("<b>x")), QStringLiteral("<qt>&lt;b&gt;x</qt>"));
  EXPECT_EQ(ShownToolTip(QString()), QString());
}

// It turned the address behind it round: the sender named himself somebody else.
TEST_F(MessageWindowTest, ANameCannotTurnTheAddressRound) {
  const QByteArray from =
      "From: =?UTF-8?B?" + QByteArray("info@bank.com \xE2\x80\xAE").toBase64() +
      "?= <evil@attacker.example>\r\nTo: a@example.jp\r\nSubject: s\r\n\r\nx\r\n";
  for (const int status : {4, 1}) {  // read, and as a draft
    MessageWindow& window = OpenStored(from, status);
    const QString row = Child<QTableWidget>(window, u"lvMailaddress").item(0, 1)->text();
    EXPECT_EQ(row.contains(QStringLiteral("[U+202E]")), status == 4) << qPrintable(row);
    EXPECT_FALSE(row.contains(QChar(0x202E)));
    EXPECT_TRUE(row.contains(QStringLiteral("evil@attacker.example")));
    window.close();
    EXPECT_TRUE(Gone());
  }
}

// Letters from right to left are no marks, and change the places of digits around them.
TEST_F(MessageWindowTest, AnAddressKeepsItsOrderBesideAnyName) {
  for (const int status : {4, 1}) {
    MessageWindow& window =
        OpenStored("From: =?UTF-8?B?" + QByteArray("\xD7\x90\xD7\x91").toBase64() +
                       "?= <12@34.example>\r\nTo: a@example.jp\r\nSubject: s\r\n\r\nx\r\n",
                   status);
    auto& rows = Child<QTableWidget>(window, u"lvMailaddress");
    const auto* delegate = qobject_cast<QStyledItemDelegate*>(rows.itemDelegateForColumn(1));
    ASSERT_NE(delegate, nullptr);
    EXPECT_EQ(delegate->displayText(rows.item(0, 1)->text(), QLocale()),
              QStringLiteral("\u2068\u05D0\u05D1\u2069 <\u206612@34.example\u2069>"));
    window.close();
    EXPECT_TRUE(Gone());
  }
}

// Without its mark it would be the address of somebody else.
TEST_F(MessageWindowTest, AMarkWithinAnAddressIsItsFault) {
  MessageWindow& window = OpenStored(
      "From: A <=?UTF-8?B?" + QByteArray("live\xE2\x80\xAE").toBase64() +
          "?=@x.example>\r\nTo: =?UTF-8?Q?evil=E2=80=AE@x.example?=\r\nSubject: s\r\n\r\nx\r\n",
      1);
  auto& rows = Child<AddressList>(window, u"lvMailaddress");
  QString all;
  for (int row = 0; row < rows.rowCount(); ++row) all += rows.item(row, 1)->text() + u'\n';
  EXPECT_TRUE(all.contains(QChar(0x202E))) << qPrintable(all);
  EXPECT_TRUE(rows.FirstFault().contains(QChar(0x202E))) << qPrintable(rows.FirstFault());
  rows.GoToFault();
  EXPECT_EQ(rows.currentRow(), 0) << "the sender's";
}

}  // namespace
}  // namespace vorn
