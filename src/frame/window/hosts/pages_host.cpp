#include "frame/window/hosts/pages_host.h"

#include <QDir>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QTimer>

#include "frame/window/notices/front_window.h"
#include "frame/window/notices/status_bar.h"
#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/folder_panes.h"
#include "kit/window/plain_text.h"
#include "mail/attachment_files.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

constexpr qsizetype kMostInFileName = 80;

}  // namespace

BrowserWindow* PagesHost::NamedWindow(const QString& name, const BrowserWindow* asking) {
  return panes_.Area().Named(name, asking);
}

bool PagesHost::ChoosePrinter(QPrinter& printer, const QString& title) {
  printer.setDocName(ShownText(title, kMostInTitle));
  // Over the window whose message is printed.
  QPrintDialog dialog(&printer, FrontWindow(window_));
  dialog.setWindowTitle(Ui::tr("印刷"));
  const QString folder = RememberedFolder(context_, FileTask::Print);
  // The toolkit's own proposal is the same file for whatever is printed.
  auto* file = dialog.findChild<QLineEdit*>(QStringLiteral("filename"));
  if (file != nullptr && !title.isEmpty()) {
    file->setText(FreePath(folder.isEmpty() ? QDir::homePath() : folder,
                           title.left(kMostInFileName) + QStringLiteral(".pdf")));
  }
  if (dialog.exec() != QDialog::Accepted) return false;
  const QString path = printer.outputFileName();
  if (!path.isEmpty()) RememberFolder(context_, FileTask::Print, QFileInfo(path).absolutePath());
  return true;
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
