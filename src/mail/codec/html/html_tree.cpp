#include "mail/codec/html/html_tree.h"

#include <QByteArrayList>
#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <set>
#include <utility>
#include <vector>

namespace vorn {
namespace {

// The parser's time grows with the square of the depth.
constexpr int kMaxTreeDepth = 2000;
constexpr int kOwnLevels = 10;  // that the parser adds: html, body, tbody ...

// An end tag is not needed for these, so that they do not nest.
bool IsFlat(GumboTag tag) {
  static const std::set<GumboTag> tags = [] {
    std::set<GumboTag> flat;
    for (const QByteArray& name :
         QByteArray(
             "area base br col embed hr img input link meta param source track wbr p li dt dd "
             "tr td th tbody thead tfoot option")
             .split(' ')) {
      flat.insert(gumbo_tag_enum(name.constData()));
    }
    return flat;
  }();
  return tags.contains(tag);
}

// Where the tag ends that begins before `at`: its values may hold anything.
qsizetype EndOfTag(const QByteArray& html, qsizetype at) {
  char quote = 0;
  for (; at < html.size(); ++at) {
    const char c = html[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '>') {
      return at;
    } else if (c == '"' || c == '\'') {
      quote = c;
    }
  }
  return html.size();
}

// Where the comment ends that begins at `at`, or -1 where it takes up the rest.
qsizetype EndOfComment(const QByteArray& html, qsizetype at) {
  constexpr qsizetype kOpening = 4;
  for (qsizetype end = html.indexOf("--", at + 2); end >= 0; end = html.indexOf("--", end + 1)) {
    const QByteArrayView rest = QByteArrayView(html).sliced(end);
    if (rest.startsWith("-->") || (end >= at + kOpening && rest.startsWith("--!>"))) return end;
  }
  return -1;
}

bool EndsName(char c) {
  return c == '>' || c == '/' || std::isspace(static_cast<unsigned char>(c)) != 0;
}

// About how deep the elements nest at most, without reading the document as a tree. An end tag
// counts only where its element is open and outside of comments and values: of others the parser
// takes no notice. In drawings nothing is flat.
int DepthOf(const QByteArray& html) {
  const QByteArray small = html.toLower();
  const bool hasDrawings = small.contains("<svg") || small.contains("<math");
  std::array<int, GUMBO_TAG_LAST + 1> open{};
  int depth = 0;
  int deepest = 0;
  for (qsizetype at = html.indexOf('<'); at >= 0; at = html.indexOf('<', at + 1)) {
    if (QByteArrayView(html).sliced(at).startsWith("<!--")) {
      const qsizetype close = EndOfComment(html, at);
      if (close < 0) break;  // all that follows is in it
      at = close;
      continue;
    }
    const bool ends = at + 1 < html.size() && html[at + 1] == '/';
    qsizetype end = at + (ends ? 2 : 1);
    const qsizetype start = end;
    while (end < html.size() && !EndsName(html[end])) ++end;
    const auto length = static_cast<unsigned>(end - start);
    if (length == 0 || std::isalpha(static_cast<unsigned char>(html[start])) == 0) continue;
    const GumboTag tag = gumbo_tagn_enum(html.constData() + start, length);
    if (!ends) at = EndOfTag(html, end) - 1;
    if (!hasDrawings && IsFlat(tag)) continue;
    if (!ends) {
      ++open[tag];
      deepest = std::max(deepest, ++depth);
    } else if (tag != GUMBO_TAG_UNKNOWN && open[tag] > 0) {
      --open[tag];
      --depth;
    }
  }
  return deepest;
}

// Whether the tree as it was read is deeper: whoever walks it goes down by one call a level.
bool IsDeeper(const GumboNode* root, int most) {
  std::vector<std::pair<const GumboNode*, int>> waiting{{root, 1}};
  while (!waiting.empty()) {
    const auto [node, depth] = waiting.back();
    waiting.pop_back();
    if (node->type != GUMBO_NODE_ELEMENT && node->type != GUMBO_NODE_TEMPLATE) continue;
    if (depth > most) return true;
    for (const GumboNode& child : ChildNodes(node->v.element)) {
      waiting.emplace_back(&child, depth + 1);
    }
  }
  return false;
}

}  // namespace

// The parser asks for very many small pieces, and all of them go at once.
class HtmlTree::Arena {
 public:
  void* Take(size_t bytes) {
    bytes = (bytes + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) *
            alignof(std::max_align_t);
    if (bytes > left_) {
      left_ = std::max(bytes, kBlockBytes);
      blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
      next_ = blocks_.back().get();
    }
    left_ -= bytes;
    return std::exchange(next_, next_ + bytes);
  }

 private:
  static constexpr size_t kBlockBytes = 256 * 1024;
  std::vector<std::unique_ptr<char[]>> blocks_;
  char* next_ = nullptr;
  size_t left_ = 0;
};

HtmlTree::HtmlTree() : arena_(std::make_unique<Arena>()) {}

HtmlTree::~HtmlTree() = default;

std::unique_ptr<HtmlTree> HtmlTree::Parse(const QByteArray& html) {
  if (DepthOf(html) > kMaxTreeDepth) return nullptr;
  std::unique_ptr<HtmlTree> tree(new HtmlTree);
  GumboOptions options = kGumboDefaultOptions;
  options.allocator = [](void* memory, size_t bytes) {
    return static_cast<Arena*>(memory)->Take(bytes);
  };
  options.deallocator = [](void*, void*) {};
  options.max_errors = 0;  // each would bring a copy of all that is open
  options.userdata = tree->arena_.get();
  const GumboOutput* parsed =
      gumbo_parse_with_options(&options, html.constData(), static_cast<size_t>(html.size()));
  if (IsDeeper(parsed->root, kMaxTreeDepth + kOwnLevels)) return nullptr;
  tree->root_ = &parsed->root->v.element;
  return tree;
}

}  // namespace vorn
