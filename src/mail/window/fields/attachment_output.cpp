#include "mail/window/fields/attachment_output.h"

#include <QDesktopServices>
#include <QDir>
#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>
#include <QStatusBar>
#include <QUrl>

#include "auxiliary/window/console_window.h"
#include "kit/window/plain_text.h"
#include "kit/window/progress_window.h"
#include "mail/attachment_files.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/compose_message.h"
#include "mail/file_kind.h"
#include "mail/window/fields/unpacking.h"
#include "mail/working_folder.h"
#include "storage/files/file_origin.h"
#include "storage/files/private_files.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

constexpr int kClipsToldMs = 10000;

// In the window's status bar, which is there as long as it says something where the window has none
// of its own.
void TellDone(const QWidget& asked, const QString& sentence) {
  auto* window = qobject_cast<QMainWindow*>(asked.window());
  if (window == nullptr) return;
  const bool isOwn = window->findChild<QStatusBar*>() != nullptr;
  QStatusBar* bar = window->statusBar();
  if (!isOwn) {
    bar->setSizeGripEnabled(false);
    QObject::connect(bar, &QStatusBar::messageChanged, bar,
                     [bar](const QString& shown) { bar->setVisible(!shown.isEmpty()); });
  }
  bar->showMessage(ShownText(sentence), kClipsToldMs);
}

// The address of a message (RFC 2392).
QString MidAddress(const QByteArray& source) {
  const QByteArrayView name = "MESSAGE-ID:";
  const QByteArray id =
      MimeCodec::HeaderValue(MimeCodec::HeaderField(source, name), name.size()).trimmed();
  return QStringLiteral("mid:") +
         QString::fromLatin1(id.mid(1, id.size() - 2).toPercentEncoding("@"));
}

// The file appears whole or not at all.
Result<> WriteTo(const QString& path, const ModelAttachment& attachment, const QByteArray& source) {
  const Result<QByteArray> bytes = ReadAttachment(attachment, source);
  if (!bytes) return bytes.Error();
  if (WriteWhole(path, *bytes)) {
    if (!attachment.isNew) MarkForeign(path, MidAddress(source));
    return {};
  }
  return StorageError{
      StorageError::Kind::Other,
      Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。").arg(path)};
}

}  // namespace

AttachmentOutput::AttachmentOutput(Context& context, WorkingFolder& working, QWidget& list)
    : QObject(&list), context_(context), working_(working), list_(list) {}

bool AttachmentOutput::IsArchive(const ModelAttachment& attachment) const {
  return IsNamedArchive(attachment) &&
         ReadAttachment(attachment, source_).ValueOr({}).startsWith("PK\x03\x04");
}

void AttachmentOutput::Save(const ModelAttachment& attachment) {
  const QByteArray source = source_;
  const QPointer<AttachmentOutput> self(this);
  const QString path = AskFileToSave(context_, &list_, FileTask::SaveAttachment,
                                     Ui::tr("添付ファイルの保存"), SafeFileName(attachment.name));
  if (self == nullptr || path.isEmpty()) return;
  if (const Result<> written = WriteTo(path, attachment, source); !written) {
    return Tell(written.Error().text);
  }
  TellDone(list_, Ui::tr("「%1」に保存しました。").arg(QDir::toNativeSeparators(path)));
}

// One that fails does not keep the others back.
void AttachmentOutput::SaveAll(const std::vector<ModelAttachment>& attachments) {
  const QByteArray source = source_;
  const QPointer<AttachmentOutput> self(this);
  const QString folder = AskFolder(context_, &list_, FileTask::SaveAttachment,
                                   Ui::tr("添付ファイルを保存するフォルダ"));
  if (self == nullptr || folder.isEmpty()) return;
  QStringList faults;
  for (const ModelAttachment& attachment : attachments) {
    const Result<> written = WriteTo(FreePath(folder, attachment.name), attachment, source);
    if (!written) faults.append(written.Error().text);
  }
  const qsizetype saved = static_cast<qsizetype>(attachments.size()) - faults.size();
  if (saved > 0) {
    TellDone(list_,
             Ui::tr("%n個の添付ファイルを「%1」に保存しました。", nullptr, static_cast<int>(saved))
                 .arg(QDir::toNativeSeparators(folder)));
  }
  if (!faults.isEmpty()) Tell(faults.join(u'\n'));
}

void AttachmentOutput::SaveChosen(const std::vector<ModelAttachment>& attachments,
                                  const QList<int>& chosen) {
  if (attachments.empty()) return;
  if (attachments.size() == 1) return Save(attachments.front());
  QStringList entries;
  QStringList highlighted;
  for (const int row : chosen) highlighted.append(QString::number(row));
  for (size_t i = 0; i < attachments.size(); ++i) {
    // "@" separates the fields of an entry.
    QString name = ShownFileName(attachments[i].name);
    entries.append(QString::number(i) + u'@' + name.replace(u'@', u'＠'));
  }
  const auto answer = InputList(context_, &list_, Ui::tr("添付ファイルの保存"),
                                Ui::tr("保存したいファイルを選択して下さい。"),
                                highlighted.join(kLineBreak), entries.join(kLineBreak), true);
  std::vector<ModelAttachment> saved;
  for (const QString& key : answer.value_or(QString()).split(kLineBreak, Qt::SkipEmptyParts)) {
    saved.push_back(attachments[key.toULongLong()]);
  }
  if (saved.size() == 1) return Save(saved.front());
  if (saved.empty()) return;
  SaveAll(saved);
}

// Asks before anything that may act.
bool AttachmentOutput::MayOpen(const ModelAttachment& attachment) {
  const Result<QByteArray> bytes = ReadAttachment(attachment, source_);
  if (!bytes) return true;  // which is told where it is written
  FileKind kind;
  const QPointer<AttachmentOutput> self(this);
  const auto look = [&](const std::atomic<bool>& stop) {
    kind = KindOfFile(attachment.name, *bytes, &stop);
  };
  const bool isWanted = ProgressWindow(&list_, Ui::tr("添付ファイルを開く"))
                            .Run(Ui::tr("添付ファイルの中身を調べています…"), look);
  if (!isWanted || self == nullptr) return false;
  if (kind.IsHarmless()) return true;
  const QString question =
      kind.danger == FileKind::Danger::Unknown
          ? Ui::tr(
                "「%1」の中身は確かめられません（%2）。マクロなどのプログラムが入っていることも"
                "あります。知っている人から送られてくるはずのファイルのときだけ開いてください。\n\n"
                "名前が示す種類: %3\n\n開きますか？")
                .arg(ShownFileName(attachment.name), kind.byContent, kind.byName)
          : Ui::tr(
                "「%1」は、開くとパソコンに害を及ぼすおそれがあります。プログラムや、プログラムを"
                "含むファイルかもしれません。\n\n名前が示す種類: %2\n実際の中身: %3\n\n"
                "開きますか？")
                .arg(ShownFileName(attachment.name), kind.byName, kind.byContent);
  return ShowBox(&list_, QMessageBox::Warning, question, QMessageBox::Yes | QMessageBox::No,
                 QMessageBox::No) == QMessageBox::Yes;
}

void AttachmentOutput::Open(const ModelAttachment& attachment) {
  // While it is looked into and asked about, the list may show another message, or go.
  const QByteArray source = source_;
  const QPointer<AttachmentOutput> self(this);
  // A message is shown by the program itself, and does nothing.
  const bool isMessage = attachment.type.compare(u"message/rfc822", Qt::CaseInsensitive) == 0 ||
                         attachment.name.endsWith(u".eml", Qt::CaseInsensitive);
  if (!isMessage && !MayOpen(attachment)) return;
  if (self == nullptr || source_ != source) return;
  const QString path = working_.PathFor(attachment.name);
  if (const Result<> written = WriteTo(path, attachment, source); !written) {
    return Tell(written.Error().text);
  }
  if (!MakePrivate(path)) return;
  if (isMessage) {
    Q_EMIT MessageOpened(path);
  } else if (QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
    return;
  } else if (IsArchive(attachment)) {
    Unpack(attachment);  // which needs no program
  } else if (ShowBox(&list_, QMessageBox::Information,
                     Ui::tr("「%1」を開くプログラムがありません。ファイルに保存しますか？")
                         .arg(ShownFileName(attachment.name)),
                     QMessageBox::Save | QMessageBox::Cancel,
                     QMessageBox::Save) == QMessageBox::Save &&
             self != nullptr && source_ == source) {
    Save(attachment);
  }
}

void AttachmentOutput::Unpack(const ModelAttachment& archive) {
  const QPointer<AttachmentOutput> self(this);
  const Unpacked unpacked =
      UnpackByDialog(context_, &list_, ReadAttachment(archive, source_).ValueOr({}), archive.name,
                     MidAddress(source_));
  if (self == nullptr || unpacked.files == 0) return;
  TellDone(list_, Ui::tr("%n個のファイルを「%1」に保存しました。", nullptr,
                         static_cast<int>(unpacked.files))
                      .arg(QDir::toNativeSeparators(unpacked.folder)));
}

void AttachmentOutput::Tell(const QString& text) {
  ShowBox(&list_, QMessageBox::Critical, text);
}

}  // namespace vorn
