#include "mail/codec/text/rtf_text.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <vector>

#include "mail/codec/charset/charset.h"

namespace vorn {
namespace {

// Groups that hold no text of the document; so do all that begin with "\*".
constexpr QByteArrayView kNoText[] = {
    "colortbl",  "stylesheet", "info",    "pict",      "object",   "header",     "headerl",
    "headerr",   "headerf",    "footer",  "footerl",   "footerr",  "footerf",    "filetbl",
    "listtable", "revtbl",     "fldinst", "themedata", "xmlnstbl", "nonshppict", "latentstyles"};

struct Sign {
  QByteArrayView word;
  char16_t character;
};
constexpr Sign kSigns[] = {
    {"par", u'\n'},   {"line", u'\n'},     {"row", u'\n'},      {"sect", u'\n'},  {"page", u'\n'},
    {"tab", u'\t'},   {"cell", u'\t'},     {"emdash", u'—'},    {"endash", u'–'}, {"lquote", u'‘'},
    {"rquote", u'’'}, {"ldblquote", u'“'}, {"rdblquote", u'”'}, {"bullet", u'•'}};

// The code page of a font's character set.
unsigned CodePageOfFont(int charset) {
  static const std::map<int, unsigned> pages = {{128, 932},  {129, 949},  {134, 936},  {136, 950},
                                                {161, 1253}, {162, 1254}, {177, 1255}, {178, 1256},
                                                {186, 1257}, {204, 1251}, {222, 874},  {238, 1250}};
  const auto found = pages.find(charset);
  return found == pages.end() ? 0 : found->second;
}

class RtfReader {
 public:
  RtfReader(QByteArrayView rtf, unsigned codePage) : rtf_(rtf), documentPage_(codePage) {}

  QString Read() {
    while (at_ < rtf_.size()) {
      const char c = rtf_[at_++];
      if (c == '{') {
        if (groups_.size() < kDeepest) groups_.push_back(group_);
      } else if (c == '}') {
        EndGroup();
      } else if (c == '\\') {
        TakeControl();
      } else if (c != '\r' && c != '\n') {
        PutByte(c);
      }
    }
    Flush();
    return text_;
  }

 private:
  static constexpr size_t kDeepest = 1000;

  struct Group {
    bool isSkipped = false;
    bool isFontTable = false;
    unsigned page = 0;     // of the font; 0 is the document's
    int replacements = 1;  // characters that stand for one in Unicode
  };

  void EndGroup() {
    SetPage(groups_.empty() ? 0 : groups_.back().page);
    if (groups_.empty()) return;
    group_ = groups_.back();
    groups_.pop_back();
  }

  void TakeControl() {
    if (at_ >= rtf_.size()) return;
    const char c = rtf_[at_];
    if (std::isalpha(static_cast<unsigned char>(c)) != 0) return TakeWord();
    ++at_;
    if (c == '\'') {
      const QByteArray digits =
          rtf_.sliced(at_, qMin<qsizetype>(2, rtf_.size() - at_)).toByteArray();
      at_ += digits.size();
      PutByte(static_cast<char>(digits.toInt(nullptr, 16)));
    } else if (c == '*') {
      group_.isSkipped = true;
    } else if (c == '~') {
      PutCharacter(u'\u00A0');
    } else if (c == '\r' || c == '\n') {
      PutCharacter(u'\n');
    } else if (c == '{' || c == '}' || c == '\\') {
      PutByte(c);
    } else if (c == '_') {
      PutByte('-');
    }
  }

  void TakeWord() {
    const qsizetype begin = at_;
    const auto isAt = [this](int (*kind)(int)) {
      return at_ < rtf_.size() && kind(static_cast<unsigned char>(rtf_[at_])) != 0;
    };
    while (isAt(std::isalpha)) ++at_;
    const QByteArrayView word = rtf_.sliced(begin, at_ - begin);
    const qsizetype number = at_;
    if (at_ < rtf_.size() && rtf_[at_] == '-') ++at_;
    while (isAt(std::isdigit)) ++at_;
    const bool hasNumber = at_ > number;
    const int value = rtf_.sliced(number, at_ - number).toByteArray().toInt();
    if (at_ < rtf_.size() && rtf_[at_] == ' ') ++at_;
    Obey(word, hasNumber, value);
  }

  void Obey(QByteArrayView word, bool hasNumber, int value) {
    if (word == "u" && hasNumber) {
      PutCharacter(static_cast<char16_t>(value));
      pending_ = group_.replacements;
    } else if (word == "uc") {
      group_.replacements = qBound(0, value, 16);
    } else if (word == "bin") {
      at_ += qBound(qsizetype{0}, qsizetype{value}, rtf_.size() - at_);
    } else if (word == "ansicpg" && value > 0) {
      documentPage_ = static_cast<unsigned>(value);
    } else if (word == "fonttbl") {
      group_.isFontTable = true;
    } else if (word == "f") {
      if (group_.isFontTable) font_ = value;
      SetPage(PageOf(value));
    } else if (word == "fcharset" && group_.isFontTable) {
      if (fonts_.size() < kDeepest) fonts_[font_] = CodePageOfFont(value);
    } else if (word == "plain") {
      SetPage(0);
    } else if (std::find(std::begin(kNoText), std::end(kNoText), word) != std::end(kNoText)) {
      group_.isSkipped = true;
    }
    for (const Sign& sign : kSigns) {
      if (sign.word == word) PutCharacter(sign.character);
    }
  }

  unsigned PageOf(int font) const {
    const auto found = fonts_.find(font);
    return found == fonts_.end() ? 0 : found->second;
  }

  void SetPage(unsigned page) {
    if (page == group_.page) return;
    Flush();
    group_.page = page;
  }

  bool IsShown() const { return !group_.isSkipped && !group_.isFontTable; }

  void PutByte(char c) {
    if (pending_ > 0) {
      --pending_;
    } else if (IsShown()) {
      bytes_ += c;
    }
  }

  void PutCharacter(char16_t character) {
    pending_ = 0;
    if (!IsShown()) return;
    Flush();
    if (character == u'\n') text_ += u'\r';
    text_ += QChar(character);
  }

  // Characters of two bytes come as two codes, so that bytes are read when all are there.
  void Flush() {
    if (bytes_.isEmpty()) return;
    const unsigned page = group_.page != 0 ? group_.page : documentPage_;
    text_ += DecodeAutomatically(bytes_, Charset::FromLabel(CodePageLabel(page)));
    bytes_.clear();
  }

  QByteArrayView rtf_;
  unsigned documentPage_;
  qsizetype at_ = 0;
  Group group_;
  std::vector<Group> groups_;
  std::map<int, unsigned> fonts_;
  int font_ = 0;
  int pending_ = 0;  // replacements that are still to come
  QByteArray bytes_;
  QString text_;
};

}  // namespace

QByteArray CodePageLabel(unsigned number) {
  if (number == 65001) return "utf-8";
  if (number >= 50220 && number <= 50222) return "iso-2022-jp";
  if (number == 51932) return "euc-jp";
  if (number == 20127) return "us-ascii";
  return "cp" + QByteArray::number(number);
}

QString RtfToText(QByteArrayView rtf, unsigned codePage) {
  return rtf.startsWith("{\\rtf") ? RtfReader(rtf, codePage).Read() : QString();
}

}  // namespace vorn
