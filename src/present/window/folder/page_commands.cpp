#include "present/window/folder/page_commands.h"

#include <QAction>
#include <QMenu>
#include <QTimer>

#include "kit/window/plain_text.h"
#include "mail/message_model.h"
#include "mail/window/host/message_host.h"
#include "objects/object_types.h"
#include "present/message_navigation.h"
#include "present/shown_page.h"
#include "present/window/folder/page_messages.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr char kAlsoInPane[] = "alsoInPane";

}  // namespace

PageCommands::PageCommands(PageMessages& messages, MessageNavigation& navigation, ShownPage& page,
                           QWidget& window)
    : messages_(messages),
      navigation_(navigation),
      page_(page),
      window_(window),
      menu_(new QMenu(&window)) {
  menu_->setObjectName(QStringLiteral("menuMessages"));
  BuildMenu();
  BuildMoves();
  page_.rows.OnRows([this] { Enable(); });
  Enable();
}

PageCommands::~PageCommands() {
  page_.rows.OnRows({});
}

QAction* PageCommands::AddKeys(const QList<QKeySequence>& keys, const std::function<void()>& run) {
  auto* action = new QAction(&window_);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(action, &QAction::triggered, this, run);
  actions_.append(action);
  return action;
}

QAction* PageCommands::AddCommand(PageCommand command, const QString& text,
                                  const QList<QKeySequence>& keys,
                                  const std::function<void()>& run) {
  QAction* action = AddKeys(keys, run);
  action->setObjectName(QStringLiteral("cmd_") + WordOf(command));
  action->setText(text);
  menu_->addAction(action);
  // There Enter opens an attachment, and all that is chosen is text.
  action->setProperty(kAlsoInPane, command != PageCommand::Open &&
                                       command != PageCommand::ChooseAll &&
                                       command != PageCommand::Print);
  commands_.insert(command, action);
  return action;
}

void PageCommands::BuildMenu() {
  BuildOpening();
  menu_->addSeparator();
  BuildActions();
  menu_->addSeparator();
  BuildFromMessage();
  menu_->addSeparator();
  QAction* print = AddCommand(PageCommand::Print, Ui::tr("印刷(&P).."), {QKeySequence::Print},
                              [this] { messages_.Print(); });
  window_.addAction(
      print);  // also while the pane or a box has the keyboard: it types nothing there
  menu_->addSeparator();
  AddCommand(PageCommand::ChooseAll, Ui::tr("すべて選択(&L)"), {QKeySequence::SelectAll},
             [this] { page_.rows.ChooseAll(); });
  connect(menu_, &QMenu::aboutToShow, this, &PageCommands::EnableForMenu);
  connect(menu_, &QMenu::aboutToHide, this, &PageCommands::Enable);
}

void PageCommands::BuildOpening() {
  const auto open = [this](OpenMode mode) { return [this, mode] { messages_.Open(mode); }; };
  AddCommand(PageCommand::Open, Ui::tr("開く(&O)"), {Qt::Key_Return, Qt::Key_Enter},
             open(OpenMode::Show));
  AddCommand(PageCommand::Reply, Ui::tr("返信(&R)"), {Qt::Key_R, Qt::CTRL | Qt::Key_R},
             open(OpenMode::Reply));
  AddCommand(PageCommand::ReplyAll, Ui::tr("全員に返信(&A)"),
             {Qt::SHIFT | Qt::Key_R, Qt::CTRL | Qt::SHIFT | Qt::Key_R}, open(OpenMode::ReplyAll));
  AddCommand(PageCommand::Forward, Ui::tr("転送(&F)"), {Qt::Key_F}, open(OpenMode::Forward));
}

void PageCommands::BuildActions() {
  const auto act = [this](MessageAction action) {
    return [this, action] { messages_.Act(action); };
  };
  AddCommand(PageCommand::File, Ui::tr("フォルダに入れる(&M).."), {Qt::Key_M},
             act(MessageAction::File));
  AddCommand(PageCommand::ToDust, Ui::tr("くずかごに入れる(&D)"), {Qt::Key_Delete},
             act(MessageAction::ToDust));
  AddCommand(PageCommand::OutOfDust, Ui::tr("くずかごから出す(&U)"), {Qt::CTRL | Qt::Key_Delete},
             act(MessageAction::OutOfDust));
  menu_->addSeparator();
  AddCommand(PageCommand::NextUnopened, Ui::tr("次の未開封へ(&N)"), {Qt::Key_N},
             [this] { navigation_.GoToUnopened(); });
  AddCommand(PageCommand::MarkUnopened, Ui::tr("未開封に戻す(&T)"), {Qt::Key_U},
             act(MessageAction::MarkUnopened));
  AddCommand(PageCommand::MarkOpened, Ui::tr("開封済みにする(&E)"), {Qt::SHIFT | Qt::Key_U},
             act(MessageAction::MarkOpened));
  AddCommand(PageCommand::Star, Ui::tr("スターを付ける、外す(&S)"), {Qt::Key_S},
             act(MessageAction::ToggleStar));
}

void PageCommands::BuildFromMessage() {
  AddCommand(PageCommand::Gather, Ui::tr("このようなメールをフォルダに集める(&G).."), {},
             [this] { messages_.Ask(&MessageHost::GatherAlike); });
  AddCommand(PageCommand::Stop, Ui::tr("このようなメールを受信しない(&X).."), {},
             [this] { messages_.Ask(&MessageHost::StopAlike); });
  AddCommand(PageCommand::AddToBook, Ui::tr("アドレスブックに登録(&B)"), {Qt::Key_B},
             [this] { messages_.AddToBook(); });
}

void PageCommands::BuildMoves() {
  for (const int shift : {0, static_cast<int>(Qt::SHIFT)}) {
    const auto key = [shift](Qt::Key code) { return QKeySequence(shift | code); };
    const bool extend = shift != 0;
    AddKeys({key(Qt::Key_Down), key(Qt::Key_J)}, [this, extend] { page_.rows.Step(1, extend); });
    AddKeys({key(Qt::Key_Up), key(Qt::Key_K)}, [this, extend] { page_.rows.Step(-1, extend); });
    AddKeys({key(Qt::Key_Home)}, [this, extend] { page_.rows.GoTo(0, extend); });
    AddKeys({key(Qt::Key_End)}, [this, extend] { page_.rows.GoTo(-1, extend); });
  }
  AddKeys({Qt::Key_Space}, [this] { page_.rows.Toggle(); });
  AddKeys({Qt::Key_Escape}, [this] { GiveUpChoice(); });
}

// On a web page the keys are the page's own. A folder without messages says so, and a search
// without hits can be given up.
void PageCommands::Enable() {
  const bool isFolder = page_.rows.HasRows() || (page_.request.IsLocal() && page_.request.HasUrl());
  for (QAction* action : actions_) action->setEnabled(isFolder);
}

// A key that does not apply is told of, an entry that does not apply is grey.
void PageCommands::EnableForMenu() {
  QAction* outOfDust = commands_.value(PageCommand::OutOfDust);
  outOfDust->setEnabled(outOfDust->isEnabled() && page_.request.Folder() == fixed_serial::kDust);
}

void PageCommands::AddTo(QWidget& view) {
  view.addActions(actions_);
}

void PageCommands::AddToPane(QWidget& pane) {
  for (QAction* action : actions_) {
    if (action->property(kAlsoInPane).toBool()) pane.addAction(action);
  }
}

void PageCommands::PopUp(const QPoint& at) {
  if (page_.request.IsLocal() && page_.rows.HasRows()) menu_->popup(at);
}

void PageCommands::ListIn(QMenu& menu) {
  EnableForMenu();
  for (QAction* action : menu_->actions()) {
    if (action->isSeparator()) {
      menu.addSeparator();
      continue;
    }
    const QString key = action->shortcut().toString(QKeySequence::NativeText);
    QAction* entry = menu.addAction(key.isEmpty() ? action->text() : action->text() + u'\t' + key,
                                    action, &QAction::trigger);
    entry->setEnabled(action->isEnabled());
  }
  Enable();
}

void PageCommands::Run(PageCommand command) {
  QAction* action = commands_.value(command);
  if (command == PageCommand::NextUnopened && action->isEnabled()) return action->trigger();
  page_.rows.Chosen([this, action](const SerialIds& chosen) {
    QTimer::singleShot(0, this, [this, action, any = !chosen.isEmpty()] {
      if (any) return action->trigger();
      ShowBox(&window_, QMessageBox::Information, Ui::tr("メッセージが選択されていません。"));
    });
  });
}

void PageCommands::GiveUpChoice() {
  page_.rows.Unchoose([this](bool had) {
    if (!had) QTimer::singleShot(0, this, &PageCommands::NothingToGiveUp);
  });
}

}  // namespace vorn
