#include "frame/window/commands/display_menu.h"

#include <QActionGroup>
#include <QMessageBox>

#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_changes.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/request_windows.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "present/folder_layout.h"
#include "present/ready_layouts.h"
#include "present/window/layout_window.h"
#include "storage/ui.h"

namespace vorn {

DisplayMenu::DisplayMenu(Context& context, QWidget& window, FolderPanes& panes,
                         RequestWindows& windows, EventLog& events, FolderChanges& changes,
                         QWidget* parent)
    : QMenu(Ui::tr("表示(&V)"), parent),
      context_(context),
      window_(window),
      panes_(panes),
      windows_(windows),
      events_(events),
      changes_(changes) {
  setObjectName(QStringLiteral("menuDisplays"));
  QAction* clear = addAction(Ui::tr("イベントのクリア(&C).."), this, &DisplayMenu::ClearEvents);
  QAction* layout = addAction(Ui::tr("フォルダのレイアウト(&L).."), this, &DisplayMenu::EditLayout);
  AddLayouts();
  AddPanes();
  connect(this, &QMenu::aboutToShow, this, [this, clear, layout] {
    clear->setEnabled(panes_.Tree().Nodes().HasEvents());
    layout->setEnabled(!panes_.CurrentFolder().IsEmpty());
  });
}

// What all folders look like that have no layout of their own.
void DisplayMenu::AddLayouts() {
  QMenu* menu = addMenu(Ui::tr("すべてのフォルダの表示形式(&A)"));
  auto* group = new QActionGroup(menu);
  for (const ReadyLayout& layout : ReadyLayouts({})) {
    QAction* action = menu->addAction(Icon(QStringLiteral("layout") + layout.id), layout.name, this,
                                      [this, id = layout.id] { ChooseLayout(id); });
    action->setCheckable(true);
    action->setData(layout.id);
    group->addAction(action);
  }
  connect(menu, &QMenu::aboutToShow, this, [this, group] {
    const QString shared = SharedLayout(context_);
    for (QAction* action : group->actions()) {
      action->setChecked(action->data().toString() == shared);
    }
    if (group->checkedAction() == nullptr) group->actions().first()->setChecked(true);
  });
}

// Where the message that is current on a page is read.
void DisplayMenu::AddPanes() {
  QMenu* menu = addMenu(Ui::tr("選んだメッセージの表示(&P)"));
  menu->setObjectName(QStringLiteral("menuPane"));
  auto* group = new QActionGroup(menu);
  const auto add = [this, menu, group](const QString& key, const QString& text, PanePlace place) {
    QAction* action = menu->addAction(Icon(key), text, this, [this, place] { PlacePane(place); });
    action->setCheckable(true);
    group->addAction(action);
  };
  add(QStringLiteral("panenone"), Ui::tr("しない(&N)"), PanePlace::Nowhere);
  add(QStringLiteral("paneunder"), Ui::tr("一覧の下(&B)"), PanePlace::Under);
  add(QStringLiteral("paneright"), Ui::tr("一覧の右(&R)"), PanePlace::Right);
  connect(menu, &QMenu::aboutToShow, this, [this, group] {
    const PanePlace shown = Settings(context_).ReadingPane();
    group->actions()[static_cast<int>(shown)]->setChecked(true);
  });
}

void DisplayMenu::PlacePane(PanePlace place) {
  Settings settings(context_);
  const PanePlace before = settings.ReadingPane();
  settings.SetReadingPane(place);
  const Result<> saved = SaveObject(context_, DatabaseKind::Profile, *settings.Bag());
  if (!saved) {
    settings.SetReadingPane(before);
    ShowBox(&window_, QMessageBox::Critical, Ui::tr("設定を保存できません。") + saved.Error().text);
    return;
  }
  Q_EMIT SettingsChanged();
}

void DisplayMenu::ChooseLayout(const QString& id) {
  OwnLayouts own = OwnLayouts::Kept;
  if (const qsizetype count = CountOwnLayouts(context_); count > 0) {
    const auto answer =
        ShowBox(&window_, QMessageBox::Question,
                Ui::tr("自分で作ったレイアウトのフォルダが%n個あります。それも変えますか？",
                       nullptr, static_cast<int>(count)),
                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
    if (answer == QMessageBox::Cancel) return;
    if (answer == QMessageBox::Yes) own = OwnLayouts::Removed;
  }
  const Result<> shared = ShareLayout(context_, id, own);
  if (shared) {
    changes_.Note();
  } else {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("保存できませんでした。") + shared.Error().text);
  }
}

void DisplayMenu::EditLayout() {
  const SerialId folder = panes_.CurrentFolder();
  if (folder.IsEmpty()) return;
  LayoutWindow window(context_, windows_.Pages(), windows_.Profiles(), folder, &window_);
  if (window.exec() == QDialog::Accepted) changes_.Note();
}

void DisplayMenu::ClearEvents() {
  const auto answer = ShowBox(&window_, QMessageBox::Question,
                              Ui::tr("記録イベントをクリアします？よろしいですか？"),
                              QMessageBox::Ok | QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  panes_.Tree().Nodes().RemoveEvents();
  events_.Clear();
}

}  // namespace vorn
