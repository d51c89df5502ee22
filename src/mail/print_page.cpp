#include "mail/print_page.h"

#include <vector>

#include "mail/codec/html/html_sanitizer.h"
#include "mail/codec/html/html_text.h"
#include "mail/codec/html/html_tree.h"
#include "mail/shown_addresses.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString Escaped(QString text) {
  text.replace(u'&', QStringLiteral("&amp;"));
  text.replace(u'<', QStringLiteral("&lt;"));
  text.replace(u'>', QStringLiteral("&gt;"));
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  text.replace(u'\n', QStringLiteral("<BR>"));
  return text;
}

QString Row(const QString& label, const QString& shown) {
  if (shown.isEmpty()) return {};
  return QStringLiteral("<TR><TD>") + label + QStringLiteral("</TD><TD>") + Escaped(shown) +
         QStringLiteral("</TD></TR>\r\n");
}

QString Addresses(const MessageModel& model, QStringView kind) {
  return ShownAddresses(model.addresses, kind).join(QStringLiteral(", "));
}

// The paper has an edge: what is longer than a line goes on in the next one, whatever it is.
const QString kStyle = QStringLiteral(
    "<style>body { margin: 0 15mm } table, body { overflow-wrap: anywhere } table { border-bottom: "
    "1px solid; padding-bottom: 1mm; margin-bottom: 3mm } td { vertical-align: "
    "top; width: 100% } td:first-child { white-space: nowrap; width: 1%; padding-right: 1em }"
    "</style>\r\n");

// What is important at an element itself a mail's style sheets do not change.
QByteArray Important(QByteArray declarations) {
  return " style=\"" + declarations.replace(';', "!important;") + '"';
}

// A mail's style sheets reach every element of the page and the lines in it, so that the mail could
// hide the table, turn its words around or lay a table of its own over it. Into a tree of its own
// (DOM, shadow tree) they do not reach, and what is laid out in a row of its own (flex) has no
// first letter for what is around it. The attribute has another name in later engines.
QByteArray Shielded(const QByteArray& table) {
  return "<section" +
         Important(
             "all:initial;direction:ltr;unicode-bidi:isolate;display:flex;width:100%;"
             "background:white;color:black;") +
         "><template shadowroot=\"open\" shadowrootmode=\"open\">" + kStyle.toUtf8() + table +
         "</template></section>";
}

const QByteArray kHtml = "<html>";
const QByteArray kBody = "<body";
// What of the elements around the table could hide it.
constexpr const char* kInSight =
    "display:block;visibility:visible;opacity:1;float:none;width:auto;min-width:0;max-width:none;"
    "height:auto;max-height:none;overflow:visible;padding:0;border:0;text-indent:0;"
    "outline:0;border-image:none;box-shadow:none;text-decoration:none;";
// The element around the mail: one of which no style sheet of a mail speaks.
const QByteArray kPlace = "vorn-mail";
// What of it could be drawn over the table.
const QByteArray kInItsPlace =
    "display:flow-root;overflow:clip;margin:0;padding:0;border:0;border-image:none;outline:0;"
    "box-shadow:none;width:auto;min-width:0;max-width:none;";

// Where a text begins in a tag, not in the value of an attribute; -1 when the tag ends before.
qsizetype FindInTag(const QByteArray& document, QByteArrayView text, qsizetype from) {
  bool isQuoted = false;
  for (qsizetype at = from; at < document.size(); ++at) {
    if (!isQuoted && QByteArrayView(document).sliced(at).startsWith(text)) return at;
    if (!isQuoted && document[at] == '>') return -1;
    if (document[at] == '"') isQuoted = !isQuoted;
  }
  return -1;
}

// Behind what the mail says at its body, or in its place.
void ShieldBody(QByteArray& document, qsizetype body) {
  const QByteArray rest = Important(kInSight + QByteArrayLiteral("margin:0;"));
  const QByteArray begin = " style=\"";
  const qsizetype own = FindInTag(document, begin, body);
  if (own < 0) {
    document.insert(body + kBody.size(), rest);
  } else {
    document.insert(document.indexOf('"', own + begin.size()),
                    ';' + rest.sliced(begin.size()).chopped(1));
  }
}

QByteArray WithHead(QByteArray document, const QByteArray& table) {
  ShieldBody(document, document.indexOf(kBody, document.indexOf("</head>")));
  const qsizetype body = document.indexOf(kBody, document.indexOf("</head>"));
  document.insert(document.lastIndexOf("</body>"), "</" + kPlace + '>');
  document.insert(FindInTag(document, ">", body) + 1,
                  Shielded(table) + '<' + kPlace + Important(kInItsPlace) + '>');
  return document.replace(
      document.indexOf(kHtml), kHtml.size(),
      "<html" + Important(kInSight + QByteArrayLiteral("margin:0 15mm;overflow-wrap:anywhere;")) +
          '>');
}

bool IsElement(const GumboNode* node, GumboTag tag) {
  return node->type == GUMBO_NODE_ELEMENT && node->v.element.tag == tag;
}

bool IsBlank(const GumboNode* node) {
  return node->type == GUMBO_NODE_WHITESPACE || node->type == GUMBO_NODE_COMMENT;
}

std::vector<const GumboNode*> Children(const GumboElement& element) {
  std::vector<const GumboNode*> children;
  for (const GumboNode& node : ChildNodes(element)) {
    if (!IsBlank(&node)) children.push_back(&node);
  }
  return children;
}

// Whether the mail, read by a browser, stands in its element to its end. Some trees are read back
// in another form than they were written, in which an element of the mail closes what is around it.
bool HasItsPlace(const QByteArray& document) {
  const auto tree = HtmlTree::Parse(document);
  if (tree == nullptr) return false;
  const auto parts = Children(tree->Root());
  if (parts.size() != 2 || !IsElement(parts[0], GUMBO_TAG_HEAD) ||
      !IsElement(parts[1], GUMBO_TAG_BODY)) {
    return false;
  }
  const auto shown = Children(parts[1]->v.element);
  return shown.size() == 2 && IsElement(shown[0], GUMBO_TAG_SECTION) &&
         IsElement(shown[1], GUMBO_TAG_UNKNOWN);
}

// Null when the mail cannot be held in its place.
QByteArray HtmlPage(const QString& html, const QByteArray& table) {
  constexpr int kTries = 3;  // what is read back in another form is stable then
  QString form = html;
  for (int i = 0; i < kTries; ++i) {
    const QByteArray safe = SanitizeHtml(form, RemoteImages::LeftOut).html;
    const QByteArray document = WithHead(safe, table);
    if (HasItsPlace(document)) return document;
    form = QString::fromUtf8(safe);
  }
  return {};
}

QByteArray TextPage(const QString& text, const QString& table) {
  const QString page = QStringLiteral("<html><meta charset=\"utf-8\">\r\n") + kStyle + table +
                       Escaped(text) + QStringLiteral("</html>\r\n");
  return page.toUtf8();
}

}  // namespace

QByteArray PrintPage(const MessageModel& model, const QString& html) {
  QStringList attachments;
  for (const ModelAttachment& attachment : model.attachments) attachments.append(attachment.name);
  const QString table = QStringLiteral("<TABLE width = \"100%\">\r\n") +
                        Row(Ui::tr("差出人："), Addresses(model, u"FROM")) +
                        Row(Ui::tr("宛て先："), Addresses(model, u"TO")) +
                        Row(Ui::tr("参照先："), Addresses(model, u"CC")) +
                        Row(Ui::tr("添付："), ShownInLine(attachments.join(QStringLiteral(", ")))) +
                        Row(Ui::tr("件名："), ShownInLine(model.subject)) +
                        QStringLiteral("</TABLE>\r\n");
  if (html.isNull()) return TextPage(model.text.Get(), table);
  const QByteArray page = HtmlPage(html, table.toUtf8());
  return page.isNull() ? TextPage(HtmlToText(html), table) : page;
}

}  // namespace vorn
