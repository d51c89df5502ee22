// The rows of a message's addresses, as a hurried user types them.

#include "auxiliary/window/address_window.h"
#include "auxiliary/window/console_window.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

void AddBook(Context& context, const char16_t* lines) {
  const auto book = std::make_shared<Disk>(QStringLiteral("book_1"));
  book->Let(QStringLiteral("FormName"), object_type::kBook);
  book->Let(QStringLiteral("Object"), QStringLiteral("社内"));
  book->Let(QStringLiteral("Addressbook"), QString::fromUtf16(lines));
  context.Objects.Add(book);
}

TEST_F(MessageWindowTest, AddressesComeFromTheBooks) {
  AddBook(Context(), u"TO: aoki@example.jp 青木\r\nCC: baba@example.jp Baba Taro");
  MessageWindow& window = New();
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const int before = list.rowCount();
  const auto activate = [](QWidget& shown) {
    shown.activateWindow();
    EXPECT_TRUE(WaitFor([&shown] { return shown.isActiveWindow(); }));
  };
  const auto choose = [&](const QString& text, bool select) {
    return InModal<AddressWindow>(
        [&] {
          activate(window);
          QTest::keyClick(&window, Qt::Key_L, Qt::AltModifier);
        },
        [&](AddressWindow& dialog) {
          auto& found = Child<QListWidget>(dialog, u"lvCandidacy");
          EXPECT_EQ(found.count(), 2);  // every line of every book
          const bool selectsAll = !Settings(Context()).Bag()->Flag(u"AddressSearch");
          EXPECT_EQ(found.selectedItems().size(), selectsAll ? 2 : 0);
          Type(Child<QLineEdit>(dialog, u"txString"), text);
          // What is chosen in the list is what was asked for, with Enter or without.
          EXPECT_EQ(found.count(), text.isEmpty() ? 2 : text == u"Taro" ? 1 : 0);
          if (!select) QTest::keyClick(&Child<QLineEdit>(dialog, u"txString"), Qt::Key_Return);
          if (select) {
            activate(dialog);
            QTest::keyClick(&dialog, Qt::Key_S, Qt::AltModifier);
            if (dialog.isVisible()) dialog.reject();
          } else {
            EXPECT_EQ(found.count(), 0);  // letter case counts
            QTest::keyClick(&dialog, Qt::Key_Escape);
          }
        });
  };
  EXPECT_TRUE(choose(QStringLiteral("baba t"), false));
  EXPECT_TRUE(choose(QString(), true));
  EXPECT_EQ(list.rowCount(), before) << "nobody was chosen";
  Settings(Context()).Bag()->Let(QStringLiteral("AddressSearch"), false);
  EXPECT_TRUE(choose(QStringLiteral("Taro"), true));
  ASSERT_EQ(list.rowCount(), before + 1);
  EXPECT_EQ(list.item(before - 1, 1)->text(), QStringLiteral("Baba Taro <baba@example.jp>"));
  // The same names are offered while typing.
  list.setCurrentCell(before, 1);
  list.editItem(list.item(before, 1));
  auto& box = Child<QLineEdit>(window, u"txMailaddress");
  ASSERT_NE(box.completer(), nullptr);
  box.completer()->setCompletionPrefix(QStringLiteral("青"));
  EXPECT_EQ(box.completer()->currentCompletion(), QStringLiteral("青木 <aoki@example.jp>"));
}

// What was taken from the list ends the row: the next keys went into the address.
TEST_F(MessageWindowTest, EnterAndTabTakeWhatIsHighlightedAndEndTheRow) {
  AddBook(Context(), u"TO: suzuki@example.jp 鈴木\r\nTO: suzuno@example.jp 鈴野");
  MessageWindow& window = New();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const auto row = [&](int key, bool highlight, const QString& typed = QStringLiteral("suz")) {
    const int last = list.rowCount() - 1;
    list.setCurrentCell(last, 1);
    list.setFocus();
    list.editItem(list.item(last, 1));
    auto& box = *qobject_cast<QLineEdit*>(list.indexWidget(list.currentIndex()));
    box.setFocus();
    QTest::keyClicks(&box, typed);
    QWidget* popup = box.completer()->popup();
    EXPECT_TRUE(WaitFor([popup] { return popup->isVisible(); }));
    if (highlight) QTest::keyClick(popup, Qt::Key_Down);
    QTest::keyClick(popup, Qt::Key(key));
    EXPECT_EQ(list.indexWidget(list.model()->index(last, 1)), nullptr) << "the row is done";
    return list.item(last, 1)->text();
  };
  EXPECT_EQ(row(Qt::Key_Return, true), QStringLiteral("鈴木 <suzuki@example.jp>"));
  EXPECT_EQ(row(Qt::Key_Tab, true), QStringLiteral("鈴木 <suzuki@example.jp>"));
  // The only one that can be meant.
  EXPECT_EQ(row(Qt::Key_Return, false, QStringLiteral("suzun")),
            QStringLiteral("鈴野 <suzuno@example.jp>"));
  // A whole address is meant as it is, though the only one in the book contains it.
  EXPECT_EQ(row(Qt::Key_Return, false, QStringLiteral("uzuno@example.jp")),
            QStringLiteral("uzuno@example.jp"));
  EXPECT_EQ(row(Qt::Key_Return, false), QStringLiteral("suz"));
  // Which is no address: shown as such, and not sent to.
  const QTableWidgetItem* wrong = list.item(list.rowCount() - 2, 1);
  EXPECT_TRUE(wrong->data(Qt::ForegroundRole).isValid());
  EXPECT_TRUE(wrong->toolTip().contains(QStringLiteral("suz")));
  list.setCurrentCell(0, 1);
  EXPECT_TRUE(NextMessageBox([&] {
                Menu(window, u"menuFilesMessages").actions()[0]->trigger();
              }).contains(QStringLiteral("suz")));
  EXPECT_EQ(list.currentRow(), list.rowCount() - 2);
  EXPECT_EQ(smtp_.Messages().size(), 0);
  // Escape ends the box of a new row, and takes nothing from it.
  const int last = list.rowCount() - 1;
  list.setCurrentCell(last, 1);
  list.editItem(list.item(last, 1));
  auto* box = qobject_cast<QLineEdit*>(list.indexWidget(list.currentIndex()));
  QTest::keyClicks(box, QStringLiteral("new@example.org"));
  QTest::keyClick(box, Qt::Key_Escape);
  QCoreApplication::processEvents();
  EXPECT_EQ(list.item(last, 1)->text(), QStringLiteral("new@example.org"));
}

// Several addresses become rows of their own when the user goes on, and he goes where he wants to.
TEST_F(MessageWindowTest, WhoGoesOnAfterSeveralAddressesIsWhereHeClicked) {
  MessageWindow& window = New();
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  auto& subject = Child<QLineEdit>(window, u"txSubject");
  const int last = list.rowCount() - 1;
  const auto kindOf = [&list](int row) {
    return qobject_cast<QComboBox*>(list.cellWidget(row, 0));
  };
  kindOf(last)->setCurrentIndex(kindOf(last)->findData(QStringLiteral("BC")));
  test::ClickRow(list, list.item(last, 1));
  auto* box = qobject_cast<QLineEdit*>(list.indexWidget(list.model()->index(last, 1)));
  ASSERT_NE(box, nullptr);
  TypeText(*box, QStringLiteral("b@example.jp, c@example.jp"));
  QTest::mouseClick(&subject, Qt::LeftButton);
  QCoreApplication::processEvents();
  ASSERT_NE(window.focusWidget(), nullptr);
  EXPECT_EQ(window.focusWidget()->objectName(), QStringLiteral("txSubject"));
  QTest::keyClicks(window.focusWidget(), QStringLiteral("x@y.jp"));
  EXPECT_EQ(subject.text(), QStringLiteral("x@y.jp"));
  EXPECT_EQ(list.item(last, 1)->text(), QStringLiteral("b@example.jp"));
  EXPECT_EQ(list.item(last + 1, 1)->text(), QStringLiteral("c@example.jp"));
  EXPECT_EQ(kindOf(last + 1)->currentData(), QStringLiteral("BC")) << "as blind as the first";
  EXPECT_EQ(list.rowCount(), last + 3);
}

// A row that is being typed in, without Enter, is what the user sees, and what every command takes.
// What is typed after the box is the correction, from its first letter.
TEST_F(MessageWindowTest, AWrongAddressIsMendedByTypingOn) {
  MessageWindow& window = OpenStored("Subject: s\r\n\r\ntext\r\n.\r\n", kStatusEdit);
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const auto box = [&list](int row) {
    return qobject_cast<QLineEdit*>(list.indexWidget(list.model()->index(row, 1)));
  };
  const int row = list.rowCount() - 1;
  list.setFocus();
  list.setCurrentCell(row, 1);
  list.editItem(list.item(row, 1));
  QTest::keyClicks(box(row), QStringLiteral("foo@"));
  QTest::keyClick(box(row), Qt::Key_Return);
  Child<QLineEdit>(window, u"txSubject").setFocus();
  EXPECT_FALSE(NextMessageBox([&window] {
                 window.findChild<QAction*>(QStringLiteral("mailup"))->trigger();
               }).isEmpty());
  window.activateWindow();
  ASSERT_TRUE(WaitFor([] { return QApplication::focusWidget() != nullptr; }));
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("e"));
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("xample.jp"));
  ASSERT_NE(box(row), nullptr);
  EXPECT_EQ(box(row)->text(), QStringLiteral("foo@example.jp"));
  window.SetEdited(false);
}

TEST_F(MessageWindowTest, AnAddressInWideFormsIsShownAsItIsSent) {
  MessageWindow& window = New();
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const int row = list.rowCount() - 1;
  list.item(row, 1)->setText(QStringLiteral("佐藤＜ｓ１＠example.jp＞"));
  EXPECT_EQ(list.item(row, 1)->text(), QStringLiteral("佐藤 <s1@example.jp>"));
  list.item(row, 1)->setText(QStringLiteral("s1@example.jp（鈴木）"));
  EXPECT_FALSE(list.item(row, 1)->data(Qt::ForegroundRole).isValid());
  list.item(row, 1)->setText(QStringLiteral("s1@a b.jp"));
  EXPECT_TRUE(list.item(row, 1)->data(Qt::ForegroundRole).isValid());
}

// Where a hurried user types an address it must become one, and change nothing else.
TEST_F(MessageWindowTest, WhatIsTypedAtTheRowsGoesIntoTheRowThatIsMeant) {
  MessageWindow& window = OpenStored(kDraft, 1);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const auto kindOf = [&list](int row) {
    return qobject_cast<QComboBox*>(list.cellWidget(row, 0));
  };
  const auto shown = [&] {
    QStringList rows;
    for (int row = 0; row < list.rowCount(); ++row) {
      const auto* box = qobject_cast<QLineEdit*>(list.indexWidget(list.model()->index(row, 1)));
      const QString text = box != nullptr ? box->text() : list.item(row, 1)->text();
      if (!text.isEmpty()) rows.append(kindOf(row)->currentData().toString() + u' ' + text);
    }
    return rows;
  };
  const auto type = [&window](const char* text) {
    QTest::keyClicks(window.focusWidget(), QString::fromLatin1(text));
  };
  const QStringList before = shown();
  // By Tab from the subject: a new row, not the kind of the first one.
  auto& subject = Child<QLineEdit>(window, u"txSubject");
  subject.setFocus();
  QTest::keyClick(&subject, Qt::Key_Tab);
  type("bob@example.jp");
  EXPECT_EQ(shown(), before + QStringList{QStringLiteral("TO bob@example.jp")});
  QTest::keyClick(window.focusWidget(), Qt::Key_Return);
  QCoreApplication::processEvents();
  // By a click on the row that is the current one already, without waiting.
  const int last = list.rowCount() - 1;
  QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
  QCoreApplication::processEvents();
  test::ClickRow(list, list.item(last, 1));
  type("cc@example.jp");
  EXPECT_EQ(shown().last(), QStringLiteral("TO cc@example.jp"));
  // Who has chosen a kind goes on with the address; letters and the wheel choose none.
  const int row = last;
  kindOf(row)->setFocus();
  kindOf(row)->showPopup();
  QAbstractItemView* choices = kindOf(row)->view();
  ASSERT_TRUE(WaitFor([choices] { return choices->isVisible(); }));
  QTest::keyClick(choices, Qt::Key_Escape);
  EXPECT_FALSE(choices->isVisible());
  ASSERT_TRUE(window.isVisible()) << "Escape is for the list";
  kindOf(row)->showPopup();
  ASSERT_TRUE(WaitFor([choices] { return choices->isVisible(); }));
  for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) {
    QTest::keyClick(choices, Qt::Key(key));
  }
  type("x");
  EXPECT_EQ(shown().last(), QStringLiteral("BC cc@example.jpx"));
  kindOf(row)->setFocus();
  QTest::keyClick(kindOf(row), Qt::Key_Up);
  QTest::keyClick(kindOf(row), Qt::Key_Up);
  EXPECT_EQ(shown().last(), QStringLiteral("TO cc@example.jpx")) << "keys stay with the kind";
  type("c");
  EXPECT_EQ(shown().last(), QStringLiteral("TO cc@example.jpx")) << "an address that is done";
  QWheelEvent wheel(QPointF(5, 5), kindOf(row)->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -120),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(kindOf(row), &wheel);
  EXPECT_EQ(shown().last(), QStringLiteral("TO cc@example.jpx"));
  // Tab in the empty row leads out of the list, to the body.
  test::ClickRow(list, list.item(list.rowCount() - 1, 1));
  QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
  QCoreApplication::processEvents();
  EXPECT_EQ(window.focusWidget(), &Child<QPlainTextEdit>(window, u"txMemo"));
  // A row that is no address stays as it was typed, through saving and opening.
  test::ClickRow(list, list.item(row, 1));
  type(" q@example.jp");
  test::ClickRow(list, list.item(list.rowCount() - 1, 1));
  type("\"Yamada, Taro\" <p2@example.jp>x");
  const QStringList typed = shown();
  const SerialId serialId = window.Tag();
  window.close();
  ASSERT_TRUE(Gone());
  MessageWindow& again = Open(serialId);
  auto& rows = Child<QTableWidget>(again, u"lvMailaddress");
  QStringList kept;
  for (int i = 0; i < rows.rowCount(); ++i) {
    const QString text = rows.item(i, 1)->text();
    const auto* kinds = qobject_cast<QComboBox*>(rows.cellWidget(i, 0));
    if (!text.isEmpty()) kept.append(kinds->currentData().toString() + u' ' + text);
  }
  EXPECT_EQ(kept, typed);
}

// Rows as the keys find them: a list of addresses is pasted, one after the other is taken away, and
// a row that was reached by an arrow key is added to.
TEST_F(MessageWindowTest, RowsArePastedDeletedAndReachedByKeys) {
  MessageWindow& window = New();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const auto texts = [&list] {
    QStringList rows;
    for (int row = 1; row < list.rowCount(); ++row) rows.append(list.item(row, 1)->text());
    return rows.join(u'|');
  };
  QGuiApplication::clipboard()->setText(QStringLiteral("a@x.jp, b@x.jp, c@x.jp"));
  list.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&list, Qt::Key_V, Qt::ControlModifier);
  const auto enter = [&window] {
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    QCoreApplication::processEvents();  // a box is closed later
  };
  enter();
  EXPECT_EQ(texts(), QStringLiteral("a@x.jp|b@x.jp|c@x.jp|"));
  QTest::keyClick(window.focusWidget(), Qt::Key_Up);
  QTest::keyClicks(window.focusWidget(), QStringLiteral("p"));
  enter();
  EXPECT_EQ(texts(), QStringLiteral("a@x.jp|b@x.jp|c@x.jpp|"));
  QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
  QCoreApplication::processEvents();
  {
    const QSignalBlocker quiet(&list);
    list.setCurrentCell(1, 1);
  }
  QTest::keyClick(&list, Qt::Key_Delete);
  QTest::keyClick(&list, Qt::Key_Delete);
  EXPECT_EQ(texts(), QStringLiteral("c@x.jpp|"));
}

// The click that closed the list of offers was swallowed, and the next keys went into the address.
TEST_F(MessageWindowTest, AClickBesideTheOffersIsForWhatLiesThere) {
  AddBook(Context(), u"TO: suzuki@example.jp 鈴木");
  MessageWindow& window = New();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  auto& subject = Child<QLineEdit>(window, u"txSubject");
  // The body's viewport takes no keyboard itself.
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  for (QWidget* target : {static_cast<QWidget*>(&subject), static_cast<QWidget*>(&memo)}) {
    const int last = list.rowCount() - 1;
    test::ClickRow(list, list.item(last, 1));
    auto* box = qobject_cast<QLineEdit*>(list.indexWidget(list.model()->index(last, 1)));
    ASSERT_NE(box, nullptr);
    QTest::keyClicks(box, QStringLiteral("suzuki@example.jp"));
    QWidget* offers = box->completer()->popup();
    ASSERT_TRUE(WaitFor([offers] { return offers->isVisible(); }));
    const QPoint at = target->mapToGlobal(target->rect().center());
    QTest::mouseClick(offers, Qt::LeftButton, {}, offers->mapFromGlobal(at));
    EXPECT_TRUE(WaitFor([&] { return window.focusWidget() == target; }));
    QTest::keyClicks(window.focusWidget(), QStringLiteral("Dear"));
    EXPECT_EQ(list.item(last, 1)->text(), QStringLiteral("suzuki@example.jp"));
  }
  EXPECT_EQ(subject.text() + memo.toPlainText(), QStringLiteral("DearDear"));
}

}  // namespace
}  // namespace vorn
