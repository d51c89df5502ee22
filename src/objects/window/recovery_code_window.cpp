#include "objects/window/recovery_code_window.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QTextDocument>
#include <QVBoxLayout>

#include "kit/window/plain_text.h"
#include "storage/files/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr double kCodeSize = 1.3;
constexpr int kWidth = 520;

QString Purpose() {
  return Ui::tr(
      "鍵のファイル「profile."
      "key」やデスクトップのキーリングの鍵がなくなったときは、ログインのパスワードの欄にこのコード"
      "を"
      "入力するとメールを読めます。このコードを見た人は、メールのファイルのコピーを読めます。"
      "パソコンとは別の所に保管してください。パスワードを決めたり、なくしたりすると、このコードは"
      "使えなくなります。");
}

}  // namespace

RecoveryCodeWindow::RecoveryCodeWindow(const QString& profile, const QString& code, QWidget* parent)
    : QDialog(parent), profile_(profile), code_(code) {
  setObjectName(QStringLiteral("recoveryCode"));
  setWindowTitle(Ui::tr("回復コード"));
  setMinimumWidth(kWidth);
  auto* purpose = PlainLabel(Purpose());
  purpose->setWordWrap(true);
  auto* shown = PlainLabel(code);
  shown->setObjectName(QStringLiteral("lbCode"));
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setPointSizeF(font.pointSizeF() * kCodeSize);
  shown->setFont(font);
  shown->setAlignment(Qt::AlignCenter);
  shown->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  shown->setAccessibleName(Ui::tr("回復コード"));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  buttons->button(QDialogButtonBox::Close)->setText(Ui::tr("閉じる"));
  QPushButton* print = buttons->addButton(Ui::tr("印刷(&P).."), QDialogButtonBox::ActionRole);
  print->setObjectName(QStringLiteral("cmPrint"));
  connect(print, &QPushButton::clicked, this, &RecoveryCodeWindow::Print);
  connect(buttons, &QDialogButtonBox::rejected, this, &RecoveryCodeWindow::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(purpose);
  layout->addWidget(shown);
  layout->addWidget(buttons);
}

void RecoveryCodeWindow::Print() {
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, this);
  dialog.setWindowTitle(Ui::tr("印刷"));
  if (dialog.exec() != QDialog::Accepted) return;
  // Who reads the file opens the mail: it is the user's alone before anything stands in it.
  QFile file(printer.outputFileName());
  const bool isFile = printer.outputFormat() == QPrinter::PdfFormat;
  if (isFile && !OpenPrivate(file, QIODevice::WriteOnly)) {
    ShowBox(this, QMessageBox::Critical,
            Ui::tr("「%1」に書き込めません。").arg(QFileInfo(file).fileName()));
    return;
  }
  file.close();
  QTextDocument page;
  page.setPlainText(kApplicationTitle + QStringLiteral(" - ") + Ui::tr("回復コード") +
                    QStringLiteral("\n") + ShownText(profile_, kMostInTitle) +
                    QStringLiteral("\n\n") + code_ + QStringLiteral("\n\n") + Purpose());
  page.print(&printer);
}

}  // namespace vorn
