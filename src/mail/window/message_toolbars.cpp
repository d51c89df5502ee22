#include "mail/window/message_toolbars.h"

#include <QAction>
#include <QMainWindow>
#include <QToolBar>
#include <QToolButton>

#include "kit/window/access_names.h"
#include "kit/window/icons.h"
#include "mail/mail_store.h"
#include "mail/window/attachment_list.h"
#include "storage/ui.h"

namespace vorn {

MessageToolbars::MessageToolbars(QMainWindow& window, QMenu* file, QMenu* edit,
                                 AttachmentList& clips)
    : window_(window),
      tbMenu_(NewToolbar(QStringLiteral("tbMenu"), Ui::tr("コマンド"))),
      tbReading_(NewToolbar(QStringLiteral("tbReading"), Ui::tr("読む"))) {
  BuildCommands(file, edit, clips);
  BuildReading();
}

QToolBar* MessageToolbars::NewToolbar(const QString& name, const QString& text) {
  QToolBar* bar = window_.addToolBar(text);
  NameMoreButton(*bar);
  bar->setObjectName(name);
  bar->setMovable(false);
  return bar;
}

QAction* MessageToolbars::Add(QToolBar* bar, const QString& key, const QIcon& icon,
                              const QString& text, MessageCommand command) {
  QAction* action = bar->addAction(icon, text, this, [this, command] { Q_EMIT Wanted(command); });
  action->setObjectName(key);
  return action;
}

QAction* MessageToolbars::AddMenu(const QString& key, const QString& text, QMenu* menu,
                                  QStyle::StandardPixmap icon) {
  auto* button = new QToolButton;
  button->setObjectName(key);
  button->setText(text);
  button->setIcon(window_.style()->standardIcon(icon));
  button->setMenu(menu);
  button->setPopupMode(QToolButton::InstantPopup);
  connect(tbMenu_, &QToolBar::toolButtonStyleChanged, button, &QToolButton::setToolButtonStyle);
  return tbMenu_->addWidget(button);
}

void MessageToolbars::BuildCommands(QMenu* file, QMenu* edit, AttachmentList& clips) {
  const QString up = QStringLiteral("mailup");
  send_ = Add(tbMenu_, up, Icon(up), Ui::tr("送信"), MessageCommand::SendFromToolbar);
  cancel_ = Add(tbMenu_, QStringLiteral("mailupdelete"), Icon(up), Ui::tr("送信キャンセル"),
                MessageCommand::SendFromToolbar);
  reply_ = Add(tbMenu_, QStringLiteral("replay"), Icon(QStringLiteral("mail")), Ui::tr("返信"),
               MessageCommand::Reply);
  AddMenu(QStringLiteral("file"), Ui::tr("ﾌｧｲﾙ"), file, QStyle::SP_FileIcon);
  clip_ = tbMenu_->addAction(window_.style()->standardIcon(QStyle::SP_DialogOpenButton),
                             Ui::tr("添付"), &clips, &AttachmentList::AddByDialog);
  clip_->setObjectName(QStringLiteral("clip"));
  edit_ = AddMenu(QStringLiteral("edit"), Ui::tr("編集"), edit, QStyle::SP_FileDialogDetailedView);
}

// What a reader does next with a message.
void MessageToolbars::BuildReading() {
  const auto add = [this](const QString& key, const QIcon& icon, const QString& text,
                          MessageCommand command) { Add(tbReading_, key, icon, text, command); };
  const QString all = QStringLiteral("replayall");
  const QString forward = QStringLiteral("forward");
  const QString dust = QStringLiteral("dust");
  const QStyle* style = window_.style();
  add(all, Icon(all), Ui::tr("全員に返信"), MessageCommand::ReplyAll);
  add(forward, Icon(forward), Ui::tr("転送"), MessageCommand::Forward);
  tbReading_->addSeparator();
  add(QStringLiteral("before"), style->standardIcon(QStyle::SP_ArrowBack), Ui::tr("前"),
      MessageCommand::ShowBefore);
  add(QStringLiteral("next"), style->standardIcon(QStyle::SP_ArrowForward), Ui::tr("次"),
      MessageCommand::ShowNext);
  tbReading_->addSeparator();
  const QString star = QStringLiteral("bookmark");
  star_ = Add(tbReading_, QStringLiteral("star"), Icon(star), Ui::tr("スター"),
              MessageCommand::ToggleStar);
  star_->setCheckable(true);
  add(dust, Icon(dust), Ui::tr("くずかご"), MessageCommand::ThrowAway);
}

void MessageToolbars::Show(const MessageState& state) {
  const bool isSent = state.status == kStatusSent;
  const bool isWritten = state.status == kStatusEdit || state.status == kStatusWaiting;
  const bool isReading = !state.isUnreadable && state.status == kStatusReceived;
  send_->setVisible(!state.isUnreadable && (state.status == kStatusEdit || isSent));
  send_->setText(isSent ? Ui::tr("再送") : Ui::tr("送信"));
  cancel_->setVisible(state.status == kStatusWaiting);
  cancel_->setEnabled(!state.isDoubtful);
  reply_->setVisible(isReading);
  tbReading_->setVisible(isReading);
  star_->setChecked(state.hasStar);
  clip_->setVisible(isWritten);
  clip_->setEnabled(state.isEditable);
  edit_->setVisible(isWritten);
}

void MessageToolbars::ShowIconsAlone(bool alone) {
  const auto style = alone ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon;
  tbMenu_->setToolButtonStyle(style);
  tbReading_->setToolButtonStyle(style);
}

}  // namespace vorn
