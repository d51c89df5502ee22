#pragma once

#include <QByteArrayView>
#include <QSet>
#include <memory>

#include "mail/inspection/look_bound.h"
#include "mail/inspection/office_parts.h"

namespace vorn {

/// A part of an office document, in XML, that is looked into while it is unpacked. Which element
/// means what is told by its name alone: a document has no use for another meaning.
class OfficePart {
 public:
  /// What takes longer than `bound`, which must outlive it, is not readable.
  explicit OfficePart(const LookBound& bound);
  ~OfficePart();

  void Add(QByteArrayView bytes);
  /// At its end.
  OfficeHolds Holds();
  /// The identifiers of relationships that elements name which do not wait for a click.
  const QSet<QByteArray>& Loads() const;
  /// The identifiers of relationships that call themselves hyperlinks and lead to another computer.
  const QSet<QByteArray>& Links() const;

 private:
  class Look;

  std::unique_ptr<Look> look_;
};

}  // namespace vorn
