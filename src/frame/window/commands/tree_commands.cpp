#include "frame/window/commands/tree_commands.h"

#include <QWidget>

#include "frame/window/commands/deletion_question.h"
#include "frame/window/commands/page_actions.h"
#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/message_drop.h"
#include "frame/window/panes/node_commands.h"
#include "frame/window/panes/opener.h"
#include "frame/window/panes/request_windows.h"
#include "objects/object_types.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"

namespace vorn {

TreeCommands::TreeCommands(Context& context, QWidget& window, FolderPanes& panes,
                           RequestWindows& windows, Opener& opener, PageActions& actions)
    : QObject(&window),
      context_(context),
      window_(window),
      panes_(panes),
      windows_(windows),
      opener_(opener) {
  ConsoleTree* tree = &panes.Tree();
  NodeCommands* commands = &tree->Commands();
  connect(tree, &ConsoleTree::NodeOpened, this, &TreeCommands::OpenNode);
  connect(tree, &ConsoleTree::NodeRenamed, this, [this](const SerialId& key, const QString& tag) {
    opener_.OpenObject(key, tag, kShowHidden, AfterStep::RenameObject);
  });
  connect(
      commands, &NodeCommands::NewWanted, this,
      [this](const QString& type, const SerialId& parent) { opener_.MakeObject(type, parent); });
  connect(commands, &NodeCommands::PropertiesWanted, this,
          [this](const SerialId& key, const QString& tag) {
            opener_.OpenObject(key, tag, kShowModal, AfterStep::None);
          });
  connect(commands, &NodeCommands::DeletionWanted, this, &TreeCommands::DeleteObject);
  connect(&tree->Drop(), &MessageDrop::Dropped, &actions, &PageActions::Drop);
}

void TreeCommands::OpenNode(const SerialId& key, const QString& tag, bool inTabOfItsOwn) {
  if (tag == u"log") opener_.OpenEvent(key);
  if (tag != object_type::kFolder) return;
  panes_.ShowPage();
  // Who asks for the folder that he is searching wants all of it.
  BrowserArea& area = panes_.Area();
  BrowserWindow* active = area.Active();
  if (active != nullptr && active->Tag() == key) active->Folder().GiveUpSearch();
  if (!inTabOfItsOwn && area.Current() == Arrangement::Tabs) {
    if (!windows_.HasOpen(key) && area.ShowInPreview(key)) return;
    area.ExpectPreview(key);
  }
  opener_.OpenFolder(key);
}

void TreeCommands::DeleteObject(const SerialId& key, const QString& tag) {
  if (!ConfirmDeletion(context_, window_, key, panes_.Tree().Nodes().Text(key))) return;
  opener_.OpenObject(key, tag, kShowHidden, AfterStep::DeleteObject);
}

}  // namespace vorn
