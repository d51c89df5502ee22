#pragma once

#include <gumbo.h>

#include <QByteArray>
#include <memory>

namespace vorn {

/// An HTML document as a tree, parsed as browsers do (HTML 5).
class HtmlTree {
 public:
  /// Null for a document that nests so deep that parsing would take minutes. `html` is UTF-8, and
  /// the tree points into it.
  static std::unique_ptr<HtmlTree> Parse(const QByteArray& html);
  ~HtmlTree();
  HtmlTree(const HtmlTree&) = delete;
  HtmlTree& operator=(const HtmlTree&) = delete;

  const GumboElement& Root() const { return *root_; }

 private:
  class Arena;
  HtmlTree();
  std::unique_ptr<Arena> arena_;
  const GumboElement* root_ = nullptr;
};

/// The nodes in an element, in their order.
class ChildNodes {
 public:
  explicit ChildNodes(const GumboElement& element) : nodes_(element.children) {}

  struct Iterator {
    void* const* at;
    const GumboNode& operator*() const { return *static_cast<const GumboNode*>(*at); }
    Iterator& operator++() {
      ++at;
      return *this;
    }
    bool operator==(const Iterator&) const = default;
  };
  Iterator begin() const { return {nodes_.data}; }
  Iterator end() const { return {nodes_.data + nodes_.length}; }

 private:
  const GumboVector& nodes_;
};

}  // namespace vorn
