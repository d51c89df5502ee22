#pragma once

#include "mail/open_message.h"

namespace vorn {

/// The pictures among a message's attachments that its HTML part does not show, as something to be
/// looked at. They are never decoded in this process: they become part of a page.
class AttachedPictures {
 public:
  /// Of no message.
  AttachedPictures() = default;
  explicit AttachedPictures(const OpenedMessage& opened);

  bool IsEmpty() const { return pictures_.empty(); }
  /// The pictures as data in HTML, each under its name, below `html`, which may be empty. One that
  /// would make the page too large is named alone.
  QString Below(const QString& html) const;

 private:
  std::vector<ModelAttachment> pictures_;
  QByteArray source_;
};

/// The attachments of a message that is read without its HTML part, which stands in a view of its
/// own.
std::vector<ModelAttachment> WithoutHtmlPart(const OpenedMessage& opened);

}  // namespace vorn
