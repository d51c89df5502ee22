#include "mail/inspection/carried_commands.h"

#include <QStringDecoder>
#include <algorithm>
#include <iterator>

#include "mail/codec/charset/charset.h"
#include "mail/inspection/calendar_actions.h"
#include "mail/inspection/office_parts.h"
#include "mail/inspection/pdf_actions.h"
#include "mail/inspection/table_formulas.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr Charset::Family kJapanese[] = {Charset::Family::ShiftJis, Charset::Family::Euc,
                                         Charset::Family::Jis};

// Whether a text is found to act in one of the codes that the program which opens it may take it
// for.
bool ActsInAnyCode(const QByteArray& bytes, bool (*acts)(const QString&)) {
  if (bytes.contains('\0') && acts(QStringDecoder(QStringDecoder::Utf16)(bytes))) return true;
  QByteArray rest = bytes;
  rest.removeIf([](char c) { return c == '\0'; });
  QStringDecoder utf8(QStringDecoder::Utf8);
  const QString text = utf8(rest);
  const bool isOther = utf8.hasError() || rest.contains('\x1B');
  if (acts(utf8.hasError() ? QString::fromLatin1(rest) : text)) return true;
  return isOther &&
         std::any_of(std::begin(kJapanese), std::end(kJapanese), [&](Charset::Family family) {
           return acts(Decode({family, {}}, rest).text);
         });
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
    return {ActsInAnyCode(bytes, &HasFormula) ? Ui::tr("数式の入った表（プログラムを起動できます）")
                                              : QString()};
  }
  if (type == u"text/calendar") {
    return {ActsInAnyCode(bytes, &StartsPrograms)
                ? Ui::tr("プログラムを起動したり、ほかの場所に接続したりする予定")
                : QString()};
  }
  if (type == u"text/vcard") {
    return {ActsInAnyCode(bytes, &LoadsPictures) ? Ui::tr("開くだけでほかの場所に接続する連絡先")
                                                 : QString()};
  }
  if (type == u"application/pdf") return CommandsOfPdf(bytes);
  return type.contains(u"document") ? CommandsOfOffice(bytes, bound) : CarriedCommands();
}

}  // namespace vorn
