#include "mail/print_page.h"

#include "mail/codec/html/html_sanitizer.h"
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
// hide the table, turn its words around or lay a table of its own over it. Into the body's own tree
// (DOM, shadow tree) they do not reach, and what is laid out in a row of its own (flex) has no
// first letter for what is around it. The mail stays what the body holds, as on the screen; it
// stands in the slot, and is cut off at its edge. The attribute has another name in later engines.
QByteArray AboveTheMail(const QByteArray& table) {
  return "<template shadowroot=\"open\" shadowrootmode=\"open\">" + kStyle.toUtf8() +
         "<section style=\"all:initial;direction:ltr;unicode-bidi:isolate;display:flex;width:100%;"
         "background:white;color:black\">" +
         table +
         "</section><div style=\"display:flow-root;overflow:clip\"><slot></slot></div></template>";
}

const QByteArray kHtml = "<html>";
const QByteArray kBody = "<body";
// What of the elements around the table could hide it.
constexpr const char* kInSight =
    "display:block;visibility:visible;opacity:1;float:none;width:auto;min-width:0;max-width:none;"
    "height:auto;max-height:none;overflow:visible;padding:0;border:0;text-indent:0;"
    "outline:0;border-image:none;box-shadow:none;text-decoration:none;";

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

QByteArray HtmlPage(const QString& html, const QByteArray& table) {
  QByteArray document = SanitizeHtml(html, RemoteImages::LeftOut).html;
  const qsizetype body = document.indexOf(kBody, document.indexOf("</head>"));
  ShieldBody(document, body);
  document.insert(FindInTag(document, ">", body) + 1, AboveTheMail(table));
  return document.replace(
      document.indexOf(kHtml), kHtml.size(),
      "<html" + Important(kInSight + QByteArrayLiteral("margin:0 15mm;overflow-wrap:anywhere;")) +
          '>');
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
  return html.isNull() ? TextPage(model.text.Get(), table) : HtmlPage(html, table.toUtf8());
}

}  // namespace vorn
