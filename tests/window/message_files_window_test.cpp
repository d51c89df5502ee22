// What enters and leaves a message window as files, pages and pictures.

#include <QPrintDialog>
#include <QWebEngineScript>

#include "auxiliary/window/console_window.h"
#include "mail/codec/html/html_sanitizer.h"
#include "mail/print_page.h"
#include "mail/window/body/html_view.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "storage/window/file_dialogs.h"
#include "support/engine_answer.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

QString TextIn(const HtmlView& view) {
  return test::AnswerTo<QString>(
      [&view](const auto& then) { view.View()->page()->toPlainText(then); });
}

// Saves the window's message by its dialog.
bool SaveAs(MessageWindow& window, const QString& path) {
  auto* menu = window.findChild<QMenu*>(QStringLiteral("menuFiles"));
  return InModal<QFileDialog>([&] { menu->actions()[4]->trigger(); },
                              [&path](QFileDialog& dialog) {
                                EXPECT_EQ(dialog.windowTitle(), QStringLiteral("ファイルに保存"));
                                Child<QLineEdit>(dialog, u"fileNameEdit").setText(path);
                                QMetaObject::invokeMethod(&dialog, "accept");
                              });
}

TEST_F(MessageWindowTest, FilesAreWrittenAsTheyAre) {
  MessageWindow& window = OpenStored(kPlain, 4);
  const QString path = folder_.filePath(QStringLiteral("out.eml"));
  EXPECT_TRUE(SaveAs(window, path));
  EXPECT_EQ(test::ReadFile(path), kPlain);
}

// What stands in a row without Enter is saved and shown as it stands there.
TEST_F(MessageWindowTest, ARowThatIsBeingTypedInIsSavedAndShown) {
  MessageWindow& window = OpenStored(kDraft, kStatusEdit);
  const auto type = [&window](const char16_t* list, int column, const char16_t* box,
                              const QString& text) {
    auto& rows = Child<QTableWidget>(window, list);
    const int row = rows.rowCount() - 1;
    rows.setCurrentCell(row, column);
    rows.editItem(rows.item(row, column));
    Type(Child<QLineEdit>(window, box), text);
  };
  const QString path = folder_.filePath(QStringLiteral("typed.eml"));
  type(u"lvHeader", 0, u"txHeader", QStringLiteral("Mark: typed"));
  EXPECT_TRUE(SaveAs(window, path));
  EXPECT_TRUE(test::ReadFile(path).contains("X-Mark: typed\r\n"));
  type(u"lvMailaddress", 1, u"txMailaddress", QStringLiteral("last@example.jp"));
  Menu(window, u"menuViews").actions().last()->trigger();
  const auto* source = window.findChild<QDialog*>(QStringLiteral("source"));
  ASSERT_NE(source, nullptr);
  EXPECT_TRUE(source->findChild<QPlainTextEdit*>()->toPlainText().contains(u"last@example.jp"));
  type(u"lvHeader", 0, u"txHeader", QStringLiteral("Other: closed"));
  const SerialId serial = window.Tag();
  window.close();
  EXPECT_TRUE(Gone());
  const QByteArray stored = Column(serial, QStringLiteral("MAIL")).toByteArray();
  EXPECT_TRUE(stored.contains("X-Mark: typed\r\n") && stored.contains("X-Other: closed\r\n"));
}

// The line that ends a message of the program's own stays in the store.
TEST_F(MessageWindowTest, AWrittenMessageIsSavedWithoutItsEndMark) {
  for (const bool standard : {false, true}) {
    Settings(Context()).Bag()->Let(QStringLiteral("StandardHeaders"), standard);
    MessageWindow& window = OpenStored(kDraft, kStatusSent);
    const QString path = folder_.filePath(QStringLiteral("written.eml"));
    QFile::remove(path);
    EXPECT_TRUE(SaveAs(window, path));
    EXPECT_EQ(test::ReadFile(path).endsWith("\r\n.\r\n"), !standard);
    window.close();
    EXPECT_TRUE(Gone());
  }
}

TEST_F(MessageWindowTest, AttachmentsAreSavedAndProgramsAreWarnedOf) {
  MessageWindow& window = OpenStored(
      "From: a@example.jp\r\nSubject: s\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n"
      "\r\ntext\r\n--b\r\nContent-Type: application/octet-stream; name=\"run.exe\"\r\n"
      "Content-Transfer-Encoding: base64\r\n\r\nAAEC\r\n--b\r\n"
      "Content-Type: text/x-note; name=\"../../evil.txt\"\r\n\r\nnote\r\n--b--\r\n",
      4);
  auto& list = Child<AttachmentList>(window, u"lvClip");
  ASSERT_EQ(list.count(), 2);
  EXPECT_TRUE(list.item(0)->text().startsWith(QStringLiteral("run.exe（3 ")));
  list.setCurrentRow(0);
  EXPECT_TRUE(NextMessageBox([&list] { list.OpenCurrent(); }, Qt::Key_Escape)
                  .contains(QStringLiteral("害を及ぼすおそれ")));
  QDir().mkpath(folder_.filePath(QStringLiteral("out")));
  File("out/run.exe", "mine");  // is not written over
  test::Answering<QFileDialog, ConsoleWindow>(
      [&window] { Menu(window, u"menuEditsAttachments").actions()[0]->trigger(); },
      [this](QFileDialog& dialog) {
        test::AcceptIn(dialog, folder_.filePath(QStringLiteral("out")));
      },
      [](ConsoleWindow& choice) {
        EXPECT_EQ(choice.windowTitle(), QStringLiteral("添付ファイルの保存"));
        Child<QListWidget>(choice, u"ListView1").selectAll();
        Press(Child<QPushButton>(choice, u"cmOk"));
      });
  const QStringList saved = QDir(folder_.filePath(QStringLiteral("out"))).entryList(QDir::Files);
  ASSERT_EQ(saved.size(), 3);
  EXPECT_EQ(test::ReadFile(folder_.filePath(QStringLiteral("out/run.exe"))), "mine");
  for (const QString& name : saved) {
    if (name == u"run.exe" || !name.endsWith(QStringLiteral(".exe"))) continue;
    EXPECT_EQ(test::ReadFile(folder_.filePath(QStringLiteral("out/") + name)),
              QByteArray("\0\1\2", 3));
  }
  EXPECT_FALSE(saved.join(u' ').contains(u'/'));
  auto* told = window.findChild<QStatusBar*>();
  ASSERT_NE(told, nullptr);
  EXPECT_TRUE(told->isVisible());
  EXPECT_TRUE(told->currentMessage().contains(folder_.filePath(QStringLiteral("out"))));
}

TEST_F(MessageWindowTest, FilesAreAttachedByDialogAndTakenAway) {
  MessageWindow& window = New();
  auto& list = Child<AttachmentList>(window, u"lvClip");
  const QString first = File("one.txt", "1");
  // A key opens it wherever the window has the keyboard. The path is typed whole, and the folders
  // that it passes are not what is meant, though another part of the window has the focus.
  EXPECT_TRUE(InModal<QFileDialog>(
      [&] {
        QTest::keyClick(&Child<QLineEdit>(window, u"txSubject"), Qt::Key_A,
                        Qt::ControlModifier | Qt::ShiftModifier);
      },
      [&first](QFileDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("添付ファイルの選択"));
        auto& files = Child<QTreeView>(dialog, u"treeView");
        const auto needed = [&files] {  // for the dates of what is there
          return static_cast<QAbstractItemView&>(files).sizeHintForColumn(3);
        };
        EXPECT_TRUE(WaitFor([&] { return needed() > 0 && files.columnWidth(3) >= needed(); }, 9000))
            << needed() << ' ' << files.columnWidth(3);
        Child<QWidget>(dialog, u"listView").setFocus();
        QTest::keyClicks(&Child<QLineEdit>(dialog, u"fileNameEdit"), first);
        QMetaObject::invokeMethod(&dialog, "accept");
        if (dialog.isVisible()) dialog.reject();
      }));
  ASSERT_EQ(list.count(), 1);
  EXPECT_TRUE(list.isVisible());
  EXPECT_EQ(RememberedFolder(Context(), FileTask::Attach), QFileInfo(first).absolutePath());
  list.Input().AddFiles({File("二.txt", "22"), File("三.txt", "333")});
  ASSERT_EQ(list.count(), 3);
  list.item(0)->setSelected(true);
  list.item(1)->setSelected(true);
  QTest::keyClick(&list, Qt::Key_Delete);
  ASSERT_EQ(list.count(), 1);
  EXPECT_EQ(list.Attachments()[0].name, QStringLiteral("三.txt"));
}

TEST_F(MessageWindowTest, AllAttachmentsAreSavedBesideWhatIsThereExceptOneThatFails) {
  MessageWindow& window = New();
  auto& list = Child<AttachmentList>(window, u"lvClip");
  const QString out = folder_.filePath(QStringLiteral("all"));
  QDir().mkpath(out);
  const QString gone = File("gone.txt", "0");
  list.Input().AddFiles({gone, File("all/a.txt", "1"), File("a.txt", "2")});
  QFile::remove(gone);
  QString told;
  QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, list.mapToGlobal(QPoint()));
  test::Answering<QMenu, QFileDialog, QMessageBox>(
      [&] {
        QApplication::sendEvent(list.viewport(), &asked);
        EXPECT_TRUE(WaitFor([&told] { return !told.isEmpty(); }));
      },
      [](QMenu& menu) {
        for (QAction* entry : menu.actions()) {
          if (entry->text().startsWith(QStringLiteral("すべて保存"))) menu.setActiveAction(entry);
        }
        // Its own time would not come again before this has returned.
        QTimer::singleShot(0, &menu, [&menu] { QTest::keyClick(&menu, Qt::Key_Return); });
      },
      [&out](QFileDialog& dialog) { test::AcceptIn(dialog, out); },
      [&told](QMessageBox& box) {
        told = box.text();
        box.button(QMessageBox::Ok)->click();
      });
  EXPECT_TRUE(told.contains(u"gone.txt") && !told.contains(u"a.txt\n")) << qPrintable(told);
  EXPECT_EQ(QDir(out).entryList(QDir::Files),
            QStringList({QStringLiteral("a (2).txt"), QStringLiteral("a (3).txt"),
                         QStringLiteral("a.txt")}));
  EXPECT_EQ(test::ReadFile(out + QStringLiteral("/a (3).txt")), "2");
  const auto* said = window.findChild<QStatusBar*>();
  EXPECT_TRUE(said != nullptr && said->currentMessage().startsWith(u'2'));
}

// Stands for the system's program that opens files.
class FileOpener : public QObject {
  Q_OBJECT

 public:
  QList<QUrl> opened;

 public Q_SLOTS:
  void Open(const QUrl& url) { opened.append(url); }
};

TEST_F(MessageWindowTest, WorkingFilesGoWithTheWindow) {
  FileOpener opener;
  QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "Open");
  MessageWindow& window = OpenStored(
      "From: a@example.jp\r\nSubject: s\r\nContent-Type: application/pdf; name=\"a.pdf\"\r\n"
      "Content-Transfer-Encoding: base64\r\n\r\nJVBERi0xLjQK\r\n",
      4);
  auto& list = Child<AttachmentList>(window, u"lvClip");
  list.setCurrentRow(0);
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Return);
  ASSERT_EQ(opener.opened.size(), 1);
  const QString path = opener.opened[0].toLocalFile();
  EXPECT_EQ(test::ReadFile(path), QByteArray("%PDF-1.4\n"));
  window.close();
  ASSERT_TRUE(Gone());
  EXPECT_TRUE(WaitFor([&path] { return !QFileInfo::exists(path); }));
  QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

TEST_F(MessageWindowTest, AFullDiskIsToldAndTheTextStays) {
  const QString disk = folder_.filePath(QStringLiteral("disk"));
  QDir().mkpath(disk);
  const QStringList mount = {QStringLiteral("-t"),    QStringLiteral("tmpfs"),
                             QStringLiteral("-o"),    QStringLiteral("size=64k"),
                             QStringLiteral("tmpfs"), disk};
  if (QProcess::execute(QStringLiteral("mount"), mount) != 0) GTEST_SKIP() << "cannot mount";
  QFile rest(disk + QStringLiteral("/rest"));
  ASSERT_TRUE(rest.open(QIODevice::WriteOnly));
  while (rest.write(QByteArray(4096, 'x')) > 0 && rest.flush()) continue;
  rest.close();
  MessageWindow& window = OpenStored(kPlain, 4);
  const QString told = test::AnswerBox(
      [&] { EXPECT_TRUE(SaveAs(window, disk + QStringLiteral("/out.eml"))); }, QMessageBox::Ok);
  EXPECT_TRUE(told.contains(QStringLiteral("ディスクの空き容量"))) << told.toStdString();
  EXPECT_EQ(QDir(disk).entryList(QDir::Files).size(), 1) << "no file that lacks its end";
  EXPECT_TRUE(window.isVisible());
  window.close();
  EXPECT_TRUE(Gone());
  QProcess::execute(QStringLiteral("umount"), {disk});
}

TEST_F(MessageWindowTest, HtmlIsShownWithoutScriptsNetworkOrLinksOfItsOwn) {
  QTcpServer remote;
  ASSERT_TRUE(remote.listen(QHostAddress::LocalHost));
  const QByteArray base = "http://127.0.0.1:" + QByteArray::number(remote.serverPort());
  MessageWindow& window = OpenStored(
      "From: a@b\r\nSubject: s\r\nContent-Type: text/html; charset=utf-8\r\n\r\n<html><head>"
      "<meta http-equiv=refresh content='0;url=" +
          base + "/refresh'><link rel=stylesheet href='" + base +
          "/style'></head><body onload='document.title=1'><script>document.body.innerHTML="
          "'scripted'</script><p>本文</p><img src='" +
          base + "/pixel.png'><iframe src='" + base + "/frame'></iframe><form action='" + base +
          "/form'><input type=submit></form>"
          "<a href='https://real.example/x' >http://shown.example</a>"
          "<p><a href='mailto:sato@example.jp?subject=hi'>Sato</a></body></html>\r\n",
      4);
  auto& tabs = Child<QTabWidget>(window, u"tsBody");
  ASSERT_TRUE(tabs.isTabVisible(1));
  tabs.setCurrentIndex(0);
  EXPECT_TRUE(
      Child<QPlainTextEdit>(window, u"txMemo").toPlainText().contains(QStringLiteral("本文")));
  tabs.setCurrentIndex(1);
  auto* view = window.findChild<HtmlView*>();
  ASSERT_NE(view, nullptr);
  auto& images = Child<QPushButton>(*view, u"cmRemoteImages");
  ASSERT_TRUE(WaitFor([&images] { return images.isVisible(); }));
  QString text;
  ASSERT_TRUE(WaitFor([&] { return !(text = TextIn(*view)).isEmpty(); }));
  EXPECT_FALSE(remote.hasPendingConnections());
  // Nothing of it is on the disk.
  EXPECT_FALSE(view->View()->url().isLocalFile());
  for (const QFileInfo& page :
       QDir(Context().TempFolder).entryInfoList({QStringLiteral("*.html")})) {
    QFile file(page.filePath());  // the folder's, which is there until it has been read
    if (!file.open(QIODevice::ReadOnly)) continue;
    EXPECT_FALSE(file.readAll().contains("shown.example"));
  }
  EXPECT_TRUE(text.contains(QStringLiteral("本文")));
  EXPECT_FALSE(text.contains(QStringLiteral("scripted")));
  EXPECT_TRUE(
      test::AnswerBox([view] { ClickLink(*view->View(), QStringLiteral("a[href^=https]")); },
                      QMessageBox::No)
          .contains(QStringLiteral("https://real.example/x")));
  // An address begins a message of the program's own.
  ClickLink(*view->View(), QStringLiteral("a[href^=mailto]"));
  const auto written = [&window] { return OtherThan(window); };
  ASSERT_TRUE(WaitFor([&] { return written() != nullptr; }));
  EXPECT_EQ(Child<QTableWidget>(*written(), u"lvMailaddress").item(1, 1)->text(),
            QStringLiteral("sato@example.jp"));
  NextMessageBox([&] { written()->close(); }, Qt::Key_N);
  const auto mayReach = std::exchange(RemoteImageLoader::MayReach, nullptr);
  Press(images);
  ASSERT_TRUE(WaitFor([&remote] { return remote.hasPendingConnections(); }));
  QByteArray asked;
  QTcpSocket* socket = remote.nextPendingConnection();
  ASSERT_TRUE(WaitFor([&] { return (asked += socket->readAll()).contains("\r\n\r\n"); }));
  EXPECT_TRUE(asked.startsWith("GET /pixel.png")) << asked.toStdString();
  QBuffer png;
  QImage(7, 5, QImage::Format_RGB32).save(&png, "PNG");
  socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nConnection: close\r\n\r\n" +
                png.data());
  socket->disconnectFromHost();
  const auto width = [view] {
    return test::AnswerTo<QVariant>([view](const auto& then) {
      view->View()->page()->runJavaScript(QStringLiteral("document.images[0].naturalWidth"),
                                          QWebEngineScript::ApplicationWorld, then);
    });
  };
  ASSERT_TRUE(WaitFor([&width] { return width().toInt() == 7; }));
  EXPECT_FALSE(remote.hasPendingConnections());  // nor has one come before it
  RemoteImageLoader::MayReach = mayReach;
}

bool HasInk(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixelColor(x, y).lightness() < 64) return true;
    }
  }
  return false;
}

// The head of a printed mail is the program's word for who sent it.
TEST_F(MessageWindowTest, WhateverAnHtmlMailSaysItsPrintedHeadIsSeenAboveIt) {
  MessageModel model;
  model.subject = QStringLiteral("subject");
  model.addresses = {{QStringLiteral("FROM"), QStringLiteral("a@b"), QStringLiteral("name")}};
  const QString whole = QStringLiteral(
      "display:none!important;opacity:0!important;visibility:"
      "hidden!important;font-size:0!important;color:white!important"
      ";height:0!important;max-height:0!important;overflow:hidden"
      "!important;margin:-500px!important;float:right!important");
  QStringList mails{QStringLiteral("x")};
  for (const char* element : {"html", "body", "table", "tbody", "tr", "td", "*", "body *",
                              "td:first-child", ":root", "body>:first-child"}) {
    mails.append(QStringLiteral("<style>%1{%2}</style>x").arg(QString::fromLatin1(element), whole));
  }
  mails +=
      {QStringLiteral("<body style='%1'>x").arg(whole),
       QStringLiteral("<style>body{background:black!important}</style>x"),
       QStringLiteral("<style>head,style{display:block!important} forged{color:red}</style>x"),
       QStringLiteral("</div></div></body></html><table><tr><td>forged</table>"),
       QStringLiteral("<div style='margin-top:-900px;position:fixed;top:0'>forged<p "
                      "style='margin-top:-900px;float:left'>forged</div>"),
       QStringLiteral("<style>*::first-line{font-size:0;color:white}*::first-letter{float:left;"
                      "margin-left:-900px}</style>x"),
       QStringLiteral("<style>*{direction:rtl!important;unicode-bidi:bidi-override!important}"
                      "</style>x"),
       QStringLiteral("<style>html,body,body>div{outline:900px solid white!important;"
                      "outline-offset:-900px!important}</style>x"),
       QStringLiteral("<style>body>div{border-image:linear-gradient(white,white) 0 fill/0/500px"
                      "!important;border-image-outset:500px!important}</style>x"),
       QStringLiteral("<body style='text-decoration:line-through white 60px'>x"),
       QStringLiteral("<style>body{margin-top:-400px!important;display:none!important}</style>"
                      "<body title=' style=\">' class='x>'>x"),
       QStringLiteral("<b>").repeated(5000) + u'x'};
  // What is read back in another form than it was written closes what is around it.
  for (const char* element : {"dd", "dt", "li"}) {
    mails.append(QStringLiteral("<%1><div><table><%1>x</%1></table></div></%1>"
                                "<div style='margin-top:-130px;opacity:.999;background:#fff;"
                                "height:130px'>forged</div>")
                     .arg(QString::fromLatin1(element)));
  }
  QWebEngineView view;
  view.resize(800, 600);
  view.show();
  const QString script = QStringLiteral(
      "(() => { const tree = document.body.shadowRoot;"
      "if (!tree) return 'no table';"
      "for (let e = document.body; e; e = e.parentElement) { const s = getComputedStyle(e);"
      "  if (s.opacity !== '1' || s.visibility !== 'visible') return 'hidden ' + e.tagName; }"
      "const cells = [...tree.querySelectorAll('td')];"
      "for (const cell of cells) { const r = cell.getBoundingClientRect();"
      "  const top = tree.elementFromPoint(r.x + 9, r.y + r.height / 2);"
      "  if (top !== cell || r.y < 0) return 'cell ' + r.y; }"
      "const below = tree.querySelector('section').getBoundingClientRect().bottom - 1;"
      "for (let x = 5; x < innerWidth; x += 20) for (let y = 1; y < below; y += 4)"
      "  if (document.elementFromPoint(x, y)?.closest('body > *')) return 'covered';"
      "return 'seen ' + cells.length; })()");
  constexpr int kFramesMs = 50;
  constexpr int kPaintedMs = 20000;
  QImage seen;  // what stands in sight of the head
  for (const QString& mail : mails) {
    QSignalSpy loaded(&view, &QWebEngineView::loadFinished);
    view.setHtml(QString::fromUtf8(PrintPage(model, mail)));
    ASSERT_TRUE(WaitFor([&] { return loaded.count() > 0; }));
    EXPECT_EQ(ScriptIn(view, script).toString(), QStringLiteral("seen 4"))
        << qPrintable(mail.left(200));
    // What stood there before is the same when all is well: this one has to be drawn first.
    const QString drawn = QStringLiteral("drawn %1").arg(loaded.count() + mails.indexOf(mail));
    ScriptIn(view, QStringLiteral("requestAnimationFrame(() => requestAnimationFrame(() => "
                                  "document.title = '%1'))")
                       .arg(drawn));
    ASSERT_TRUE(WaitFor([&] { return view.title() == drawn; }));
    test::RunFor(kFramesMs);
    const auto head = [&view] { return view.grab(QRect(60, 5, 300, 35)).toImage(); };
    if (seen.isNull()) {
      ASSERT_TRUE(WaitFor([&] {
        const QImage before = std::exchange(seen, head());
        return seen == before && HasInk(seen);
      }));
    } else {
      EXPECT_TRUE(WaitFor([&] { return head() == seen; }, kPaintedMs))
          << qPrintable(mail.left(200));
    }
  }
}

// Nothing stands around the mail that its rules would not meet on the screen.
TEST_F(MessageWindowTest, AnHtmlMailLooksOnPaperAsOnTheScreen) {
  const QString mail = QStringLiteral(
      "<style>div,section{font-size:0}*:not(p):not(body):not(html){opacity:.1}"
      "body>*{font-size:3px}body>p{font-size:20px}body>p:first-child{color:#a00}"
      "body>p:nth-child(2){display:none}</style><p>one<p>two<p>three");
  QWebEngineView view;
  const QString script = QStringLiteral(
      "[...document.querySelectorAll('p')].map(p => { const s = getComputedStyle(p);"
      "let clear = 1; for (let e = p; e; e = e.assignedSlot ?? e.parentNode?.host ?? "
      "  e.parentElement) clear *= getComputedStyle(e).opacity;"
      "return [p.innerText.trim(), s.fontSize, s.color, s.display, clear].join(); }).join(' ')");
  const auto shown = [&](const QByteArray& page) {
    QSignalSpy loaded(&view, &QWebEngineView::loadFinished);
    view.setHtml(QString::fromUtf8(page));
    EXPECT_TRUE(WaitFor([&] { return loaded.count() > 0; }));
    return ScriptIn(view, script).toString();
  };
  const QString onScreen = shown(SanitizeHtml(mail, RemoteImages::LeftOut).html);
  EXPECT_TRUE(onScreen.contains(QStringLiteral("three,20px,rgb(0, 0, 0),block,1")))
      << qPrintable(onScreen);
  EXPECT_EQ(shown(PrintPage({}, mail)), onScreen);
}

TEST_F(MessageWindowTest, ImagesThatAreNotShownAreCountedWithTheReason) {
  QTcpServer neighbour;
  ASSERT_TRUE(neighbour.listen(QHostAddress::LocalHost));
  QBuffer png;
  QImage(7000, 7000, QImage::Format_Mono).save(&png, "PNG");
  HtmlView view(QStringLiteral("wbTried"));
  view.show();
  const QString mail = QStringLiteral(
                           "<p>a</p><img src='http://127.0.0.1:%1/a.png'>"
                           "<img src='data:image/png;base64,%2'>")
                           .arg(neighbour.serverPort())
                           .arg(QString::fromLatin1(png.data().toBase64()));
  auto& button = Child<QPushButton>(view, u"cmRemoteImages");
  auto& words = Child<QLabel>(view, u"lbImages");
  view.Show(mail);
  EXPECT_TRUE(button.isVisible());
  EXPECT_TRUE(words.text().contains(QStringLiteral("大きすぎる画像1個")))
      << qPrintable(words.text());
  Press(button);
  EXPECT_TRUE(WaitFor([&] { return words.text().contains(QStringLiteral("にある画像1個")); }));
  EXPECT_FALSE(neighbour.hasPendingConnections());
  EXPECT_FALSE(button.isVisible());
  // One mail may have many; how many others had is not its matter.
  QString many;
  for (int i = 0; i < 600; ++i)
    many += QStringLiteral("<img src='http://127.0.0.1/%1.png'>").arg(i);
  for (int mails = 0; mails < 2; ++mails) {
    view.Show(many);
    Press(button);
    EXPECT_TRUE(WaitFor([&] { return words.text().contains(QStringLiteral("にある画像600個")); }))
        << qPrintable(words.text());
  }
  const auto mayReach = std::exchange(RemoteImageLoader::MayReach, nullptr);
  view.Show(mail);
  EXPECT_FALSE(words.text().contains(QStringLiteral("にある画像"))) << "of the page before";
  Press(button);
  ASSERT_TRUE(WaitFor([&] { return neighbour.hasPendingConnections(); }));
  neighbour.nextPendingConnection()->write(
      "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(png.size()) + "\r\n\r\n" +
      png.data());
  EXPECT_TRUE(WaitFor([&] { return words.text().contains(QStringLiteral("大きすぎる画像2個")); }))
      << qPrintable(words.text());
  // Nobody's words stand under another one's name.
  const auto isCovered = [&view] {
    const QWidget* top = view.childAt(view.View()->geometry().center());
    return top != view.View() && !view.View()->isAncestorOf(top);
  };
  EXPECT_TRUE(WaitFor([&] { return !isCovered(); }));
  view.Show(QStringLiteral("<p>b</p>"));
  EXPECT_TRUE(isCovered());
  EXPECT_FALSE(words.isVisible());
  // Nor is a style sheet text, whatever it says of itself.
  view.Show(
      QStringLiteral("<style>html head,html head style{display:block!important}</style>"
                     "<p style='background:url(http://127.0.0.1/)'>c"));
  EXPECT_TRUE(words.text().contains(QStringLiteral("リモート画像1個"))) << qPrintable(words.text());
  auto& page = *view.findChild<QWebEngineView*>();
  const QString text = QStringLiteral("document.documentElement.innerText.trim()");
  ASSERT_TRUE(WaitFor([&] { return ScriptIn(page, text).toString().endsWith(u'c'); }));
  EXPECT_EQ(ScriptIn(page, text).toString(), QStringLiteral("c"));
  RemoteImageLoader::MayReach = mayReach;
}

// As a clipboard is whose owner has ended.
TEST_F(MessageWindowTest, PastingNothingDoesNothing) {
  MessageWindow& window = New();
  QApplication::clipboard()->clear();
  for (const char16_t* name : {u"txMemo", u"txReference"}) {
    auto& box = Child<QPlainTextEdit>(window, name);
    box.setPlainText(QStringLiteral("text"));
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    QTest::mouseClick(box.viewport(), Qt::MiddleButton);
    EXPECT_EQ(box.toPlainText(), QStringLiteral("text"));
  }
}

TEST_F(MessageWindowTest, AMessageIsPrintedToAFile) {
  MessageWindow& window = OpenStored(kPlain, 4);
  const QString path = folder_.filePath(QStringLiteral("print.pdf"));
  // The page that the message was opened from stays as large as it was, and behind.
  QWidget* frame = Browser()->parentWidget();
  frame->showMaximized();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  const auto text = [](const BrowserWindow* page) {
    return ScriptIn(*page->findChild<QWebEngineView*>(), QStringLiteral("document.body.innerText"))
        .toString();
  };
  EXPECT_TRUE(InModal<QPrintDialog>(
      [&] { Menu(window, u"menuFiles").actions()[6]->trigger(); },
      [&](QPrintDialog& dialog) {
        EXPECT_EQ(dialog.parentWidget(), &window);
        // What arrives meanwhile is shown in its folder and does not get into what is printed.
        Store("Subject: meanwhile\r\n\r\nother\r\n", 4);
        program_->Parent()->Pages().Messages().MessageStored();
        EXPECT_TRUE(WaitFor([&] { return text(Browser()).contains(u"meanwhile"); }));
        auto pages = program_->Parent()->findChildren<BrowserWindow*>();
        pages.removeAll(Browser());
        const BrowserWindow* printed = pages.value(0);
        ASSERT_NE(printed, nullptr);
        EXPECT_TRUE(text(printed).contains(u"first line")) << qPrintable(text(printed));
        auto& file = Child<QLineEdit>(dialog, u"filename");
        EXPECT_EQ(QFileInfo(file.text()).fileName(), QStringLiteral("hello.pdf"));
        file.setText(path);
        QMetaObject::invokeMethod(&dialog, "accept");
      }));
  ASSERT_TRUE(WaitFor([&path] {
    return QFileInfo::exists(path) && test::ReadFile(path).trimmed().endsWith("%%EOF");
  }));
  EXPECT_TRUE(test::ReadFile(path).startsWith("%PDF"));
  EXPECT_TRUE(test::ReadFile(path).contains("/Font")) << "text, and no picture of it";
  EXPECT_LT(QFileInfo(path).size(), 100'000) << "no more of a font than is needed";
  EXPECT_TRUE(WaitFor([this] {
    return QDir(Context().TempFolder).entryList({QStringLiteral("print_*")}).isEmpty() &&
           program_->Parent()->findChildren<BrowserWindow*>().size() == 1;
  }));
  EXPECT_TRUE(frame->isMaximized());
  EXPECT_FALSE(program_->Parent()->isActiveWindow());
  const QString next = File("hello.pdf", "mine");  // where the last one went
  EXPECT_TRUE(InModal<QPrintDialog>([&] { Menu(window, u"menuFiles").actions()[6]->trigger(); },
                                    [&](QPrintDialog& dialog) {
                                      EXPECT_EQ(Child<QLineEdit>(dialog, u"filename").text(),
                                                QString(next).replace(QStringLiteral(".pdf"),
                                                                      QStringLiteral(" (2).pdf")));
                                      dialog.reject();
                                    }));
}

}  // namespace
}  // namespace vorn

#include "message_files_window_test.moc"
