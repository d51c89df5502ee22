// What the program is started with, what enters and leaves it by menu, and what it keeps of its
// windows.

#include <QProgressDialog>
#include <QTimer>
#include <atomic>
#include <thread>

#include "frame/instance_messages.h"
#include "frame/ui_language.h"
#include "mail/search/folder_count.h"
#include "mail/search/search_condition.h"
#include "mail/store/message_filing.h"
#include "mail/window/message_window.h"
#include "objects/object_types.h"
#include "objects/placement.h"
#include "objects/settings.h"
#include "present/ready_layouts.h"
#include "storage/window/control_state.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

using test::Child;

class OpeningTest : public ProgramTest {
 protected:
  QString File(const char* name, const QByteArray& bytes) {
    const QString path = folder_.path() + u'/' + QString::fromUtf8(name);
    test::WriteFile(path, bytes);
    return path;
  }
  void StartWith(const QStringList& arguments) {
    program_ = std::make_unique<Program>(Folder(), arguments);
    ASSERT_TRUE(program_->Start());
    LogInWith(QString());
    AwaitInbox();
  }
  QWebEngineView* GuideView(const QString& title) const {
    QWebEngineView* view = nullptr;
    WaitFor([&] {
      for (auto* browser : program_->Parent()->findChildren<BrowserWindow*>()) {
        if (browser->windowTitle() == title && browser->isVisible()) {
          view = browser->findChild<QWebEngineView*>();
        }
      }
      return view != nullptr;
    });
    return view;
  }
  QAction* Entry(const char16_t* menu, const QString& text) const {
    for (QAction* action :
         program_->Parent()->findChild<QMenu*>(QString::fromUtf16(menu))->actions()) {
      if (action->text().startsWith(text)) return action;
    }
    return nullptr;
  }
};

TEST_F(OpeningTest, AMessageFileAndAnAddressAreOpened) {
  Prepare(QString());
  const QString file = File("手紙.eml", "From: a@example.jp\nSubject: from a file\n\nhello\n");
  StartWith({file});
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(TopLevel<MessageWindow>()->GetMessageSubject(), QStringLiteral("from a file"));
  TopLevel<MessageWindow>()->close();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  EXPECT_FALSE(PageText().contains(QStringLiteral("from a file"))) << "it is not received mail";

  // A program that is started again hands over what it was asked to open.
  std::atomic<bool> done = false;
  bool handedOver = false;
  std::thread other([&] {
    const InstanceMessages messages(Folder());
    handedOver = messages.Send({QStringLiteral("mailto:x@example.jp?subject=hi&body=text"), file});
    done = true;
  });
  EXPECT_TRUE(WaitFor([&done] { return done.load(); }));
  other.join();
  EXPECT_TRUE(handedOver);
  const auto windows = [] {
    QMap<QString, MessageWindow*> open;
    for (auto* window : test::TopLevels<MessageWindow>())
      open[window->GetMessageSubject()] = window;
    return open;
  };
  ASSERT_TRUE(WaitFor([&windows] { return windows().size() == 2; }));
  EXPECT_TRUE(windows().contains(QStringLiteral("from a file")));
  MessageWindow* written = windows().value(QStringLiteral("hi"));
  ASSERT_NE(written, nullptr);
  EXPECT_EQ(Child<QPlainTextEdit>(*written, u"txMemo").toPlainText(), QStringLiteral("text"));
  test::AnswerBox([written] { written->close(); }, QMessageBox::No);
}

TEST_F(OpeningTest, AProgramThatIsStartedAgainComesToTheFrontWhereThatIsChosen) {
  Prepare(QString());
  StartWith({});
  for (const bool chosen : {true, false}) {
    Settings(program_->GetContext()).Bag()->Let(QStringLiteral("ComesForward"), chosen);
    program_->Parent()->showMinimized();
    std::atomic<bool> done = false;
    bool came = false;
    std::thread other([&] {
      came = InstanceMessages(Folder()).Send({});
      done = true;
    });
    EXPECT_TRUE(WaitFor([&done] { return done.load(); }));
    other.join();
    EXPECT_EQ(came, chosen);
    EXPECT_EQ(program_->Parent()->isMinimized(), !chosen);
  }
}

TEST_F(OpeningTest, AFileThatHoldsNoMessageIsTold) {
  Prepare(QString());
  StartWith({});
  const QString told = NextMessageBox([this] {
    program_->Parent()->Requests().OpenArgument(Folder() + QStringLiteral("missing.eml"));
  });
  EXPECT_TRUE(told.contains(QStringLiteral("missing.eml"))) << told.toStdString();
  EXPECT_EQ(TopLevel<MessageWindow>(), nullptr);
}

TEST_F(OpeningTest, MailIsImportedAndExportedByMenu) {
  Prepare(QString());
  StartWith({});
  const QString mbox = File("in.mbox",
                            "From a Mon Jan  1 00:00:00 2001\nFrom: a@x\nSubject: imported one\n\n"
                            "1\n\nFrom b Mon Jan  1 00:00:00 2001\nFrom: b@x\nSubject: two\n\n2\n");
  QString kind;
  const auto choose = [&kind](const QString& path) {
    return [path, &kind](QFileDialog& dialog) {
      auto& kinds = Child<QComboBox>(dialog, u"fileTypeCombo");
      if (!kind.isEmpty()) QTest::keyClicks(&kinds, kind);
      dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(path);
      QMetaObject::invokeMethod(&dialog, "accept");
    };
  };
  QString told;
  const auto run = [&](QAction* entry, const QString& path,
                       QMessageBox::StandardButton answer = QMessageBox::Ok) {
    told = test::AnswerBox(
        [&] { EXPECT_TRUE(InModal<QFileDialog>([entry] { entry->trigger(); }, choose(path))); },
        answer);
  };
  QAction* import = Entry(u"menuFiles", QStringLiteral("ファイルから取り込む"));
  const auto& done = Child<QLabel>(*program_->Parent(), u"lbDone");
  EXPECT_TRUE(InModal<QFileDialog>([import] { import->trigger(); }, choose(mbox)));
  EXPECT_EQ(done.accessibleName(), QStringLiteral("2通を「受信」に取り込みました。"));
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("imported one")); }));
  auto& undo = Child<QToolButton>(*program_->Parent(), u"cmUndo");
  EXPECT_EQ(test::AnswerBox([&undo] { undo.click(); }, QMessageBox::Ok),
            QStringLiteral("取り込んだメッセージ2通をくずかごに入れました。"));
  EXPECT_TRUE(WaitFor([this] { return !PageText().contains(QStringLiteral("imported one")); }));
  EXPECT_FALSE(PageText().contains(QStringLiteral("two")));
  // Nothing is lost by it: who imports them once more has them back.
  EXPECT_TRUE(InModal<QFileDialog>([import] { import->trigger(); }, choose(mbox)));
  EXPECT_EQ(done.accessibleName(), QStringLiteral("2通をくずかごから「受信」に戻しました。"));
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("imported one")); }));
  run(Entry(u"menuFiles", QStringLiteral("ファイルから取り込む")), mbox);
  EXPECT_EQ(told, QStringLiteral("0通を「受信」に取り込みました。2通は保存済みでした。"));
  run(Entry(u"menuFiles", QStringLiteral("フォルダから取り込む")), folder_.path());
  EXPECT_TRUE(told.contains(QStringLiteral("「%1」から：0通を").arg(folder_.path())))
      << qPrintable(told);
  const QString out = folder_.path() + QStringLiteral("/out");
  run(Entry(u"menuFiles", QStringLiteral("フォルダの書き出し")), out);
  EXPECT_EQ(told, QStringLiteral("2通を書き出しました。"));
  const QByteArray written = test::ReadFile(out + QStringLiteral(".mbox"));
  EXPECT_TRUE(written.contains("Subject: imported one\r\n\r\n1\r\n")) << written.toStdString();
  // The file window has asked about the name without its ending, which is another one.
  run(Entry(u"menuFiles", QStringLiteral("フォルダの書き出し")), out, QMessageBox::No);
  EXPECT_EQ(told, QStringLiteral("「%1.mbox」は既にあります。上書きしますか？").arg(out));
  // In the form that is chosen in the dialog.
  kind = QStringLiteral("eml");
  const QString files = folder_.path() + QStringLiteral("/files");
  run(Entry(u"menuFiles", QStringLiteral("フォルダの書き出し")), files);
  EXPECT_EQ(QDir(files).entryList({QStringLiteral("*.eml")}).size(), 2);
}

// Who ends the taking back of a large import by mistake goes on with it.
TEST_F(OpeningTest, AnImportThatWasTakenBackInPartIsTakenBackWhole) {
  constexpr int kMany = 6000;  // they take longer than the windows wait for their turn
  Prepare(QString());
  StartWith({});
  QByteArray many;
  for (int i = 0; i < kMany; ++i) {
    many += "From a Mon Jan  1 00:00:00 2001\nFrom: a@x\nSubject: " + QByteArray::number(i) +
            "\n\nx\n\n";
  }
  const QString mbox = File("many.mbox", many);
  QAction* import = Entry(u"menuFiles", QStringLiteral("ファイルから取り込む"));
  EXPECT_TRUE(InModal<QFileDialog>([import] { import->trigger(); },
                                   [&mbox](QFileDialog& dialog) {
                                     Child<QLineEdit>(dialog, u"fileNameEdit").setText(mbox);
                                     QMetaObject::invokeMethod(&dialog, "accept");
                                   }));
  QTimer ending;
  QObject::connect(&ending, &QTimer::timeout, program_->Parent(), [this] {
    for (auto* dialog : program_->Parent()->findChildren<QProgressDialog*>()) dialog->cancel();
  });
  ending.start(0);
  auto& undo = Child<QToolButton>(*program_->Parent(), u"cmUndo");
  const QString told = test::AnswerBox([&undo] { undo.click(); }, QMessageBox::Ok);
  EXPECT_TRUE(told.contains(QStringLiteral("中止したので"))) << told.toStdString();
  ending.stop();
  const auto inDust = [this] {
    Context& context = program_->GetContext();
    return CountMessages(context, FolderSqlBuilder(context).Query(fixed_serial::kDust)).ValueOr(-1);
  };
  EXPECT_LT(inDust(), kMany);
  ASSERT_TRUE(undo.isVisible());
  test::AnswerBox([&undo] { undo.click(); }, QMessageBox::Ok);
  EXPECT_EQ(inDust(), kMany);
}

TEST_F(OpeningTest, TheWindowsArrangementIsKept) {
  Prepare(QString());
  StartWith({});
  auto* splitter = program_->Parent()->findChild<QSplitter*>(QStringLiteral("splitter"));
  program_->Parent()->resize(700, 500);
  const QSize size = program_->Parent()->size();  // large fonts want more
  splitter->setSizes({260, 440});
  Q_EMIT splitter->splitterMoved(260, 1);  // as by the mouse
  const int tree = splitter->sizes()[0];
  Entry(u"menuWindows", QStringLiteral("重ねて表示"))->trigger();
  EndProgram();
  StartWith({});
  splitter = program_->Parent()->findChild<QSplitter*>(QStringLiteral("splitter"));
  EXPECT_EQ(program_->Parent()->size(), size);
  EXPECT_NEAR(splitter->sizes()[0], tree, 3);
  // Cascaded windows do not fill the area, tiled ones do.
  auto* area = program_->Parent()->findChild<QMdiArea*>();
  EXPECT_TRUE(
      WaitFor([area] { return area->subWindowList()[0]->width() != area->viewport()->width(); }));
  Entry(u"menuWindows", QStringLiteral("並べて表示"))->trigger();
  EXPECT_EQ(area->subWindowList()[0]->width(), area->viewport()->width());
  // One that fills the screen has its own size still.
  program_->Parent()->showMaximized();
  ASSERT_TRUE(WaitFor([&] { return program_->Parent()->size() != size; }));
  EndProgram();
  StartWith({});
  EXPECT_TRUE(program_->Parent()->isMaximized());
  program_->Parent()->showNormal();
  EXPECT_TRUE(WaitFor([&] { return program_->Parent()->size() == size; }));
}

// The screen that it was on may be gone or smaller by now.
TEST_F(OpeningTest, AWindowComesBackWholeOnToTheScreen) {
  Prepare(QString());
  for (const QPoint place : {QPoint(100000, 100000), QPoint(-300, -200), QPoint(700, 500)}) {
    StartWith({});
    program_->Parent()->resize(700, 500);
    const QSize size = program_->Parent()->size();
    program_->Parent()->move(place);
    EndProgram();
    StartWith({});
    // The frame is the window system's and not known before the window is shown.
    const ParentWindow& window = *program_->Parent();
    const QSize frame = window.frameGeometry().size() - window.size();
    const QRect screen = window.screen()->availableGeometry();
    EXPECT_TRUE(screen.adjusted(0, 0, frame.width(), frame.height()).contains(window.geometry()))
        << place.x();
    EXPECT_EQ(program_->Parent()->size(), size);
    EndProgram();
  }
  // What a smaller one cuts off, as at another scale, comes back where there is room.
  StartWith({});
  const auto placement = [this] { return PlacementBag(program_->GetContext(), kMainPlacement); };
  const QRect screen = program_->Parent()->screen()->availableGeometry();
  Placement::SetPlace(*placement(), QRect(QPoint(0, 0), screen.size() * 2));
  RestoreWindowPlacement(program_->GetContext(), *program_->Parent(), kMainPlacement);
  EXPECT_EQ(program_->Parent()->size(), screen.size());
  EndProgram();
  StartWith({});
  EXPECT_EQ(Placement(*placement()).Size({}), screen.size() * 2);
}

TEST_F(OpeningTest, TheProgramSpeaksEnglishWhenAskedTo) {
  KeepUiLanguage(QStringLiteral("en"));
  StartProgram();  // its first profile is made in English too
  AwaitInbox();
  static const QRegularExpression japanese(QStringLiteral("[\\p{Hiragana}\\p{Katakana}\\p{Han}]"));
  QStringList left;
  for (QAction* action : program_->Parent()->findChildren<QAction*>()) {
    if (action->text().contains(japanese)) left.append(action->text());
  }
  for (QLineEdit* box : program_->Parent()->findChildren<QLineEdit*>()) {
    if (box->placeholderText().contains(japanese)) left.append(box->placeholderText());
  }
  auto& tree = Child<QTreeWidget>(*program_->Parent(), u"tvConsole");
  for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item) {
    if ((*item)->text(0).contains(japanese)) left.append((*item)->text(0));
    if ((*item)->toolTip(0).contains(japanese)) left.append((*item)->toolTip(0));
  }
  for (const ReadyLayout& layout : ReadyLayouts({})) {
    if (layout.html.contains(japanese)) left.append(layout.name);
  }
  EXPECT_EQ(left, QStringList());
  QTest::keyClick(program_->Parent(), Qt::Key_F1);
  QWebEngineView* guide = GuideView(QStringLiteral("Guide"));
  ASSERT_NE(guide, nullptr);
  const auto text = [guide] {
    return AnswerTo<QString>([guide](const auto& then) { guide->page()->toPlainText(then); });
  };
  EXPECT_TRUE(WaitFor([&text] { return text().contains(QStringLiteral("Using Vorn")); }));
  EXPECT_FALSE(text().contains(japanese));
  EXPECT_NE(Entry(u"menuTools", QStringLiteral("Send and Receive")), nullptr);
  const auto isInJapanese = [](const char* context, const char* word, const char* meaning) {
    return QCoreApplication::translate(context, word, meaning).contains(japanese);
  };
  EXPECT_FALSE(isInJapanese("QAbstractFileIconProvider", "Folder", "All other platforms"));
  EndProgram();
  KeepUiLanguage(QString());
  StartWith({});
  EXPECT_NE(Entry(u"menuTools", QStringLiteral("メッセージ送受信")), nullptr);
  // So do the toolkit's dialogs: their words, and the dates in lists of files.
  EXPECT_TRUE(isInJapanese("QAbstractFileIconProvider", "Folder", "All other platforms"));
  EXPECT_TRUE(isInJapanese("QPrintSettingsOutput", "Double Sided Printing", nullptr));
  EXPECT_TRUE(isInJapanese("QPlatformTheme", "Cancel", nullptr));
  EXPECT_EQ(QLocale().language(), QLocale::Japanese);
}

TEST_F(OpeningTest, TheToolbarActsOnTheChosenMessageAndHelpIsShown) {
  AddMessages(2);
  Prepare(QString());
  StartWith({});
  Receive();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("会議 2")); }));
  FocusPage();
  QTest::keyClick(View()->focusProxy(), Qt::Key_Down);
  auto& bar = Child<QToolBar>(*program_->Parent(), u"tbMain");
  const auto press = [&bar](const char16_t* name) {
    QTest::mouseClick(bar.widgetForAction(bar.findChild<QAction*>(QString::fromUtf16(name))),
                      Qt::LeftButton);
  };
  press(u"tb_replay");
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(TopLevel<MessageWindow>()->GetMessageSubject(), QStringLiteral("Re: 会議 1"));
  TopLevel<MessageWindow>()->close();
  program_->Parent()->activateWindow();
  press(u"tb_dust");
  ASSERT_TRUE(WaitFor([this] { return !PageText().contains(QStringLiteral("会議 1")); }));

  EXPECT_EQ(Entry(u"menuHelps", QStringLiteral("使い方"))->shortcut(), QKeySequence(Qt::Key_F1));
  QTest::keyClick(program_->Parent(), Qt::Key_Slash, Qt::ControlModifier);
  QWebEngineView* guide = GuideView(QStringLiteral("使い方"));
  ASSERT_NE(guide, nullptr);
  const QString top = QStringLiteral("document.querySelector('h3').getBoundingClientRect().top");
  EXPECT_TRUE(WaitFor([&] {
    const double at = ScriptIn(*guide, top).toDouble();
    return at > 0 && at < guide->height() &&
           ScriptIn(*guide, QStringLiteral("scrollY")).toDouble() > 0;
  }));
  // One guide is enough; the menu leads to what is open.
  const auto windows = [this] {
    auto& menu = Child<QMenu>(*program_->Parent(), u"menuWindows");
    Q_EMIT menu.aboutToShow();
    QStringList open;
    for (const QAction* entry : menu.actions()) {
      if (entry->text().startsWith(u'&')) open.append(entry->text());
    }
    return open;
  };
  const QStringList before = windows();
  EXPECT_EQ(before.filter(QStringLiteral("使い方")).size(), 1);
  EXPECT_EQ(before.size(), 2);
  QTest::keyClick(program_->Parent(), Qt::Key_F1);
  EXPECT_EQ(windows(), before);
}

}  // namespace
}  // namespace vorn
