// Time as a ratio to a bare loop over the same data, measured in the same run: that says the same
// on every machine.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

namespace bench {

// Nanoseconds that `work()` takes, from some calls in a row. Memory is hidden from the compiler
// before each, and the result is asked for, so that none can be left out or done once for all.
template <class Work>
double TimeOf(const Work& work, int calls) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  for (int i = 0; i < calls; ++i) {
    benchmark::ClobberMemory();
    benchmark::DoNotOptimize(work());
  }
  return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / calls;
}

// The time of `work` in times of `bare`. Both are measured in turns, and the best of each counts,
// so that what else the machine does hits both or neither.
template <class Work, class Bare>
double Ratio(const Work& work, const Bare& bare) {
  double best = 1e18;
  double bestBare = 1e18;
  for (int turn = 0; turn < 30; ++turn) {
    best = std::min(best, TimeOf(work, 20));
    bestBare = std::min(bestBare, TimeOf(bare, 200));
  }
  return best / bestBare;
}

// Measures `work`, with its ratio to `bare` beside it.
template <class Work, class Bare>
void Measure(benchmark::State& state, const Work& work, const Bare& bare) {
  for (auto _ : state) {
    benchmark::ClobberMemory();
    benchmark::DoNotOptimize(work());
  }
  state.counters["ratio"] = Ratio(work, bare);
}

}  // namespace bench
