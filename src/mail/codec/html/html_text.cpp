#include "mail/codec/html/html_text.h"

#include <QByteArrayList>
#include <QHash>
#include <QScopedValueRollback>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <optional>
#include <utility>

#include "mail/codec/html/html_tree.h"
#include "storage/ui.h"

namespace vorn {
namespace {

enum class Role : char {
  Inline,
  Block,      ///< begins and ends a line
  Paragraph,  ///< and leaves one empty before and behind
  Hidden,     ///< its contents are no text
  Cell,
  Item,
  List,
  Quote,
  Link,
  Break,
  Rule,
  Image,
  Reading  ///< how the characters before it are read aloud
};

using Roles = std::array<Role, GUMBO_TAG_LAST + 1>;

const Roles& RolesOfElements() {
  static const Roles roles = [] {
    Roles all{};
    const auto mark = [&all](Role role, const char* names) {
      for (const QByteArray& name : QByteArray(names).split(' ')) {
        all[gumbo_tag_enum(name.constData())] = role;
      }
    };
    mark(Role::Block,
         "address article aside center dd div dl dt fieldset figcaption figure footer form header "
         "main nav section table tbody tfoot thead tr caption");
    mark(Role::Paragraph, "p h1 h2 h3 h4 h5 h6 pre");
    mark(Role::Hidden,
         "script style head title template noframes noscript select datalist iframe object video "
         "audio canvas rp");
    mark(Role::Cell, "td th");
    mark(Role::List, "ol ul menu dir");
    all[GUMBO_TAG_LI] = Role::Item;
    all[GUMBO_TAG_BLOCKQUOTE] = Role::Quote;
    all[GUMBO_TAG_A] = Role::Link;
    all[GUMBO_TAG_BR] = Role::Break;
    all[GUMBO_TAG_HR] = Role::Rule;
    all[GUMBO_TAG_IMG] = Role::Image;
    all[GUMBO_TAG_RT] = Role::Reading;
    return all;
  }();
  return roles;
}

QString Attribute(const GumboElement& element, const char* name) {
  const GumboAttribute* attribute = gumbo_get_attribute(&element.attributes, name);
  return attribute == nullptr ? QString() : QString::fromUtf8(attribute->value);
}

QString StyleOf(const GumboElement& element) {
  return Attribute(element, "style").remove(u' ').toLower();
}

// Whether a browser leaves the element out, as senders do with lines for lists of messages alone.
bool IsHidden(const GumboElement& element, const QString& style) {
  if (gumbo_get_attribute(&element.attributes, "hidden") != nullptr) return true;
  if (style.contains(u"display:none") || style.contains(u"visibility:hidden")) return true;
  const bool hasNoHeight = style.contains(u"max-height:0") && !style.contains(u"max-height:0.");
  return hasNoHeight && style.contains(u"overflow:hidden");
}

// Whether the style gives text a size that is seen, if it gives any. An element within may give
// another.
std::optional<bool> SizeOf(const QString& style) {
  constexpr QStringView key = u"font-size:";
  const qsizetype at = style.indexOf(key);
  if (at < 0) return std::nullopt;
  const QStringView size = QStringView(style).sliced(at + key.size());
  return !size.startsWith(u'0') || size.startsWith(u"0.");
}

// What a link leads to, empty when that is nowhere outside of the page.
QString TargetOf(const GumboElement& element) {
  const QString target = Attribute(element, "href").simplified();
  for (const QStringView scheme : {u"https://", u"http://", u"mailto:", u"ftp://"}) {
    if (target.startsWith(scheme, Qt::CaseInsensitive)) return target;
  }
  return {};
}

// Whether a link's text says where it leads.
bool Shows(const QString& text, const QString& target) {
  const QString place = target.section(u':', 1);
  const QStringView bare =
      QStringView(place).sliced(std::min(place.startsWith(u"//") ? 2LL : 0LL, place.size()));
  return text.contains(bare.endsWith(u'/') ? bare.chopped(1) : bare, Qt::CaseInsensitive);
}

class Writer {
 public:
  QString Run(const GumboElement& root) {
    Children(root);
    depth_ = 0;
    for (qsizetype i = 0; i < targets_.size(); ++i) {
      Lines(i == 0 ? 2 : 1);
      Put(QStringLiteral("[%1] %2").arg(i + 1).arg(targets_[i]));
    }
    if (!out_.isEmpty()) out_ += kLineBreak;
    return std::move(out_);
  }

 private:
  void Children(const GumboElement& element) {
    for (const GumboNode& child : ChildNodes(element)) {
      if (child.type == GUMBO_NODE_ELEMENT) {
        Element(child.v.element);
      } else if (child.type != GUMBO_NODE_COMMENT) {
        Text(QString::fromUtf8(child.v.text.text));
      }
    }
  }

  void Element(const GumboElement& element) {
    const bool isHtml = element.tag_namespace == GUMBO_NAMESPACE_HTML;
    const Role role = isHtml ? RolesOfElements()[element.tag] : Role::Inline;
    const QString style = StyleOf(element);
    if (role == Role::Hidden || IsHidden(element, style)) return;
    const QScopedValueRollback verbatim(isVerbatim_);
    const QScopedValueRollback sized(hasSize_);
    isVerbatim_ |= element.tag == GUMBO_TAG_PRE || style.contains(u"white-space:pre");
    if (const std::optional<bool> size = SizeOf(style)) hasSize_ = *size;
    const bool isText =
        role == Role::Inline || element.tag == GUMBO_TAG_P || element.tag == GUMBO_TAG_DIV;
    if (!isText) beginsCell_ = false;
    Contents(element, role);
  }

  void Contents(const GumboElement& element, Role role) {
    switch (role) {
      case Role::Block:
        return Surrounded(element, 1);
      case Role::Paragraph:
        return Surrounded(element, 2);
      case Role::Cell:
        return Cell(element);
      case Role::Item:
        marker_ = MarkerOfItem();
        Surrounded(element, 1);
        marker_.clear();
        return;
      case Role::List:
        return List(element);
      case Role::Quote:
        Lines(2);
        ++depth_;
        Children(element);
        --depth_;
        return Lines(2);
      case Role::Link:
        return Link(element);
      case Role::Break:
        ++breaks_;
        return;
      case Role::Rule:
        Lines(1);
        Put(QStringLiteral("----------"));
        return Lines(1);
      case Role::Image:
        return Text(Attribute(element, "alt"));
      case Role::Reading:
        Put(QStringLiteral("("));
        Children(element);
        return Put(QStringLiteral(")"));
      default:
        return Children(element);
    }
  }

  void Surrounded(const GumboElement& element, int breaks) {
    Lines(breaks);
    Children(element);
    Lines(breaks);
  }

  // A paragraph in a cell begins where the cell does, and one that is alone in it ends no line: the
  // cells of a row stand beside each other.
  void Cell(const GumboElement& element) {
    const qsizetype outer = std::exchange(cellText_, -1);
    beginsCell_ = true;
    Children(element);
    beginsCell_ = false;
    const bool isOneLine = cellText_ >= 0 && out_.indexOf(kLineBreak, cellText_) < 0;
    if (isOneLine) breaks_ = 0;
    if (outer >= 0) cellText_ = outer;
    isBlank_ = true;
  }

  void List(const GumboElement& element) {
    bool isNumber = false;
    const int start = Attribute(element, "start").toInt(&isNumber);
    lists_.append(element.tag != GUMBO_TAG_OL ? kUnordered : isNumber ? start : 1);
    Surrounded(element, 1);
    lists_.removeLast();
  }

  QString MarkerOfItem() {
    const QString indent(2 * qBound(qsizetype{0}, lists_.size() - 1, qsizetype{kDeepest}), u' ');
    if (lists_.isEmpty() || lists_.last() == kUnordered) return indent + Ui::tr("・", "list");
    return indent + QString::number(lists_.last()++) + QStringLiteral(". ");
  }

  void Link(const GumboElement& element) {
    const qsizetype start = out_.size();
    Children(element);
    const QString target = TargetOf(element);
    const QString text = out_.mid(start).trimmed();
    if (target.isEmpty() || text.isEmpty() || Shows(text, target)) return;
    const qsizetype number = numbers_.value(target, targets_.size() + 1);
    if (number > targets_.size()) {
      targets_.append(target);
      numbers_.insert(target, number);
    }
    isBlank_ = false;
    Put(QStringLiteral("[%1]").arg(number));
  }

  // At least so many line breaks before what comes.
  void Lines(int breaks) {
    if (!out_.isEmpty() && !beginsCell_) breaks_ = std::max(breaks_, breaks);
  }

  void Text(const QString& text) {
    QString piece;
    for (const QChar c : text) {
      const bool isLineEnd = c == u'\n';
      if (c == u'\r') continue;
      if (!isVerbatim_ && (c == u' ' || c == u'\t' || c == u'\f' || isLineEnd)) {
        Put(piece);
        piece.clear();
        isBlank_ = true;
      } else if (isVerbatim_ && isLineEnd) {
        Put(piece);
        piece.clear();
        ++breaks_;
      } else {
        piece += c == QChar::Nbsp ? QChar(u' ') : c;
      }
    }
    Put(piece);
  }

  void Put(const QString& piece) {
    if (piece.isEmpty() || !hasSize_) return;
    if (out_.isEmpty() || breaks_ > 0) {
      BeginLine();
    } else if (isBlank_ && !out_.endsWith(u' ')) {
      out_ += u' ';
    }
    isBlank_ = false;
    beginsCell_ = false;
    if (cellText_ < 0) cellText_ = out_.size();
    out_ += piece;
  }

  void BeginLine() {
    if (out_.isEmpty()) breaks_ = 0;  // a page does not begin with empty lines
    for (; breaks_ > 0; --breaks_) {
      out_ += kLineBreak;
      if (breaks_ > 1) out_ += QString(std::min({depth_, lastDepth_, kDeepest}), u'>');
    }
    if (depth_ > 0) out_ += QString(std::min(depth_, kDeepest), u'>') + u' ';
    lastDepth_ = depth_;
    out_ += marker_;
    marker_.clear();
  }

  static constexpr int kUnordered = -1;
  static constexpr int kDeepest = 50;  // which each line shows

  QString out_;
  QStringList targets_;  // of links, by their number
  QHash<QString, qsizetype> numbers_;
  QList<int> lists_;   // the number of the next item of each open list
  QString marker_;     // of the item that begins
  int breaks_ = 0;     // line breaks before what comes
  int depth_ = 0;      // of quotes
  int lastDepth_ = 0;  // that the last line had
  bool isBlank_ = false;
  bool isVerbatim_ = false;
  bool hasSize_ = true;      // of the text; without it nothing is seen
  qsizetype cellText_ = -1;  // where the text of the innermost cell begins
  bool beginsCell_ = false;  // and whether it is still to come
};

// Makes of a document that nests too deep one without levels, whose lines end where a block begins
// or ends.
class Flattener {
 public:
  explicit Flattener(const QByteArray& html) : html_(html), small_(html.toLower()) {}

  QByteArray Run() {
    for (qsizetype at = 0; at < html_.size();) {
      const qsizetype open = html_.indexOf('<', at);
      Take(at, open < 0 ? html_.size() : open);
      at = open < 0 ? html_.size() : Behind(open);
    }
    return std::move(flat_);
  }

 private:
  void Take(qsizetype from, qsizetype to) {
    const QByteArrayView text = QByteArrayView(html_).sliced(from, to - from);
    hasText_ |= !text.trimmed().isEmpty();
    flat_ += text;
  }

  // Where it goes on after the markup at `open`.
  qsizetype Behind(qsizetype open) {
    if (QByteArrayView(html_).sliced(open).startsWith("<!--")) return After("-->", open + 2);
    const bool ends = QByteArrayView(html_).sliced(open + 1).startsWith('/');
    const qsizetype start = open + (ends ? 2 : 1);
    qsizetype end = start;
    while (end < html_.size() && std::isalnum(static_cast<unsigned char>(html_[end])) != 0) ++end;
    if (end == start || std::isdigit(static_cast<unsigned char>(html_[start])) != 0) {
      const bool isText =
          !ends && start < html_.size() && html_[start] != '!' && html_[start] != '?';
      if (isText) flat_ += "&lt;";
      return isText ? start : After(">", start);
    }
    const QByteArray name = small_.sliced(start, end - start);
    const Role role = RolesOfElements()[gumbo_tag_enum(name.constData())];
    if (role == Role::Cell) flat_ += ' ';
    const bool isInline = role == Role::Inline || role == Role::Cell || role == Role::Link ||
                          role == Role::Image || role == Role::Reading || role == Role::Hidden;
    if (!isInline && std::exchange(hasText_, false)) flat_ += "<br>";
    const qsizetype after = AfterTag(end);
    return role == Role::Hidden && !ends && name != "head" ? AfterHidden(name, after) : after;
  }

  qsizetype After(const char* sign, qsizetype at) const {
    const qsizetype found = html_.indexOf(sign, at);
    return found < 0 ? html_.size() : found + static_cast<qsizetype>(std::strlen(sign));
  }

  qsizetype AfterTag(qsizetype at) const {
    for (char quote = 0; at < html_.size(); ++at) {
      const char c = html_[at];
      if (quote == 0 && c == '>') return at + 1;
      if (quote == 0 && (c == '"' || c == '\'')) {
        quote = c;
      } else if (c == quote) {
        quote = 0;
      }
    }
    return at;
  }

  // What never ends is taken for no such element, and not looked for again.
  qsizetype AfterHidden(const QByteArray& name, qsizetype at) {
    if (endless_.contains(name)) return at;
    const qsizetype end = small_.indexOf("</" + name, at);
    if (end < 0) endless_.append(name);
    return end < 0 ? at : end;
  }

  const QByteArray& html_;
  const QByteArray small_;
  QByteArray flat_;
  QByteArrayList endless_;
  bool hasText_ = false;  // since the last line ended
};

}  // namespace

QString HtmlToText(const QString& html) {
  const QByteArray bytes = html.toUtf8();
  const auto tree = HtmlTree::Parse(bytes);
  if (tree != nullptr) return Writer().Run(tree->Root());
  const QByteArray flat = Flattener(bytes).Run();
  const auto text = HtmlTree::Parse(flat);
  return text == nullptr ? QString() : Writer().Run(text->Root());
}

}  // namespace vorn
