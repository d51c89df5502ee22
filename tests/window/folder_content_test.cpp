// What a folder's page shows: layouts, links, and mail that means harm.

#include <tuple>

#include "auxiliary/window/console_window.h"
#include "mail/window/message_window.h"
#include "present/folder_layout.h"
#include "present/window/layout_window.h"
#include "storage/databases.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

class FolderContentTest : public FolderPageTest {};

TEST_F(FolderContentTest, WhatHostileMailAsksForDoesNotHappen) {
  WebSite site;
  const QByteArray url = site.Url();
  const QByteArray hostile =
      "<script>document.title='owned';location='URL/script'</script>"
      "<img src=URL/img onerror=\"document.title='owned'\">"
      "<meta http-equiv=refresh content=\"0;url=URL/refresh\">"
      "<link rel=stylesheet href=URL/style><link rel=prefetch href=URL/prefetch>"
      "<style>@import url(URL/import);body{background:url(URL/background)}</style>"
      "<iframe src=URL/frame></iframe><iframe src=file:///etc/passwd></iframe>"
      "<object data=URL/object></object><embed src=URL/embed><video src=URL/video></video>"
      "<base href=URL/base/><svg onload=\"document.title='owned'\"></svg>"
      "<form action=URL/form><input type=submit id=f value=send></form>"
      "<a id=j href=\"javascript:document.title='owned'\">j</a> "
      "<a id=l href=file:///etc/passwd>l</a> <a id=w href=URL/link target=_blank>w</a> "
      "<a id=p href=URL/ping ping=URL/ping2>p</a>"
      "<a href=preview:%zz>z</a><img name=querySelectorAll><img name=createElement><img "
      "name=addEventListener>";
  QByteArray field = hostile;
  field.replace("URL", url);
  // In clear, as the documented page has it: everything above becomes part of the page.
  Begin(1, 100, false, false,
        "To: =?utf-8?B?" + field.toBase64() + "?= <x@example.jp>\r\nCc: \"" +
            QByteArray("<img src=URL/cc>").replace("URL", url) + "\" <c@example.jp>\r\n");
  // The default layout shows subject and sender; this message is hostile in both.
  {
    Context& context = program_->GetContext();
    Disk request(QStringLiteral("mail_hostile"));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    ASSERT_TRUE(MailStore(context).StoreMessage(
        request, "From: =?utf-8?B?" + field.toBase64() +
                     "?= <x@example.jp>\r\nSubject: =?utf-8?B?" + field.toBase64() + "?=\r\n\r\n" +
                     field + "\r\n"));
    program_->Parent()->Pages().Messages().MessageStored();
  }
  ASSERT_TRUE(AwaitScript(QStringLiteral("document.getElementById('p') !== null")))
      << "the message is on the page";
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 2"))) << "keys still act";
  for (const char* id : {"f", "j", "l", "w", "p"}) {
    SCOPED_TRACE(id);
    const QString place = QStringLiteral(
        "(() => { const e = document.getElementById('%1'); e.scrollIntoView();"
        " const r = e.getBoundingClientRect(); return [r.x + r.width / 2, r.y + r.height / 2]; "
        "})()");
    const QVariantList at = Script(place.arg(QString::fromLatin1(id))).toList();
    ASSERT_EQ(at.size(), 2);
    ClickPage(QPoint(at[0].toInt(), at[1].toInt()));
    AwaitPainted(*View());
    EXPECT_NE(View()->title(), QStringLiteral("owned"));
    EXPECT_EQ(View()->url().scheme(), QStringLiteral("vorn-page"));
    EXPECT_EQ(Browsers().size(), 1U);
    EXPECT_TRUE(PageText().contains(QStringLiteral("No1."))) << "the page is still there";
  }
  EXPECT_EQ(site.asked, QList<QByteArray>()) << "the network was asked";
  EXPECT_EQ(TopLevel<MessageWindow>(), nullptr);
}

// The links that act on a message are there for who means it, and take no room from its subject.
TEST_F(FolderContentTest, TheTableLeavesTheSubjectItsRoom) {
  Begin(3, 100);
  ASSERT_TRUE(ShareLayout(program_->GetContext(), QStringLiteral("table"), OwnLayouts::Removed));
  MadeAnewBy([this] { Browser()->Refresh(); });
  FocusPage();
  Press(Qt::Key_Home);
  for (const auto& [width, share, shown] :
       {std::tuple{320, 0.6, 1}, {400, 0.6, 1}, {560, 0.4, 1}, {800, 0.5, 3}}) {
    View()->setFixedWidth(width);
    ASSERT_TRUE(AwaitScript(QStringLiteral("innerWidth === %1").arg(width)));
    EXPECT_GE(Script(QStringLiteral("(() => { const cell = document.querySelector('td.subject');"
                                    "  const style = getComputedStyle(cell);"
                                    "  return (cell.clientWidth - parseFloat(style.paddingLeft) -"
                                    "          parseFloat(style.paddingRight)) / innerWidth; })()"))
                  .toDouble(),
              share)
        << width;
    EXPECT_EQ(
        Script(QStringLiteral("[...document.querySelectorAll('.do')].filter("
                              "    e => getComputedStyle(e).visibility === 'visible').length"))
            .toInt(),
        shown)
        << width;
    EXPECT_EQ(
        Script(QStringLiteral("[...document.querySelectorAll('td.date')].filter(e =>"
                              "    e.offsetWidth > 0 && e.scrollWidth <= e.clientWidth).length"))
            .toInt(),
        3)
        << "dates are neither hidden nor cut at " << width;
    EXPECT_TRUE(Script(QStringLiteral("(() => { const cell = document.querySelector('td.subject');"
                                      "  const end = cell.getBoundingClientRect().right -"
                                      "      parseFloat(getComputedStyle(cell).paddingRight);"
                                      "  return end <= cell.querySelector('.do')"
                                      "      .getBoundingClientRect().left; })()"))
                    .toBool())
        << "the subject ends before the pictures at " << width;
  }
}

TEST_F(FolderContentTest, TheCurrentRowStaysInSightWhereRowsGrow) {
  Begin(60, 100);
  ASSERT_TRUE(ShareLayout(program_->GetContext(), QStringLiteral("table"), OwnLayouts::Removed));
  MadeAnewBy([this] { Browser()->Refresh(); });
  FocusPage();
  Press(Qt::Key_Home);
  for (int i = 0; i < 30; ++i) Press(Qt::Key_Down);
  const QString isInSight = QStringLiteral(
      "(() => { const box = document.querySelector('.vorn-current').getBoundingClientRect();"
      " return box.top >= -1 && box.bottom <= innerHeight + 1; })()");
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_31' && scrollY > 0")));
  for (const int width : {320, 800, 320}) {
    View()->setFixedWidth(width);
    EXPECT_TRUE(AwaitScript(QStringLiteral("innerWidth === %1").arg(width)));
    AwaitPainted(*View());
    EXPECT_TRUE(Script(isInSight).toBool()) << width;
  }
}

// Their column is as wide as they need, and stands in line.
TEST_F(FolderContentTest, ToWhomAMessageWentIsSeenBesideItsSubject) {
  Begin(1, 100);
  Context& context = program_->GetContext();
  ASSERT_TRUE(ShareLayout(context, QStringLiteral("table"), OwnLayouts::Removed));
  const QByteArray to = "To: " + QByteArray("recipient").repeated(3) + "@example.jp\r\n";
  for (const int subjects : {0, 60}) {
    Disk request(SerialId(QStringLiteral("mail_sent%1").arg(subjects)));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusSent));
    request.Let(QStringLiteral("Flag"), QStringLiteral("000"));
    const QByteArray subject = QByteArray("subject ").repeated(subjects);
    ASSERT_TRUE(
        MailStore(context).StoreMessage(request, to + "Subject: " + subject + "\r\n\r\nbody\r\n"));
  }
  OpenFolder(fixed_serial::kOutbox);
  View()->setFixedWidth(800);
  ASSERT_TRUE(AwaitScript(QStringLiteral("innerWidth === 800 && vorn.count() === 2")));
  const auto in = [this](const char* message, const char* column, const char* asked) {
    return Script(QStringLiteral("(() => { const cell = document.querySelector('a[href$=\"%1\"]')"
                                 ".closest('tr').querySelector('td.%2'); return %3; })()")
                      .arg(QLatin1String(message), QLatin1String(column), QLatin1String(asked)))
        .toDouble();
  };
  const char* cut = "cell.scrollWidth - cell.clientWidth";
  for (const char* message : {"mail_sent0", "mail_sent60"}) {
    EXPECT_LE(in(message, "from", cut), 0);
    EXPECT_GT(in(message, "subject", "cell.clientWidth / innerWidth"), 0.4);
    for (const char* column : {"subject", "date"}) {
      EXPECT_EQ(in(message, column,
                   "cell.getBoundingClientRect().left - document.querySelector('th.' + "
                   "cell.className).getBoundingClientRect().left"),
                0)
          << column;
    }
  }
  View()->setFixedWidth(500);
  ASSERT_TRUE(AwaitScript(QStringLiteral("innerWidth === 500")));
  EXPECT_GT(in("mail_sent60", "from", cut), 0);
  EXPECT_GT(in("mail_sent60", "subject", "cell.clientWidth / innerWidth"), 0.3);
  // In two lines whom it went to has the whole line but for the marks and the date.
  View()->setFixedWidth(400);
  ASSERT_TRUE(AwaitScript(QStringLiteral("innerWidth === 400")));
  EXPECT_LE(in("mail_sent60", "from", cut), 0);
}

TEST_F(FolderContentTest, ALayoutIsChosenWrittenAndSeenBeforeItIsKept) {
  Begin(3, 100);
  auto* edit = program_->Parent()->findChild<QMenu*>(QStringLiteral("menuDisplays"))->actions()[1];
  InModal<LayoutWindow>([edit] { edit->trigger(); },
                        [](LayoutWindow& window) {
                          auto& html = Child<QPlainTextEdit>(window, u"txHtml");
                          EXPECT_TRUE(html.toPlainText().startsWith(QStringLiteral("<HTML lang")));
                          html.setPlainText(QStringLiteral("<p>mine</p><+mail>"));
                          auto& tags = Child<QTableWidget>(window, u"lvTag");
                          QTextCursor end = html.textCursor();
                          end.movePosition(QTextCursor::End);
                          html.setTextCursor(end);
                          tags.setFocus();
                          const QString link = QStringLiteral("<+DIALOG>開く<+DIALOG>");
                          const auto found = tags.findItems(link, Qt::MatchExactly);
                          ASSERT_EQ(found.size(), 1);
                          tags.setCurrentCell(found[0]->row(), 0);
                          QTest::keyClick(&tags, Qt::Key_Return);
                          EXPECT_TRUE(html.toPlainText().endsWith(link))
                              << html.toPlainText().toStdString();
                          EXPECT_TRUE(window.isVisible()) << "Enter does not press OK as well";
                          test::TypeText(html, QStringLiteral("[<+SUBJECT>]<+MAIL>"));
                          // An answer may come as late as with the end of the page. One question
                          // at a time: many would keep a slow machine from drawing.
                          const auto text = std::make_shared<QString>();
                          const auto isAsked = std::make_shared<bool>(false);
                          EXPECT_TRUE(WaitFor([&] {
                            auto& page = *Child<QWebEngineView>(window, u"wbPreview").page();
                            if (!std::exchange(*isAsked, true)) {
                              page.toPlainText([text, isAsked](const QString& seen) {
                                *text = seen;
                                *isAsked = false;
                              });
                            }
                            return text->contains(QStringLiteral("[No3.]"));
                          })) << text->toStdString();
                          EXPECT_TRUE(text->contains(QStringLiteral("mine")));
                          window.cmOk_Click();
                        });
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("開く[No2.]")); }))
      << PageText().toStdString();
  // Who is asked about it and cancels changes no other folder.
  QAction* cards = nullptr;
  for (QAction* entry : program_->Parent()->findChildren<QAction*>()) {
    if (entry->data().toString() == u"cards") cards = entry;
  }
  ASSERT_NE(cards, nullptr);
  EXPECT_TRUE(NextMessageBox([cards] { cards->trigger(); }, Qt::Key_Escape).contains(u"自分で"));
  EXPECT_EQ(SharedLayout(program_->GetContext()), QString());
  // The ready-made ones, then the default one again, which leaves nothing stored.
  for (const int ready : {1, 2, 0}) {
    InModal<LayoutWindow>([edit] { edit->trigger(); },
                          [ready](LayoutWindow& window) {
                            auto& box = Child<QComboBox>(window, u"cbLayout");
                            EXPECT_EQ(box.currentIndex(), ready == 1 ? 3 : ready == 2 ? 1 : 2);
                            auto& html = Child<QPlainTextEdit>(window, u"txHtml");
                            const QString before = html.toPlainText();
                            box.setFocus();
                            QTest::keyClick(&box, Qt::Key_Home);
                            for (int i = 0; i < ready; ++i) QTest::keyClick(&box, Qt::Key_Down);
                            const QString after = html.toPlainText();
                            while (html.document()->isUndoAvailable()) html.undo();
                            EXPECT_EQ(html.toPlainText(), before);
                            while (html.document()->isRedoAvailable()) html.redo();
                            EXPECT_EQ(html.toPlainText(), after);
                            window.cmOk_Click();
                          });
    ASSERT_TRUE(WaitFor([&] {
      const QString text = PageText();
      return text.contains(ready == 2 ? QStringLiteral("body") : QStringLiteral("件名")) &&
             !text.contains(QStringLiteral("開く"));
    }));
    ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 3")));
  }
  const DiskPtr layouts = program_->GetContext().Objects.Find(fixed_serial::kLayout);
  ASSERT_NE(layouts, nullptr);
  EXPECT_FALSE(layouts->Get(fixed_serial::kInbox.Text() + QStringLiteral("_html")).isValid());
}

TEST_F(FolderContentTest, WhatComesAboveLeavesTheCurrentRowWhereItIs) {
  Begin(59, 20, true);
  FocusPage();
  Press(Qt::Key_Home);
  for (int i = 0; i < 8; ++i) Press(Qt::Key_Down);
  ASSERT_TRUE(WaitFor([this] { return Chosen() == Ids({49}); }));
  MadeAnewBy([this] {
    for (int i = 0; i < 8; ++i) {
      StoreReceived(program_->GetContext(), SerialId(QStringLiteral("mail_old%1").arg(i)),
                    "From: a@example.jp\r\nSubject: old\r\n\r\nbody\r\n",
                    QStringLiteral("2019-01-01 00:00:0%1").arg(i));
    }
    Browser()->Refresh();
  });
  EXPECT_TRUE(WaitFor([this] { return Chosen() == Ids({49}); }));
  // So much that it is on the next page now.
  for (int i = 0; i < 9; ++i) {
    StoreReceived(program_->GetContext(), SerialId(QStringLiteral("mail_older%1").arg(i)),
                  "From: a@example.jp\r\nSubject: older\r\n\r\nbody\r\n",
                  QStringLiteral("2018-01-01 00:00:0%1").arg(i));
  }
  Browser()->Refresh();
  EXPECT_TRUE(WaitFor(
      [this] { return Child<QLineEdit>(*Browser(), u"txPage").text() == QStringLiteral("4"); }));
  EXPECT_TRUE(WaitFor([this] { return Chosen() == Ids({49}); }));
}

}  // namespace
}  // namespace vorn
