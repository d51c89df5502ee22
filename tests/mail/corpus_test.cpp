// The corpus of messages, which tests/corpus/generate.py writes, and the samples, against what is
// expected of each.

#include <gtest/gtest.h>

#include <map>

#include "mail/codec/header/address.h"
#include "mail/codec/header/header_fields.h"
#include "mail/codec/mime/attachments.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "objects/settings.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

// The paths of all messages, by the class that they belong to.
std::map<std::string, QStringList> Classes() {
  std::map<std::string, QStringList> classes;
  const auto messages = [](const char* folder) {
    return QDir(QString::fromUtf8(folder)).entryInfoList({QStringLiteral("*.eml")}, QDir::Files);
  };
  for (const QFileInfo& file : messages(VORN_CORPUS)) {
    classes[file.fileName().section(u'.', 0, 0).toStdString()].append(file.filePath());
  }
  for (const QFileInfo& file : messages(VORN_SAMPLES)) classes["samples"].append(file.filePath());
  return classes;
}

std::vector<std::string> ClassNames() {
  std::vector<std::string> names;
  for (const auto& [name, messages] : Classes()) names.push_back(name);
  return names;
}

QString WithPlainLines(const QString& text) {
  return QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).trimmed();
}

// How many characters are neither before nor behind what is wrong.
qsizetype Missing(const QString& wanted, const QString& read) {
  const qsizetype shorter = qMin(wanted.size(), read.size());
  qsizetype before = 0;
  while (before < shorter && wanted[before] == read[before]) ++before;
  qsizetype behind = 0;
  while (behind < shorter - before &&
         wanted[wanted.size() - 1 - behind] == read[read.size() - 1 - behind]) {
    ++behind;
  }
  return wanted.size() - before - behind;
}

class CorpusTest : public testing::TestWithParam<std::string> {
 protected:
  void ExpectText(const QString& wanted, const QString& read) {
    const qsizetype lost = wanted_[QStringLiteral("lost")].toInt();
    const QString text = WithPlainLines(wanted);
    const QString got = WithPlainLines(read);
    if (lost == 0) {
      EXPECT_EQ(got.toStdString(), text.toStdString());
    } else {
      EXPECT_LE(Missing(text, got), lost) << got.toStdString() << "\nfor " << text.toStdString();
    }
  }

  void ExpectHeader(const MessageIndex& index) {
    if (wanted_.contains(QStringLiteral("subject"))) {
      ExpectText(wanted_[QStringLiteral("subject")].toString(), index.subject);
    }
    AddressEntry sender;
    QStringList recipients;
    for (const QString& line : index.addressLines.split(QStringLiteral("\r\n"))) {
      const AddressEntry entry = ParseAddressEntry(line);
      if (line.startsWith(u"FROM:") && sender.kind.isEmpty()) sender = entry;
      if (line.startsWith(u"TO:")) recipients.append(entry.address);
    }
    if (wanted_.contains(QStringLiteral("from"))) {
      const QJsonObject from = wanted_[QStringLiteral("from")].toObject();
      EXPECT_EQ(sender.address.toStdString(),
                from[QStringLiteral("address")].toString().toStdString());
      EXPECT_EQ(sender.displayName.toStdString(),
                from[QStringLiteral("name")].toString().toStdString());
    }
    if (wanted_.contains(QStringLiteral("to"))) {
      EXPECT_EQ(recipients, wanted_[QStringLiteral("to")].toVariant().toStringList());
    }
  }

  void ExpectFiles(const QByteArray& source, const QString& contentIndex) {
    const auto attachments =
        ListAttachments(MimeCodec::ParseContentIndex(contentIndex, source), DefaultTextTypes());
    const QJsonArray files = wanted_[QStringLiteral("files")].toArray();
    ASSERT_EQ(static_cast<qsizetype>(attachments.size()), files.size());
    for (size_t i = 0; i < attachments.size(); ++i) {
      const QJsonObject file = files[static_cast<qsizetype>(i)].toObject();
      const MimeCodec::ContentRecord& record = attachments[i].record;
      EXPECT_EQ(ShownName(attachments[i], source).toStdString(),
                file[QStringLiteral("name")].toString().toStdString());
      if (!file.contains(QStringLiteral("sha256"))) continue;
      const QByteArray bytes =
          MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(record.encoding.toLatin1()),
                                record.first, record.last);
      EXPECT_EQ(MimeCodec::Digest(bytes), file[QStringLiteral("sha256")].toString());
    }
  }

  void ExpectReading(const QString& path) {
    SCOPED_TRACE(path.toStdString());
    const QByteArray source = test::ReadFile(path);
    wanted_ =
        QJsonDocument::fromJson(test::ReadFile(path.chopped(3) + QStringLiteral("json"))).object();
    ASSERT_FALSE(wanted_.isEmpty());
    const QStringList textTypes = DefaultTextTypes();
    const MessageIndex index =
        IndexMessage(source, FlagString(), {textTypes, MimeCodec::HasEndMark(source)});
    ExpectHeader(index);
    if (wanted_.contains(QStringLiteral("text"))) {
      TextRequest request;
      request.textTypes = textTypes;
      request.withReports = true;
      ExpectText(wanted_[QStringLiteral("text")].toString(),
                 GetMessageText(source, index.content, request).text);
    }
    if (wanted_.contains(QStringLiteral("files"))) ExpectFiles(source, index.content);
  }

 private:
  QJsonObject wanted_;
};

TEST_P(CorpusTest, IsReadAsItIsMeant) {
  const QStringList paths = Classes()[GetParam()];
  for (const QString& path : paths) ExpectReading(path);
}

// What stands before the first part for readers without MIME (RFC 2046 section 5.1.1).
constexpr QByteArrayView kPreamble = "This is a multi-part message.";

// Lines of a body that are in no part, but for those that delimit parts and the fields of inner
// multiparts, which follow a delimiter.
QByteArrayList LinesInNoPart(const QByteArray& source) {
  std::vector<bool> isInPart(static_cast<size_t>(source.size()));
  for (const MimeCodec::ContentRecord& record : MimeCodec::ReadContent(source)) {
    for (qsizetype at = record.headerFirst; at <= record.last; ++at) {
      isInPart[static_cast<size_t>(at)] = true;
    }
  }
  QByteArrayList lines;
  bool isInFields = false;
  for (qsizetype at = MimeCodec::HeaderBlockEnd(source); at < source.size();) {
    const qsizetype found = source.indexOf('\n', at);
    const qsizetype end = found < 0 ? source.size() : found + 1;
    const QByteArray line = source.sliced(at, end - at).trimmed();
    const bool isDelimiter = line.startsWith("--");
    const bool isNoText = line.isEmpty() || line == kPreamble || isDelimiter || isInFields;
    if (!isInPart[static_cast<size_t>(at)] && !isNoText) lines.append(line);
    isInFields = isDelimiter || (isInFields && !line.isEmpty());
    at = end;
  }
  return lines;
}

TEST(Corpus, EveryLineOfABodyIsInAPart) {
  for (const auto& [kind, paths] : Classes()) {
    for (const QString& path : paths) {
      EXPECT_EQ(LinesInNoPart(test::ReadFile(path)), QByteArrayList()) << path.toStdString();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, CorpusTest, testing::ValuesIn(ClassNames()),
                         [](const auto& kind) { return kind.param; });

}  // namespace
}  // namespace vorn
