#pragma once

#include <QString>

/// Keys of a browser window's bag.
namespace vorn::browser_key {

inline const QString kBefore = QStringLiteral("before");
inline const QString kNext = QStringLiteral("next");
inline const QString kUrl = QStringLiteral("url");
inline const QString kPage = QStringLiteral("Page");
// In place of a page's number: the one that a folder opens at, when it is known how many there are.
inline constexpr int kFirstShown = 0;
inline const QString kSearch = QStringLiteral("search");
inline const QString kOnLoad = QStringLiteral("onLoad");

}  // namespace vorn::browser_key
