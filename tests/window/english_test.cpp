// The windows in English: what is Japanese in them is the user's.

#include <algorithm>

#include "frame/language_texts.h"
#include "frame/ui_language.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/object_types.h"
#include "objects/window/form_page.h"
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

// The entries of a menu, or of the menu bar, that a letter does not open because it is another's.
std::string SharedLetters(const QWidget& window) {
  QStringList shared;
  QList<QWidget*> menus = window.findChildren<QWidget*>();
  menus.removeIf([](const QWidget* widget) {
    return qobject_cast<const QMenu*>(widget) == nullptr &&
           qobject_cast<const QMenuBar*>(widget) == nullptr;
  });
  EXPECT_GT(menus.size(), 3);
  for (QWidget* place : menus) {
    if (auto* menu = qobject_cast<QMenu*>(place))
      Q_EMIT menu->aboutToShow();  // some are filled then
    QHash<QString, QString> owners;
    for (const QAction* action : place->actions()) {
      const QString letter = QKeySequence::mnemonic(action->text()).toString();
      if (letter.isEmpty() || !action->isVisible()) continue;
      if (owners.contains(letter)) {
        shared.append(
            QStringList{place->objectName(), owners.value(letter), action->text()}.join(u' '));
      }
      owners.insert(letter, action->text());
    }
  }
  return shared.join(u'\n').toStdString();
}

// What a letter leads to on a page of an editing window.
QString TextWithLetter(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    return label->buddy() == nullptr ? QString() : label->text();
  }
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  return button == nullptr ? QString() : button->text();
}

// The boxes and buttons of a page that a letter does not reach alone, since it is another's there,
// a tab's or one of the buttons below.
std::string SharedBoxLetters(const QWidget& window) {
  const QList<FormPage*> pages = window.findChildren<FormPage*>();
  EXPECT_FALSE(pages.isEmpty());
  QStringList everywhere;
  for (const auto* tabs : window.findChildren<QTabWidget*>()) {
    for (int i = 0; i < tabs->count(); ++i) everywhere.append(tabs->tabText(i));
  }
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    const bool isOfPage = std::any_of(pages.begin(), pages.end(), [&](const FormPage* page) {
      return page->isAncestorOf(button);
    });
    if (!isOfPage) everywhere.append(button->text());
  }
  QStringList shared;
  for (const FormPage* page : pages) {
    QStringList texts = everywhere;
    for (const auto* widget : page->findChildren<QWidget*>()) texts += TextWithLetter(*widget);
    QHash<QString, QString> owners;
    for (const QString& text : std::as_const(texts)) {
      const QString letter = QKeySequence::mnemonic(text).toString();
      if (letter.isEmpty()) continue;
      if (owners.contains(letter)) {
        shared.append(QStringList{page->Title(), owners.value(letter), text}.join(u' '));
      }
      owners.insert(letter, text);
    }
  }
  return shared.join(u'\n').toStdString();
}

TEST_F(EditingTest, ALetterLeadsToOneBoxOfAPage) {
  for (const char16_t* language : {u"ja", u"en"}) {
    const LanguageTexts texts(QString::fromUtf16(language));
    EXPECT_EQ(SharedBoxLetters(SettingsWindow(context())), "");
    for (const QString& type : {object_type::kAccount, object_type::kFolder, object_type::kProfile,
                                object_type::kBook, object_type::kBookmark}) {
      EXPECT_EQ(SharedBoxLetters(Open(type)), "") << type.toStdString();
    }
  }
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
    EXPECT_EQ(SharedLetters(window), "") << status;
    window.close();
    EXPECT_TRUE(Gone());
  }
  EXPECT_EQ(Japanese(*program_->Parent()), "");
  EXPECT_EQ(SharedLetters(*program_->Parent()), "");
}

TEST_F(MessageWindowTest, ALetterOpensOneEntryOfAMenu) {
  for (const int status : {kStatusReceived, kStatusEdit}) {
    MessageWindow& window =
        OpenStored("From: a@b\r\nTo: c@d\r\nSubject: s\r\n\r\ntext\r\n", status);
    // Both letters are as old as the menu; who presses F twice is at the second one.
    EXPECT_EQ(SharedLetters(window), "menuFilesMessages 転送(&F) 保存フォルダ(&F)..") << status;
    window.close();
    EXPECT_TRUE(Gone());
  }
  EXPECT_EQ(SharedLetters(*program_->Parent()), "");
}

}  // namespace
}  // namespace vorn
