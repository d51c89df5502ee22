// Files within attachments: packages of groupware, and ZIP archives.

#include <gtest/gtest.h>

#include <QBuffer>
#include <QtEndian>
#include <clocale>
#include <map>

#include "mail/attachment_files.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/codec/mime/tnef.h"
#include "mail/codec/mime/zip_files.h"
#include "mail/codec/text/rtf_text.h"
#include "mail/message_model.h"
#include "objects/settings.h"

namespace vorn {
namespace {

template <typename Integer>
QByteArray LittleEndian(Integer value) {
  QByteArray bytes(sizeof(value), '\0');
  qToLittleEndian(value, bytes.data());
  return bytes;
}

QByteArray Attribute(quint8 level, quint32 id, const QByteArray& data) {
  return LittleEndian(level) + LittleEndian(id) + LittleEndian(quint32(data.size())) + data +
         LittleEndian(quint16(0));
}

// A property with one value of a counted kind.
QByteArray Property(quint16 kind, quint16 number, const QByteArray& value,
                    const QByteArray& between = {}) {
  return LittleEndian(kind) + LittleEndian(number) + between + LittleEndian(quint32(1)) +
         LittleEndian(quint32(value.size())) + value + QByteArray((4 - value.size() % 4) % 4, '\0');
}

QByteArray Properties(const QByteArrayList& properties) {
  return LittleEndian(quint32(properties.size())) + properties.join();
}

QByteArray Wide(const QString& text) {
  return QByteArray(reinterpret_cast<const char*>(text.utf16()), (text.size() + 1) * 2);
}

QByteArray Package(const QByteArray& attributes) {
  return LittleEndian(quint32(0x223E9F78)) + LittleEndian(quint16(7)) + attributes;
}

QByteArray FileBegins() {
  return Attribute(2, 0x00069002, QByteArray(14, '\0'));
}

// As packages come: short names in the code page, long ones in a property, a file without bytes,
// one without a name, properties that are named and such with several values before the ones
// looked for.
QByteArray WholePackage() {
  const QByteArray odd =
      Property(0x1E, 0x8001, "x",
               QByteArray(16, 'g') + LittleEndian(quint32(1)) + LittleEndian(quint32(6)) +
                   Wide(QStringLiteral("ab")) + QByteArray(2, '\0'));
  const QByteArray numbers = LittleEndian(quint16(0x1003)) + LittleEndian(quint16(0x6000)) +
                             LittleEndian(quint32(2)) + LittleEndian(quint32(1)) +
                             LittleEndian(quint32(2));
  return Package(
      Attribute(1, 0x00069007, LittleEndian(quint32(932)) + LittleEndian(quint32(0))) +
      Attribute(
          1, 0x00069003,
          Properties({odd, numbers, Property(0x1F, 0x1000, Wide(QStringLiteral("本文です。")))})) +
      FileBegins() + Attribute(2, 0x0006800F, "%PDF") +
      Attribute(2, 0x00018010, QByteArray("SIRYO~1.PDF\0", 12)) +
      Attribute(
          2, 0x00069005,
          Properties({numbers, odd, Property(0x1F, 0x3707, Wide(QStringLiteral("資料①.pdf")))})) +
      FileBegins() + Attribute(2, 0x00018010, QByteArray("\x8b\xf3.txt\0", 7)) +
      Attribute(2, 0x0006800F, "") + FileBegins() + Attribute(2, 0x0006800F, "x"));
}

TEST(TnefTest, FilesAndTextOfAPackageAreRead) {
  const TnefContents contents = ReadTnef(WholePackage());
  EXPECT_EQ(contents.text, QStringLiteral("本文です。"));
  ASSERT_EQ(contents.files.size(), 3U);
  EXPECT_EQ(contents.files[0].name, QStringLiteral("資料①.pdf"));
  EXPECT_EQ(contents.files[0].bytes, "%PDF");
  EXPECT_EQ(contents.files[1].name, QStringLiteral("空.txt"));
  EXPECT_EQ(contents.files[1].bytes, "");
  EXPECT_EQ(contents.files[2].name, QStringLiteral("添付ファイル[1].dat"));

  const auto body = [](const QByteArray& properties) {
    return ReadTnef(Package(Attribute(1, 0x00069003, Properties({properties}))));
  };
  EXPECT_EQ(body(Property(0x1E, 0x1000, "\x8b\xe0\x8az")).text, QStringLiteral("金額"));
  EXPECT_EQ(body(Property(0x102, 0x1013, "<p>一</p>")).text, QStringLiteral("一\r\n"));
  // "{\rtf1 abcabc}" and a place that repeats what stands before it.
  const QByteArray rich = QByteArray::fromHex(
      "2d0000002b0000004c5a4675f1c5c7a703000a00726370673132354232"
      "0af32068656c090020627705b06c647d0a800fa0");
  const TnefContents packed = body(Property(0x102, 0x1009, rich));
  ASSERT_EQ(packed.files.size(), 1U);
  EXPECT_EQ(packed.files[0].bytes, "{\\rtf1\\ansi\\ansicpg1252\\pard hello world}\r\n");
  EXPECT_EQ(packed.text, QStringLiteral("hello world"));
  // By the code page that the message names, the package itself, or none.
  const QByteArray russian = Property(0x1E, 0x1000, "\xCF\xF0\xE8\xE2\xE5\xF2");
  const QByteArray page =
      LittleEndian(quint16(0x0003)) + LittleEndian(quint16(0x3FFD)) + LittleEndian(quint32(1251));
  EXPECT_EQ(ReadTnef(Package(Attribute(1, 0x00069003, Properties({russian, page})))).text,
            QStringLiteral("Привет"));
  EXPECT_EQ(ReadTnef(Package(Attribute(1, 0x00069007, LittleEndian(quint32(1251))) +
                             Attribute(1, 0x00069003, Properties({russian}))))
                .text,
            QStringLiteral("Привет"));
  EXPECT_EQ(body(Property(0x1E, 0x1000, "caf\xE9 cr\xE8me")).text, QStringLiteral("café crème"));
}

TEST(TnefTest, RichTextIsReadAsText) {
  struct Case {
    const char* rtf;
    const char16_t* text;
  };
  for (const Case& c : std::initializer_list<Case>{
           {"{\\rtf1 \\'96\\'7b\\'95\\'b6\\par\r\nx\\tab y}", u"本文\r\nx\ty"},
           {"{\\rtf1\\ansicpg932{\\fonttbl{\\f1\\fcharset204 A;}}{\\f1 \\'cf\\'f0}\\'8b\\'e0}",
            u"Пр金"},
           {"{\\rtf1\\uc1\\u12354?\\u-10179?\\u-8704?\\uc0\\u65 B}", u"あ\U0001F600AB"},
           {"{\\rtf1{\\*\\htmltag64 <p>}\\htmlrtf {\\htmlrtf0 a\\htmlrtf }\\htmlrtf0{\\pict "
            "ffd8}\\{b\\}}",
            u"a{b}"},
           {"{\\rtf1 a\\bin3 }}}b\\emdash c", u"ab—c"},
           {"no rich text", u""}}) {
    EXPECT_EQ(RtfToText(c.rtf, 932), QString::fromUtf16(c.text)) << c.rtf;
  }
}

// Whatever is missing or wrong, there is no more than what is there.
TEST(TnefTest, ADamagedPackageGivesWhatCanBeRead) {
  const QByteArray whole = WholePackage();
  for (qsizetype length = 0; length < whole.size(); ++length) {
    for (const InnerFile& file : ReadTnef(whole.first(length)).files) {
      EXPECT_TRUE(QByteArray("%PDF").startsWith(file.bytes) || file.bytes == "x");
    }
  }
  EXPECT_TRUE(ReadTnef("PK\x03\x04").files.empty());
  EXPECT_TRUE(ReadTnef(Package(Attribute(2, 0x0006800F, "no file has begun"))).files.empty());
  EXPECT_EQ(ReadTnef(Package(Attribute(
                         1, 0x00069003,
                         LittleEndian(quint32(0xFFFFFFFF)) + LittleEndian(quint16(0x1102)) +
                             LittleEndian(quint16(0x1000)) + LittleEndian(quint32(0xFFFFFFFF)))))
                .text,
            QString());
}

QByteArray MessageWith(const QByteArray& package, const QByteArray& text) {
  return "Subject: x\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
         "--b\r\nContent-Type: text/plain; charset=us-ascii\r\n\r\n" +
         text +
         "\r\n--b\r\nContent-Type: application/ms-tnef; name=\"winmail.dat\"\r\n"
         "Content-Transfer-Encoding: base64\r\n\r\n" +
         package.toBase64() + "\r\n--b--\r\n";
}

TEST(TnefTest, AReceivedMessageShowsWhatItsPackageHolds) {
  TextRequest request;
  request.textTypes = DefaultTextTypes();
  request.withReports = true;
  const auto text = [&](const QByteArray& own) {
    const QByteArray source = MessageWith(WholePackage(), own);
    return GetMessageText(source, MimeCodec::ContentIndex(source), request).text.trimmed();
  };
  EXPECT_EQ(text(" "), QStringLiteral("本文です。"));
  EXPECT_EQ(text("own"), QStringLiteral("own"));

  StoredMessage message;
  message.source = MessageWith(WholePackage(), "own");
  message.contentIndex = MimeCodec::ContentIndex(message.source);
  EditSettings settings;
  settings.textTypes = DefaultTextTypes();
  const auto names = [&](OpenMode mode) {
    QStringList list;
    for (const ModelAttachment& file :
         OpenSource(message, mode, false, settings, {}, {}).attachments) {
      list.append(file.name);
      if (file.name.endsWith(QStringLiteral(".pdf"))) {
        EXPECT_EQ(ReadAttachment(file, message.source), "%PDF");
      }
    }
    return list;
  };
  const QStringList whole = {QStringLiteral("winmail.dat"), QStringLiteral("資料①.pdf"),
                             QStringLiteral("空.txt"), QStringLiteral("添付ファイル[1].dat")};
  EXPECT_EQ(names(OpenMode::Show), whole);
  EXPECT_EQ(names(OpenMode::Forward), QStringList{QStringLiteral("winmail.dat")});
  message.isWritten = true;
  EXPECT_EQ(names(OpenMode::Show), QStringList{QStringLiteral("winmail.dat")});
}

// Two files: a folder with a name in code page 932, and one that leads out of the folder.
const char* const kPlainZip =
    "UEsDBBQACAAIAAAAIQAAAAAAAAAAAAQAAAANABQAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAA637QVQ"
    "UAUEsHCGXWQsMGAAAABAAAAFBLAwQUAAgACAAAACEAAAAAAAAAAAADAAAACAAUAC4uL2IudHh0VVQBAAB1eAsAAQQA"
    "AAAABAAAAAArKc8HAFBLBwhmisoRBQAAAAMAAABQSwECFAMUAAgACAAAACEAZdZCwwYAAAAEAAAADQAUAAAAAAAAAA"
    "AApIEAAAAAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAUEsBAhQDFAAIAAgAAAAhAGaKyhEFAAAAAwAA"
    "AAgAFAAAAAAAAAAAAKSBVQAAAC4uL2IudHh0VVQBAAB1eAsAAQQAAAAABAAAAABQSwUGAAAAAAIAAgCZAAAApAAAAA"
    "AA";
const char* const kOldEncryption =
    "UEsDBBQACQAIAAAAIQAAAAAAAAAAAAQAAAANABQAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAdjKpTt"
    "FmOS82JwytJJJ2EfieUEsHCGXWQsMSAAAABAAAAFBLAwQUAAkACAAAACEAAAAAAAAAAAADAAAACAAUAC4uL2IudHh0"
    "VVQBAAB1eAsAAQQAAAAABAAAAAAS8kWrXje0JT/n6kwYvlS0YVBLBwhmisoREQAAAAMAAABQSwECFAMUAAkACAAAAC"
    "EAZdZCwxIAAAAEAAAADQAUAAAAAAAAAAAApIEAAAAAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAUEsB"
    "AhQDFAAJAAgAAAAhAGaKyhERAAAAAwAAAAgAFAAAAAAAAAAAAKSBYQAAAC4uL2IudHh0VVQBAAB1eAsAAQQAAAAABA"
    "AAAABQSwUGAAAAAAIAAgCZAAAAvAAAAAAA";
const char* const kNewEncryption =
    "UEsDBBQACQBjAAAAIQAAAAAAAAAAAAQAAAANAB8AjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAAZkHAA"
    "IAQUUDCABRDZUbnUqx5PRDxBpibLdjpmUmrRh17sxZJURghm+LP6XHUEsHCAAAAAAiAAAABAAAAFBLAwQUAAkAYwAA"
    "ACEAAAAAAAAAAAADAAAACAAfAC4uL2IudHh0VVQBAAB1eAsAAQQAAAAABAAAAAABmQcAAgBBRQMIAOLpJz6T8Du1M6"
    "C/cCuuH3gLHlosotiK7kqt/K+wiw5zUFBLBwgAAAAAIQAAAAMAAABQSwECFAMUAAkAYwAAACEAAAAAACIAAAAEAAAA"
    "DQAfAAAAAAAAAAAApIEAAAAAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAAZkHAAIAQUUDCABQSwECFA"
    "MUAAkAYwAAACEAAAAAACEAAAADAAAACAAfAAAAAAAAAAAApIF8AAAALi4vYi50eHRVVAEAAHV4CwABBAAAAAAEAAAA"
    "AAGZBwACAEFFAwgAUEsFBgAAAAACAAIArwAAAPIAAAAAAA==";

std::map<QString, QByteArray> Unpacked(const QByteArray& archive, const QString& password,
                                       ZipResult wanted) {
  const std::vector<ZipEntry> entries = ListZip(archive);
  std::map<QString, QByteArray> files;
  QBuffer buffer;
  size_t current = 0;
  const ZipResult result = UnpackZip(
      archive, password,
      [&](size_t index) {
        current = index;
        buffer.close();
        buffer.setData({});
        buffer.open(QIODevice::WriteOnly);
        return &buffer;
      },
      [&] { return files.emplace(entries.at(current).name, buffer.data()).second; });
  EXPECT_EQ(static_cast<int>(result), static_cast<int>(wanted));
  return files;
}

TEST(ZipTest, FilesAreListedAndUnpackedWithTheirPassword) {
  const QString folder = QStringLiteral("資料/見積.txt");
  const std::map<QString, QByteArray> both = {{folder, "\x8b\xe0\x8az"},
                                              {QStringLiteral("../b.txt"), "two"}};
  for (const char* coded : {kPlainZip, kOldEncryption, kNewEncryption}) {
    const QByteArray archive = QByteArray::fromBase64(coded);
    const bool isEncrypted = coded != kPlainZip;
    const std::vector<ZipEntry> entries = ListZip(archive);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].name, folder);
    EXPECT_EQ(entries[0].isEncrypted, isEncrypted);
    EXPECT_EQ(Unpacked(archive, QStringLiteral("himitsu"), ZipResult::Done), both);
    if (!isEncrypted) continue;
    EXPECT_TRUE(Unpacked(archive, QStringLiteral("wrong"), ZipResult::WrongPassword).empty());
    EXPECT_TRUE(Unpacked(archive, {}, ZipResult::WrongPassword).empty());
  }
  EXPECT_TRUE(ListZip("no archive").empty());
  // A name that says that it is UTF-8, whatever the locale is.
  const QByteArray marked = QByteArray::fromBase64(
      "UEsDBBQAAAgAAAAAIQCDFtyMAQAAAAEAAAAOAAAA6LOH5paZ8J+"
      "Noy50eHR4UEsBAhQDFAAACAAAAAAhAIMW3IwBAAAAAQAAAA4AAAAAAAAAAAAAAIABAAAAAOizh+"
      "aWmfCfjaMudHh0UEsFBgAAAAABAAEAPAAAAC0AAAAAAA==");
  const std::string before = setlocale(LC_CTYPE, nullptr);
  setlocale(LC_CTYPE, "C");
  const std::vector<ZipEntry> entries = ListZip(marked);
  setlocale(LC_CTYPE, before.c_str());
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].name, QStringLiteral("資料🍣.txt"));
}

TEST(ZipTest, ADamagedArchiveIsToldAndGivesNoOtherBytes) {
  const QByteArray whole = QByteArray::fromBase64(kPlainZip);
  for (qsizetype at = 0; at < whole.size(); ++at) {
    QByteArray damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    std::vector<QByteArray> files;
    QBuffer buffer;
    UnpackZip(
        damaged, {},
        [&](size_t) {
          buffer.close();
          buffer.setData({});
          buffer.open(QIODevice::WriteOnly);
          return &buffer;
        },
        [&] {
          files.push_back(buffer.data());
          return true;
        });
    for (const QByteArray& file : files) {
      EXPECT_TRUE(file == "\x8b\xe0\x8az" || file == "two" || file.isEmpty()) << at;
    }
  }
}

}  // namespace
}  // namespace vorn
