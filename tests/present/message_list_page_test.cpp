#include "present/message_list_page.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "mail/codec/charset/code_page_932.h"
#include "mail/search/neighbour_message.h"
#include "mail/search/unread_count.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "objects/manual_folder.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "present/folder_layout.h"
#include "present/link_command.h"
#include "present/page_tags.h"
#include "present/page_template.h"
#include "storage/databases.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;

class MessageListPageTest : public testing::Test {
 protected:
  MessageListPageTest() {
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("PageEscape"), false);
    EXPECT_TRUE(ShareLayout(profile_.Get(), QString(), OwnLayouts::Kept));
  }

  // The page's bytes; the file is removed.
  QByteArray Page(qint32 page = 1) {
    const auto made =
        MessageListPages(profile_.Get()).CreateMessageListPage(folder_, page).ValueOr({});
    if (made.content.isEmpty()) return {};
    hasNeighbours_ = made.hasBefore || made.hasNext;
    const QByteArray bytes = ReadFile(made.content);
    QFile::remove(made.content);
    return bytes;
  }
  // What a folder's own template becomes.
  QByteArray Filled(const char* pageTemplate) {
    const auto layout = std::make_shared<Disk>(fixed_serial::kLayout);
    layout->Let(folder_.Text() + QStringLiteral("_html"), QString::fromUtf8(pageTemplate));
    profile_.Get().Objects.Remove(fixed_serial::kLayout);
    profile_.Get().Objects.Add(layout);
    return Page();
  }
  SerialId Store(const QByteArray& subject, int status = 4, const QByteArray& more = {}) {
    return profile_.Store("From: Sato <s@x>\r\nTo: t@x\r\nBcc: b@x\r\nSubject: " + subject +
                              "\r\n" + more + "\r\nbody text\r\n",
                          status);
  }
  void SetRows(qint32 rows) {
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessagesEdit"), rows > 0);
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("Messages"), rows);
  }

  TestProfile profile_;
  QByteArray last_;  // row of a page
  SerialId folder_ = fixed_serial::kInbox;
  QString search_;
  bool hasNeighbours_ = true;
};

TEST_F(MessageListPageTest, TheDefaultPageIsByteForByteAsDocumented) {
  const QByteArray id = Store("A & B").Text().toLatin1();
  SetRows(1);
  const QString page = QStringLiteral(
      "<HTML lang = \"ja\">\r\n\r\n    <HEAD>\r\n"
      "        <META http-equiv = \"Content-Type\" content = \"text/html; charset = "
      "shift-jis\">\r\n"
      "        <TITLE>受信</TITLE>\r\n        <STYLE TYPE = \"text/css\">\r\n"
      "            A:active    { color: darkblue; }\r\n"
      "            A:link      { color: darkblue; }\r\n"
      "            A:visited   { color: darkblue; }\r\n"
      "            BODY        { BACKGROUND-COLOR: beige; }\r\n"
      "            #size       { FONT-SIZE: 10pt; }\r\n            </STYLE>\r\n"
      "        <TITLE>.VORN</TITLE>\r\n        </HEAD>\r\n\r\n    <BODY>\r\n\r\n"
      "        <TABLE>\r\n            <TBODY align = \"left\" valign = \"middle\">\r\n"
      "                <TR>\r\n                    <TD></TD>\r\n                    <TD></TD>\r\n"
      "                    <TD></TD>\r\n                    <TD id = \"size\">件名</TD>\r\n"
      "                    <TD id = \"size\">日時</TD>\r\n"
      "                    <TD id = \"size\">送信者</TD>\r\n                    </TR>\r\n"
      "                <TR>\r\n"
      "                    <TD colspan = \"6\"><HR size = \"1\"></TD>\r\n"
      "                    </TR>\r\n                \r\n                <TR>\r\n"
      "                    <TD id = \"size\"><NOBR>○</NOBR></TD>\r\n"
      "                    <TD id = \"size\"><NOBR></NOBR></TD>\r\n"
      "                    <TD id = \"size\"><NOBR></NOBR></TD>\r\n"
      "                    <TD id = \"size\"><NOBR><A HREF = \"preview:%1\">A & B</A> "
      "<A HREF = \"REPLAY:%1\">返信</A> <A HREF = \"FORWARD:%1\">転送</A></NOBR></TD>\r\n"
      "                    <TD id = \"size\"><NOBR>%2</NOBR></TD>\r\n"
      "                    <TD id = \"size\"><NOBR>Sato</NOBR></TD>\r\n"
      "                    </TR>\r\n                    \r\n                </TBODY>\r\n"
      "            </TABLE>\r\n\r\n        </BODY>\r\n\r\n    </HTML>");
  QString time = QString::fromUtf8(Filled("<+TIMESTAMP>"));
  profile_.Get().Objects.Remove(fixed_serial::kLayout);
  EXPECT_EQ(Page(), ToCodePage932(page.arg(QString::fromLatin1(id), time)));
  EXPECT_FALSE(hasNeighbours_);
  // On the screen the same colours, and none of another layout, have counterparts in the dark.
  const QByteArray shown = WithDarkColors(Page());
  const qsizetype dark = shown.indexOf("@media screen and (prefers-color-scheme: dark)");
  EXPECT_TRUE(dark > shown.indexOf("beige") && dark < shown.indexOf("</STYLE>"));
  const QByteArray other = Page().replace("beige", "white");
  EXPECT_EQ(WithDarkColors(other), other);
}

TEST_F(MessageListPageTest, AFolderHasItsOwnLayoutOrTheSharedOne) {
  Context& context = profile_.Get();
  const auto text = [this](const SerialId& folder) {
    folder_ = folder;
    return QString::fromLatin1(Page());
  };
  const QString nothing = QStringLiteral("class=\"none\"");
  EXPECT_FALSE(text(fixed_serial::kInbox).contains(nothing));
  ASSERT_TRUE(ShareLayout(context, QStringLiteral("table"), OwnLayouts::Kept));
  EXPECT_TRUE(text(fixed_serial::kInbox).contains(nothing));  // an empty folder says so
  Store("in");
  Store("out", 3);
  EXPECT_TRUE(text(fixed_serial::kInbox).contains(QStringLiteral("<td class=\"from\">Sato</td>")));
  // Whom one's own messages went to, for all have one sender.
  Store("draft", kStatusEdit);
  for (const SerialId& own : {fixed_serial::kOutbox, fixed_serial::kEditWait}) {
    EXPECT_TRUE(text(own).contains(QStringLiteral("<td class=\"from\">t@x</td>")));
  }
  Settings(context).Bag()->Let(QStringLiteral("RowHeight"), static_cast<int>(RowHeight::Dense));
  EXPECT_TRUE(text(fixed_serial::kInbox).contains(QStringLiteral("td { padding: 2px ")));
  // Whoever has made a layout keeps it until he says otherwise.
  EXPECT_EQ(Filled("mine"), QByteArray("mine"));
  EXPECT_EQ(CountOwnLayouts(context), 1);
  ASSERT_TRUE(ShareLayout(context, QStringLiteral("cards"), OwnLayouts::Kept));
  EXPECT_EQ(text(folder_), QStringLiteral("mine"));
  ASSERT_TRUE(ShareLayout(context, QStringLiteral("cards"), OwnLayouts::Removed));
  const QByteArray cards = Page();
  EXPECT_TRUE(cards.contains("<article"));
  const qsizetype toAll = cards.indexOf("REPLAYALL:");
  EXPECT_TRUE(cards.mid(toAll, 100).contains(ToCodePage932(QStringLiteral("全員に返信"))));
}

TEST_F(MessageListPageTest, AnEmptyFolderEndsAtTheFirstDataTag) {
  const QByteArray page = Page();
  EXPECT_TRUE(page.endsWith("<TR>\r\n                    <TD id = \"size\"><NOBR>"))
      << page.right(80).toStdString();
}

// The stored form of addresses has words that nobody looks for.
TEST_F(MessageListPageTest, ASearchLooksAtWhatIsShownOfAddresses) {
  Store("A");
  MessageListPages pages(profile_.Get());
  const auto found = [&](const char16_t* text) {
    const QString path =
        pages.CreateMessageListPage(folder_, 1, QString::fromUtf16(text)).ValueOr({}).content;
    const bool any = ReadFile(path).contains("preview:");
    QFile::remove(path);
    return any;
  };
  EXPECT_TRUE(found(u"sato"));
  EXPECT_TRUE(found(u"s@x"));
  EXPECT_FALSE(found(u"FROM"));
  EXPECT_FALSE(found(u"to:"));
}

TEST_F(MessageListPageTest, WhatIsFoundInAllFoldersSaysWhereItIs) {
  Context& context = profile_.Get();
  const SerialId filed = Store("hit filed");
  Store("hit received");
  Store("hit sent", kStatusSent);
  const auto folder = MakeManualFolder(context, QStringLiteral("棚<1>"));
  ASSERT_TRUE(folder && MoveMessages(context, {.into = {{*folder, {filed}}}}));
  Settings(context).Bag()->Let(QStringLiteral("PageEscape"), true);
  Filled("<+MAIL>[<+SUBJECT>|<+PLACE>]<+MAIL>");
  const auto page = [&](bool everywhere) {
    const auto made =
        MessageListPages(context).FolderPage(folder_, 1, {QStringLiteral("hit"), everywhere});
    return made.ValueOr({}).content;
  };
  const QByteArray all = page(true);
  for (const char16_t* row :
       {u"[hit filed|棚&lt;1&gt;]", u"[hit received|受信]", u"[hit sent|送信]"}) {
    EXPECT_TRUE(all.contains(ToCodePage932(QString::fromUtf16(row)))) << all.toStdString();
  }
  EXPECT_TRUE(page(false).contains("[hit received|]"));
}

TEST_F(MessageListPageTest, APageIsItsUsersAlone) {
  Store("A");
  const QString path =
      MessageListPages(profile_.Get()).CreateMessageListPage(folder_, 1).ValueOr({}).content;
  EXPECT_EQ(QFile::permissions(path) & (QFileDevice::ReadGroup | QFileDevice::ReadOther |
                                        QFileDevice::WriteGroup | QFileDevice::WriteOther),
            QFileDevice::Permissions());
  QFile::remove(path);
}

TEST_F(MessageListPageTest, TheNextAndTheEarlierOneOfOneMoment) {
  SerialIds serials;
  for (int i = 0; i < 3; ++i) serials.append(Store("A"));
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  ASSERT_TRUE(profile_.Get().Data.Execute(
      QStringLiteral("UPDATE mail SET FIELD_TIMESTAMP = '2026-01-01 00:00:00.000'")));
  profile_.Get().Data.Close();
  std::sort(serials.begin(), serials.end());
  const auto neighbour = [this](const SerialId& serial, int step) {
    return NeighbourMessage(profile_.Get(), folder_, search_, serial, step);
  };
  EXPECT_EQ(neighbour(serials[1], 1), serials[2]);
  EXPECT_EQ(neighbour(serials[1], -1), serials[0]);
  EXPECT_EQ(neighbour(serials[0], -1), SerialId());
  EXPECT_EQ(neighbour(serials[2], 1), SerialId());
  // In a search only what it finds is beside one another.
  const SerialId found = Store("Bee");
  search_ = QStringLiteral("Be");
  EXPECT_EQ(neighbour(serials[0], 1), found);
  EXPECT_EQ(neighbour(found, -1), SerialId());
}

TEST_F(MessageListPageTest, TheNextUnopenedOneFollowsTheOrderOfThePages) {
  SerialIds serials;
  for (int i = 0; i < 4; ++i) serials.append(Store(i == 2 ? "Bee" : "A"));
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  for (int i = 0; i < 4; ++i) {
    ASSERT_TRUE(profile_.Get().Data.Execute(
        QStringLiteral("UPDATE mail SET FIELD_TIMESTAMP = '2026-01-0%1 00:00:00.000' "
                       "WHERE SERIALID = '%2'")
            .arg(i + 1)
            .arg(serials[i].Text())));
  }
  profile_.Get().Data.Close();
  ASSERT_TRUE(SetMark(profile_.Get(), {serials[1]}, kFlagNew, false));
  const auto next = [this](const SerialId& from) {
    return NextUnopened(profile_.Get(), folder_, search_, from);
  };
  const auto before = [this](const SerialId& message) {
    return RowsBefore(profile_.Get(), folder_, search_, message);
  };
  EXPECT_EQ(next({}), serials[0]);
  EXPECT_EQ(next(serials[0]), serials[2]) << "the opened one is passed over";
  EXPECT_EQ(next(serials[3]), serials[0]) << "from the begin again";
  EXPECT_EQ(before(serials[3]), 3);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("NewestFirst"), true);
  EXPECT_EQ(next(serials[2]), serials[0]);
  EXPECT_EQ(next({}), serials[3]);
  EXPECT_EQ(before(serials[3]), 0);
  EXPECT_FALSE(before(u"none"_id));
  search_ = QStringLiteral("Be");
  EXPECT_EQ(next(serials[3]), serials[2]);
  EXPECT_EQ(next(serials[2]), SerialId()) << "itself is not the next";
  EXPECT_EQ(before(serials[2]), 0);
  search_ = QStringLiteral("from");
  EXPECT_EQ(next({}), SerialId()) << "what stands before each address is not searched";
}

TEST_F(MessageListPageTest, UnopenedMessagesAreThoseOfTheFoldersAlternatives) {
  const auto folder = std::make_shared<Disk>(QStringLiteral("folder_x"));
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), QStringLiteral("x"));
  folder->Let(QStringLiteral("SqlUse"), true);
  folder->Let(QStringLiteral("Sql"), QStringLiteral("STATUS = 3 OR STATUS = 4"));
  profile_.Get().Objects.Add(folder);
  const SerialId opened = Store("opened", 3);
  Store("unopened");
  Disk request(opened);
  request.Let(QStringLiteral("flag"), QStringLiteral("000"));
  ASSERT_TRUE(MailStore(profile_.Get()).UpdateMessageState(kStateFlag, request, true));
  EXPECT_EQ(CountUnread(profile_.Get(), folder->Serial()).ValueOr(-1), 1);
}

TEST_F(MessageListPageTest, OnlyReceivedMessagesCanBeAnswered) {
  Store("sent", 3);
  folder_ = fixed_serial::kOutbox;
  const QByteArray page = Page();
  EXPECT_TRUE(page.contains("preview:"));
  EXPECT_FALSE(page.contains("REPLAY:") || page.contains("FORWARD:"));
  EXPECT_FALSE(page.contains("\x95\xD4\x90\x4D"));  // 返信
}

TEST_F(MessageListPageTest, TagsAreFilled) {
  const QByteArray id =
      Store("", 4, "X-Priority: 1\r\nContent-Type: image/png\r\n").Text().toLatin1();
  const auto row = [this](const char* tags) {
    return Filled(("<+MAIL>" + QByteArray(tags) + ";<+MAIL>").constData());
  };
  EXPECT_EQ(row("<+subject>"), ToCodePage932(QStringLiteral("(件名なし);")));
  EXPECT_EQ(row("<+FLAG><NEW><CLIP><PRIORITY>"), ToCodePage932(QStringLiteral("○＠↑;")));
  EXPECT_EQ(row("<+FLAG><PRIORITY><NEW>"), ToCodePage932(QStringLiteral("↑<NEW>;")));
  EXPECT_EQ(row("<+MAILADDRESS>"), QByteArray("Sato<BR>t@x<BR>b@x;"));
  EXPECT_EQ(row("<+MAILADDRESS><FROM>!"), QByteArray("Sato!;"));
  EXPECT_EQ(row("<+MAILADDRESS><TO><BCC>"), QByteArray("t@x<BR>b@x;"));
  EXPECT_EQ(row("<+MAILADDRESS><CC>"), QByteArray(";"));
  EXPECT_EQ(row("<+MAILADDRESS><TO><BCC><SHORT>"), QByteArray("t@x \x91\xbc\x31\x96\xbc;"));
  EXPECT_EQ(row("<+MAILADDRESS><TO><SHORT>"), QByteArray("t@x;"));
  EXPECT_EQ(row("<+DIALOG><REPLAYALL>x<+DIALOG>"), "<A HREF = \"REPLAYALL:" + id + "\">x</A>;");
  // A folder's tag needs no row, so it is filled once more when the rows have ended.
  EXPECT_EQ(row("<FROM><+FOLDER><NAME>"), ToCodePage932(QStringLiteral("<FROM>受信;<FROM>受信")));
  EXPECT_EQ(
      Filled("a<+SUBJECT>b<+FOLDER><TOOLTIPTEXT>"),
      ToCodePage932(QStringLiteral("a(件名なし)b受信メッセージが保存されているフォルダです。")));
  EXPECT_EQ(row("<+SIZE>"), QByteArray("0.10;"));
  EXPECT_EQ(Filled(""), QByteArray());
}

TEST_F(MessageListPageTest, WhatMailContributesIsEscapedWhenTheSettingSaysSo) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("PageEscape"), true);
  Store("<script>alert(1)</script> <+FOLDER><NAME>");
  const QByteArray page = Page();
  EXPECT_TRUE(page.contains("&lt;script&gt;alert(1)&lt;/script&gt; &lt;+FOLDER&gt;"));
  EXPECT_FALSE(page.contains("<script>"));
}

TEST_F(MessageListPageTest, SendersAndTextsAreEscapedAndKeepTheirDirectionToThemselves) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("PageEscape"), true);
  profile_.Store(
      "From: \"<b>Sato\" <s@x>\r\nSubject: "
      "=?utf-8?B?4oCuZ3BqLmV4ZSDXqdec15XXnQ==?=\r\n\r\n<i>text\r\n",
      4);
  const QByteArray row = Filled("<+SUBJECT>|<+MAILADDRESS><FROM>|<+TEXT>");
  EXPECT_TRUE(row.contains("|&lt;b&gt;Sato|&lt;i&gt;text")) << row.toStdString();
  // Its letters from right to left turn nothing around it.
  EXPECT_TRUE(row.startsWith("<bdi>[U+202E]gpj.exe ")) << row.toStdString();
}

TEST_F(MessageListPageTest, NoNameHidesTheAddressThatAMessageCameFrom) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("PageEscape"), true);
  const auto shown = [this](const char16_t* name, const char* subject = "s") {
    folder_ = fixed_serial::kInbox;
    const SerialId id =
        profile_.Store("From: =?utf-8?B?" + QString::fromUtf16(name).toUtf8().toBase64() +
                           "?= <evil@x.test>\r\nSubject: =?utf-8?B?" +
                           QByteArray(subject).toBase64() + "?=\r\n\r\nx\r\n",
                       4);
    const QList<QByteArray> rows =
        Filled("<+MAIL>[<+SUBJECT>|<+MAILADDRESS><FROM>]\n<+MAIL>").split('\n');
    for (const QByteArray& row : rows) last_ = row.endsWith(']') ? row : last_;
    return QString::fromUtf8(last_).section(u'|', 1).chopped(1);
  };
  EXPECT_EQ(shown(u"Sato"), QStringLiteral("Sato"));
  for (const char16_t* unseen :
       {u"\u200B\u2060", u"\u3164", u"\u061C", u"\u180B", u"\uFFFC", u"\u2065", u"\u00A0\u3000"}) {
    EXPECT_EQ(shown(unseen), QStringLiteral("evil@x.test"))
        << QString::fromUtf16(unseen).toUcs4()[0];
  }
  for (const char16_t* imitating :
       {u"ceo@bank.example", u"ceo＠bank.example", u"ceo﹫bank.example",
        u"ceo@bank.example                                                  evil@x.test"}) {
    EXPECT_TRUE(shown(imitating).startsWith(QStringLiteral("evil@x.test (")))
        << QString::fromUtf16(imitating).toStdString();
  }
  EXPECT_EQ(shown(u"evil@x.test"), QStringLiteral("evil@x.test"));
  shown(u"Sato", "\xE2\x80\x8B\xE3\x85\xA4");
  EXPECT_TRUE(last_.startsWith(ToCodePage932(QStringLiteral("[(件名なし)|"))));
}

TEST_F(MessageListPageTest, ARowTemplateThatNeverEndsIsWrittenOnce) {
  Store("a");
  Store("b");
  SetRows(0);
  EXPECT_EQ(Filled("x<+MAIL>yy"), "xyy");
  EXPECT_EQ(Filled("x<+MAIL>[<+SUBJECT>]"), "x[a[b[");
}

TEST_F(MessageListPageTest, AnOpenLinkSectionEndsWithItsPage) {
  const QByteArray link = "1<A HREF = \"preview:" + Store("a").Text().toLatin1() + "\">2";
  SetRows(1);
  Filled("");  // makes the layout
  MessageListPages pages(profile_.Get());
  const auto filled = [&](const char* html) {
    profile_.Get()
        .Objects.Find(fixed_serial::kLayout)
        ->Let(folder_.Text() + QStringLiteral("_html"), QString::fromUtf8(html));
    const QString path = pages.CreateMessageListPage(folder_, 1).ValueOr({}).content;
    const QByteArray bytes = ReadFile(path);
    QFile::remove(path);
    return bytes;
  };
  EXPECT_EQ(filled("<+MAIL>1<+DIALOG>2<+MAIL>.."), link + "..");
  EXPECT_EQ(filled("<+MAIL>1<+DIALOG>2<+DIALOG>3<+MAIL>.."), link + "</A>3..");
}

// Of both the engine takes fewer values in a statement.
TEST_F(MessageListPageTest, ManyHitsAreShownInAFolderOfManyLiterals) {
  const SerialIds messages{Store("word"), Store("word, too"), Store("one"), Store("it's 7")};
  QStringList literals;
  for (int i = 0; i < 1200; ++i) literals.append(QStringLiteral("'it''s %1'").arg(i));
  profile_.Get().Objects.Find(folder_)->Let(
      QStringLiteral("Sql"), QStringLiteral("FIELD_SUBJECT NOT IN (%1)").arg(literals.join(u',')));
  FolderSearch search(QStringLiteral("word"));
  search.hits = messages.mid(2);
  for (int i = 0; i < 2000; ++i) {
    search.hits->prepend(SerialId(QStringLiteral("gone%1").arg(i)));
  }
  MessageListPages pages(profile_.Get());
  EXPECT_EQ(pages.CountFound(folder_, search), 1);
  search.hasMore = true;
  EXPECT_EQ(pages.CountFound(folder_, search), 3) << "with all that subjects have";
}

TEST_F(MessageListPageTest, AHostileConditionGivesNoPage) {
  const DiskPtr inbox = profile_.Get().Objects.Find(folder_);
  inbox->Let(QStringLiteral("Sql"), QStringLiteral("1 = 1; DELETE FROM mail"));
  const auto page = MessageListPages(profile_.Get()).CreateMessageListPage(folder_, 1);
  ASSERT_FALSE(page);
  EXPECT_FALSE(page.Error().text.isEmpty());
}

TEST(PageTags, ChildrenAreReadInTableOrderAndUpToTheLimit) {
  const PageTagTable table = CreatePageTagTable();
  const QByteArray text = "<replay><FORWARD>x";
  const FoundChildTags all = ReadChildTags(text, table[1], 0);
  EXPECT_EQ(all.indices, QList<qsizetype>({0, 2}));
  EXPECT_EQ(all.end, text.size() - 1);
  // the limit is met after one more
  EXPECT_EQ(ReadChildTags(text, table[1], 0, 1).end, text.size() - 1);
  EXPECT_FALSE(MatchTagPattern("<+MAI", table[8].section, 0));
  EXPECT_EQ(DefaultPageTemplate().count(QStringLiteral("\r\n")), 45);
}

TEST(LinkCommand, CommandsAreReadInAnyCase) {
  const auto reply = ReadLinkCommand(QStringLiteral("REPLAYALL:mail_x%40y"));
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->mode, OpenMode::ReplyAll);
  EXPECT_TRUE(reply->isNew);
  EXPECT_EQ(reply->serialId, u"mail_x@y"_id);
  EXPECT_FALSE(ReadLinkCommand(QStringLiteral("preview:a"))->isNew);
  EXPECT_FALSE(ReadLinkCommand(QStringLiteral("http://x/preview:a")));
  EXPECT_FALSE(ReadLinkCommand(QStringLiteral("preview")));
}

}  // namespace
}  // namespace vorn
