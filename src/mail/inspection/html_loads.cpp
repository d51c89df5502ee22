#include "mail/inspection/html_loads.h"

#include <QRegularExpression>
#include <vector>

#include "mail/codec/html/html_tree.h"

namespace vorn {
namespace {

bool NamesOutside(const QString& style) {
  static const QRegularExpression named(
      QStringLiteral("(url\\(|@import)\\s*(url\\(\\s*)?[\"']?\\s*([^\"')\\s;]*)"),
      QRegularExpression::CaseInsensitiveOption);
  for (auto found = named.globalMatch(style); found.hasNext();) {
    if (IsAddressOutside(found.next().captured(3))) return true;
  }
  return false;
}

bool Loads(const GumboElement& element, const GumboAttribute& attribute) {
  const QByteArrayView name(attribute.name);
  const QString value = QString::fromUtf8(attribute.value);
  if (name == "style") return NamesOutside(value);
  if (name == "srcset") return value.contains(u'/');
  if (name == "content") return element.tag == GUMBO_TAG_META && value.contains(u"url");
  const bool isLoaded = name == "src" || name == "background" || name == "poster" ||
                        name == "data" || name == "lowsrc" || name == "dynsrc" ||
                        ((name == "href" || name == "xlink:href") && element.tag != GUMBO_TAG_A &&
                         element.tag != GUMBO_TAG_AREA);
  return isLoaded && IsAddressOutside(value);
}

bool Loads(const GumboElement& element) {
  for (unsigned i = 0; i < element.attributes.length; ++i) {
    if (Loads(element, *static_cast<const GumboAttribute*>(element.attributes.data[i])))
      return true;
  }
  return false;
}

}  // namespace

bool IsAddressOutside(const QString& address) {
  static const QRegularExpression outside(
      QStringLiteral("^(?!(cid|data|mid):)([a-z][a-z0-9+.-]*:|//)"),
      QRegularExpression::CaseInsensitiveOption);
  QString text = address;
  text.removeIf([](QChar c) { return c.unicode() <= 0x20; });
  return outside.match(text.replace(u'\\', u'/')).hasMatch();
}

bool LoadsByItself(const QString& html) {
  const QByteArray bytes = html.toUtf8();
  const auto tree = HtmlTree::Parse(bytes);
  if (tree == nullptr) return true;
  std::vector<const GumboElement*> waiting{&tree->Root()};
  while (!waiting.empty()) {
    const GumboElement& element = *waiting.back();
    waiting.pop_back();
    if (Loads(element)) return true;
    for (const GumboNode& child : ChildNodes(element)) {
      if (child.type == GUMBO_NODE_ELEMENT || child.type == GUMBO_NODE_TEMPLATE) {
        waiting.push_back(&child.v.element);
      } else if (element.tag == GUMBO_TAG_STYLE && child.type == GUMBO_NODE_TEXT &&
                 NamesOutside(QString::fromUtf8(child.v.text.text))) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace vorn
