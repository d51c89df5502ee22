#pragma once

#include <QString>
#include <optional>
#include <utility>

#include "storage/base/serial_id.h"

namespace vorn {

/// What a folder is searched for: a text in subjects and addresses, of the folder or of all
/// messages outside the dust bin.
struct FolderSearch {
  FolderSearch(QString words = {}, bool everywhere = false)
      : text(std::move(words)), isEverywhere(everywhere) {}

  QString text;  ///< empty where all of the folder is shown
  bool isEverywhere = false;
  /// Where texts have been searched, too: the identifiers of the messages that have it.
  std::optional<SerialIds> hits = std::nullopt;
  /// The texts were not searched to the end. What subjects and addresses have is found all the
  /// same.
  bool hasMore = false;

  bool isEmpty() const { return text.isEmpty(); }
  bool operator==(const FolderSearch&) const = default;
};

}  // namespace vorn
