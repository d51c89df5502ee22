#include "mail/reply_form.h"

#include <QRegularExpression>
#include <QStringList>

#include "mail/shown_addresses.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"

namespace vorn {

QString AttributionLine(const QString& pattern, const AddressEntry& writer, const QString& date) {
  QString line;
  for (qsizetype i = 0; i < pattern.size(); ++i) {
    const QChar letter = pattern[i] == u'%' && i + 1 < pattern.size() ? pattern[i + 1] : QChar();
    if (letter == u'd') line += date;
    if (letter == u'n') {
      const bool isNamed = !writer.displayName.isEmpty() && !NamesAnother(writer);
      line += WithoutDirectionMarks(isNamed ? writer.displayName : writer.address);
    }
    if (letter == u'a') line += writer.address;
    const bool isMark = !letter.isNull() && QStringView(u"dna").contains(letter);
    if (isMark) ++i;
    if (!isMark) line += pattern[i];
  }
  return line;
}

QString ForwardHead(const QString& subject, const QList<AddressEntry>& written,
                    const QString& date) {
  const auto named = [&written](QStringView kind) {
    QStringList names;
    for (const AddressEntry& entry : written) {
      if (entry.kind.compare(kind, Qt::CaseInsensitive) != 0) continue;
      const QString name = NamesAnother(entry) ? QString() : entry.displayName;
      names.append(PresentableAddress(WithoutDirectionMarks(name), entry.address));
    }
    return names.join(QStringLiteral(", "));
  };
  const std::pair<QString, QString> lines[] = {{Ui::tr("差出人: "), named(u"FROM")},
                                               {Ui::tr("日時: "), date},
                                               {Ui::tr("宛先: "), named(u"TO")},
                                               {QStringLiteral("CC: "), named(u"CC")},
                                               {Ui::tr("件名: "), WithoutDirectionMarks(subject)}};
  QString head = Ui::tr("---- 転送するメッセージ ----") + kLineBreak;
  for (const auto& [caption, text] : lines) {
    if (!text.isEmpty()) head += caption + text + kLineBreak;
  }
  return head;
}

QString SignatureBlock(const QString& signature) {
  static const QRegularExpression kRule(QStringLiteral("^[-_=*~#─━＿－―☆★◇◆□■+|/\\\\ ]{2,}$"));
  QString text = signature;
  text.replace(kLineBreak, QStringLiteral("\n"));
  if (text.trimmed().isEmpty()) return {};
  while (text.endsWith(u'\n')) text.chop(1);
  const bool isSetOff = kRule.match(text.section(u'\n', 0, 0)).hasMatch();
  if (!isSetOff) text.prepend(QStringLiteral("-- \n"));
  return text.replace(u'\n', kLineBreak);
}

QString FormText(const QString& attribution, const QString& quoted, const QString& signature,
                 SignaturePlace place) {
  const QString block = SignatureBlock(signature);
  if (attribution.isEmpty() && block.isEmpty()) return quoted;
  QStringList pieces;
  if (place == SignaturePlace::AboveQuote) pieces.append(block);
  pieces.append(attribution.isEmpty() ? quoted : attribution + kLineBreak + quoted);
  if (place == SignaturePlace::UnderQuote) pieces.append(block);
  pieces.removeAll(QString());
  return kLineBreak + kLineBreak + pieces.join(kLineBreak + kLineBreak);
}

}  // namespace vorn
