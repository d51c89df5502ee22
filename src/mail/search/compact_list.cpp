#include "mail/search/compact_list.h"

#include <algorithm>

namespace vorn {

CompactList::CompactList(const QStringList& texts) {
  ends_.reserve(static_cast<size_t>(texts.size()));
  for (const QString& text : texts) {
    texts_ += text.toUtf8();
    ends_.push_back(texts_.size());
  }
  texts_.squeeze();
}

QStringList CompactList::Mid(qsizetype first, qsizetype limit) const {
  const qsizetype last = limit > 0 ? std::min(Size(), first + limit) : Size();
  QStringList texts;
  for (qsizetype at = first; at < last; ++at) {
    const qsizetype start = at == 0 ? 0 : ends_[static_cast<size_t>(at) - 1];
    const qsizetype length = ends_[static_cast<size_t>(at)] - start;
    texts.append(QString::fromUtf8(texts_.constData() + start, length));
  }
  return texts;
}

}  // namespace vorn
