#include <QBuffer>

#include "fuzz_input.h"
#include "mail/codec/calendar/invitation.h"
#include "mail/codec/mime/tnef.h"
#include "mail/codec/mime/zip_files.h"

using namespace vorn;

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray bytes = fuzz::Bytes(data, size).toByteArray();
  qsizetype sum = 0;
  for (const InnerFile& file : ReadTnef(bytes).files) {
    fuzz::Require(!file.name.isEmpty());
    sum += file.bytes.size();
  }
  fuzz::Require(sum <= 64 * bytes.size() + 4096);  // rich text alone is packed
  const std::vector<ZipEntry> entries = ListZip(bytes);
  QBuffer file;
  UnpackZip(
      bytes, QStringLiteral("himitsu"),
      [&](size_t index) {
        fuzz::Require(index < entries.size());
        file.close();
        file.setData({});
        file.open(QIODevice::WriteOnly);
        return &file;
      },
      [] { return true; });
  const auto invitation = ReadInvitation(QString::fromUtf8(bytes));
  if (invitation) {
    fuzz::Require(
        !ReplyCalendar(*invitation, QStringLiteral("a@example.jp"), InvitationAnswer::Accepted)
             .isEmpty());
  }
  return 0;
}
