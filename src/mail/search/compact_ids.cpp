#include "mail/search/compact_ids.h"

#include <algorithm>

namespace vorn {

CompactIds::CompactIds(const SerialIds& ids) {
  ends_.reserve(static_cast<size_t>(ids.size()));
  for (const SerialId& id : ids) {
    texts_ += id.Text().toUtf8();
    ends_.push_back(texts_.size());
  }
  texts_.squeeze();
}

SerialIds CompactIds::Mid(qsizetype first, qsizetype limit) const {
  const qsizetype last = limit > 0 ? std::min(Size(), first + limit) : Size();
  SerialIds ids;
  for (qsizetype at = first; at < last; ++at) {
    const qsizetype start = at == 0 ? 0 : ends_[static_cast<size_t>(at) - 1];
    const qsizetype length = ends_[static_cast<size_t>(at)] - start;
    ids.append(SerialId(QString::fromUtf8(texts_.constData() + start, length)));
  }
  return ids;
}

}  // namespace vorn
