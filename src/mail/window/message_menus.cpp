#include "mail/window/message_menus.h"

#include <QAction>
#include <QActionGroup>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTimer>

#include "mail/mail_store.h"
#include "mail/window/attachment_list.h"
#include "mail/window/message_body.h"
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

MessageMenus::MessageMenus(QMainWindow& window, AttachmentList& clips, MessageBody& body)
    : window_(window),
      clips_(clips),
      body_(body),
      file_(window.menuBar()->addMenu(Ui::tr("ファイル(&F)"))),
      edit_(window.menuBar()->addMenu(Ui::tr("編集(&E)"))),
      charsets_(new QActionGroup(this)),
      priorities_(new QActionGroup(this)) {
  BuildFile();
  BuildEdit();
  BuildView();
}

QAction* MessageMenus::Add(QMenu* menu, const QString& text, MessageCommand command) {
  return menu->addAction(text, this, [this, command] { Q_EMIT Wanted(command); });
}

void MessageMenus::BuildFile() {
  file_->setObjectName(QStringLiteral("menuFiles"));
  QMenu* messages = BuildMessages();
  file_->addMenu(messages);
  file_->addSeparator();
  dust_ = Add(file_, Ui::tr("くずかご(&B)"), MessageCommand::ToggleDust);
  dust_->setCheckable(true);
  file_->addSeparator();
  Add(file_, Ui::tr("ファイルに保存(&F).."), MessageCommand::SaveToFile)
      ->setShortcut(QKeySequence::Save);
  file_->addSeparator();
  Add(file_, Ui::tr("印刷(&P).."), MessageCommand::Print)->setShortcut(QKeySequence::Print);
  file_->addSeparator();
  file_->addAction(Ui::tr("閉じる(&X)"), &window_, &QWidget::close)
      ->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)});
  // As in the main window, without an entry of its own.
  auto* another = new QAction(this);
  another->setShortcut(QKeySequence::New);
  connect(another, &QAction::triggered, this, [this] { Q_EMIT Wanted(MessageCommand::New); });
  window_.addAction(another);
  connect(file_, &QMenu::aboutToShow, this, &MessageMenus::Opening);
  connect(messages, &QMenu::aboutToShow, this, &MessageMenus::Opening);
}

QMenu* MessageMenus::BuildMessages() {
  auto* menu = new QMenu(Ui::tr("メッセージ(&M).."), &window_);
  menu->setObjectName(QStringLiteral("menuFilesMessages"));
  send_ = Add(menu, Ui::tr("送信(&S)"), MessageCommand::Send);
  send_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
  menu->addSeparator();
  const auto answer = [&](const QString& text, MessageCommand command, const QKeySequence& key) {
    QAction* action = Add(menu, text, command);
    action->setShortcut(key);
    answers_.append(action);
  };
  answer(Ui::tr("送信者に返信(&R)"), MessageCommand::Reply, QKeySequence(Qt::CTRL | Qt::Key_R));
  answer(Ui::tr("関係者に返信(&A)"), MessageCommand::ReplyAll,
         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R));
  answer(Ui::tr("転送(&F)"), MessageCommand::Forward,
         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
  answer(Ui::tr("再送信(&T)"), MessageCommand::Resend, {});
  menu->addSeparator();
  delete_ = Add(menu, Ui::tr("削除(&D)"), MessageCommand::Delete);
  menu->addSeparator();
  Add(menu, Ui::tr("保存フォルダ(&F).."), MessageCommand::ChooseFolders);
  menu->addSeparator();
  ofReceived_ = {
      Add(menu, Ui::tr("このようなメールをフォルダに集める(&G).."), MessageCommand::GatherAlike),
      Add(menu, Ui::tr("このようなメールを受信しない(&X).."), MessageCommand::StopAlike),
      Add(menu, Ui::tr("アドレスブックに登録(&B)"), MessageCommand::AddToBook)};
  return menu;
}

// A command of the box that has the focus, by its slot's name.
void MessageMenus::InFocusedBox(const char* slot) {
  QWidget* box = window_.focusWidget();
  // Chosen by keys: the menu bar gives the keyboard back once this is done.
  if (box == window_.menuBar()) {
    QTimer::singleShot(0, this, [this, slot] {
      if (window_.focusWidget() != window_.menuBar()) InFocusedBox(slot);
    });
    return;
  }
  if (qobject_cast<QLineEdit*>(box) != nullptr || qobject_cast<QPlainTextEdit*>(box) != nullptr) {
    QMetaObject::invokeMethod(box, slot);
  }
}

void MessageMenus::DeleteInFocusedBox() {
  if (auto* line = qobject_cast<QLineEdit*>(window_.focusWidget()); line != nullptr) {
    if (!line->isReadOnly()) line->del();
  } else if (auto* text = qobject_cast<QPlainTextEdit*>(window_.focusWidget()); text != nullptr) {
    if (!text->isReadOnly()) text->textCursor().deleteChar();
  }
}

void MessageMenus::BuildEdit() {
  edit_->setObjectName(QStringLiteral("menuEdits"));
  // The boxes obey these keys themselves; the menu only shows them.
  const auto add = [this](const QString& text, const char* slot, const char* key) {
    edit_->addAction(text + u'\t' + QString::fromLatin1(key), this,
                     [this, slot] { InFocusedBox(slot); });
  };
  add(Ui::tr("切り取り(&X)"), "cut", "Ctrl+X");
  add(Ui::tr("コピー(&C)"), "copy", "Ctrl+C");
  edit_->addAction(Ui::tr("削除(&D)"), this, &MessageMenus::DeleteInFocusedBox);
  edit_->addAction(Ui::tr("貼り付け(&P)") + QStringLiteral("\tCtrl+V"), this, [this] {
    if (!clips_.Paste()) InFocusedBox("paste");
  });
  edit_->addSeparator();
  BuildEditing();
  edit_->addSeparator();
  add(Ui::tr("元に戻す(&U)"), "undo", "Ctrl+Z");
  add(Ui::tr("やり直し(&R)"), "redo", "Ctrl+Y");
  add(Ui::tr("すべて選択(&L)"), "selectAll", "Ctrl+A");
  edit_->addSeparator();
  Add(edit_, Ui::tr("検索(&F).."), MessageCommand::Find)->setShortcut(QKeySequence::Find);
  connect(edit_, &QMenu::aboutToShow, this, &MessageMenus::Opening);
}

// What is done with the message as a whole.
void MessageMenus::BuildEditing() {
  QMenu* charsets = edit_->addMenu(Ui::tr("文字セット(&H)"));
  charsets->setObjectName(QStringLiteral("menuEditCharsets"));
  BuildCharsets(charsets);
  readAs_ = Add(edit_, Ui::tr("文字コードを選んで読む(&M).."), MessageCommand::ChooseCode);
  readAs_->setObjectName(QStringLiteral("readas"));
  attachments_ = edit_->addMenu(Ui::tr("添付ファイル(&A)"));
  attachments_->setObjectName(QStringLiteral("menuEditsAttachments"));
  attachments_->addAction(Ui::tr("保存(&S).."), &clips_, &AttachmentList::SaveByDialog);
  attachments_->addAction(Ui::tr("追加(&A).."), &clips_, &AttachmentList::AddByDialog);
  attachments_->addAction(Ui::tr("中のファイルを取り出す(&X).."), &clips_,
                          &AttachmentList::UnpackCurrent);
  QMenu* priorities = edit_->addMenu(Ui::tr("優先度(&I)"));
  priorities->setObjectName(QStringLiteral("menuEditsPrioritys"));
  BuildPriorities(priorities);
}

void MessageMenus::BuildCharsets(QMenu* menu) {
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
    Q_EMIT CharsetChosen(static_cast<CharsetChoice>(action->data().toInt()));
  });
}

void MessageMenus::BuildPriorities(QMenu* menu) {
  const auto add = [this, menu](const QString& text, Priority priority) {
    QAction* action =
        menu->addAction(text, this, [this, priority] { Q_EMIT PriorityChosen(priority); });
    action->setCheckable(true);
    action->setData(static_cast<int>(priority));
    priorities_->addAction(action);
  };
  add(Ui::tr("高い(&H)"), Priority::High);
  add(Ui::tr("普通(&N)"), Priority::Usual);
  add(Ui::tr("低い(&L)"), Priority::Low);
}

void MessageMenus::BuildView() {
  QMenu* menu = window_.menuBar()->addMenu(Ui::tr("表示(&V)"));
  menu->setObjectName(QStringLiteral("menuViews"));
  Add(menu, Ui::tr("前のメッセージ(&B)"), MessageCommand::ShowBefore)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp));
  Add(menu, Ui::tr("次のメッセージ(&N)"), MessageCommand::ShowNext)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown));
  menu->addSeparator();
  const auto zoom = [&](const QString& text, const QKeySequence& key, auto command) {
    menu->addAction(text, this, command)->setShortcut(key);
  };
  zoom(Ui::tr("拡大(&I)"), QKeySequence::ZoomIn, [this] { body_.ZoomBy(1); });
  zoom(Ui::tr("縮小(&O)"), QKeySequence::ZoomOut, [this] { body_.ZoomBy(-1); });
  zoom(Ui::tr("元の大きさ(&0)"), QKeySequence(Qt::CTRL | Qt::Key_0), [this] { body_.ZoomBack(); });
  menu->addSeparator();
  Add(menu, Ui::tr("ソースを表示(&S)"), MessageCommand::ShowSource)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_U));
}

void MessageMenus::Show(const MessageState& state) {
  const bool isReceived = state.status == kStatusReceived;
  const bool isWaiting = state.status == kStatusWaiting;
  // Of a doubtful message there is nothing to cancel; its bar offers what there is to decide.
  send_->setEnabled(!isReceived && (!state.isUnreadable || isWaiting) && !state.isDoubtful);
  send_->setText(isWaiting ? Ui::tr("送信をキャンセル(&S)") : Ui::tr("送信(&S)"));
  for (QAction* action : std::as_const(answers_)) {
    action->setEnabled(!state.isEditable && !state.isUnreadable);
  }
  for (QAction* action : std::as_const(ofReceived_)) {
    action->setEnabled(isReceived && !state.isUnreadable);
  }
  delete_->setEnabled(state.isStored);
  dust_->setChecked(state.isInDust);
  readAs_->setEnabled(isReceived && !state.isUnreadable);
  for (QAction* action : charsets_->actions()) {
    action->setChecked(action->data().toInt() == static_cast<int>(state.charset));
  }
  for (QAction* action : priorities_->actions()) {
    action->setChecked(action->data().toInt() == static_cast<int>(state.priority));
    action->setEnabled(state.isEditable);
  }
  attachments_->actions()[0]->setEnabled(!clips_.Attachments().empty());
  attachments_->actions()[1]->setEnabled(state.isEditable);
  attachments_->actions()[2]->setVisible(clips_.HasArchive());
}

}  // namespace vorn
