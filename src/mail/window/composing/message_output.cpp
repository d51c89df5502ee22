#include "mail/window/composing/message_output.h"

#include <QDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "kit/window/plain_text.h"
#include "mail/attachment_files.h"
#include "mail/message_document.h"
#include "mail/window/body/message_body.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/host/message_printing.h"
#include "objects/settings.h"
#include "storage/files/private_files.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

constexpr qsizetype kSourceShown = 1024 * 1024;
constexpr QSize kSourceSize(720, 560);

}  // namespace

// Of a message that is written it is made now.
Result<QByteArray> MessageOutput::Source() const {
  return document_.IsEditable() ? document_.Compose(form_.Take(document_.Model()))
                                : document_.Source();
}

void MessageOutput::SaveToFile(const QString& subject) {
  form_.FinishEditing();
  const Result<QByteArray> composed = Source();
  if (!composed) ShowBox(&window_, QMessageBox::Critical, composed.Error().text);
  QByteArray source = composed.ValueOr({});
  if (source.isEmpty()) return;
  const bool isReceived = document_.Status() == kStatusReceived;
  if (Settings(context_).Standards().dropsOwnEnd && !isReceived) {
    source = MimeCodec::WithoutEndMark(source);
  }
  const QString path = AskFileToSave(
      context_, &window_, FileTask::SaveMessage, Ui::tr("ファイルに保存"),
      SafeFileName(subject) + QStringLiteral(".eml"), Ui::tr("メッセージファイル (*.eml)"));
  if (path.isEmpty() || WriteWhole(path, source)) return;
  ShowBox(
      &window_, QMessageBox::Critical,
      Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。").arg(path));
}

void MessageOutput::Print() {
  form_.FinishEditing();
  // What is in front is what is printed.
  PrintMessagePage(context_, &window_, host_, form_.Take(document_.Model()),
                   form_.Body().HtmlInFront());
}

void MessageOutput::ShowSource(const QString& subject) {
  form_.FinishEditing();
  const Result<QByteArray> made = Source();
  if (!made) {
    ShowBox(&window_, QMessageBox::Critical, made.Error().text);
    return;
  }
  const QByteArray source = made.ValueOr({});
  auto* dialog = new QDialog(&window_);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setObjectName(QStringLiteral("source"));
  dialog->setWindowTitle(ShownText(subject, kMostInTitle) + Ui::tr(" ソース"));
  dialog->resize(kSourceSize);
  auto* text = new QPlainTextEdit(DecodeAutomatically(source.left(kSourceShown), Charset(), true));
  text->setReadOnly(true);
  text->setFont(form_.Body().Text()->font());
  auto* layout = new QVBoxLayout(dialog);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(text);
  dialog->show();
}

}  // namespace vorn
