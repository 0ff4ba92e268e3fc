// 10 million world points of a 3000 x 1500 sheet view taken to device
// coordinates through C_Transformacion::CoordLogADev, against a plain inline
// loop doing the same affine map, clamp and truncation over the same points
// in the same run. Prints the ratio of the two; the target is 1.2 at most.
// Both write their results to memory, and the results are checked to be
// the same before anything is measured.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <random>
#include <vector>

#include "korvalen/korvalen.h"
#include "ratio_reporter.h"

namespace {

constexpr int kPoints = 10000000;

struct WorldPoint {
  double X;
  double Y;
};

struct DevicePoint {
  int x;
  int y;
};

// A view as a drawing program has it: the sheet fitted into a 1920 x 1080
// window, in the default orientation.
C_Transformacion View() {
  C_Transformacion view;
  view.Inicializar(0.0, 0.0, 3000.0, 1500.0, 3, 0, 0);
  view.PonerVentanaVal(1920, 1080);
  return view;
}

// Points over the sheet and around it, one in a thousand far outside.
const std::vector<WorldPoint>& Points() {
  static const std::vector<WorldPoint> points = [] {
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> x(-300.0, 3300.0), y(-150.0, 1650.0);
    std::vector<WorldPoint> p(kPoints);
    for (int i = 0; i < kPoints; ++i) {
      p[i] = i % 1000 == 0 ? WorldPoint{x(random) * 1e4, -y(random) * 1e4}
                           : WorldPoint{x(random), y(random)};
    }
    return p;
  }();
  return points;
}

// The converting routine takes its own copy of the view, a value (as the
// plain loop below reads the view's numbers once): the compiler then knows
// that storing the device points leaves the view as it was, works out what
// depends on the view alone once, and vectorises the loop.
[[gnu::noinline]] void Library(const C_Transformacion& shared, std::vector<DevicePoint>& out) {
  const C_Transformacion view = shared;
  const std::vector<WorldPoint>& points = Points();
  for (int i = 0; i < kPoints; ++i) view.CoordLogADev(points[i].X, points[i].Y, out[i].x, out[i].y);
}

// The same calls on the caller's view through a reference: every int stored
// might be one of the view's, so the compiler reads and works out the view
// again for every point.
[[gnu::noinline]] void LibraryOnSharedView(const C_Transformacion& view,
                                           std::vector<DevicePoint>& out) {
  const std::vector<WorldPoint>& points = Points();
  for (int i = 0; i < kPoints; ++i) view.CoordLogADev(points[i].X, points[i].Y, out[i].x, out[i].y);
}

// The same map written out inline for this view's orientation: its numbers
// read once, then x = (X - ox) * s, y = H - (Y - oy) * s, each clamped to
// the device range and cut toward zero.
void Plain(const C_Transformacion& view, std::vector<DevicePoint>& out) {
  double ox = 0, oy = 0, ex = 0, ey = 0;
  view.DameDatosMundo(ox, oy, ex, ey);
  int width = 0, height = 0;
  view.DameExtZnGraf(width, height);
  const double s = width / ex;
  const double h = height;
  const std::vector<WorldPoint>& points = Points();
  for (int i = 0; i < kPoints; ++i) {
    const double x = (points[i].X - ox) * s;
    const double y = h - (points[i].Y - oy) * s;
    out[i].x = static_cast<int>(std::clamp(x, -32767.0, 32767.0));
    out[i].y = static_cast<int>(std::clamp(y, -32767.0, 32767.0));
  }
}

template <void (*Convert)(const C_Transformacion&, std::vector<DevicePoint>&)>
void Run(benchmark::State& state) {
  const C_Transformacion view = View();
  std::vector<DevicePoint> out(kPoints);
  for (auto _ : state) {
    Convert(view, out);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

void CoordLogADev(benchmark::State& state) { Run<Library>(state); }
void CoordLogADevOnSharedView(benchmark::State& state) { Run<LibraryOnSharedView>(state); }
void PlainAffineLoop(benchmark::State& state) { Run<Plain>(state); }

BENCHMARK(CoordLogADev)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(CoordLogADevOnSharedView)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);
BENCHMARK(PlainAffineLoop)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", korvalen::bench::Fastest);

// Whether both ways give the same device points.
bool SameResults() {
  const C_Transformacion view = View();
  std::vector<DevicePoint> library(kPoints), plain(kPoints);
  Library(view, library);
  Plain(view, plain);
  for (int i = 0; i < kPoints; ++i) {
    if (library[i].x != plain[i].x || library[i].y != plain[i].y) {
      std::cerr << "the two loops differ at point " << i << "\n";
      return false;
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (!SameResults()) return 1;
  korvalen::bench::RatioReporter reporter(
      {{"CoordLogADev", "PlainAffineLoop", " (target <= 1.2)"},
       {"CoordLogADevOnSharedView", "PlainAffineLoop", " (the view worked out for every point)"}});
  return korvalen::bench::RunInterleaved(argc, argv, reporter, 30);
}
