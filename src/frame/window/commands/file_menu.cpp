#include "frame/window/commands/file_menu.h"

#include "frame/window/commands/page_actions.h"
#include "frame/window/notices/traffic_host.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/node_commands.h"
#include "frame/window/panes/opener.h"
#include "objects/object_types.h"
#include "present/window/page/first_use.h"
#include "storage/ui.h"

namespace vorn {

FileMenu::FileMenu(const Parts& parts, QWidget* parent)
    : QMenu(Ui::tr("ファイル(&F)"), parent),
      panes_(parts.panes),
      opener_(parts.opener),
      archive_(parts.context, parts.window, parts.messages, parts.actions, parts.traffic.Traffic(),
               parts.traffic.Timer()) {
  setObjectName(QStringLiteral("menuFiles"));
  AddCreation();
  addSeparator();
  AddNodeCommands();
  addSeparator();
  addAction(Ui::tr("くずかごを空にする(&E).."), this,
            [&actions = parts.actions] { actions.EmptyDustBin(); });
  addSeparator();
  AddArchive();
  addSeparator();
  exit_ = addAction(Ui::tr("終了(&X)"), &parts.window, &QWidget::close);
  exit_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
}

void FileMenu::AddCreation() {
  QMenu* create = addMenu(Ui::tr("新規作成(&N)"));
  create->setObjectName(QStringLiteral("menuFilesNew"));
  const auto entry = [this, create](const QString& text, const QString& type) {
    return create->addAction(text, this,
                             [this, type] { panes_.Tree().Commands().NewObject(type); });
  };
  create->addAction(Ui::tr("メッセージ(&M).."), this, [this] { opener_.WriteMessage(); })
      ->setShortcut(QKeySequence::New);
  create->addSeparator();
  entry(Ui::tr("アカウント(&A).."), object_type::kAccount)->setObjectName(first_step::kAccount);
  entry(Ui::tr("フォルダ(&F).."), object_type::kFolder);
  entry(Ui::tr("アドレスブック(&D).."), object_type::kBook);
  entry(Ui::tr("ブックマーク(&B).."), object_type::kBookmark);
  entry(Ui::tr("プロファイル(&P).."), object_type::kProfile);
}

void FileMenu::AddNodeCommands() {
  NodeCommands* commands = &panes_.Tree().Commands();
  const QList<QAction*> onNode = {
      addAction(Ui::tr("名前の変更(&M)"), commands, &NodeCommands::Rename),
      addAction(Ui::tr("削除(&D)"), commands, &NodeCommands::Delete),
      addAction(Ui::tr("プロパティ(&R).."), commands, &NodeCommands::ShowProperties)};
  connect(this, &QMenu::aboutToShow, this, [this, onNode] {
    for (QAction* action : onNode) action->setEnabled(panes_.Tree().HasObject());
  });
  // Opening a folder leaves the keys with its page, also for the name of what was just clicked.
  onNode.front()->setShortcut(Qt::Key_F2);
  connect(this, &QMenu::aboutToHide, this, [onNode] { onNode.front()->setEnabled(true); });
}

void FileMenu::AddArchive() {
  addAction(Ui::tr("ファイルから取り込む(&I).."), this, [this] {
    archive_.ImportFiles(panes_.CurrentFolder());
  })->setObjectName(first_step::kImport);
  addAction(Ui::tr("フォルダから取り込む(&O).."), this,
            [this] { archive_.ImportFolder(panes_.CurrentFolder()); });
  QAction* write = addAction(Ui::tr("フォルダの書き出し(&W).."), this, [this] {
    const SerialId folder = panes_.CurrentFolder();
    archive_.Export(folder, panes_.Tree().Nodes().Text(folder));
  });
  connect(this, &QMenu::aboutToShow, this,
          [this, write] { write->setEnabled(!panes_.CurrentFolder().IsEmpty()); });
}

}  // namespace vorn
