#include "mail/window/message_controls.h"

#include <QActionGroup>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QToolBar>
#include <QToolButton>

#include "kit/window/access_names.h"
#include "kit/window/plain_text.h"
#include "mail/message_document.h"
#include "mail/window/bars/message_bars.h"
#include "mail/window/body/message_body.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/message_window.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QActionGroup* GroupOf(QWidget& place) {
  auto* group = place.findChild<QActionGroup*>(QString(), Qt::FindDirectChildrenOnly);
  return group != nullptr ? group : new QActionGroup(&place);
}

void AddLine(QWidget& place) {
  auto* line = new QAction(&place);
  line->setSeparator(true);
  place.addAction(line);
}

}  // namespace

MessageControls::MessageControls(const MessageParts& parts)
    : QObject(&parts.window),
      parts_(parts),
      tbMenu_(NewToolbar(QStringLiteral("tbMenu"), Ui::tr("コマンド"))),
      tbReading_(NewToolbar(QStringLiteral("tbReading"), Ui::tr("読む"))),
      places_{{CommandPlace::Keys, &parts.window},
              {CommandPlace::MenuBar, parts.window.menuBar()},
              {CommandPlace::CommandBar, tbMenu_},
              {CommandPlace::ReadingBar, tbReading_}},
      commands_(MessageCommands()) {
  for (const MessageCommand& command : commands_) actions_.append(Add(command));
}

QToolBar* MessageControls::NewToolbar(const QString& name, const QString& text) {
  QToolBar* bar = parts_.window.addToolBar(text);
  NameMoreButton(*bar);
  bar->setObjectName(name);
  bar->setMovable(false);
  return bar;
}

QAction* MessageControls::Add(const MessageCommand& command) {
  QWidget& place = *places_.value(command.place);
  if (command.traits.begins) AddLine(place);
  if (command.traits.opens == CommandPlace::Nowhere) return NewAction(place, command);
  return command.place == CommandPlace::CommandBar ? NewMenuButton(command)
                                                   : NewMenu(place, command);
}

QAction* MessageControls::NewAction(QWidget& place, const MessageCommand& command) {
  auto* action = new QAction(command.traits.icon, command.text, &place);
  action->setObjectName(command.traits.name);
  action->setShortcuts(command.traits.keys);
  if (const QKeySequence& key = command.traits.shownKey; !key.isEmpty()) {
    action->setToolTip(ShownToolTip(command.text + u' ' + key.toString(QKeySequence::NativeText)));
  }
  action->setCheckable(command.traits.isChecked != nullptr);
  if (command.traits.oneOf) GroupOf(place)->addAction(action);
  place.addAction(action);
  connect(action, &QAction::triggered, this, [this, &command] { Run(command); });
  return action;
}

QAction* MessageControls::NewMenu(QWidget& place, const MessageCommand& command) {
  auto* menu = new QMenu(command.text, &place);
  menu->setObjectName(command.traits.name);
  place.addAction(menu->menuAction());
  places_[command.traits.opens] = menu;
  connect(menu, &QMenu::aboutToShow, this, &MessageControls::Opening);
  return menu->menuAction();
}

// A menu that is in the menu bar as well.
QAction* MessageControls::NewMenuButton(const MessageCommand& command) {
  auto* button = new QToolButton;
  button->setObjectName(command.traits.name);
  button->setText(command.text);
  button->setIcon(command.traits.icon);
  button->setMenu(qobject_cast<QMenu*>(places_.value(command.traits.opens)));
  button->setPopupMode(QToolButton::InstantPopup);
  connect(tbMenu_, &QToolBar::toolButtonStyleChanged, button, &QToolButton::setToolButtonStyle);
  return tbMenu_->addWidget(button);
}

void MessageControls::Run(const MessageCommand& command) {
  if (command.traits.needsText && parts_.document.IsUnreadable()) {
    ShowBox(&parts_.window, QMessageBox::Critical, parts_.form.Body().Text()->toPlainText());
    return;
  }
  if (command.traits.needsRow) {
    parts_.bars.ShowErased();  // another program may have done it just now
    parts_.window.ShowState();
    if (parts_.bars.SaysErased()) return;
  }
  command.run(parts_);
}

void MessageControls::Show() {
  const MessageState state = StateOf(parts_);
  for (qsizetype i = 0; i < commands_.size(); ++i) {
    const CommandTraits& traits = commands_[i].traits;
    QAction* action = actions_[i];
    const bool isEnabled = traits.isEnabled == nullptr || traits.isEnabled(state);
    action->setEnabled(isEnabled && !(traits.needsRow && state.isErased));
    if (traits.isShown != nullptr) action->setVisible(traits.isShown(state));
    if (traits.isChecked != nullptr) action->setChecked(traits.isChecked(state));
    if (traits.text != nullptr) action->setText(traits.text(state));
  }
  tbReading_->setVisible(state.IsRead());
}

void MessageControls::ShowIconsAlone(bool alone) {
  const auto style = alone ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon;
  tbMenu_->setToolButtonStyle(style);
  tbReading_->setToolButtonStyle(style);
}

}  // namespace vorn
