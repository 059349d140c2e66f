#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

/// The median time of the rounds, in milliseconds. The work is told the round, from 0 on.
inline double medianOf(int rounds, const std::function<void(int)>& work) {
  std::vector<double> times;
  for (int round = 0; round < rounds; ++round) {
    const auto before = std::chrono::steady_clock::now();
    work(round);
    times.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - before).count());
  }
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}
