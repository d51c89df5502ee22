#include "frame/window/new_message_notice.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QSoundEffect>
#include <QUrl>

#include "kit/window/plain_text.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr const char* kMessages = "messages";
constexpr qsizetype kMostUnasked = 10;

}  // namespace

NewMessageNotice::NewMessageNotice(Context& context, QWidget& window,
                                   std::function<void(const QString&)> open)
    : context_(context),
      window_(window),
      open_(std::move(open)),
      mmSound_(new QSoundEffect(&window)) {
  mmSound_->setObjectName(QStringLiteral("mmSound"));
}

void NewMessageNotice::Tell(const QStringList& messages) {
  if (Settings(context_)->Flag(u"MessageNoticeDialog")) Ask(messages);
  PlaySound();
}

// The question waits beside what the user is doing: keys that are being typed are not its answer.
void NewMessageNotice::Ask(const QStringList& messages) {
  if (question_ != nullptr) {
    question_->setProperty(kMessages, question_->property(kMessages).toStringList() + messages);
    return;
  }
  question_ = new QMessageBox(QMessageBox::Question, kApplicationTitle,
                              Ui::tr("新着メッセージを受信しました。今すぐ開きますか？"),
                              QMessageBox::Ok | QMessageBox::Cancel, &window_);
  question_->setTextFormat(Qt::PlainText);
  question_->setDefaultButton(QMessageBox::Cancel);
  question_->setProperty(kMessages, messages);
  question_->setAttribute(Qt::WA_DeleteOnClose);
  question_->setAttribute(Qt::WA_ShowWithoutActivating);
  question_->setModal(false);
  connect(question_, &QMessageBox::finished, this, [this, box = question_.data()](int answer) {
    if (answer == QMessageBox::Ok) Open(box->property(kMessages).toStringList());
  });
  question_->show();
}

// Hundreds of windows are hardly what was meant.
void NewMessageNotice::Open(const QStringList& messages) {
  if (messages.size() > kMostUnasked &&
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("メッセージ%1通をそれぞれのウィンドウで開きます。よろしいですか？")
                  .arg(messages.size()),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel) != QMessageBox::Ok) {
    return;
  }
  for (const QString& serialId : messages) open_(serialId);
}

void NewMessageNotice::PlaySound() {
  const DiskPtr settings = Settings(context_);
  const QString file = settings->Text(u"MessageNoticeSoundFile");
  if (!settings->Flag(u"MessageNoticeSound") || !QFileInfo(file).isFile()) return;
  mmSound_->setSource(QUrl::fromLocalFile(file));
  mmSound_->play();
}

}  // namespace vorn
