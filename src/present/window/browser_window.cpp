#include "present/window/browser_window.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QVBoxLayout>
#include <QWebEngineView>

#include "mail/window/host/message_host.h"
#include "present/window/browser_controls.h"
#include "present/window/engine/browser_profiles.h"
#include "present/window/engine/engine_view.h"
#include "present/window/engine/script_bar.h"
#include "present/window/folder/page_split.h"
#include "present/window/folder/shown_folder.h"
#include "present/window/page/page_loader.h"
#include "present/window/page/page_maker.h"
#include "present/window/page/page_printing.h"
#include "present/window/page/page_reading.h"
#include "present/window/page/page_rest.h"
#include "present/window/toolbar/folder_toolbar.h"
#include "present/window/web_host.h"
#include "present/window/web_navigation.h"

namespace vorn {

BrowserWindow::BrowserWindow(Context& context, MessageListPages& pages,
                             const BrowserProfiles& profiles, WebHost& host)
    : host_(host),
      page_(std::make_shared<Disk>(context.Data.NewSerialID()),
            [this](const QString& script, const PageQueue::Answer& then) {
              engine_->Ask(script, then);
            }),
      toolbar_(new FolderToolbar(context, this)),
      engine_(std::make_unique<EngineView>(context, profiles, *this)),
      split_(new PageSplit(context, engine_->View(), host.Messages())),
      reading_(
          std::make_unique<PageReading>(*engine_, profiles.Pages(), page_.request, page_.change)),
      maker_(std::make_unique<PageMaker>(context, pages, *reading_, page_.request, page_.place)),
      printing_(std::make_unique<PagePrinting>(*engine_, host, *this)),
      rest_(std::make_unique<PageRest>(page_, *engine_, *reading_, maker_->Search(), *printing_,
                                       *this, *split_)),
      loader_(std::make_unique<PageLoader>(page_, *engine_, *reading_, *maker_, *rest_, *toolbar_,
                                           *this)),
      folder_(std::make_unique<ShownFolder>(ShownFolder::Parts{.context = context,
                                                               .pages = pages,
                                                               .page = page_,
                                                               .engine = *engine_,
                                                               .maker = *maker_,
                                                               .loader = *loader_,
                                                               .split = *split_,
                                                               .toolbar = *toolbar_,
                                                               .host = host,
                                                               .window = *this})),
      web_(std::make_unique<WebNavigation>(page_.request, *engine_, *loader_, *toolbar_, host,
                                           *this)),
      controls_(std::make_unique<BrowserControls>(BrowserControls::Parts{.page = page_,
                                                                         .engine = *engine_,
                                                                         .loader = *loader_,
                                                                         .folder = *folder_,
                                                                         .web = *web_,
                                                                         .toolbar = *toolbar_,
                                                                         .host = host})) {
  setObjectName(QStringLiteral("URL"));
  setAttribute(Qt::WA_DeleteOnClose);
  Lay();
  TakeView();
  ConnectEngine();
  ControlToolbarUpdate();
}

BrowserWindow::~BrowserWindow() {
  maker_->Search().Stop();
  page_.queue.Close();
  engine_->Close();
  reading_->Drop();
  if (!page_.request.IsForPrinting()) host_.BrowserClosed();
}

void BrowserWindow::Lay() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(toolbar_);
  layout->addWidget(engine_->Scripts());
  layout->addWidget(maker_->Search().Bar());
  layout->addWidget(folder_->Bar());
  layout->addWidget(split_, 1);
}

void BrowserWindow::TakeView() {
  folder_->AddKeysTo(*engine_->View());
  setFocusProxy(engine_->View());
}

void BrowserWindow::ConnectEngine() {
  connect(engine_.get(), &EngineView::Remade, this, [this] {
    TakeView();
    split_->SetPage(engine_->View());
  });
  connect(&engine_->Links(), &PageLinks::StepFollowed, this, &BrowserWindow::StepWanted);
  connect(engine_.get(), &EngineView::Crashed, this, [this] {
    if (!IsLocal()) return page_.change.Detach();
    folder_->Lose();
    rest_->Renew();
  });
  connect(loader_.get(), &PageLoader::Changed, this, &BrowserWindow::ControlToolbarUpdate);
  connect(loader_.get(), &PageLoader::Loaded, this, [this](bool ok) {
    if (page_.request.IsForPrinting()) printing_->Print(page_.request.Title());
    Q_EMIT Loaded(ok);
  });
  // A window that was opened to print goes when that is done.
  connect(printing_.get(), &PagePrinting::Ended, this, [this] {
    if (page_.request.IsForPrinting()) page_.request.State().BeDust();
  });
}

void BrowserWindow::ControlToolbarUpdate() {
  const PageRequest& request = page_.request;
  controls_->Show();
  split_->Arrange(IsLocal() && !request.IsForPrinting() && request.HasUrl());
}

bool BrowserWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  if (request != nullptr) {
    page_.change.LeavePlace();
    page_.request.Take(request);
  }
  loader_->Show();
  tag_ = page_.request.Folder();
  Q_EMIT Begun();
  return true;
}

void BrowserWindow::ShowFolder(const SerialId& folder) {
  reading_->Drop();
  folder_->Leave();
  page_.request.Take(std::make_shared<Disk>(folder));
  page_.request.BeLocal();
  LoadDefaultProperty(nullptr, true);
}

void BrowserWindow::ShowOwnPage(const QString& title, const QString& html) {
  loader_->ShowOwnPage(title, html);
}

void BrowserWindow::Refresh() {
  loader_->Refresh();
}

void BrowserWindow::UpdateBrowser() {
  loader_->Load();
}

void BrowserWindow::ShowModeless() {
  show();
  Activate();
}

void BrowserWindow::Activate() {
  QWidget* frame = parentWidget() != nullptr ? parentWidget() : this;
  const auto* child = qobject_cast<QMdiSubWindow*>(frame);
  const bool wasInUse = child != nullptr && child->mdiArea()->currentSubWindow() == child;
  rest_->Wake();
  frame->show();
  frame->raise();
  frame->setFocus();
  engine_->View()->setFocus();
  folder_->ComeBack(wasInUse);
}

void BrowserWindow::Unload() {
  if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget())) {
    frame->close();
  } else {
    deleteLater();
  }
}

}  // namespace vorn
