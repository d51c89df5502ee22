#include "mail/carried_commands.h"

#include <QStringDecoder>

#include "mail/calendar_actions.h"
#include "mail/office_parts.h"
#include "mail/pdf_actions.h"
#include "mail/table_formulas.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString TextOf(const QByteArray& bytes) {
  if (bytes.contains('\0')) return QStringDecoder(QStringDecoder::Utf16)(bytes);
  QStringDecoder utf8(QStringDecoder::Utf8);
  const QString text = utf8(bytes);
  return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

CarriedCommands CommandsOfPdf(const QByteArray& bytes) {
  switch (ActsOfPdf(bytes)) {
    case PdfActs::Script:
      return {Ui::tr("スクリプトの入ったPDF")};
    case PdfActs::Contact:
      return {Ui::tr("開くだけでほかの場所に接続するPDF")};
    case PdfActs::Unreadable:
      return {Ui::tr("中身を確かめられないPDF"), false};
    case PdfActs::Nothing:
      break;
  }
  return {};
}

CarriedCommands CommandsOfOffice(const QByteArray& bytes, const LookBound& bound) {
  if (bytes.isEmpty()) return {};
  switch (PartsOfOffice(bytes, bound)) {
    case OfficeHolds::Commands:
      return {Ui::tr("マクロやほかのファイルの入った文書")};
    case OfficeHolds::Contact:
      return {Ui::tr("開くだけでほかの場所に接続する文書")};
    case OfficeHolds::Unreadable:
      return {Ui::tr("中身を確かめられない文書"), false};
    case OfficeHolds::Nothing:
      break;
  }
  return {};
}

}  // namespace

CarriedCommands FindCommands(const QString& type, const QByteArray& bytes, const LookBound& bound) {
  if (type == u"text/csv" || type == u"text/tab-separated-values") {
    return {HasFormula(TextOf(bytes)) ? Ui::tr("数式の入った表（プログラムを起動できます）")
                                      : QString()};
  }
  if (type == u"text/calendar") {
    return {StartsPrograms(TextOf(bytes)) ? Ui::tr("プログラムを起動できる予定") : QString()};
  }
  if (type == u"text/vcard") {
    return {LoadsPictures(TextOf(bytes)) ? Ui::tr("開くだけでほかの場所に接続する連絡先")
                                         : QString()};
  }
  if (type == u"application/pdf") return CommandsOfPdf(bytes);
  return type.contains(u"document") ? CommandsOfOffice(bytes, bound) : CarriedCommands();
}

}  // namespace vorn
