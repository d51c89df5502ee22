#include "mail/office_part.h"

#include <QRegularExpression>
#include <QXmlStreamReader>
#include <algorithm>
#include <initializer_list>

#include "mail/table_formulas.h"
#include "mail/word_fields.h"

namespace vorn {
namespace {

using Attributes = QXmlStreamAttributes;

constexpr int kTokensBetweenLooks = 1000;  // at the clock

bool IsOneOf(QStringView name, std::initializer_list<QStringView> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool HasOneOf(QStringView text, std::initializer_list<QStringView> parts) {
  return std::any_of(parts.begin(), parts.end(),
                     [text](QStringView part) { return text.contains(part, Qt::CaseInsensitive); });
}

// By the local name, whichever its namespace.
QStringView ValueOf(const Attributes& attributes, QStringView name) {
  for (const QXmlStreamAttribute& attribute : attributes) {
    if (attribute.name() == name) return attribute.value();
  }
  return {};
}

bool IsOutside(QStringView address) {
  static const QRegularExpression outside(
      QStringLiteral("^\\s*(?!data:)([a-z][a-z0-9+.-]*:|//|\\\\\\\\|/|\\.\\./)"),
      QRegularExpression::CaseInsensitiveOption);
  return !address.isEmpty() && outside.match(address.toString()).hasMatch();
}

// On another computer. Templates and tables beside a document are named by their paths, which are
// found on the computer of who wrote it.
bool IsElsewhere(QStringView address) {
  static const QRegularExpression local(
      QStringLiteral("^\\s*+(file:///[a-z]:|[a-z]:[\\\\/]|(?![a-z][a-z0-9+.-]+:|//|\\\\\\\\))"),
      QRegularExpression::CaseInsensitiveOption);
  return !local.match(address.toString()).hasMatch();
}

// Relationships (Open Packaging Conventions); a hyperlink waits for a click, and a table in a
// document (`package`) is what a chart is drawn from.
OfficeHolds HoldsOfRelationship(const Attributes& attributes) {
  const QStringView type = ValueOf(attributes, u"Type");
  const QStringView kind = type.sliced(type.lastIndexOf(u'/') + 1);
  if (IsOneOf(kind,
              {u"vbaProject", u"wordVbaData", u"oleObject", u"control", u"activeXControlBinary",
               u"aFChunk", u"xlMacrosheet", u"xlIntlMacrosheet", u"webextension"})) {
    return OfficeHolds::Commands;
  }
  const bool isExternal =
      ValueOf(attributes, u"TargetMode").compare(u"External", Qt::CaseInsensitive) == 0;
  return isExternal && kind != u"hyperlink" && IsElsewhere(ValueOf(attributes, u"Target"))
             ? OfficeHolds::Contact
             : OfficeHolds::Nothing;
}

// Data of elsewhere that is fetched when the document opens, or every so many minutes.
bool RefreshesItself(const Attributes& attributes) {
  return IsOneOf(ValueOf(attributes, u"refreshOnLoad"), {u"1", u"true"}) ||
         ValueOf(attributes, u"interval").toInt() > 0;
}

bool IsCommand(QStringView name, QStringView space, const Attributes& attributes) {
  if (IsOneOf(name, {u"ddeLink", u"oleLink", u"dde-connection-decl", u"dde-source", u"dde-link",
                     u"object-ole", u"applet"})) {
    return true;
  }
  if (name == u"fldSimple") return ActsAsField(ValueOf(attributes, u"instr").toString());
  if (IsOneOf(name, {u"Override", u"Default"})) {
    return HasOneOf(ValueOf(attributes, u"ContentType"),
                    {u"vbaProject", u"macroEnabled", u"activeX", u"oleObject"});
  }
  if (IsOneOf(name, {u"connection", u"queryTable"})) return RefreshesItself(attributes);
  if (name == u"script") return space.contains(u":office:");
  if (name != u"event-listener") return false;
  return space.contains(u":script:") ||
         IsOneOf(ValueOf(attributes, u"action"), {u"execute", u"macro", u"verb"});
}

// What is loaded with the document and lies outside of it. Links wait for a click; the template is
// looked for when the user asks for its styles.
bool LoadsFromOutside(QStringView name, QStringView space, const Attributes& attributes) {
  if (name == u"cacheSource") return ValueOf(attributes, u"type") == u"external";
  if (IsOneOf(name, {u"database-source-sql", u"database-source-query", u"database-source-table"})) {
    return true;
  }
  if (IsOneOf(name, {u"a", u"template", u"area-rectangle", u"area-circle", u"area-polygon"}) ||
      (space.contains(u":form:") && IsOneOf(name, {u"form", u"button"}))) {
    return false;
  }
  const bool isPicture = space == u"http://www.w3.org/2000/svg" || space.contains(u":vml");
  for (const QXmlStreamAttribute& attribute : attributes) {
    const bool isLink = attribute.name() == u"href" || attribute.name() == u"src";
    if (isLink && (isPicture || attribute.namespaceUri() == u"http://www.w3.org/1999/xlink") &&
        IsOutside(attribute.value())) {
      return attribute.name() == u"src" || !space.contains(u":vml");  // a shape's own hyperlink
    }
  }
  return false;
}

OfficeHolds HoldsOfElement(const QXmlStreamReader& xml) {
  const Attributes attributes = xml.attributes();
  if (xml.name() == u"Relationship") return HoldsOfRelationship(attributes);
  if (IsCommand(xml.name(), xml.namespaceUri(), attributes)) return OfficeHolds::Commands;
  for (const QXmlStreamAttribute& attribute : attributes) {
    if ((attribute.name() == u"action" &&
         HasOneOf(attribute.value(), {u"ppaction://program", u"ppaction://macro"})) ||
        (attribute.name() == u"formula" && ActsAsFormula(attribute.value().toString()))) {
      return OfficeHolds::Commands;
    }
  }
  return LoadsFromOutside(xml.name(), xml.namespaceUri(), attributes) ? OfficeHolds::Contact
                                                                      : OfficeHolds::Nothing;
}

// Field codes and formulas, which are the text of elements.
OfficeHolds HoldsOfText(QXmlStreamReader& xml, WordFields& fields) {
  constexpr auto kWhole = QXmlStreamReader::IncludeChildElements;
  bool acts = false;
  if (IsOneOf(xml.name(), {u"instrText", u"delInstrText"})) {
    fields.Add(xml.readElementText(kWhole));
  } else if (IsOneOf(xml.name(), {u"f", u"definedName"})) {
    acts = ActsAsFormula(xml.readElementText(kWhole));
  } else if (xml.name() == u"fldChar") {
    const QXmlStreamAttributes attributes = xml.attributes();
    const QStringView type = ValueOf(attributes, u"fldCharType");
    if (type == u"begin") fields.Begin();
    if (type == u"separate") fields.Separate();
    if (type == u"end") fields.End();
  }
  return acts ? OfficeHolds::Commands : OfficeHolds::Nothing;
}

}  // namespace

OfficeHolds HoldsOfPart(const QByteArray& part, const QDeadlineTimer& deadline) {
  QXmlStreamReader xml(part);
  WordFields fields;
  for (int tokens = 1; !xml.atEnd(); ++tokens) {
    xml.readNext();
    const bool isLate = tokens % kTokensBetweenLooks == 0 && deadline.hasExpired();
    if (isLate || xml.tokenType() == QXmlStreamReader::DTD) return OfficeHolds::Unreadable;
    if (xml.tokenType() != QXmlStreamReader::StartElement) continue;
    OfficeHolds holds = HoldsOfElement(xml);
    if (holds == OfficeHolds::Nothing) holds = HoldsOfText(xml, fields);
    if (holds != OfficeHolds::Nothing) return holds;
  }
  if (fields.Act()) return OfficeHolds::Commands;
  return xml.hasError() ? OfficeHolds::Unreadable : OfficeHolds::Nothing;
}

}  // namespace vorn
