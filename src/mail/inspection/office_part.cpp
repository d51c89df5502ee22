#include "mail/inspection/office_part.h"

#include <expat.h>

#include <QRegularExpression>
#include <algorithm>
#include <initializer_list>
#include <memory>
#include <vector>

#include "mail/inspection/table_formulas.h"
#include "mail/inspection/word_fields.h"

namespace vorn {
namespace {

constexpr int kElementsBetweenLooks = 1000;  // at the clock
constexpr char kBehindNamespace = '\n';

using View = QByteArrayView;  // of UTF-8, as the parser gives it

bool IsOneOf(View name, std::initializer_list<View> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

bool HasOneOf(View text, std::initializer_list<const char*> parts) {
  const QString whole = QString::fromUtf8(text);
  return std::any_of(parts.begin(), parts.end(), [&whole](const char* part) {
    return whole.contains(QLatin1StringView(part), Qt::CaseInsensitive);
  });
}

struct Name {
  View space;  // the namespace
  View local;

  explicit Name(View whole) {
    const qsizetype end = whole.lastIndexOf(kBehindNamespace);
    local = whole.sliced(end + 1);
    if (end > 0) space = whole.first(end);
  }
};

struct Attribute {
  Name name;
  View value;
};

using Attributes = std::vector<Attribute>;

// By the local name, whichever its namespace.
View ValueOf(const Attributes& attributes, View name) {
  for (const Attribute& attribute : attributes) {
    if (attribute.name.local == name) return attribute.value;
  }
  return {};
}

// Without the blanks that readers of addresses pass over, wherever they stand.
QString AddressText(View address) {
  QString text = QString::fromUtf8(address);
  text.removeIf([](QChar c) { return c == u'\t' || c == u'\n' || c == u'\r'; });
  return text;
}

bool IsOutside(View address) {
  static const QRegularExpression outside(
      QStringLiteral("^\\s*(?!data:)([a-z][a-z0-9+.-]*:|[/\\\\]{2}|/|\\.\\./)"),
      QRegularExpression::CaseInsensitiveOption);
  const QString text = AddressText(address);
  return !text.isEmpty() && outside.match(text).hasMatch();
}

// On another computer. Templates and tables beside a document are named by their paths, which are
// found on the computer of who wrote it.
bool IsElsewhere(View address) {
  static const QRegularExpression local(
      QStringLiteral(
          "^\\s*+(file:///(?![/\\\\%])|[a-z]:[\\\\/]|cid:|(?![a-z][a-z0-9+.-]+:|[/\\\\]{2}))"),
      QRegularExpression::CaseInsensitiveOption);
  return !local.match(AddressText(address)).hasMatch();
}

View KindOf(const Attributes& relationship) {
  const View type = ValueOf(relationship, "Type");
  return type.sliced(type.lastIndexOf('/') + 1);
}

bool LeadsElsewhere(const Attributes& relationship) {
  return ValueOf(relationship, "TargetMode").compare("External", Qt::CaseInsensitive) == 0 &&
         IsElsewhere(ValueOf(relationship, "Target"));
}

// Relationships (Open Packaging Conventions); a hyperlink waits for a click, where it is what it
// calls itself, and a table in a document (`package`) is what a chart is drawn from.
OfficeHolds HoldsOfRelationship(const Attributes& attributes) {
  const View kind = KindOf(attributes);
  if (IsOneOf(kind, {"vbaProject", "wordVbaData", "oleObject", "control", "activeXControlBinary",
                     "aFChunk", "xlMacrosheet", "xlIntlMacrosheet", "webextension"})) {
    return OfficeHolds::Commands;
  }
  return kind != "hyperlink" && LeadsElsewhere(attributes) ? OfficeHolds::Contact
                                                           : OfficeHolds::Nothing;
}

// Data of elsewhere that is fetched when the document opens, or every so many minutes.
bool RefreshesItself(const Attributes& attributes) {
  return IsOneOf(ValueOf(attributes, "refreshOnLoad").trimmed(), {"1", "true"}) ||
         ValueOf(attributes, "interval").toInt() > 0;
}

bool IsCommand(const Name& name, const Attributes& attributes) {
  if (IsOneOf(name.local, {"ddeLink", "oleLink", "dde-connection-decl", "dde-source", "dde-link",
                           "object-ole", "applet"})) {
    return true;
  }
  if (name.local == "fldSimple")
    return ActsAsField(QString::fromUtf8(ValueOf(attributes, "instr")));
  if (IsOneOf(name.local, {"Override", "Default"})) {
    return HasOneOf(ValueOf(attributes, "ContentType"),
                    {"vbaProject", "macroEnabled", "activeX", "oleObject"});
  }
  if (IsOneOf(name.local, {"connection", "queryTable"})) return RefreshesItself(attributes);
  if (name.local == "script") return name.space.contains(":office:");
  if (name.local != "event-listener") return false;
  return name.space.contains(":script:") ||
         IsOneOf(ValueOf(attributes, "action"), {"execute", "macro", "verb"});
}

// What is loaded with the document and lies outside of it. Links wait for a click; the template is
// looked for when the user asks for its styles.
bool LoadsFromOutside(const Name& name, const Attributes& attributes) {
  if (name.local == "webImageSrd") return true;  // in a cell
  if (IsOneOf(name.local,
              {"database-source-sql", "database-source-query", "database-source-table"})) {
    return true;
  }
  if (IsOneOf(name.local, {"a", "template", "area-rectangle", "area-circle", "area-polygon"}) ||
      (name.space.contains(":form:") && IsOneOf(name.local, {"form", "button"}))) {
    return false;
  }
  const bool isVml = name.space.contains(":vml");
  const bool isForm = name.space == "http://www.w3.org/2002/xforms";
  const bool isPicture = isVml || isForm || name.space == "http://www.w3.org/2000/svg";
  for (const Attribute& attribute : attributes) {
    const bool isLink = attribute.name.local == "href" || attribute.name.local == "src" ||
                        (isForm && attribute.name.local == "schema");
    if (isLink && (isPicture || attribute.name.space == "http://www.w3.org/1999/xlink") &&
        IsOutside(attribute.value)) {
      // A shape has a hyperlink of its own, a picture or what fills a shape comes from there.
      return attribute.name.local == "src" || !isVml ||
             IsOneOf(name.local, {"imagedata", "image", "fill", "stroke"});
    }
  }
  return false;
}

// Formulas of cells, of conditions and of names stand in these attributes.
bool IsFormula(const Name& element, const Name& attribute) {
  return IsOneOf(attribute.local, {"formula", "condition", "expression"}) ||
         (element.local == "cfvo" && attribute.local == "val");
}

bool IsFormula(const Name& element) {
  return IsOneOf(element.local, {"f", "definedName", "formula1", "formula2"}) ||
         element.local.endsWith("ormula");
}

OfficeHolds HoldsOfElement(const Name& name, const Attributes& attributes) {
  if (name.local == "Relationship") return HoldsOfRelationship(attributes);
  if (IsCommand(name, attributes)) return OfficeHolds::Commands;
  for (const Attribute& attribute : attributes) {
    if ((attribute.name.local == "action" &&
         HasOneOf(attribute.value, {"ppaction://program", "ppaction://macro"})) ||
        (IsFormula(name, attribute.name) && ActsAsFormula(QString::fromUtf8(attribute.value)))) {
      return OfficeHolds::Commands;
    }
  }
  return LoadsFromOutside(name, attributes) ? OfficeHolds::Contact : OfficeHolds::Nothing;
}

}  // namespace

// Stops at the first thing that acts.
class OfficePart::Look {
 public:
  explicit Look(const LookBound& bound)
      : bound_(bound), parser_(XML_ParserCreateNS(nullptr, kBehindNamespace)) {
    XML_Parser parser = parser_.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* look, const XML_Char* name, const XML_Char** attributes) {
          static_cast<Look*>(look)->Begin(Name(name), attributes);
        },
        [](void* look, const XML_Char* /*name*/) { static_cast<Look*>(look)->End(); });
    XML_SetCharacterDataHandler(parser, [](void* look, const XML_Char* text, int size) {
      static_cast<Look*>(look)->Text(View(text, size));
    });
    // Entities of the sender's own; no document has them.
    XML_SetStartDoctypeDeclHandler(
        parser, [](void* look, const XML_Char*, const XML_Char*, const XML_Char*, int) {
          static_cast<Look*>(look)->Stop(OfficeHolds::Unreadable);
        });
  }

  void Parse(View bytes, bool isLast) {
    // The parser counts in int.
    for (; isRead_ && bytes.size() > kMostAtOnce; bytes = bytes.sliced(kMostAtOnce)) {
      ParseOnce(bytes.first(kMostAtOnce), false);
    }
    ParseOnce(bytes, isLast);
  }

  OfficeHolds Holds() const {
    if (holds_ != OfficeHolds::Nothing) return holds_;
    if (fields_.Act()) return OfficeHolds::Commands;
    return isRead_ ? OfficeHolds::Nothing : OfficeHolds::Unreadable;
  }

  const QSet<QByteArray>& Loads() const { return loads_; }
  const QSet<QByteArray>& Links() const { return links_; }

 private:
  static constexpr qsizetype kMostAtOnce = 1 << 20;

  enum class Kept { Nothing, FieldCode, Formula };

  struct Free {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
  };

  void ParseOnce(View bytes, bool isLast) {
    isRead_ = isRead_ && XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()),
                                   isLast ? XML_TRUE : XML_FALSE) == XML_STATUS_OK;
  }

  void Stop(OfficeHolds holds) {
    // The parser may still tell of the end of an element that has none of its own.
    if (holds_ == OfficeHolds::Nothing) holds_ = holds;
    XML_StopParser(parser_.get(), XML_FALSE);
  }

  void Begin(const Name& name, const XML_Char** pairs) {
    ++depth_;
    attributes_.clear();
    for (; *pairs != nullptr; pairs += 2) attributes_.push_back({Name(pairs[0]), View(pairs[1])});
    const OfficeHolds holds = HoldsOfElement(name, attributes_);
    if (holds != OfficeHolds::Nothing) return Stop(holds);
    if (PassPivot(name)) return Stop(OfficeHolds::Contact);
    PassIdentifiers(name);
    if (++elements_ % kElementsBetweenLooks == 0 && bound_.IsReached()) {
      return Stop(OfficeHolds::Unreadable);
    }
    if (kept_ != Kept::Nothing) return;
    if (IsOneOf(name.local, {"instrText", "delInstrText"})) Keep(Kept::FieldCode);
    if (IsFormula(name)) Keep(Kept::Formula);
    if (name.local == "fldChar") PassFieldMark(ValueOf(attributes_, "fldCharType"));
  }

  // A table of data from elsewhere that is fetched when the document opens.
  bool PassPivot(const Name& name) {
    if (name.local == "pivotCacheDefinition") refreshes_ = RefreshesItself(attributes_);
    return refreshes_ && name.local == "cacheSource" && ValueOf(attributes_, "type") == "external";
  }

  void PassIdentifiers(const Name& name) {
    if (name.local == "Relationship") {
      if (KindOf(attributes_) == "hyperlink" && LeadsElsewhere(attributes_)) {
        links_.insert(ValueOf(attributes_, "Id").toByteArray());
      }
      return;
    }
    if (IsOneOf(name.local, {"hyperlink", "hlinkClick"})) return;
    for (const Attribute& attribute : attributes_) {
      if (attribute.name.space.contains("relationships") || attribute.name.local == "relid") {
        loads_.insert(attribute.value.toByteArray());
      }
    }
  }

  void PassFieldMark(View type) {
    if (type == "begin") fields_.Begin();
    if (type == "separate") fields_.Separate();
    if (type == "end") fields_.End();
  }

  // From here to the end of this element, with what stands within.
  void Keep(Kept kept) {
    kept_ = kept;
    keptDepth_ = depth_;
    text_.clear();
  }

  void Text(View text) {
    if (kept_ != Kept::Nothing) text_.append(text);
  }

  void End() {
    const bool isWhole = kept_ != Kept::Nothing && depth_ == keptDepth_;
    --depth_;
    if (!isWhole) return;
    const QString text = QString::fromUtf8(text_);
    if (kept_ == Kept::FieldCode) fields_.Add(text);
    if (kept_ == Kept::Formula && ActsAsFormula(text)) Stop(OfficeHolds::Commands);
    kept_ = Kept::Nothing;
  }

  const LookBound& bound_;
  std::unique_ptr<XML_ParserStruct, Free> parser_;
  WordFields fields_;
  Attributes attributes_;  // of the element at hand
  OfficeHolds holds_ = OfficeHolds::Nothing;
  Kept kept_ = Kept::Nothing;
  QByteArray text_;  // field code or formula
  QSet<QByteArray> loads_;
  QSet<QByteArray> links_;
  bool refreshes_ = false;  // the pivot table at hand
  bool isRead_ = true;      // well-formed so far
  int depth_ = 0;
  int keptDepth_ = 0;
  int elements_ = 0;
};

OfficePart::OfficePart(const LookBound& bound) : look_(std::make_unique<Look>(bound)) {}

OfficePart::~OfficePart() = default;

void OfficePart::Add(QByteArrayView bytes) {
  look_->Parse(bytes, false);
}

const QSet<QByteArray>& OfficePart::Loads() const {
  return look_->Loads();
}

const QSet<QByteArray>& OfficePart::Links() const {
  return look_->Links();
}

OfficeHolds OfficePart::Holds() {
  look_->Parse({}, true);
  return look_->Holds();
}

}  // namespace vorn
