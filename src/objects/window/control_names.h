#pragma once

#include <QLatin1String>

// What the names of controls begin with; the key of what they edit follows.
namespace vorn::control {

inline constexpr QLatin1String kText("tx");
inline constexpr QLatin1String kCheck("ck");
inline constexpr QLatin1String kChoice("cb");
inline constexpr QLatin1String kNumber("sl");  // sliders and their kin
inline constexpr QLatin1String kList("lv");
inline constexpr QLatin1String kTree("tv");

}  // namespace vorn::control
