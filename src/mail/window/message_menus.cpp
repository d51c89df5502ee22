// The message window's menus and toolbar.

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStyle>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

#include "kit/window/access_names.h"
#include "kit/window/icons.h"
#include "mail/codec/flag_string.h"
#include "mail/window/attachment_list.h"
#include "mail/window/doubt_bar.h"
#include "mail/window/message_body.h"
#include "mail/window/message_window.h"
#include "mail/window/text_font.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn {
namespace {

struct Choice {
  QString text;
  int value;
};

const QList<Choice>& CharsetChoices() {
  static const QList<Choice> choices = {
      {Ui::tr("日本語ＪＩＳ(&J)"), static_cast<int>(CharsetChoice::Jis)},
      {Ui::tr("日本語ＥＵＣ(&E)"), static_cast<int>(CharsetChoice::Euc)},
      {Ui::tr("日本語ＳＪＩＳ(&S)"), static_cast<int>(CharsetChoice::ShiftJis)},
      {QString(), 0},
      {Ui::tr("適切な文字セット(&A)"), static_cast<int>(CharsetChoice::Automatic)},
      {Ui::tr("ＵＴＦ－８(&U)"), static_cast<int>(CharsetChoice::Utf8)}};
  return choices;
}

}  // namespace

void MessageWindow::BuildMenus() {
  tbMenu_ = addToolBar(Ui::tr("コマンド"));
  NameMoreButton(*tbMenu_);
  tbMenu_->setObjectName(QStringLiteral("tbMenu"));
  tbMenu_->setMovable(false);
  QMenu* file = BuildFileMenu();
  QMenu* edit = BuildEditMenu();
  BuildViewMenu();
  BuildToolbar(file, edit);
  BuildReadingToolbar();
}

// What a reader does next with a message.
void MessageWindow::BuildReadingToolbar() {
  tbReading_ = addToolBar(Ui::tr("読む"));
  NameMoreButton(*tbReading_);
  tbReading_->setObjectName(QStringLiteral("tbReading"));
  tbReading_->setMovable(false);
  const auto add = [this](const QString& key, const QIcon& icon, const QString& text,
                          const auto& command) {
    tbReading_->addAction(icon, text, this, command)->setObjectName(key);
  };
  const QString all = QStringLiteral("replayall");
  const QString forward = QStringLiteral("forward");
  const QString dust = QStringLiteral("dust");
  add(all, Icon(all), Ui::tr("全員に返信"), [this] { TurnInto(OpenMode::ReplyAll); });
  add(forward, Icon(forward), Ui::tr("転送"), [this] { TurnInto(OpenMode::Forward); });
  tbReading_->addSeparator();
  add(QStringLiteral("before"), style()->standardIcon(QStyle::SP_ArrowBack), Ui::tr("前"),
      [this] { ShowNeighbour(-1); });
  add(QStringLiteral("next"), style()->standardIcon(QStyle::SP_ArrowForward), Ui::tr("次"),
      [this] { ShowNeighbour(1); });
  tbReading_->addSeparator();
  add(dust, Icon(dust), Ui::tr("くずかご"), [this] {
    ToggleDust();
    close();
  });
}

QMenu* MessageWindow::BuildFileMenu() {
  QMenu* menu = menuBar()->addMenu(Ui::tr("ファイル(&F)"));
  menu->setObjectName(QStringLiteral("menuFiles"));
  QMenu* messages = BuildMessagesMenu();
  menu->addMenu(messages);
  menu->addSeparator();
  menuDust_ = menu->addAction(Ui::tr("くずかご(&B)"), this, &MessageWindow::ToggleDust);
  menuDust_->setCheckable(true);
  menu->addSeparator();
  menu->addAction(Ui::tr("ファイルに保存(&F).."), this, &MessageWindow::SaveToFile)
      ->setShortcut(QKeySequence::Save);
  menu->addSeparator();
  menu->addAction(Ui::tr("印刷(&P).."), this, &MessageWindow::PrintClicked)
      ->setShortcut(QKeySequence::Print);
  menu->addSeparator();
  menu->addAction(Ui::tr("閉じる(&X)"), this, &QWidget::close)
      ->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)});
  // As in the main window, without an entry of its own.
  auto* another = new QAction(this);
  another->setShortcut(QKeySequence::New);
  connect(another, &QAction::triggered, this, [this] { host_.PostMail(MailRequest::New()); });
  addAction(another);
  connect(menu, &QMenu::aboutToShow, this, &MessageWindow::CheckMenus);
  connect(messages, &QMenu::aboutToShow, this, &MessageWindow::CheckMenus);
  return menu;
}

QMenu* MessageWindow::BuildMessagesMenu() {
  auto* menu = new QMenu(Ui::tr("メッセージ(&M).."), this);
  menu->setObjectName(QStringLiteral("menuFilesMessages"));
  menuSend_ = menu->addAction(Ui::tr("送信(&S)"), this, &MessageWindow::SendClicked);
  menuSend_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
  menu->addSeparator();
  const auto answer = [&](const QString& text, OpenMode mode, const QKeySequence& key) {
    QAction* action = menu->addAction(text, this, [this, mode] { TurnInto(mode); });
    action->setShortcut(key);
    menuAnswers_.append(action);
  };
  answer(Ui::tr("送信者に返信(&R)"), OpenMode::Reply, QKeySequence(Qt::CTRL | Qt::Key_R));
  answer(Ui::tr("関係者に返信(&A)"), OpenMode::ReplyAll,
         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
  answer(Ui::tr("転送(&F)"), OpenMode::Forward, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
  answer(Ui::tr("再送信(&T)"), OpenMode::Resend, {});
  menu->addSeparator();
  menuStored_.append(menu->addAction(Ui::tr("削除(&D)"), this, &MessageWindow::DeleteClicked));
  menu->addSeparator();
  menu->addAction(Ui::tr("保存フォルダ(&F).."), this, &MessageWindow::ChooseFolders);
  menu->addSeparator();
  const auto ofMessage = [&](const QString& text, void (MessageHost::*command)(const QString&)) {
    menuRules_.append(
        menu->addAction(text, this, [this, command] { (host_.*command)(request_->SerialID()); }));
  };
  ofMessage(Ui::tr("このようなメールをフォルダに集める(&G).."), &MessageHost::GatherAlike);
  ofMessage(Ui::tr("このようなメールを受信しない(&X).."), &MessageHost::StopAlike);
  menuRules_.append(menu->addAction(Ui::tr("アドレスブックに登録(&B)"), this,
                                    [this] { host_.AddToBook({request_->SerialID()}); }));
  return menu;
}

// A command of the box that has the focus, by its slot's name.
void MessageWindow::InFocusedBox(const char* slot) {
  QWidget* box = focusWidget();
  // Chosen by keys: the menu bar gives the keyboard back once this is done.
  if (box == menuBar()) {
    QTimer::singleShot(0, this, [this, slot] {
      if (focusWidget() != menuBar()) InFocusedBox(slot);
    });
    return;
  }
  if (qobject_cast<QLineEdit*>(box) != nullptr || qobject_cast<QPlainTextEdit*>(box) != nullptr) {
    QMetaObject::invokeMethod(box, slot);
  }
}

QMenu* MessageWindow::BuildEditMenu() {
  QMenu* menu = menuBar()->addMenu(Ui::tr("編集(&E)"));
  menu->setObjectName(QStringLiteral("menuEdits"));
  // The boxes obey these keys themselves; the menu only shows them.
  const auto add = [this, menu](const QString& text, const char* slot, const char* key) {
    return menu->addAction(text + u'\t' + QString::fromLatin1(key), this,
                           [this, slot] { InFocusedBox(slot); });
  };
  add(Ui::tr("切り取り(&X)"), "cut", "Ctrl+X");
  add(Ui::tr("コピー(&C)"), "copy", "Ctrl+C");
  menu->addAction(Ui::tr("削除(&D)"), this, [this] {
    if (auto* line = qobject_cast<QLineEdit*>(focusWidget()); line != nullptr) {
      if (!line->isReadOnly()) line->del();
    } else if (auto* text = qobject_cast<QPlainTextEdit*>(focusWidget()); text != nullptr) {
      if (!text->isReadOnly()) text->textCursor().deleteChar();
    }
  });
  menu->addAction(Ui::tr("貼り付け(&P)") + QStringLiteral("\tCtrl+V"), this, [this] {
    if (!lvClip_->Paste()) InFocusedBox("paste");
  });
  menu->addSeparator();
  QMenu* charsets = menu->addMenu(Ui::tr("文字セット(&H)"));
  charsets->setObjectName(QStringLiteral("menuEditCharsets"));
  BuildCharsetMenu(charsets);
  readAsAction_ =
      menu->addAction(Ui::tr("文字コードを選んで読む(&M).."), this, &MessageWindow::ReadAs);
  readAsAction_->setObjectName(QStringLiteral("readas"));
  attachments_ = menu->addMenu(Ui::tr("添付ファイル(&A)"));
  attachments_->setObjectName(QStringLiteral("menuEditsAttachments"));
  attachments_->addAction(Ui::tr("保存(&S).."), lvClip_, &AttachmentList::SaveByDialog);
  attachments_->addAction(Ui::tr("追加(&A).."), lvClip_, &AttachmentList::AddByDialog);
  attachments_->addAction(Ui::tr("中のファイルを取り出す(&X).."), lvClip_,
                          &AttachmentList::UnpackCurrent);
  QMenu* priorities = menu->addMenu(Ui::tr("優先度(&I)"));
  priorities->setObjectName(QStringLiteral("menuEditsPrioritys"));
  BuildPriorityMenu(priorities);
  menu->addSeparator();
  add(Ui::tr("元に戻す(&U)"), "undo", "Ctrl+Z");
  add(Ui::tr("やり直し(&R)"), "redo", "Ctrl+Y");
  add(Ui::tr("すべて選択(&L)"), "selectAll", "Ctrl+A");
  menu->addSeparator();
  menu->addAction(Ui::tr("検索(&F).."), this,
                  [this] {
                    tsPage_->setCurrentIndex(0);  // where the text is
                    body_->OpenFind();
                  })
      ->setShortcut(QKeySequence::Find);
  connect(menu, &QMenu::aboutToShow, this, &MessageWindow::CheckMenus);
  return menu;
}

void MessageWindow::BuildCharsetMenu(QMenu* menu) {
  charsets_ = new QActionGroup(this);
  for (const Choice& choice : CharsetChoices()) {
    if (choice.text.isEmpty()) {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(choice.text);
    action->setCheckable(true);
    action->setData(choice.value);
    charsets_->addAction(action);
  }
  connect(charsets_, &QActionGroup::triggered, this, [this](const QAction* action) {
    SetActiveCharset(static_cast<CharsetChoice>(action->data().toInt()));
  });
}

void MessageWindow::BuildPriorityMenu(QMenu* menu) {
  priorities_ = new QActionGroup(this);
  const QStringList texts = {Ui::tr("高い(&H)"), Ui::tr("普通(&N)"), Ui::tr("低い(&L)")};
  for (qsizetype i = 0; i < texts.size(); ++i) {
    QAction* action = menu->addAction(texts[i]);
    action->setCheckable(true);
    action->setData(static_cast<int>(i) + 1);
    priorities_->addAction(action);
  }
  connect(priorities_, &QActionGroup::triggered, this,
          [this](const QAction* action) { ChoosePriority(action->data().toInt()); });
}

void MessageWindow::BuildViewMenu() {
  QMenu* menu = menuBar()->addMenu(Ui::tr("表示(&V)"));
  menu->setObjectName(QStringLiteral("menuViews"));
  const auto add = [&](const QString& text, const QKeySequence& key, auto command) {
    menu->addAction(text, this, command)->setShortcut(key);
  };
  add(Ui::tr("前のメッセージ(&B)"), QKeySequence(Qt::CTRL | Qt::Key_PageUp),
      [this] { ShowNeighbour(-1); });
  add(Ui::tr("次のメッセージ(&N)"), QKeySequence(Qt::CTRL | Qt::Key_PageDown),
      [this] { ShowNeighbour(1); });
  menu->addSeparator();
  add(Ui::tr("拡大(&I)"), QKeySequence::ZoomIn, [this] { body_->ZoomBy(1); });
  add(Ui::tr("縮小(&O)"), QKeySequence::ZoomOut, [this] { body_->ZoomBy(-1); });
  add(Ui::tr("元の大きさ(&0)"), QKeySequence(Qt::CTRL | Qt::Key_0), [this] { body_->ZoomBack(); });
  menu->addSeparator();
  add(Ui::tr("ソースを表示(&S)"), QKeySequence(Qt::CTRL | Qt::Key_U), &MessageWindow::ShowSource);
}

void MessageWindow::BuildToolbar(QMenu* file, QMenu* edit) {
  const auto add = [this](const QString& key, const QString& text, auto command) {
    QAction* action = tbMenu_->addAction(text, this, command);
    action->setObjectName(key);
    return action;
  };
  const auto menuButton = [this](const QString& key, const QString& text, QMenu* menu,
                                 QStyle::StandardPixmap icon) {
    auto* button = new QToolButton;
    button->setObjectName(key);
    button->setText(text);
    button->setIcon(style()->standardIcon(icon));
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    connect(tbMenu_, &QToolBar::toolButtonStyleChanged, button, &QToolButton::setToolButtonStyle);
    return tbMenu_->addWidget(button);
  };
  toolbarSend_ = {
      add(QStringLiteral("mailup"), Ui::tr("送信"), &MessageWindow::ToolbarSend),
      add(QStringLiteral("mailupdelete"), Ui::tr("送信キャンセル"), &MessageWindow::ToolbarSend)};
  for (QAction* action : std::as_const(toolbarSend_)) {
    action->setIcon(Icon(QStringLiteral("mailup")));
  }
  toolbarReply_ =
      add(QStringLiteral("replay"), Ui::tr("返信"), [this] { TurnInto(OpenMode::Reply); });
  toolbarReply_->setIcon(Icon(QStringLiteral("mail")));
  menuButton(QStringLiteral("file"), Ui::tr("ﾌｧｲﾙ"), file, QStyle::SP_FileIcon);
  toolbarClip_ = add(QStringLiteral("clip"), Ui::tr("添付"), [this] { lvClip_->AddByDialog(); });
  toolbarClip_->setIcon(style()->standardIcon(QStyle::SP_DialogOpenButton));
  toolbarEdit_ =
      menuButton(QStringLiteral("edit"), Ui::tr("編集"), edit, QStyle::SP_FileDialogDetailedView);
}

void MessageWindow::ControlToolbarUpdate() {
  if (request_ == nullptr) return;
  const int status = AbsoluteStatus();
  toolbarSend_[0]->setVisible(!unreadable_ && (status == kStatusEdit || status == kStatusSent));
  toolbarSend_[0]->setText(status == kStatusSent ? Ui::tr("再送") : Ui::tr("送信"));
  toolbarSend_[1]->setVisible(status == kStatusWaiting);
  const bool isReading = !unreadable_ && status == kStatusReceived;
  toolbarReply_->setVisible(isReading);
  tbReading_->setVisible(isReading);
  toolbarClip_->setVisible(status == kStatusEdit || status == kStatusWaiting);
  toolbarClip_->setEnabled(IsEditable());
  toolbarEdit_->setVisible(status == kStatusEdit || status == kStatusWaiting);
  tbMenu_->setToolButtonStyle(Settings(context_).HasIconToolbar() ? Qt::ToolButtonIconOnly
                                                                  : Qt::ToolButtonTextBesideIcon);
  tbReading_->setToolButtonStyle(tbMenu_->toolButtonStyle());
  body_->UseFont(TextFont(context_, IsEditable() ? FontUse::Written : FontUse::Read));
  CheckMenus();
}

// What can be chosen, and what is chosen, as the message stands.
void MessageWindow::CheckMenus() {
  const bool editable = IsEditable();
  // Of a doubtful message there is nothing to cancel; its bar offers what there is to decide.
  const bool isDoubtful = !doubt_->isHidden();
  menuSend_->setEnabled(AbsoluteStatus() != kStatusReceived && (!unreadable_ || IsWaiting()) &&
                        !isDoubtful);
  toolbarSend_[1]->setEnabled(!isDoubtful);
  menuSend_->setText(IsWaiting() ? Ui::tr("送信をキャンセル(&S)") : Ui::tr("送信(&S)"));
  for (QAction* action : std::as_const(menuAnswers_)) {
    action->setEnabled(!editable && !unreadable_);
  }
  for (QAction* action : std::as_const(menuRules_)) {
    action->setEnabled(AbsoluteStatus() == kStatusReceived && !unreadable_);
  }
  for (QAction* action : std::as_const(menuStored_)) action->setEnabled(!Request().IsNew());
  menuDust_->setChecked(MessageBag(*request_).IsDust());
  readAsAction_->setEnabled(AbsoluteStatus() == kStatusReceived && !unreadable_);
  for (QAction* action : charsets_->actions()) {
    action->setChecked(action->data().toInt() == static_cast<int>(charset_));
  }
  const int priority =
      GetFlagChar(MessageBag(*request_).Flags(), kFlagPriority, QStringLiteral("2")).toInt();
  for (QAction* action : priorities_->actions()) {
    action->setChecked(action->data().toInt() == priority);
    action->setEnabled(editable);
  }
  attachments_->actions()[0]->setEnabled(!lvClip_->Attachments().empty());
  attachments_->actions()[1]->setEnabled(editable);
  attachments_->actions()[2]->setVisible(lvClip_->HasArchive());
}

}  // namespace vorn
