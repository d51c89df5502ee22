#include "frame/window/pages_host.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>

#include "frame/window/browser_area.h"
#include "frame/window/folder_panes.h"
#include "frame/window/front_window.h"
#include "frame/window/status_bar.h"
#include "storage/ui.h"

namespace vorn {

BrowserWindow* PagesHost::NamedWindow(const QString& name, const BrowserWindow* asking) {
  return panes_.Area().Named(name, asking);
}

bool PagesHost::ChoosePrinter(QPrinter& printer) {
  // Over the window whose message is printed.
  QPrintDialog dialog(&printer, FrontWindow(window_));
  dialog.setWindowTitle(Ui::tr("印刷"));
  return dialog.exec() == QDialog::Accepted;
}

void PagesHost::Tell(const QString& sentence) {
  status_.ShowForAWhile(sentence);
}

void PagesHost::BrowserOpened() {
  panes_.Area().ArrangeAsKept();
}

void PagesHost::BrowserClosed() {
  if (messages_.IsClosing()) return;
  QTimer::singleShot(0, &panes_.Area(), &BrowserArea::ArrangeAsKept);
}

}  // namespace vorn
