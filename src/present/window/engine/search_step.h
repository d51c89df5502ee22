#pragma once

#include <QString>

namespace vorn::search_step {

/// Steps that a page of a search without a hit offers, as `first_step` those of the first page.
inline const QString kEverywhere = QStringLiteral("searchEverywhere");
inline const QString kTexts = QStringLiteral("searchTexts");
inline const QString kGiveUp = QStringLiteral("searchGiveUp");
inline bool Is(const QString& step) {
  return step == kEverywhere || step == kTexts || step == kGiveUp;
}

}  // namespace vorn::search_step
