#include "present/window/page/page_printing.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPageLayout>
#include <QPointer>
#include <QPrinter>
#include <QTimer>
#include <QWebEngineView>
#include <utility>

#include "kit/window/plain_text.h"
#include "present/window/engine/engine_view.h"
#include "present/window/engine/link_page.h"
#include "present/window/page/browser_host.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPrinterRestMs = 10000;
constexpr qreal kPrintMarginMm = 15;  // above and below; the page itself keeps away from the sides

}  // namespace

PagePrinting::PagePrinting(EngineView& engine, BrowserHost& host, QWidget& window)
    : engine_(engine), host_(host), window_(window) {
  connect(&engine_, &EngineView::PrintEnded, this, &PagePrinting::End);
}

// Closed in the middle of printing: the engine's thread goes on painting and cannot be asked when
// it is done, so the printer is left to it.
PagePrinting::~PagePrinting() {
  static_cast<void>(printer_.release());
}

void PagePrinting::Print(const QString& title) {
  if (IsUnderWay()) return;
  printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
  if (!host_.ChoosePrinter(*printer_, title)) return End();
  if (printer_->outputFormat() == QPrinter::PdfFormat) {
    // As text, which can be searched; through a printer the engine gives pictures.
    QPageLayout layout = printer_->pageLayout();
    layout.setUnits(QPageLayout::Millimeter);
    layout.setMargins(QMarginsF(0, kPrintMarginMm, 0, kPrintMarginMm));
    host_.Tell(
        Ui::tr("「%1」を作成しています。").arg(QFileInfo(printer_->outputFileName()).fileName()));
    // The engine tells of a file that it wrote itself when its page may have gone, and dies of it.
    engine_.Page()->printToPdf(
        [self = QPointer<PagePrinting>(this),
         path = printer_->outputFileName()](const QByteArray& pdf) {
          // A failure is told to the user, which must not happen inside the engine's answer.
          if (self != nullptr) QTimer::singleShot(0, self, [=] { self->EndPdf(path, pdf); });
        },
        layout);
    return;
  }
  // The engine paints whole sheets: with margins of the printer's they would lose their ends.
  printer_->setFullPage(true);
  engine_.View()->print(printer_.get());
}

// The file appears whole or not at all.
void PagePrinting::EndPdf(const QString& path, const QByteArray& pdf) {
  if (pdf.isEmpty() || !WriteWhole(path, pdf)) {
    ShowBox(&window_, QMessageBox::Critical,
            Ui::tr("「%1」に書き込めません。ディスクの空き容量とフォルダの権限を確認してください。")
                .arg(QFileInfo(path).fileName()));
  } else {
    host_.Tell(Ui::tr("「%1」に保存しました。").arg(QDir::toNativeSeparators(path)));
  }
  End();
}

// The engine tells this from a thread that has still to end its painting: the printer outlives it.
void PagePrinting::End() {
  const std::shared_ptr<QPrinter> printer(std::move(printer_));
  QTimer::singleShot(kPrinterRestMs, qApp, [printer] {});
  Q_EMIT Ended();
}

}  // namespace vorn
