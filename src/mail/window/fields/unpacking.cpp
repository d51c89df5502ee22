#include "mail/window/fields/unpacking.h"

#include <QDir>
#include <QMessageBox>
#include <QSaveFile>
#include <QStandardPaths>
#include <algorithm>
#include <memory>
#include <set>

#include "auxiliary/window/console_window.h"
#include "kit/window/plain_text.h"
#include "mail/attachment_files.h"
#include "mail/codec/mime/zip_files.h"
#include "objects/object_types.h"
#include "storage/files/file_origin.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"

namespace vorn {
namespace {

class Unpacking {
 public:
  Unpacking(Context& context, QWidget* parent, const QByteArray& archive, const QString& name,
            const QString& address)
      : context_(context),
        parent_(parent),
        archive_(archive),
        name_(name),
        address_(address),
        entries_(ListZip(archive)) {}

  void Run() {
    if (entries_.empty()) return Tell(DamagedWords());
    if (!Choose()) return;
    const size_t count = chosen_.size();
    const bool isEncrypted = std::any_of(chosen_.begin(), chosen_.end(),
                                         [this](size_t i) { return entries_[i].isEncrypted; });
    for (bool isFirst = true;; isFirst = false) {
      const QString password = isEncrypted ? AskPassword(isFirst) : QString();
      if (isEncrypted && password.isEmpty()) return;
      switch (Unpack(password)) {
        case ZipResult::Done:
          written_ = count;
          return;
        case ZipResult::WrongPassword:
          continue;
        case ZipResult::Damaged:
          return Tell(DamagedWords());
        case ZipResult::NotWritten:
          return Tell(
              Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。")
                  .arg(folder_));
      }
    }
  }

  Unpacked Result() const { return {written_, folder_}; }

 private:
  bool Choose() {
    QStringList lines;
    QStringList keys;
    for (size_t i = 0; i < entries_.size(); ++i) {
      QString name = ShownFileName(entries_[i].name);
      lines.append(QString::number(i) + u'@' + name.replace(u'@', u'＠'));
      keys.append(QString::number(i));
    }
    const QString limit = entries_.size() < kMostZipFiles
                              ? QString()
                              : Ui::tr("（先頭の%1個です）").arg(kMostZipFiles);
    const auto answer =
        InputList(context_, parent_, Ui::tr("中のファイルの取り出し"),
                  Ui::tr("取り出したいファイルを選択して下さい。") + limit, keys.join(kLineBreak),
                  lines.join(kLineBreak), true,
                  QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    QStringList given = answer.value_or(QString()).split(kLineBreak, Qt::SkipEmptyParts);
    // Without a folder, when the user has thought better of it, there are keys alone.
    if (given.size() < 2 || !QDir::isAbsolutePath(given.last())) return false;
    folder_ = given.takeLast();
    for (const QString& key : given) chosen_.insert(key.toULongLong());
    return true;
  }

  QString AskPassword(bool isFirst) {
    const QString caption =
        isFirst ? Ui::tr("「%1」のファイルは暗号化されています。パスワードを入力して下さい。")
                : Ui::tr("パスワードが違うか、ファイルが壊れています。もう一度入力して下さい。");
    return InputPassword(context_, parent_, Ui::tr("中のファイルの取り出し"),
                         isFirst ? caption.arg(ShownFileName(name_)) : caption, true)
        .value_or(QString());
  }

  // What one turn has written is not written by the next.
  ZipResult Unpack(const QString& password) {
    std::unique_ptr<QSaveFile> file;
    size_t current = 0;
    const auto target = [&](size_t index) -> QIODevice* {
      if (!chosen_.contains(index)) return nullptr;
      current = index;
      // The folders within the archive are left out, so that none leads elsewhere.
      const QString name = entries_[index].name.section(u'/', -1).section(u'\\', -1);
      file = std::make_unique<QSaveFile>(FreePath(folder_, name));
      file->open(QIODevice::WriteOnly);  // one that is not open refuses what is written
      return file.get();
    };
    const auto done = [&] {
      if (!FinishFile(*file)) return false;
      MarkForeign(file->fileName(), address_);
      chosen_.erase(current);
      return true;
    };
    return UnpackZip(archive_, password, target, done);
  }

  QString DamagedWords() const {
    return Ui::tr("「%1」を開けません。壊れているか、知らない形式です。").arg(ShownFileName(name_));
  }

  void Tell(const QString& text) { ShowBox(parent_, QMessageBox::Critical, text); }

  Context& context_;
  QWidget* parent_;
  const QByteArray& archive_;
  const QString& name_;
  const QString& address_;
  std::vector<ZipEntry> entries_;
  std::set<size_t> chosen_;
  QString folder_;
  size_t written_ = 0;
};

}  // namespace

Unpacked UnpackByDialog(Context& context, QWidget* parent, const QByteArray& archive,
                        const QString& name, const QString& address) {
  Unpacking unpacking(context, parent, archive, name, address);
  unpacking.Run();
  return unpacking.Result();
}

}  // namespace vorn
