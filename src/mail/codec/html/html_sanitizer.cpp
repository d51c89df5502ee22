#include "mail/codec/html/html_sanitizer.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "mail/codec/html/html_text.h"
#include "mail/codec/html/html_tree.h"
#include "mail/codec/html/picture_head.h"
#include "mail/codec/html/style_filter.h"

namespace vorn {
namespace {

// What becomes of an element.
enum class Fate : char {
  Opened,   ///< its contents stay
  Kept,     ///< with its tags
  Void,     ///< its tag alone, as it has no contents
  Dropped,  ///< its contents go with it
  Style,
  Body
};

using Fates = std::array<Fate, GUMBO_TAG_LAST + 1>;

void Mark(Fates& fates, Fate fate, const char* names) {
  for (const QByteArray& name : QByteArray(names).split(' ')) {
    fates[gumbo_tag_enum(name.constData())] = fate;
  }
}

const Fates& FatesOfElements() {
  static const Fates fates = [] {
    Fates all{};
    Mark(
        all, Fate::Kept,
        "a abbr acronym address article aside b bdi bdo big blockquote caption center cite code "
        "colgroup dd del details dfn dir div dl dt em figcaption figure font footer h1 h2 h3 h4 h5 "
        "h6 header i ins kbd li main mark menu nav nobr ol p pre q rp rt ruby s samp section small "
        "span strike strong sub summary sup table tbody td tfoot th thead time tr tt u ul var");
    Mark(all, Fate::Void, "br col hr img wbr");
    Mark(all, Fate::Dropped,
         "script noscript template iframe object embed applet frameset noframes canvas audio video "
         "source track select option datalist title base link meta param");
    all[GUMBO_TAG_STYLE] = Fate::Style;
    all[GUMBO_TAG_BODY] = Fate::Body;
    all[GUMBO_TAG_UNKNOWN] = Fate::Opened;
    return all;
  }();
  return fates;
}

const std::unordered_set<std::string_view>& Attributes() {
  static const std::unordered_set<std::string_view> names = {
      "abbr",    "align",       "alt",         "axis",     "bgcolor", "border", "bordercolor",
      "char",    "cellpadding", "cellspacing", "charoff",  "cite",    "class",  "clear",
      "color",   "colspan",     "compact",     "datetime", "dir",     "face",   "frame",
      "headers", "height",      "hspace",      "id",       "lang",    "name",   "noshade",
      "nowrap",  "open",        "reversed",    "rowspan",  "rules",   "scope",  "size",
      "span",    "start",       "summary",     "title",    "type",    "valign", "value",
      "vspace",  "width"};
  return names;
}

QString Scheme(const QString& address) {
  const qsizetype colon = address.indexOf(u':');
  return colon < 0 ? QString() : address.first(colon).toLower();
}

// Browsers pass over these in addresses.
QString CleanAddress(QString address) {
  address.removeIf([](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r'; });
  return address.trimmed();
}

bool IsLink(const QString& address) {
  const QString scheme = Scheme(address);
  return address.startsWith(u'#') || scheme == u"http" || scheme == u"https" || scheme == u"mailto";
}

// What is shown at most of all pictures within a mail together.
constexpr qint64 kMostPixelsInAll = 200'000'000;

// Not on paper, which is white.
constexpr char kBothSchemes[] = "@media screen{:root{color-scheme:light dark}}";

// Addresses without a scheme are read as browsers do on the web, but never as a file's.
QString WithScheme(const QString& address) {
  return address.startsWith(u"//") ? QStringLiteral("https:") + address : address;
}

bool IsRemote(const QString& address) {
  const QString scheme = Scheme(WithScheme(CleanAddress(address)));
  return scheme == u"http" || scheme == u"https";
}

// The images of the network that styles name.
int ImagesIn(const QString& styles) {
  if (!styles.contains(u"//")) return 0;
  static const QRegularExpression none(
      QStringLiteral("/\\*.*?(?:\\*/|$)|@(?:import|namespace)[^;]*;?|@font-face\\s*\\{[^}]*\\}"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
  static const QRegularExpression image(
      QStringLiteral("(?:url\\(\\s*[\"']?|[\"'])\\s*(?:https?:)?//"),
      QRegularExpression::CaseInsensitiveOption);
  int count = 0;
  const QString shown = QString(styles).remove(none);
  for (auto found = image.globalMatch(shown); found.hasNext(); found.next()) ++count;
  return count;
}

// The bytes of a data URI (RFC 2397).
QByteArray DataOf(const QString& address) {
  const qsizetype comma = address.indexOf(u',');
  if (comma < 0) return {};
  const QStringView head = QStringView(address).first(comma);
  const QByteArray data = QByteArray::fromPercentEncoding(address.sliced(comma + 1).toUtf8());
  return head.trimmed().endsWith(u";base64", Qt::CaseInsensitive) ? QByteArray::fromBase64(data)
                                                                  : data;
}

void AppendEscaped(QByteArray& out, std::string_view text) {
  size_t done = 0;
  for (size_t at = text.find_first_of("<>&\""); at != std::string_view::npos;
       at = text.find_first_of("<>&\"", at + 1)) {
    out.append(text.data() + done, static_cast<qsizetype>(at - done));
    done = at + 1;
    out += text[at] == '<'   ? "&lt;"
           : text[at] == '>' ? "&gt;"
           : text[at] == '&' ? "&amp;"
                             : "&quot;";
  }
  out.append(text.data() + done, static_cast<qsizetype>(text.size() - done));
}

class Sanitizer {
 public:
  explicit Sanitizer(RemoteImages images) : images_(images) {}

  SafeHtml Run(const HtmlTree& tree, qsizetype size) {
    body_.reserve(size);
    WriteChildren(tree.Root());
    // What of the network may be loaded is said once more to the browser.
    safe_.html =
        // No rule of the mail's shows what is no part of its text.
        "<!DOCTYPE html><html><head style=\"display:none!important\"><meta charset=\"utf-8\"><meta "
        "http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; img-src data:" +
        QByteArray(images_ == RemoteImages::Kept ? " vorn-mail:" : "") +
        "; style-src 'unsafe-inline'; form-action 'none'; base-uri 'none'\"><meta "
        "name=\"referrer\" content=\"no-referrer\"><meta "
        "http-equiv=\"x-dns-prefetch-control\" content=\"off\"><style>" +
        (safe_.hasColors ? QByteArray() : QByteArray(kBothSchemes)) + styles_.toUtf8() +
        "</style></head><body" + bodyAttributes_ + '>' + body_ + "</body></html>";
    return std::move(safe_);
  }

 private:
  void WriteChildren(const GumboElement& element) {
    for (const GumboNode& child : ChildNodes(element)) {
      if (child.type == GUMBO_NODE_ELEMENT) {
        WriteElement(child.v.element);
      } else if (child.type == GUMBO_NODE_TEXT || child.type == GUMBO_NODE_CDATA ||
                 child.type == GUMBO_NODE_WHITESPACE) {
        AppendEscaped(body_, child.v.text.text);
      }
    }
  }

  void WriteElement(const GumboElement& element) {
    // Drawings and mathematics have names of their own.
    const bool isHtml = element.tag_namespace == GUMBO_NAMESPACE_HTML;
    isHtml ? CountOther(element) : CountDrawn(element);
    const Fate fate = isHtml ? FatesOfElements()[element.tag] : Fate::Dropped;
    const char* name = gumbo_normalized_tagname(element.tag);
    switch (fate) {
      case Fate::Dropped:
        break;
      case Fate::Opened:
        WriteChildren(element);
        break;
      case Fate::Style:
        TakeStyles(element);
        break;
      case Fate::Body:
        WriteAttributes(element, bodyAttributes_);
        WriteChildren(element);
        break;
      case Fate::Void:
      case Fate::Kept:
        body_ += '<';
        body_ += name;
        WriteAttributes(element, body_);
        body_ += '>';
        if (fate == Fate::Void) break;
        if (element.tag == GUMBO_TAG_PRE) body_ += '\n';  // the first one is passed over
        WriteChildren(element);
        body_ += "</";
        body_ += name;
        body_ += '>';
    }
  }

  void CountOther(const GumboElement& element) {
    const auto names = [&element](const char* name) {
      const GumboAttribute* attribute = gumbo_get_attribute(&element.attributes, name);
      return attribute != nullptr && IsRemote(QString::fromUtf8(attribute->value));
    };
    const GumboAttribute* type = gumbo_get_attribute(&element.attributes, "type");
    const QByteArray kind = type == nullptr ? QByteArray() : QByteArray(type->value).toLower();
    const bool isOther =
        (element.tag == GUMBO_TAG_IMG && !names("src") && names("srcset")) ||
        (element.tag == GUMBO_TAG_VIDEO && names("poster")) ||
        (element.tag == GUMBO_TAG_INPUT && kind == "image" && names("src")) ||
        (element.tag == GUMBO_TAG_OBJECT && kind.startsWith("image/") && names("data")) ||
        (element.tag == GUMBO_TAG_EMBED && kind.startsWith("image/") && names("src"));
    if (isOther) ++safe_.otherImages;
  }

  void CountDrawn(const GumboElement& element) {
    const GumboAttribute* address = gumbo_get_attribute(&element.attributes, "href");
    const bool isImage =
        element.tag_namespace == GUMBO_NAMESPACE_SVG && element.tag == GUMBO_TAG_IMAGE;
    if (isImage && address != nullptr && IsRemote(QString::fromUtf8(address->value))) {
      ++safe_.otherImages;
    }
    for (const GumboNode& child : ChildNodes(element)) {
      if (child.type == GUMBO_NODE_ELEMENT) CountDrawn(child.v.element);
    }
  }

  void TakeStyles(const GumboElement& element) {
    for (const GumboNode& text : ChildNodes(element)) {
      if (text.type != GUMBO_NODE_ELEMENT) {
        const QString sheet = QString::fromUtf8(text.v.text.text);
        safe_.otherImages += ImagesIn(sheet);
        const QString safe = SafeStyleSheet(sheet);
        styles_ += safe;
        safe_.hasColors = safe_.hasColors || SetsColors(safe);
      }
    }
  }

  void WriteAttributes(const GumboElement& element, QByteArray& out) {
    for (unsigned i = 0; i < element.attributes.length; ++i) {
      const auto& attribute = *static_cast<const GumboAttribute*>(element.attributes.data[i]);
      const std::string_view name = attribute.name;
      QByteArray own;  // what stands in the place of the value
      const bool isOwn = !Attributes().contains(name);
      const bool isColor = name == "bgcolor" || name == "color" || name == "background";
      safe_.hasColors = safe_.hasColors || isColor;
      if (isOwn && !TakeOwn(element.tag, name, attribute.value, own)) continue;
      out += ' ';
      out.append(name.data(), static_cast<qsizetype>(name.size()));
      out += "=\"";
      AppendEscaped(out, isOwn ? std::string_view(own.constData(), static_cast<size_t>(own.size()))
                               : std::string_view(attribute.value));
      out += '"';
    }
  }

  // Of an attribute with rules of its own; false when it is left out.
  bool TakeOwn(GumboTag owner, std::string_view name, const char* value, QByteArray& safe) {
    if (name == "style") {
      auto known = declarations_.constFind(value);  // newsletters repeat them by thousands
      if (known == declarations_.constEnd()) {
        const QString style = QString::fromUtf8(value);
        const QString declared = SafeDeclarations(style);
        known =
            declarations_.insert(value, {declared.toUtf8(), ImagesIn(style), SetsColors(declared)});
      }
      safe = known->safe;
      safe_.hasColors = safe_.hasColors || known->setsColors;
      safe_.otherImages += known->images;
      return true;
    }
    if (name == "href" && owner == GUMBO_TAG_A) {
      const QString address = CleanAddress(QString::fromUtf8(value));
      safe = address.toUtf8();
      return IsLink(address);
    }
    if ((name == "src" && owner == GUMBO_TAG_IMG) || name == "background") {
      const QString address = WithScheme(CleanAddress(QString::fromUtf8(value)));
      return Scheme(address) == u"data" ? TakeInlineImage(address, safe)
                                        : TakeRemoteImage(address, safe);
    }
    return false;
  }

  // Written anew, so that what was looked at is what the browser sees.
  bool TakeInlineImage(const QString& address, QByteArray& safe) {
    const QByteArray data = DataOf(address);
    const std::optional<PictureHead> head = ReadPictureHead(data);
    if (!head) return false;
    if (head->pixels > kMostPicturePixels || head->pixels > pixelsLeft_) {
      ++safe_.largeImages;
      return false;
    }
    pixelsLeft_ -= head->pixels;
    safe = QByteArray("data:") + head->type + ";base64," + data.toBase64();
    return true;
  }

  bool TakeRemoteImage(const QString& address, QByteArray& safe) {
    const QString scheme = Scheme(address);
    if (scheme != u"http" && scheme != u"https") return false;
    safe_.hasRemoteImages = true;
    safe = kRemoteImage + address.toUtf8().toPercentEncoding();
    return images_ == RemoteImages::Kept;
  }

  RemoteImages images_;
  SafeHtml safe_;
  QByteArray body_;
  QByteArray bodyAttributes_;
  QString styles_;
  struct Declarations {
    QByteArray safe;
    int images = 0;
    bool setsColors = false;
  };
  QHash<QByteArray, Declarations> declarations_;
  qint64 pixelsLeft_ = kMostPixelsInAll;
};

}  // namespace

SafeHtml SanitizeHtml(const QString& html, RemoteImages images) {
  const QByteArray bytes = html.toUtf8();
  const auto tree = HtmlTree::Parse(bytes);
  if (tree != nullptr) return Sanitizer(images).Run(*tree, bytes.size());
  return {"<!DOCTYPE html><html><head><meta charset=\"utf-8\"><style>" + QByteArray(kBothSchemes) +
              "</style></head><body><pre>\n" + HtmlToText(html).toHtmlEscaped().toUtf8() +
              "</pre></body></html>",
          false, 0};
}

}  // namespace vorn
