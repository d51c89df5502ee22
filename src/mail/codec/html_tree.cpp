#include "mail/codec/html_tree.h"

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
constexpr int kMaxDepth = 2000;

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

// About how deep the elements nest at most, without reading the document as a tree. An end tag
// counts only where its element is open: of others the parser takes no notice.
int DepthOf(const QByteArray& html) {
  std::array<int, GUMBO_TAG_LAST + 1> open{};
  int depth = 0;
  int deepest = 0;
  for (qsizetype at = html.indexOf('<'); at >= 0; at = html.indexOf('<', at + 1)) {
    const bool ends = at + 1 < html.size() && html[at + 1] == '/';
    qsizetype end = at + (ends ? 2 : 1);
    const qsizetype start = end;
    while (end < html.size() && std::isalnum(static_cast<unsigned char>(html[end])) != 0) ++end;
    const auto length = static_cast<unsigned>(end - start);
    const GumboTag tag = gumbo_tagn_enum(html.constData() + start, length);
    if (length == 0 || IsFlat(tag)) continue;
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
  if (DepthOf(html) > kMaxDepth) return nullptr;
  std::unique_ptr<HtmlTree> tree(new HtmlTree);
  GumboOptions options = kGumboDefaultOptions;
  options.allocator = [](void* memory, size_t bytes) {
    return static_cast<Arena*>(memory)->Take(bytes);
  };
  options.deallocator = [](void*, void*) {};
  options.userdata = tree->arena_.get();
  const GumboOutput* parsed =
      gumbo_parse_with_options(&options, html.constData(), static_cast<size_t>(html.size()));
  tree->root_ = &parsed->root->v.element;
  return tree;
}

}  // namespace vorn
