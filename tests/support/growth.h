// How the time of a piece of work grows with its input. A limit in milliseconds fails on a slow
// machine and lets a quick one pass; the shape of the growth is the same on both.
#pragma once

#include <time.h>

#include <algorithm>
#include <concepts>
#include <limits>

namespace vorn::test {

// What work that grows with its input takes at most for an input eight times as long: with the
// square of the length it would be 64.
inline constexpr double kLinear = 24;

// How many times longer work(8 * size) takes than work(size): processor time of this thread, so
// that other programs do not count, and the best of three each.
template <std::invocable<int> Work>
double GrowthOverEight(int size, Work work) {
  const auto seconds = [&work](int length) {
    const auto now = [] {
      timespec time{};
      clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
      return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < 3; ++i) {
      const double begin = now();
      work(length);
      best = std::min(best, now() - begin);
    }
    return best;
  };
  return seconds(8 * size) / seconds(size);
}

}  // namespace vorn::test
