// What a screen reader finds: every control that a user works with has a name.

#include "mail/window/reading/reading_pane.h"
#include "objects/object_types.h"
#include "objects/window/objects_window.h"
#include "objects/window/settings_window.h"
#include "window/editing_fixture.h"
#include "window/folder_page_fixture.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

bool NeedsName(QAccessible::Role role) {
  switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::List:
    case QAccessible::PageTab:
    case QAccessible::ButtonMenu:
    case QAccessible::MenuItem:
      return true;
    default:
      return false;
  }
}

// The nameless controls of a window, by what they are called in the program.
void Walk(QAccessibleInterface* node, const QString& path, QStringList& nameless, int depth = 0) {
  constexpr int kDeepest = 30;
  if (node == nullptr || !node->isValid() || node->state().invisible || depth > kDeepest) return;
  const QObject* object = node->object();
  const QString here = object == nullptr
                           ? path
                           : path + u'/' + object->objectName() + u'(' +
                                 QString::fromLatin1(object->metaObject()->className()) + u')';
  const bool isSeparator = node->role() == QAccessible::MenuItem && object == nullptr;
  if (NeedsName(node->role()) && !isSeparator && !node->state().disabled &&
      node->text(QAccessible::Name).trimmed().isEmpty()) {
    nameless.append(here);
  }
  for (int i = 0; i < node->childCount(); ++i) Walk(node->child(i), here, nameless, depth + 1);
}

QString Nameless(QWidget& window) {
  QStringList nameless;
  Walk(QAccessible::queryAccessibleInterface(&window), {}, nameless);
  return nameless.join(u'\n');
}

TEST_F(FolderPageTest, TheMainWindowAndItsPageAreThereForAScreenReader) {
  QAccessible::setActive(true);
  Begin(3, 2);
  auto& menu = test::Child<QMenu>(*program_->Parent(), u"menuPane");
  menu.actions().at(1)->trigger();
  Press(Qt::Key_Down);
  ASSERT_TRUE(WaitFor([this] {
    const auto* pane = Browser()->findChild<ReadingPane*>();
    return pane != nullptr && !pane->ShownMessage().IsEmpty();
  }));
  EXPECT_EQ(Nameless(*program_->Parent()).toStdString(), "");
  QAccessibleInterface* page = QAccessible::queryAccessibleInterface(View());
  ASSERT_NE(page, nullptr);
  EXPECT_GT(page->childCount(), 0) << "the page is empty for a screen reader";
}

TEST_F(MessageWindowTest, EveryControlHasANameForAScreenReader) {
  for (const int status : {4, 1}) {
    MessageWindow& window = OpenStored(
        "From: a@b\r\nTo: c@d\r\nSubject: s\r\nContent-Type: text/html\r\n\r\n<p>words\r\n",
        status);
    EXPECT_EQ(Nameless(window).toStdString(), "") << status;
    window.close();
    EXPECT_TRUE(Gone());
  }
}

TEST_F(EditingTest, EveryControlHasANameForAScreenReader) {
  SettingsWindow settings(context());
  settings.show();
  auto& tabs = test::Child<QTabWidget>(settings, u"tsPage");
  for (int i = 0; i < tabs.count(); ++i) {
    tabs.setCurrentIndex(i);
    EXPECT_EQ(Nameless(settings).toStdString(), "");
  }
  for (const QString& type : {object_type::kAccount, object_type::kFolder, object_type::kProfile,
                              object_type::kBook, object_type::kBookmark}) {
    ObjectsWindow& window = Open(type);
    auto& pages = test::Child<QTabWidget>(window, u"tsPage");
    for (int i = 0; i < pages.count(); ++i) {
      pages.setCurrentIndex(i);
      EXPECT_EQ(Nameless(window).toStdString(), "") << type.toStdString();
    }
  }
}

}  // namespace
}  // namespace vorn
