// The windows in English: what is Japanese in them is the user's.

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QRegularExpression>

#include "frame/language_texts.h"
#include "frame/ui_language.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/object_types.h"
#include "objects/window/settings_window.h"
#include "transfer/window/rule_window.h"
#include "window/editing_fixture.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

QStringList TextsOf(const QWidget& widget) {
  QStringList texts{widget.windowTitle(), widget.toolTip(), widget.accessibleName(),
                    widget.accessibleDescription()};
  const bool isEdited = qobject_cast<const QLineEdit*>(&widget) != nullptr;
  for (const char* property : {"text", "title", "placeholderText", "prefix", "suffix"}) {
    if (!isEdited || qstrcmp(property, "text") != 0) {
      texts.append(widget.property(property).toString());
    }
  }
  if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget)) {
    for (int i = 0; i < tabs->count(); ++i) texts.append(tabs->tabText(i));
  }
  if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
    for (int i = 0; i < box->count(); ++i) texts.append(box->itemText(i));
  }
  if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
    for (int i = 0; header->model() != nullptr && i < header->count(); ++i) {
      texts.append(header->model()->headerData(i, header->orientation()).toString());
    }
  }
  for (const QAction* action : widget.actions()) {
    texts += QStringList{action->text(), action->toolTip(), action->statusTip()};
  }
  return texts;
}

// Without the name of the language itself and the bookmarks of a profile that was made in Japanese,
// which are the user's.
std::string Japanese(const QWidget& window) {
  static const QRegularExpression japanese(
      QStringLiteral("[\\x{3000}-\\x{30ff}\\p{Han}\\x{ff00}-\\x{ffef}]"));
  QStringList texts = TextsOf(window);
  for (const QWidget* widget : window.findChildren<QWidget*>()) texts += TextsOf(*widget);
  for (const char16_t* data : {u"日本語", u"ホームページ", u"掲示板"}) {
    texts.removeAll(QString::fromUtf16(data));
  }
  texts.removeIf([](const QString& text) { return !text.contains(japanese); });
  texts.removeDuplicates();
  return texts.join(u'\n').toStdString();
}

TEST_F(EditingTest, InEnglishNothingIsJapanese) {
  const LanguageTexts english(QStringLiteral("en"));
  SettingsWindow settings(context());
  settings.show();
  EXPECT_EQ(Japanese(settings), "");
  RuleWindow rules(context(), nullptr);
  rules.show();
  EXPECT_EQ(Japanese(rules), "");
  for (const QString& type : {object_type::kAccount, object_type::kFolder, object_type::kProfile,
                              object_type::kBook, object_type::kBookmark}) {
    EXPECT_EQ(Japanese(Open(type)), "") << type.toStdString();
  }
}

class EnglishMessageTest : public MessageWindowTest {
 protected:
  void SetUp() override {
    KeepUiLanguage(QStringLiteral("en"));
    MessageWindowTest::SetUp();
  }
  void TearDown() override {
    MessageWindowTest::TearDown();
    KeepUiLanguage(QString());
  }
};

TEST_F(EnglishMessageTest, InEnglishNothingIsJapanese) {
  for (const int status : {kStatusReceived, kStatusSent, kStatusEdit}) {
    MessageWindow& window = OpenStored(
        "From: a@b\r\nTo: c@d\r\nSubject: s\r\nDate: Tue, 3 Nov 2026 09:05:07 +0000\r\n"
        "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n\r\ntext\r\n--b\r\n"
        "Content-Type: application/pdf; name=a.pdf\r\n\r\n%PDF\r\n--b--\r\n",
        status);
    EXPECT_EQ(Japanese(window), "") << status;
    window.close();
    EXPECT_TRUE(Gone());
  }
  EXPECT_EQ(Japanese(*program_->Parent()), "");
}

}  // namespace
}  // namespace vorn
