#include "mail/html_text.h"
#include "storage/ui.h"

#include <QHash>
#include <algorithm>

namespace vorn {
namespace {

// Elements before and after which a new line begins.
constexpr QStringView kBlocks[] = {
    u"address", u"article",  u"aside",   u"blockquote", u"center", u"dd",   u"div", u"dl",
    u"dt",      u"fieldset", u"footer",  u"form",       u"h1",     u"h2",   u"h3",  u"h4",
    u"h5",      u"h6",       u"header",  u"hr",         u"li",     u"main", u"nav", u"ol",
    u"p",       u"pre",      u"section", u"table",      u"tbody",  u"tr",   u"ul"};
// Those that also leave a line empty.
constexpr QStringView kParagraphs[] = {u"p",  u"h1", u"h2",         u"h3", u"h4",
                                       u"h5", u"h6", u"blockquote", u"pre"};
// Those whose contents are no text.
constexpr QStringView kHidden[] = {u"script", u"style",    u"head",
                                   u"title",  u"template", u"noframes"};

template <size_t N>
bool IsOneOf(const QString& name, const QStringView (&names)[N]) {
  return std::find(std::begin(names), std::end(names), QStringView(name)) != std::end(names);
}

QString Named(QStringView name) {
  static const QHash<QString, char32_t> kNames = {
      {QStringLiteral("amp"), U'&'},       {QStringLiteral("lt"), U'<'},
      {QStringLiteral("gt"), U'>'},        {QStringLiteral("quot"), U'"'},
      {QStringLiteral("apos"), U'\''},     {QStringLiteral("nbsp"), U' '},
      {QStringLiteral("copy"), U'©'},      {QStringLiteral("reg"), U'®'},
      {QStringLiteral("yen"), U'¥'},       {QStringLiteral("trade"), U'™'},
      {QStringLiteral("hellip"), U'…'},    {QStringLiteral("mdash"), U'—'},
      {QStringLiteral("ndash"), U'–'},     {QStringLiteral("lsquo"), U'‘'},
      {QStringLiteral("rsquo"), U'’'},     {QStringLiteral("ldquo"), U'“'},
      {QStringLiteral("rdquo"), U'”'},     {QStringLiteral("bull"), U'•'},
      {QStringLiteral("middot"), U'·'},    {QStringLiteral("laquo"), U'«'},
      {QStringLiteral("raquo"), U'»'},     {QStringLiteral("times"), U'×'},
      {QStringLiteral("deg"), U'°'},       {QStringLiteral("plusmn"), U'±'},
      {QStringLiteral("larr"), U'←'},      {QStringLiteral("rarr"), U'→'},
      {QStringLiteral("uarr"), U'↑'},      {QStringLiteral("darr"), U'↓'},
      {QStringLiteral("euro"), U'€'},      {QStringLiteral("cent"), U'¢'},
      {QStringLiteral("pound"), U'£'},     {QStringLiteral("sect"), U'§'},
      {QStringLiteral("emsp"), U' '},      {QStringLiteral("ensp"), U' '},
      {QStringLiteral("zwnj"), U'\u200C'}, {QStringLiteral("zwj"), U'\u200D'}};
  const auto found = kNames.find(name.toString());
  return found == kNames.end() ? QString() : QString::fromUcs4(&*found, 1);
}

QString Numbered(QStringView digits) {
  const bool isHex = digits.startsWith(u'x', Qt::CaseInsensitive);
  bool isNumber = false;
  const uint code = (isHex ? digits.sliced(1) : digits).toUInt(&isNumber, isHex ? 16 : 10);
  if (!isNumber || code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return {};
  const char32_t character = code;
  return QString::fromUcs4(&character, 1);
}

class Converter {
 public:
  explicit Converter(const QString& html) : html_(html) { out_.reserve(html.size() / 2); }

  QString Run() {
    while (at_ < html_.size()) {
      const QChar c = html_[at_];
      if (c == u'<' && IsTagStart()) {
        TakeTag();
      } else if (c == u'&') {
        TakeEntity();
      } else {
        TakeCharacter(c);
        ++at_;
      }
    }
    while (out_.endsWith(u'\n') || out_.endsWith(u' ')) out_.chop(1);
    if (!out_.isEmpty()) out_ += u'\n';
    return out_.replace(u'\n', QStringLiteral("\r\n"));
  }

 private:
  bool IsTagStart() const {
    if (at_ + 1 >= html_.size()) return false;
    const QChar next = html_[at_ + 1];
    return next.isLetter() || next == u'/' || next == u'!' || next == u'?';
  }

  void TakeTag() {
    if (QStringView(html_).sliced(at_).startsWith(u"<!--")) {
      const qsizetype end = html_.indexOf(QStringLiteral("-->"), at_ + 4);
      at_ = end < 0 ? html_.size() : end + 3;
      return;
    }
    const qsizetype end = TagEnd();
    const bool closes = html_[at_ + 1] == u'/';
    qsizetype nameEnd = at_ + (closes ? 2 : 1);
    const qsizetype nameStart = nameEnd;
    while (nameEnd < end && html_[nameEnd].isLetterOrNumber()) ++nameEnd;
    const QString name = html_.mid(nameStart, nameEnd - nameStart).toLower();
    at_ = qMin(end + 1, html_.size());
    if (!closes && IsOneOf(name, kHidden)) {
      SkipPast(name);
    } else {
      Apply(name, closes);
    }
  }

  // The offset of the ">" that ends the tag; quotes in attributes may hold others.
  qsizetype TagEnd() const {
    QChar quote;
    for (qsizetype i = at_ + 1; i < html_.size(); ++i) {
      const QChar c = html_[i];
      if (!quote.isNull()) {
        if (c == quote) quote = QChar();
      } else if (c == u'>') {
        return i;
      } else if ((c == u'"' || c == u'\'') && html_[i - 1] == u'=') {
        quote = c;
      }
    }
    const qsizetype plain = html_.indexOf(u'>', at_);  // a quote that never closes
    return plain < 0 ? html_.size() : plain;
  }

  void SkipPast(const QString& name) {
    const qsizetype close = html_.indexOf(QStringLiteral("</") + name, at_, Qt::CaseInsensitive);
    if (close < 0) {
      if (name != u"head" && name != u"title") at_ = html_.size();
      return;
    }
    const qsizetype end = html_.indexOf(u'>', close);
    at_ = end < 0 ? html_.size() : end + 1;
  }

  void Apply(const QString& name, bool closes) {
    if (name == u"br") {
      out_ += u'\n';
    } else if (name == u"td" || name == u"th") {
      if (closes) Blank();
    } else if (name == u"img" || name == u"input") {
      return;
    } else if (IsOneOf(name, kBlocks)) {
      NewLine(IsOneOf(name, kParagraphs) && !out_.isEmpty());
      if (name == u"li" && !closes) out_ += Ui::tr("・");
      if (name == u"hr") out_ += QStringLiteral("----------\n");
      if (name == u"pre") preformatted_ = !closes;
    }
  }

  void NewLine(bool emptyLine) {
    while (out_.endsWith(u' ')) out_.chop(1);
    if (out_.isEmpty()) return;
    if (!out_.endsWith(u'\n')) out_ += u'\n';
    if (emptyLine && !out_.endsWith(QStringLiteral("\n\n"))) out_ += u'\n';
  }

  void Blank() {
    if (!out_.isEmpty() && !out_.endsWith(u' ') && !out_.endsWith(u'\n')) out_ += u' ';
  }

  void TakeCharacter(QChar c) {
    if (preformatted_) {
      if (c != u'\r') out_ += c;
    } else if (c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u'\f') {
      Blank();
    } else {
      out_ += c;
    }
  }

  void TakeEntity() {
    constexpr qsizetype kLongest = 12;
    qsizetype end = at_ + 1;
    while (end < html_.size() && end - at_ <= kLongest &&
           (html_[end].isLetterOrNumber() || html_[end] == u'#')) {
      ++end;
    }
    const QStringView name = QStringView(html_).sliced(at_ + 1, end - at_ - 1);
    const QString text = name.startsWith(u'#') ? Numbered(name.sliced(1)) : Named(name);
    if (text.isEmpty()) {
      out_ += u'&';
      ++at_;
      return;
    }
    out_ += text;
    at_ = end < html_.size() && html_[end] == u';' ? end + 1 : end;
  }

  const QString& html_;
  QString out_;
  qsizetype at_ = 0;
  bool preformatted_ = false;
};

}  // namespace

QString HtmlToText(const QString& html) {
  return Converter(html).Run();
}

}  // namespace vorn
