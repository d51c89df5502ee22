#include "mail/inspection/pdf_actions.h"

#include <QSet>
#include <algorithm>
#include <utility>

#include "mail/inspection/pdf_objects.h"
#include "mail/inspection/pdf_tokens.h"

namespace vorn {
namespace {

using Kind = PdfToken::Kind;

constexpr qsizetype kMostRead = 64 * 1024 * 1024;
constexpr qsizetype kFarthestValue = 4 * 1024;

// What the actions that a file performs by itself may lead to (ISO 32000-1, 12.6.4).
bool IsContact(const QByteArray& action) {
  static const QSet<QByteArray> actions = {"URI",        "GoToR",     "GoToE", "SubmitForm",
                                           "ImportData", "Rendition", "Thread"};
  return actions.contains(action);
}

// Pages, fields and what lies above an object: links in there wait for a click.
bool LeadsElsewhere(const QByteArray& key) {
  static const QSet<QByteArray> keys = {"D", "SD", "P", "Parent", "T", "Fields"};
  return keys.contains(key);
}

// The actions of a file that are performed by themselves, with those that follow them.
class OwnActions {
 public:
  explicit OwnActions(const PdfObjects& objects) : objects_(objects) {}

  // The value that begins in a text. A destination, which is an array, is a page of the file.
  PdfActs Follow(QByteArrayView text, bool mayBeDestination) {
    PdfActs acts = ReadValue(text, mayBeDestination);
    while (acts == PdfActs::Nothing && !ahead_.isEmpty()) {
      const Reference next = ahead_.takeLast();
      for (const QByteArrayView body : objects_.Bodies(next.number)) {
        acts = ReadValue(body, next.mayBeDestination);
        if (acts != PdfActs::Nothing) break;
      }
    }
    return acts;
  }

 private:
  struct Reference {
    int number = 0;
    bool mayBeDestination = false;
  };

  PdfActs ReadValue(QByteArrayView text, bool mayBeDestination);
  void Note(const Reference& reference) {
    const std::pair<int, bool> key(reference.number, reference.mayBeDestination);
    if (!known_.contains(key)) ahead_.append(reference);
    known_.insert(key);
  }

  const PdfObjects& objects_;
  QList<Reference> ahead_;
  QSet<std::pair<int, bool>> known_;
  qsizetype read_ = 0;
};

PdfActs OwnActions::ReadValue(QByteArrayView text, bool mayBeDestination) {
  PdfTokens tokens(text);
  QList<Kind> open;
  QByteArray key;
  QList<int> numbers;  // right before
  for (bool isFirst = true;; isFirst = false) {
    const qsizetype begin = tokens.At();
    const PdfToken token = tokens.Next();
    read_ += tokens.At() - begin;
    if (token.kind == Kind::End || read_ > kMostRead) return PdfActs::Unreadable;
    if (isFirst && mayBeDestination && token.kind == Kind::OpenArray) return PdfActs::Nothing;
    if (token.kind == Kind::Name) {
      if (IsContact(token.text)) return PdfActs::Contact;
      if (!open.isEmpty() && open.last() == Kind::Open) key = token.text;
    } else if (token.kind == Kind::Open || token.kind == Kind::OpenArray) {
      open.append(token.kind);
    } else if (token.kind == Kind::Close || token.kind == Kind::CloseArray) {
      if (!open.isEmpty()) open.removeLast();
    } else if (token.kind == Kind::Number && (!open.isEmpty() || numbers.size() < 2)) {
      numbers.append(token.text.toInt());
      continue;
    } else if (token.text == "R" && numbers.size() >= 2 && !LeadsElsewhere(key)) {
      Note({numbers[numbers.size() - 2], mayBeDestination && open.isEmpty()});
    }
    numbers.clear();
    if (open.isEmpty()) return PdfActs::Nothing;
  }
}

// What a name in a file tells together with the value behind it. Bytes of pictures may look like
// the shortest names.
PdfActs ActsOf(const QByteArray& name, QByteArrayView rest, OwnActions& own) {
  if (name == "JavaScript" || name == "Launch") return PdfActs::Script;
  const bool isScript = name == "JS" || name == "XFA";
  const bool isOwn = name == "OpenAction" || name == "AA";
  if (!isScript && !isOwn) return PdfActs::Nothing;
  const QByteArrayView near = rest.first(std::min(rest.size(), kFarthestValue));
  const Kind next = PdfTokens(near).Next().kind;
  const bool isFar = next == Kind::End && near.size() < rest.size();
  if (isScript) {
    const bool isValue = next == Kind::String || next == Kind::Number || next == Kind::OpenArray;
    return isValue || isFar ? PdfActs::Script : PdfActs::Nothing;
  }
  if (isFar) return PdfActs::Unreadable;
  if (next != Kind::Open && next != Kind::Number) return PdfActs::Nothing;
  return own.Follow(rest, name == "OpenAction");
}

// Names may be written with escapes: no other way finds all of them.
bool MayTell(QByteArrayView from) {
  return from.size() > 1 && QByteArrayView("#JXLOA").contains(from[1]);
}

}  // namespace

PdfActs ActsOfPdf(const QByteArray& file) {
  const PdfObjects objects(file);
  const size_t streams = objects.Texts().size() - 1;
  size_t named = 0;
  OwnActions own(objects);
  for (const QByteArrayView text : objects.Texts()) {
    for (qsizetype at = text.indexOf('/'); at >= 0; at = text.indexOf('/', at + 1)) {
      const QByteArrayView from = text.sliced(at);
      const bool hasEscape = from.first(std::min<qsizetype>(from.size(), 40)).contains('#');
      if (!hasEscape && !MayTell(from)) continue;
      PdfTokens tokens(from);
      const QByteArray name = tokens.Next().text;
      named += name == "ObjStm" ? 1 : 0;
      const PdfActs acts = ActsOf(name, from.sliced(tokens.At()), own);
      if (acts != PdfActs::Nothing) return acts;
    }
  }
  return objects.HasUnreadable() || named > streams ? PdfActs::Unreadable : PdfActs::Nothing;
}

}  // namespace vorn
