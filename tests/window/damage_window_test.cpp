// What the program says of a damaged file, and what the user decides.

#include "storage/known_damage.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

class DamageWindowTest : public MessageWindowTest {
 protected:
  // As pages that went bad leave the messages.
  void DamageSources() {
    ASSERT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
    ASSERT_TRUE(Context().Data.Execute(QStringLiteral("UPDATE long_binary SET DATA = 'x'")));
    Context().Data.Close();
  }
  bool WaitsForDecision() { return !UndecidedDamage(Context()).isEmpty(); }
  // Presses a button of the box that tells of damage; its text.
  QString Answer(const std::function<void()>& cause, bool receive) {
    QString text;
    EXPECT_TRUE(InModal<QMessageBox>(cause, [&](QMessageBox& box) {
      text = box.text();
      for (QAbstractButton* button : box.buttons()) {
        const bool accepts = box.buttonRole(button) == QMessageBox::AcceptRole;
        if (accepts == receive) return button->click();
      }
    }));
    return text;
  }
};

TEST_F(DamageWindowTest, AMessageThatCannotBeReadIsNamedAndTheUserDecides) {
  const SerialId serial = Store(kPlain, 4);
  DamageSources();
  MessageWindow* window = nullptr;
  const QString told = Answer([&] { window = &Open(serial); }, false);
  EXPECT_TRUE(told.contains(QStringLiteral("壊れています"))) << told.toStdString();
  const QString shown = window->findChild<QPlainTextEdit*>(QStringLiteral("txMemo"))->toPlainText();
  EXPECT_TRUE(shown.contains(QStringLiteral("読み込めません"))) << shown.toStdString();
  window->close();
  EXPECT_TRUE(Gone());
  // Nothing is received now, and the next start asks again.
  EXPECT_TRUE(WaitsForDecision());
  EndProgram();
  StartProgram();
  Answer([this] { LogInWith(QString()); }, true);
  AwaitInbox();
  EXPECT_FALSE(WaitsForDecision());
}

}  // namespace
}  // namespace vorn
