#include "mail/file_kind.h"

#include <QHash>
#include <QMimeDatabase>
#include <QSet>
#include <algorithm>

#include "mail/attachment_files.h"
#include "mail/inspection/carried_commands.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// By the names of the shared MIME-info database. Documents made for macros are not among them,
// nor is anything that a browser would open.
const QSet<QString>& HarmlessTypes() {
  static const QSet<QString> types = {
      QStringLiteral("application/json"),
      QStringLiteral("application/pdf"),
      QStringLiteral("application/vnd.oasis.opendocument.presentation"),
      QStringLiteral("application/vnd.oasis.opendocument.spreadsheet"),
      QStringLiteral("application/vnd.oasis.opendocument.text"),
      QStringLiteral("application/vnd.openxmlformats-officedocument.presentationml.presentation"),
      QStringLiteral("application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"),
      QStringLiteral("application/vnd.openxmlformats-officedocument.wordprocessingml.document"),
      QStringLiteral("application/zip"),
      QStringLiteral("audio/mp4"),
      QStringLiteral("audio/mpeg"),
      QStringLiteral("audio/x-wav"),
      QStringLiteral("audio/vnd.wave"),
      QStringLiteral("image/bmp"),
      QStringLiteral("image/gif"),
      QStringLiteral("image/heif"),
      QStringLiteral("image/jpeg"),
      QStringLiteral("image/png"),
      QStringLiteral("image/tiff"),
      QStringLiteral("image/webp"),
      QStringLiteral("text/calendar"),
      QStringLiteral("text/csv"),
      QStringLiteral("text/markdown"),
      QStringLiteral("text/plain"),
      QStringLiteral("text/tab-separated-values"),
      QStringLiteral("text/vcard"),
      QStringLiteral("text/x-log"),
      QStringLiteral("video/mp4"),
      QStringLiteral("video/quicktime")};
  return types;
}

// What a user should know at once; the database's own words for the rest.
QString Words(const QMimeType& type) {
  static const QHash<QString, const char*> words = {
      {QStringLiteral("application/octet-stream"),
       QT_TRANSLATE_NOOP("vorn::Ui", "種類の分からないデータ")},
      {QStringLiteral("application/x-zerosize"), QT_TRANSLATE_NOOP("vorn::Ui", "空のファイル")},
      {QStringLiteral("text/plain"), QT_TRANSLATE_NOOP("vorn::Ui", "テキスト")},
      {QStringLiteral("text/html"), QT_TRANSLATE_NOOP("vorn::Ui", "HTML文書")},
      {QStringLiteral("application/xhtml+xml"), QT_TRANSLATE_NOOP("vorn::Ui", "HTML文書")},
      {QStringLiteral("application/x-executable"), QT_TRANSLATE_NOOP("vorn::Ui", "プログラム")},
      {QStringLiteral("application/x-pie-executable"), QT_TRANSLATE_NOOP("vorn::Ui", "プログラム")},
      {QStringLiteral("application/x-sharedlib"), QT_TRANSLATE_NOOP("vorn::Ui", "プログラム")},
      {QStringLiteral("application/x-ms-dos-executable"),
       QT_TRANSLATE_NOOP("vorn::Ui", "Windowsのプログラム")},
      {QStringLiteral("application/vnd.microsoft.portable-executable"),
       QT_TRANSLATE_NOOP("vorn::Ui", "Windowsのプログラム")},
      {QStringLiteral("application/x-shellscript"), QT_TRANSLATE_NOOP("vorn::Ui", "スクリプト")},
      {QStringLiteral("application/javascript"), QT_TRANSLATE_NOOP("vorn::Ui", "スクリプト")},
      {QStringLiteral("text/javascript"), QT_TRANSLATE_NOOP("vorn::Ui", "スクリプト")},
      {QStringLiteral("text/x-python"), QT_TRANSLATE_NOOP("vorn::Ui", "スクリプト")},
      {QStringLiteral("application/x-desktop"),
       QT_TRANSLATE_NOOP("vorn::Ui", "プログラムを起動するファイル")},
      {QStringLiteral("application/zip"), QT_TRANSLATE_NOOP("vorn::Ui", "圧縮ファイル")}};
  const auto known = words.constFind(type.name());
  if (known != words.cend()) return Ui::tr(*known);
  return type.comment() + QStringLiteral(" (") + type.name() + u')';
}

// Whether the content is what the name says, as far as the content can tell: a document in a zip
// archive may only be known as one, a table of text as text.
bool Confirms(const QMimeType& content, const QMimeType& name) {
  if (content.name() == u"application/x-zerosize" || content == name) return true;
  // Programs that show pictures go by the content, whatever a telephone called them.
  const auto isPicture = [](const QMimeType& type) {
    return type.name().startsWith(u"image/") && HarmlessTypes().contains(type.name());
  };
  if (isPicture(content) && isPicture(name)) return true;
  // Letters and sources that were pasted into a text.
  static const QSet<QString> asText = {
      QStringLiteral("message/rfc822"), QStringLiteral("application/mbox"),
      QStringLiteral("text/x-patch"),   QStringLiteral("text/x-csrc"),
      QStringLiteral("text/x-c++src"),  QStringLiteral("text/x-chdr"),
      QStringLiteral("text/x-tex")};
  if (name.name() == u"text/plain" && asText.contains(content.name())) return true;
  const bool isContainer = content.name() == u"application/zip" || content.name() == u"text/plain";
  return isContainer && name.inherits(content.name());
}

// The database takes the escapes of ISO-2022-JP, and other codes than UTF-8, for data. Old systems
// end a text with ^Z.
bool IsText(const QByteArray& bytes) {
  const qsizetype end = bytes.endsWith('\x1A') ? bytes.size() - 1 : bytes.size();
  return std::none_of(bytes.begin(), bytes.begin() + end, [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 && !QByteArrayView("\t\n\f\r\x1B").contains(c);
  });
}

bool HasStream(const QByteArray& bytes, QStringView name) {
  QByteArray utf16;
  for (const QChar c : name) utf16.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
  return bytes.contains(utf16);
}

// Documents in compound files (MS-CFB), and in RTF: macros of a kind are seen by the names of their
// streams, others not.
FileKind KindOfOldDocument(const QMimeType& name, const QByteArray& bytes) {
  const bool isOpen = HasStream(bytes, u"_VBA_PROJECT") || HasStream(bytes, u"ObjectPool") ||
                      HasStream(bytes, u"Ole10Native") || bytes.contains("\\obj");
  if (isOpen) {
    return {FileKind::Danger::MayAct, Words(name), Ui::tr("マクロやほかのファイルの入った文書")};
  }
  return {FileKind::Danger::Unknown, Words(name),
          HasStream(bytes, u"EncryptedPackage") ? Ui::tr("パスワード付きの文書")
                                                : Ui::tr("古い形式の文書")};
}

bool IsOldDocument(const QMimeType& name, const QMimeType& content) {
  static const QSet<QString> inCompoundFiles = {QStringLiteral("application/msword"),
                                                QStringLiteral("application/vnd.ms-excel"),
                                                QStringLiteral("application/vnd.ms-powerpoint")};
  if (name.name() == u"application/rtf") return content == name;
  // What is encrypted stands in such a file under the new names.
  const bool isNamed =
      inCompoundFiles.contains(name.name()) ||
      (HarmlessTypes().contains(name.name()) && name.name().contains(u"officedocument"));
  return isNamed && (content.name() == u"application/x-ole-storage" ||
                     inCompoundFiles.contains(content.name()));
}

}  // namespace

FileKind KindOfFile(const QString& name, const QByteArray& bytes, const std::atomic<bool>* stop) {
  using Danger = FileKind::Danger;
  const QMimeDatabase database;
  const QMimeType byName =
      database.mimeTypeForFile(SafeFileName(name).toLower(), QMimeDatabase::MatchExtension);
  QMimeType byContent = database.mimeTypeForData(bytes);
  if (byContent.isDefault() && byName.inherits(QStringLiteral("text/plain")) && IsText(bytes)) {
    byContent = database.mimeTypeForName(QStringLiteral("text/plain"));
  }
  if (IsOldDocument(byName, byContent)) return KindOfOldDocument(byName, bytes);
  if (!HarmlessTypes().contains(byName.name()) || !Confirms(byContent, byName)) {
    return {Danger::MayAct, Words(byName), Words(byContent)};
  }
  const CarriedCommands carried = FindCommands(byName.name(), bytes, LookBound(stop));
  if (carried.words.isEmpty()) return {Danger::None, Words(byName), Words(byContent)};
  return {carried.isSeen ? Danger::MayAct : Danger::Unknown, Words(byName), carried.words};
}

}  // namespace vorn
