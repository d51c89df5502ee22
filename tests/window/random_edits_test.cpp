// Random edits by keys and mouse, left in any state, and then one command: what the window showed
// is what is sent and kept.

#include <QPrintDialog>
#include <algorithm>

#include "mail/store/drafts.h"
#include "mail/window/fields/attachment_list.h"
#include "mail/window/fields/header_list.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

// What a user sees of a message.
struct Shown {
  QStringList recipients;
  QString subject;
  QString text;
  QStringList headerLines;
  QStringList attachments;

  bool operator==(const Shown&) const = default;
};

void PrintTo(const Shown& shown, std::ostream* out) {
  *out << qPrintable(shown.recipients.join(u'|') + u'\n' + shown.subject + u'\n' + shown.text +
                     u'\n' + shown.headerLines.join(u'|') + u'\n' + shown.attachments.join(u'|'));
}

class RandomEdits : public MessageWindowTest {
 protected:
  QTableWidget& Rows() const { return Child<QTableWidget>(*window_, u"lvMailaddress"); }
  QString RowText(int row) const {
    const auto* box =
        qobject_cast<const QLineEdit*>(Rows().indexWidget(Rows().model()->index(row, 1)));
    return box != nullptr ? box->text() : Rows().item(row, 1)->text();
  }
  QString Kind(int row) const {
    const auto* kinds = qobject_cast<QComboBox*>(Rows().cellWidget(row, 0));
    return kinds == nullptr ? QString() : kinds->currentData().toString();  // of a received one
  }
  // Others say where answers and receipts go.
  bool IsRecipient(int row) const {
    return Kind(row) == u"TO" || Kind(row) == u"CC" || Kind(row) == u"BC";
  }
  Shown Look(bool withKinds = true) const {
    static const QRegularExpression address(QStringLiteral("[a-z0-9.]+@[a-z.]+"));
    Shown shown;
    for (int row = 0; row < Rows().rowCount(); ++row) {
      if (Kind(row) == u"FROM" || !(withKinds || IsRecipient(row))) continue;
      const QString text = RowText(row);
      auto matches = address.globalMatch(text);
      while (matches.hasNext()) {
        shown.recipients.append((withKinds ? Kind(row) + u' ' : QString()) +
                                matches.next().captured());
      }
    }
    std::sort(shown.recipients.begin(), shown.recipients.end());
    shown.subject = Child<QLineEdit>(*window_, u"txSubject").text();
    shown.text = Child<QPlainTextEdit>(*window_, u"txMemo").toPlainText();
    shown.headerLines = HeaderLines();
    const auto& files = Child<AttachmentList>(*window_, u"lvClip");
    for (int row = 0; row < files.count(); ++row) {
      shown.attachments.append(files.item(row)->text());  // with its size
    }
    return shown;
  }
  HeaderList& Headers() const { return Child<HeaderList>(*window_, u"lvHeader"); }
  QStringList HeaderLines() const {
    QStringList lines;
    for (int row = 0; row < Headers().rowCount(); ++row) {
      const auto* box =
          qobject_cast<const QLineEdit*>(Headers().indexWidget(Headers().model()->index(row, 0)));
      const QString line = box != nullptr ? box->text() : Headers().item(row, 0)->text();
      if (!line.isEmpty() && line != u"X-Name:") lines.append(line.simplified());
    }
    return lines;
  }
  // Whether every row that holds something holds addresses alone.
  bool CanBeSent() const {
    static const QRegularExpression good(
        QStringLiteral("^[a-z0-9.]+@example\\.jp(; [a-z0-9.]+@example\\.jp)*$"));
    bool any = false;
    for (int row = 0; row < Rows().rowCount(); ++row) {
      if (Kind(row) == u"FROM" || RowText(row).isEmpty()) continue;
      if (!good.match(RowText(row)).hasMatch()) return false;
      any = any || IsRecipient(row);
    }
    return any;
  }

  QString Address() { return QStringLiteral("a%1@example.jp").arg(++addresses_); }
  QString Words() {
    static const QStringList words{QStringLiteral("見積"), QStringLiteral("㈱髙橋"),
                                   QStringLiteral("plain "), QStringLiteral("😀"),
                                   QStringLiteral("ﾃｽﾄ")};
    return words[chance_.bounded(words.size())];
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* focus = window_->focusWidget();
    QTest::keyClick(focus == nullptr ? window_ : focus, Qt::Key(key), modifiers);
    QCoreApplication::processEvents();  // the view ends an edit in its own time
  }
  void Write(const QString& text) {
    for (const QChar c : text) {
      QWidget* focus = window_->focusWidget();
      if (focus == nullptr) return;
      QTest::sendKeyEvent(QTest::Click, focus, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
  }
  // The sender's row is left alone: its account is not the matter here.
  int SomeRow() {
    constexpr int kTries = 20;
    int row = Rows().rowCount() - 1;
    for (int i = 0; i < kTries && Kind(row) == u"FROM"; ++i) {
      row = static_cast<int>(chance_.bounded(Rows().rowCount()));
    }
    return row;
  }
  void Act() {
    const int row = SomeRow();
    QTableWidgetItem* item = Rows().item(row, 1);
    Child<QTabWidget>(*window_, u"tsPage").setCurrentIndex(0);
    const auto action = chance_.bounded(15);
    journal_ += QStringLiteral(" %1/%2").arg(action).arg(row);
    switch (action) {
      case 0:
        test::ClickRow(Rows(), item);
        break;
      case 1:
        QTest::mouseDClick(Rows().viewport(), Qt::LeftButton, {}, test::PlaceOf(Rows(), item));
        Key(Qt::Key_A, Qt::ControlModifier);
        Write(Address());
        break;
      case 2:
        test::ClickRow(Rows(), Rows().item(Rows().rowCount() - 1, 1));
        Write(Address());
        break;
      case 3: {
        const int keys[] = {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Escape,
                            Qt::Key_Delete, Qt::Key_Up,  Qt::Key_Down};
        const int key = keys[chance_.bounded(6)];
        QWidget* focus = window_->focusWidget();
        // Escape outside an open row closes the window, as its menu says.
        const bool isInRow = focus != nullptr && focus->objectName() == u"txMailaddress";
        if (key != Qt::Key_Escape || isInRow) Key(key);
        journal_ += QStringLiteral("(%1)").arg(key, 0, 16);
        break;
      }
      case 4: {
        auto& subject = Child<QLineEdit>(*window_, u"txSubject");
        QTest::mouseClick(&subject, Qt::LeftButton);
        Write(Words());
        break;
      }
      case 5:
      case 6: {
        auto& memo = Child<QPlainTextEdit>(*window_, u"txMemo");
        QTest::mouseClick(memo.viewport(), Qt::LeftButton, {}, QPoint(3, 3));
        if (chance_.bounded(2) == 0) Key(Qt::Key_Return);
        Write(Words());
        break;
      }
      case 7: {
        auto* kinds = qobject_cast<QComboBox*>(Rows().cellWidget(row, 0));
        kinds->setFocus();
        QTest::keyClick(kinds, Qt::Key_Down);
        break;
      }
      case 8:
        QGuiApplication::clipboard()->setText(Address() + QStringLiteral("; ") + Address());
        test::ClickRow(Rows(), Rows().item(Rows().rowCount() - 1, 1));
        Key(Qt::Key_V, Qt::ControlModifier);
        break;
      case 9: {  // with an input method, wherever the focus is
        QWidget* focus = window_->focusWidget();
        if (focus == nullptr || focus->objectName() == u"txMailaddress") break;
        QInputMethodEvent composing(QStringLiteral("へんかん"), {});
        QCoreApplication::sendEvent(focus, &composing);
        QInputMethodEvent committed;
        committed.setCommitString(QStringLiteral("変換"));
        focus = window_->focusWidget();
        if (focus->objectName() != u"txMailaddress") {
          QCoreApplication::sendEvent(focus, &committed);
        }
        break;
      }
      case 10:
        EditHeader();
        break;
      case 11:
        Menu(*window_, u"menuEditsPrioritys").actions()[chance_.bounded(3)]->trigger();
        break;
      case 12:
        Attach();
        break;
      case 13: {
        auto& files = Child<AttachmentList>(*window_, u"lvClip");
        if (files.count() == 0) break;
        QTest::mouseClick(files.viewport(), Qt::LeftButton, {},
                          test::PlaceOf(files, files.item(0)));
        QTest::keyClick(&files, Qt::Key_Delete);
        break;
      }
      default:
        Key(Qt::Key_Z, Qt::ControlModifier);
    }
    QCoreApplication::processEvents();
    // An open list of kinds takes all keys until it is left.
    QWidget* list = QApplication::activePopupWidget();
    if (list != nullptr && list->inherits("QComboBoxPrivateContainer")) {
      QTest::keyClick(list, Qt::Key_Escape);
      journal_ += u'!';
    }
  }
  // One line, left open.
  void EditHeader() {
    Child<QTabWidget>(*window_, u"tsPage").setCurrentIndex(1);
    const int row = static_cast<int>(chance_.bounded(Headers().rowCount()));
    test::ClickRow(Headers(), Headers().item(row, 0));
    const QWidget* focus = window_->focusWidget();
    if (focus == nullptr || focus->objectName() != u"txHeader") return;
    if (chance_.bounded(4) == 0) {
      Key(Qt::Key_Escape);
      QTest::keyClick(&Headers(), Qt::Key_Delete);
      return;
    }
    Key(Qt::Key_A, Qt::ControlModifier);
    Write(QStringLiteral("X-Test%1: ").arg(++addresses_) + Words().trimmed());
  }
  void Attach() {
    const QByteArray name = "file" + QByteArray::number(++addresses_) + ".bin";
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(File(name, QByteArray(1 + addresses_ % 50, '\0')))});
    QWidget* place = window_->focusWidget() == nullptr ? window_ : window_->focusWidget();
    QDragEnterEvent enter({3, 3}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(place, &enter);
    QDropEvent drop(QPointF(3, 3), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(place, &drop);
  }
  // The page that would be printed, by Print and Cancel.
  void CheckPrinted(const Shown& shown) {
    QString page;
    const auto print = [this, &page] {
      for (QAction* action : Menu(*window_, u"menuFiles").actions()) {
        if (action->shortcut() == QKeySequence(QKeySequence::Print)) action->trigger();
      }
      const QDir temp(Context().TempFolder);  // the file is gone as soon as it has been read
      for (const QString& name : temp.entryList({QStringLiteral("print_*")})) {
        page += QString::fromUtf8(test::ReadFile(temp.filePath(name)));
      }
    };
    ASSERT_TRUE(InModal<QPrintDialog>(print, [](QPrintDialog& dialog) { dialog.reject(); }));
    EXPECT_TRUE(page.contains(shown.subject.toHtmlEscaped())) << qPrintable(page);
    QString text = shown.text;
    text.replace(u'\n', QStringLiteral("<BR>"));
    EXPECT_TRUE(page.contains(text)) << qPrintable(page);
    for (const QString& line : shown.recipients) {
      EXPECT_TRUE(!line.startsWith(u"TO ") || page.contains(line.mid(3))) << qPrintable(page);
    }
    EXPECT_TRUE(WaitFor([this] {
      return QDir(Context().TempFolder).entryList({QStringLiteral("print_*")}).isEmpty();
    }));
    EXPECT_EQ(Look(), shown) << qPrintable(journal_);
  }
  // What a sudden death leaves comes back as it was.
  void CheckDraft(const Shown& shown, const SerialId& serialId) {
    window_->KeepDraftNow();
    const DiskPtr draft =
        Context().Objects.Find(SerialId(QStringLiteral("draft_") + serialId.Text()));
    CloseWindow();
    if (draft != nullptr) {  // something was changed
      Context().Objects.Add(draft);
      ASSERT_TRUE(Drafts::Restore(Context(), serialId, {}));
    }
    Reopen(serialId);
    EXPECT_EQ(Look(), shown) << qPrintable(journal_);
    CloseWindow();
  }
  void CheckKept(const Shown& shown, const SerialId& serialId) {
    CloseWindow();
    Reopen(serialId);
    EXPECT_EQ(Look(), shown) << qPrintable(journal_);
    CloseWindow();
  }
  void Reopen(const SerialId& serialId) {
    ASSERT_TRUE(Gone());
    window_ = &Open(serialId);
  }
  void CloseWindow() {
    window_->close();
    ASSERT_TRUE(Gone());
  }
  void CheckSent(const Shown& shown, const QStringList& recipients, const SerialId& serialId) {
    const qsizetype before = smtp_.Messages().size();
    window_->activateWindow();  // a list of offers that closes leaves none active here
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
    Key(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(Gone());
    ASSERT_TRUE(WaitFor([&] { return smtp_.Messages().size() == before + 1; }));
    const test::SentMessage sent = smtp_.Messages().last();
    QStringList reached;
    for (const QByteArray& address : sent.recipients) {
      reached.append(QString::fromLatin1(address));
    }
    std::sort(reached.begin(), reached.end());
    EXPECT_EQ(reached, recipients) << qPrintable(journal_);
    for (const QString& line : shown.recipients) {
      const bool isBlind = line.startsWith(u"BC ");
      EXPECT_FALSE(isBlind && sent.source.contains(line.mid(3).toLatin1()));
    }
    ASSERT_TRUE(WaitFor([&] { return Column(serialId, QStringLiteral("STATUS")).toInt() == 3; }));
    Reopen(Store(sent.source, 4));
    EXPECT_EQ(Look().subject, shown.subject);
    EXPECT_EQ(Look().text.trimmed(), shown.text.trimmed());
    EXPECT_EQ(Look().headerLines, shown.headerLines) << qPrintable(journal_);
    EXPECT_EQ(Look().attachments, shown.attachments) << qPrintable(journal_);
    CloseWindow();
  }

  MessageWindow* window_ = nullptr;
  QRandomGenerator chance_;
  int addresses_ = 0;
  QString journal_;  // the actions so far, for who looks into a failure
};

TEST_F(RandomEdits, WhatIsShownIsWhatIsSentAndKept) {
  const quint32 seed = test::Seed("VORN_EDITS_SEED");
  const int rounds = test::Rounds(12, 200);
  int sent = 0;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("VORN_EDITS_SEED=" + std::to_string(seed) + " round " + std::to_string(round));
    chance_.seed(seed + static_cast<quint32>(round));
    window_ = &OpenStored(kDraft, 1);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window_));
    const SerialId serialId = window_->Tag();
    journal_.clear();
    for (int action = static_cast<int>(chance_.bounded(4, 16)); action > 0; --action) Act();
    const Shown shown = Look();
    if (chance_.bounded(4) == 0) CheckPrinted(shown);
    if (CanBeSent() && chance_.bounded(2) == 0) {
      CheckSent(shown, Look(false).recipients, serialId);
      ++sent;
    } else if (chance_.bounded(3) == 0) {
      CheckDraft(shown, serialId);
    } else {
      CheckKept(shown, serialId);
    }
  }
  std::printf("%d random edits from seed %u, %d of them sent\n", rounds, seed, sent);
}

}  // namespace
}  // namespace vorn
