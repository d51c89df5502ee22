#include "frame/window/notices/new_message_notice.h"

#include <QApplication>
#include <QFileInfo>
#include <QMessageBox>
#include <QSoundEffect>
#include <QTimer>
#include <QUrl>

#include "kit/window/plain_text.h"
#include "mail/codec/header/address.h"
#include "mail/shown_addresses.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "objects/notice_settings.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr const char* kMessages = "messages";
const QString kOpen = QStringLiteral("open");
const QString kDust = QStringLiteral("dust");
const QString kRead = QStringLiteral("read");
constexpr qsizetype kMostUnasked = 5;
constexpr qsizetype kMostNamed = 3;
constexpr qsizetype kMostRemembered = 100;
constexpr int kFreeMs = 200;

struct Letter {
  QString sender;
  QString subject;
};

QString SenderIn(const QString& addressLines) {
  const QList<AddressEntry> senders = EntriesOfKind(addressLines, u"from");
  if (senders.isEmpty()) return Ui::tr("(不明なメールアドレス)");
  return ShownSender(senders.first());
}

// Of one that cannot be read nothing is said.
QList<Letter> ReadLetters(Context& context, const SerialIds& messages) {
  QList<Letter> letters;
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  if (!mail) return letters;
  for (const SerialId& message : messages) {
    const RecordsetPtr row = MessageRows(context.Data).Of(message);
    if (row == nullptr || row->Eof()) continue;
    const MailRow letter(*row);
    letters.append({ShownText(SenderIn(letter.AddressLines()), kMostInTitle),
                    ShownText(letter.Subject(), kMostInTitle)});
  }
  return letters;
}

SerialIds Unopened(Context& context, const SerialIds& messages) {
  SerialIds unopened;
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  for (const SerialId& message : messages) {
    const RecordsetPtr row = mail ? MessageRows(context.Data).Of(message) : nullptr;
    if (row == nullptr || row->Eof()) continue;
    const MailRow letter(*row);
    if (!letter.State().isDust && letter.Flags().IsUnopened()) unopened.append(message);
  }
  return unopened;
}

Notification NotificationOf(Context& context, const SerialIds& messages) {
  const QList<Letter> letters =
      ReadLetters(context, messages.first(qMin(messages.size(), kMostNamed)));
  Notification notification;
  notification.about = TextsOf(messages);
  notification.actions = {QStringLiteral("default"),
                          Ui::tr("開く"),
                          kOpen,
                          Ui::tr("開く"),
                          kDust,
                          Ui::tr("くずかご"),
                          kRead,
                          Ui::tr("開封済みにする")};
  if (messages.size() == 1 && letters.size() == 1) {
    notification.summary = letters[0].sender;
    notification.body = letters[0].subject;
    return notification;
  }
  notification.summary = Ui::tr("新着メッセージ %1通").arg(messages.size());
  QStringList senders;
  for (const Letter& letter : letters) senders.append(letter.sender);
  senders.removeDuplicates();
  notification.body = senders.join(QStringLiteral("\n"));
  if (messages.size() > kMostNamed) {
    notification.body +=
        QStringLiteral("\n") + Ui::tr("ほか%1通").arg(messages.size() - kMostNamed);
  }
  return notification;
}

}  // namespace

NewMessageNotice::NewMessageNotice(Context& context, QWidget& window,
                                   std::function<void(const SerialId&)> open,
                                   std::function<void(MessageAction, const SerialIds&)> act)
    : context_(context),
      window_(window),
      open_(std::move(open)),
      act_(std::move(act)),
      mmSound_(new QSoundEffect(&window)),
      desktop_(QStringLiteral("vorn")) {
  mmSound_->setObjectName(QStringLiteral("mmSound"));
  connect(&desktop_, &NotificationService::Chosen, this,
          [this](const QString& action, const QStringList& about) {
            Chosen(action, SerialIdsOf(about));
          });
  connect(&desktop_, &NotificationService::Gone, this, [this](const QStringList& about) {
    notified_.removeIf([&](const SerialId& message) { return about.contains(message.Text()); });
  });
}

void NewMessageNotice::Tell(const SerialIds& messages) {
  const NoticeSettings settings(context_);
  const bool asks = settings.Asks();
  if (asks) Ask(messages);
  if (settings.TellsDesktop()) Notify(messages);
  if (asks || settings.SoundsAlone()) PlaySound();
}

// What the user has not dealt with is told of once more beside what came now.
void NewMessageNotice::Notify(const SerialIds& messages) {
  if (notified_.size() > kMostRemembered) notified_.clear();
  notified_ = Unopened(context_, notified_) + messages;
  desktop_.Show(NotificationOf(context_, notified_));
}

// A choice is not lost while a question of the program waits for its answer.
void NewMessageNotice::Chosen(const QString& action, const SerialIds& messages) {
  notified_.removeIf([&](const SerialId& message) { return messages.contains(message); });
  if (QApplication::activeModalWidget() != nullptr) {
    QTimer::singleShot(kFreeMs, this, [this, action, messages] { Chosen(action, messages); });
  } else if (action == kDust) {
    act_(MessageAction::ToDust, messages);
  } else if (action == kRead) {
    act_(MessageAction::MarkOpened, messages);
  } else {
    Open(messages);
  }
}

// The question waits beside what the user is doing: keys that are being typed are not its answer.
void NewMessageNotice::Ask(const SerialIds& messages) {
  if (question_ != nullptr) {
    question_->setProperty(kMessages,
                           question_->property(kMessages).toStringList() + TextsOf(messages));
    return;
  }
  question_ = new QMessageBox(QMessageBox::Question, kApplicationTitle,
                              Ui::tr("新着メッセージを受信しました。今すぐ開きますか？"),
                              QMessageBox::Ok | QMessageBox::Cancel, &window_);
  question_->setTextFormat(Qt::PlainText);
  question_->setDefaultButton(QMessageBox::Cancel);
  question_->setProperty(kMessages, TextsOf(messages));
  question_->setAttribute(Qt::WA_DeleteOnClose);
  question_->setAttribute(Qt::WA_ShowWithoutActivating);
  question_->setModal(false);
  connect(question_, &QMessageBox::finished, this, [this, box = question_.data()](int answer) {
    if (answer == QMessageBox::Ok) Open(SerialIdsOf(box->property(kMessages).toStringList()));
  });
  question_->show();
}

// Hundreds of windows are hardly what was meant.
void NewMessageNotice::Open(const SerialIds& messages) {
  if (messages.size() > kMostUnasked &&
      ShowBox(&window_, QMessageBox::Question,
              Ui::tr("メッセージ%n通をそれぞれのウィンドウで開きます。よろしいですか？", nullptr,
                     static_cast<int>(messages.size())),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel) != QMessageBox::Ok) {
    return;
  }
  for (const SerialId& serialId : messages) open_(serialId);
}

void NewMessageNotice::PlaySound() {
  const NoticeSettings settings(context_);
  const QString file = settings.SoundFile();
  if (!settings.HasSound() || !QFileInfo(file).isFile()) return;
  mmSound_->setSource(QUrl::fromLocalFile(file));
  mmSound_->play();
}

}  // namespace vorn
