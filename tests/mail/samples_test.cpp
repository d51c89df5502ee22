// Every sample message against what a reader must make of it.

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "mail/codec/address.h"
#include "mail/codec/attachments.h"
#include "mail/codec/message_index.h"
#include "mail/codec/mime_codec.h"
#include "mail/codec/text_extraction.h"
#include "objects/settings.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::Samples;

class Sample : public testing::TestWithParam<QString> {};

TEST_P(Sample, ReadsAsExpected) {
  const QString path = QStringLiteral(VORN_SAMPLES "/") + GetParam();
  const QByteArray source = ReadFile(path);
  const QJsonObject expected =
      QJsonDocument::fromJson(ReadFile(path.chopped(3) + QStringLiteral("json"))).object();
  const QStringList textTypes = DefaultTextTypes();
  const MessageIndex index = IndexMessage(source, QString(), {textTypes});
  EXPECT_EQ(index.subject, expected[QStringLiteral("subject")].toString());

  const QJsonObject from = expected[QStringLiteral("from")].toObject();
  const AddressEntry sender =
      ParseAddressEntry(index.addressLines.section(QStringLiteral("\r\n"), 0, 0));
  EXPECT_EQ(sender.address, from[QStringLiteral("address")].toString());
  EXPECT_EQ(sender.displayName, from[QStringLiteral("name")].toString());

  TextRequest request;
  request.textTypes = textTypes;
  EXPECT_EQ(GetMessageText(source, index.content, request).text,
            expected[QStringLiteral("text")].toString());

  const auto attachments =
      ListAttachments(MimeCodec::ParseContentIndex(index.content, source), textTypes);
  const QJsonArray files = expected[QStringLiteral("attachments")].toArray();
  ASSERT_EQ(static_cast<qsizetype>(attachments.size()), files.size());
  for (size_t i = 0; i < attachments.size(); ++i) {
    const QJsonObject file = files[static_cast<qsizetype>(i)].toObject();
    const MimeCodec::ContentRecord& record = attachments[i].record;
    EXPECT_EQ(attachments[i].name, file[QStringLiteral("name")].toString());
    EXPECT_EQ(record.type, file[QStringLiteral("type")].toString());
    const QByteArray bytes =
        MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(record.encoding.toLatin1()),
                              record.first, record.last);
    EXPECT_EQ(MimeCodec::Digest(bytes), file[QStringLiteral("sha256")].toString());
  }
}

QStringList SampleNames() {
  return Samples().keys();
}

INSTANTIATE_TEST_SUITE_P(All, Sample, testing::ValuesIn(SampleNames()), [](const auto& sample) {
  QString name = sample.param.chopped(4);
  return name.replace(u'-', u'_').toStdString();
});

}  // namespace
}  // namespace vorn
