#include "mail/codec/mime/signature.h"

#include "storage/ui.h"

namespace vorn {

SignatureKind FindSignature(const std::vector<MimeCodec::ContentRecord>& records,
                            const QString& text) {
  for (const MimeCodec::ContentRecord& record : records) {
    // Also as they were called before RFC 2633.
    const QString type = record.type.startsWith(u"application/x-")
                             ? QStringLiteral("application/") + record.type.mid(14)
                             : record.type;
    if (type == u"application/pkcs7-signature") return SignatureKind::Smime;
    if (type == u"application/pgp-signature") return SignatureKind::OpenPgp;
    if (type == u"application/pkcs7-mime") return SignatureKind::Wrapped;
    if (type == u"application/pgp-encrypted") return SignatureKind::Encrypted;
  }
  const auto hasLine = [&text](const QString& line) {
    return text.startsWith(line) || text.contains(u'\n' + line);
  };
  if (hasLine(QStringLiteral("-----BEGIN PGP SIGNED MESSAGE-----"))) return SignatureKind::OpenPgp;
  if (hasLine(QStringLiteral("-----BEGIN PGP MESSAGE-----"))) return SignatureKind::Encrypted;
  return SignatureKind::None;
}

QString SignatureWords(SignatureKind kind) {
  switch (kind) {
    case SignatureKind::Smime:
      return Ui::tr("電子署名（S/MIME）が付いています。署名が正しいかどうかは確かめていません。");
    case SignatureKind::OpenPgp:
      return Ui::tr("電子署名（OpenPGP）が付いています。署名が正しいかどうかは確かめていません。");
    case SignatureKind::Wrapped:
      return Ui::tr(
          "S/MIMEで署名か暗号化されています。内容は添付ファイルの中にあり、ここでは"
          "開けません。");
    case SignatureKind::Encrypted:
      return Ui::tr("OpenPGPで暗号化されています。ここでは内容を読めません。");
    case SignatureKind::None:
      break;
  }
  return {};
}

}  // namespace vorn
