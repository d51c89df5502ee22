#include "mail/carried_commands.h"

#include <QStringDecoder>
#include <algorithm>

#include "storage/ui.h"

namespace vorn {
namespace {

QString TextOf(const QByteArray& bytes) {
  if (bytes.contains('\0')) return QStringDecoder(QStringDecoder::Utf16)(bytes);
  QStringDecoder utf8(QStringDecoder::Utf8);
  const QString text = utf8(bytes);
  return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

// Spreadsheets take a cell that begins so for a formula. Behind a sign a number is none.
bool HasFormula(const QString& text) {
  enum class In { Start, Signed, Rest } state = In::Start;
  const auto isOneOf = [](QStringView set, QChar c) { return set.contains(c); };
  for (const QChar c : text) {
    if (isOneOf(u"\n\r,;\t|", c)) {
      state = In::Start;
    } else if (state == In::Signed && c.unicode() < 0x80 && c.isLetter()) {
      return true;
    } else if (state == In::Start && !c.isSpace() && !isOneOf(u"\"'\uFEFF", c)) {
      if (isOneOf(u"=＝@＠", c)) return true;
      state = isOneOf(u"+＋-－−", c) ? In::Signed : In::Rest;
    }
  }
  return false;
}

// The names in a zip archive stand there as they are.
bool HoldsOneOf(const QByteArray& bytes, std::initializer_list<const char*> names) {
  return std::any_of(names.begin(), names.end(),
                     [&bytes](const char* name) { return bytes.contains(name); });
}

}  // namespace

QString CarriedCommands(const QString& type, const QByteArray& bytes) {
  if (type == u"text/csv") {
    return HasFormula(TextOf(bytes)) ? Ui::tr("数式の入った表（プログラムを起動できます）")
                                     : QString();
  }
  if (type == u"application/pdf") {
    return HoldsOneOf(bytes, {"/Launch", "/JavaScript", "/JS "}) ? Ui::tr("スクリプトの入ったPDF")
                                                                 : QString();
  }
  if (!type.contains(u"document")) return {};
  return HoldsOneOf(bytes.toLower(), {"basic/", "scripts/", "vbaproject", "/embeddings/",
                                      "/activex/", "/externallinks/", "object 1/"})
             ? Ui::tr("マクロやほかのファイルの入った文書")
             : QString();
}

}  // namespace vorn
