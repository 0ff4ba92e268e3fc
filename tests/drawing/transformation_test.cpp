// World and device coordinates: the axes code, the fit of the requested
// window (growth about the centre, the extent limits, no adding up), every
// orientation and mirror against points worked out by hand, the device
// limits and truncation, map modes 2 and 3, the inverse and its sign of the
// zone origin, and the client area of a window.
#include "korvalen/drawing/transformation.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <tuple>

#include "temp_dir_test.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

class TransformationTest : public korvalen::testing::TempDirTest {};

struct Point {
  int x;
  int y;
  friend bool operator==(const Point&, const Point&) = default;
};

Point ToDevice(const C_Transformacion& t, double X, double Y) {
  Point p{0, 0};
  t.CoordLogADev(X, Y, p.x, p.y);
  return p;
}

struct World {
  double ox, oy, ex, ey;
};

World Fitted(const C_Transformacion& t) {
  World w{};
  t.DameDatosMundo(w.ox, w.oy, w.ex, w.ey);
  return w;
}

C_Transformacion Made(double x, double y, double width, double height, int code) {
  C_Transformacion t;
  t.Inicializar(x, y, width, height, 3, 0, code);
  return t;
}

TEST_F(TransformationTest, AxesCodesDecode) {
  const struct {
    int code, base, mirror_h, mirror_v;
  } cases[] = {{0, 0, 0, 0},  {3, 3, 0, 0},   {110, 0, 1, 1}, {113, 3, 1, 1},
               {4, 0, 0, 0},  {5, 0, 0, 0},   {7, 0, 0, 0},   {14, 0, 1, 0},
               {17, 0, 1, 0}, {104, 0, 0, 1}, {250, 0, 1, 1}, {-1, -1, 0, 0}};
  for (const auto& c : cases) {
    C_Transformacion t = Made(0, 0, 1, 1, c.code);
    int base = 9, h = 9, v = 9;
    t.DameTransfEjes(base, h, v);
    EXPECT_EQ(base, c.base) << c.code;
    EXPECT_EQ(h, c.mirror_h) << c.code;
    EXPECT_EQ(v, c.mirror_v) << c.code;
  }
  C_Transformacion t;
  t.ModifTransfEjes(2, 5, -3);
  int base = 0, h = 0, v = 0;
  t.DameTransfEjes(base, h, v);
  EXPECT_EQ(base * 1000 + h * 10 + v, 2011);
}

TEST_F(TransformationTest, FitGrowsOneAxisAboutTheCentreWithoutAddingUp) {
  const struct {
    int code;
    World fitted;
  } cases[] = {
      // H/ey = 2 < W/ex = 4: X grows to 200, the origin 50 to the left.
      {0, {-50, 0, 200, 100}},
      // Y horizontal: H/ex = 2 < W/ey = 4: Y grows instead.
      {1, {0, -50, 100, 200}},
  };
  for (const auto& c : cases) {
    C_Transformacion t = Made(0, 0, 100, 100, c.code);
    for (int round = 0; round < 2; ++round) {
      t.PonerVentanaVal(400, 200);
      const World w = Fitted(t);
      EXPECT_EQ(w.ox, c.fitted.ox) << c.code;
      EXPECT_EQ(w.oy, c.fitted.oy) << c.code;
      EXPECT_EQ(w.ex, c.fitted.ex) << c.code;
      EXPECT_EQ(w.ey, c.fitted.ey) << c.code;
    }
  }
  // Equal ratios take the branch that leaves both extents as they are.
  C_Transformacion t = Made(5, 5, 100, 50, 0);
  t.PonerVentanaVal(200, 100);
  const World w = Fitted(t);
  EXPECT_EQ(w.ex, 100);
  EXPECT_EQ(w.ey, 50);
  EXPECT_EQ(w.oy, 5);
  EXPECT_EQ(ToDevice(t, 55, 30), (Point{100, 50}));
  // A new request zeroes the zone and is not fitted until asked.
  t.CambiarVentana(0, 0, 10, 10);
  EXPECT_EQ(t.GetClientRect(), CRect(0, 0, 0, 0));
  EXPECT_EQ(Fitted(t).ex, 10);
}

TEST_F(TransformationTest, ExtentLimitsOnlyWithAjustarTransf) {
  const struct {
    double requested, limited;
  } cases[] = {{0.5, 1.0}, {100000.0, 99999.0}, {99999.999, 99999.999}};
  for (const auto& c : cases) {
    // A 1 x 1 zone fits a square window exactly as it is.
    C_Transformacion t = Made(0, 0, c.requested, c.requested, 0);
    t.PonerVentanaVal(1, 1);
    double ex = 0, ey = 0;
    t.DameExtMundo(ex, ey);
    EXPECT_EQ(ex, c.limited) << c.requested;
    EXPECT_EQ(ey, c.limited) << c.requested;
    CWnd window;
    window.SetClientSize(2, 2);
    t.PonerVentanaSinLimites(&window);
    t.DameExtMundo(ex, ey);
    EXPECT_EQ(ex, c.requested);
    EXPECT_EQ(ey, c.requested);
  }
  // s = 1 with the limit, 2 without it.
  C_Transformacion t = Made(0, 0, 0.5, 0.5, 0);
  t.PonerVentanaVal(1, 1);
  EXPECT_EQ(ToDevice(t, 0.5, 0), (Point{0, 1}));
  CWnd window;
  window.SetClientSize(2, 2);
  t.PonerVentanaSinLimites(&window);
  EXPECT_EQ(ToDevice(t, 0.5, 0), (Point{1, 1}));
}

TEST_F(TransformationTest, EveryOrientationAndMirror) {
  // Zone (10, 20) 200 x 100, world (0, 0) 100 x 50. Bases 0 and 2: equal
  // ratios, s = 2. Bases 1 and 3: Y grows to 200 about its centre (origin
  // -75), s = 1. The point (30, 10): dX, dY = 60, 20 or 30, 85.
  const struct {
    int code;
    Point device;
  } cases[] = {
      {0, {70, 100}},
      {10, {150, 100}},
      {100, {70, 40}},
      {110, {150, 40}},
      {1, {125, 90}},
      {11, {95, 90}},
      {101, {125, 50}},
      {111, {95, 50}},
      {2, {150, 40}},
      {12, {70, 40}},
      {102, {150, 100}},
      {112, {70, 100}},
      {3, {95, 50}},
      {13, {125, 50}},
      {103, {95, 90}},
      {113, {125, 90}},
      // Bases above 3, and negative codes, turn nothing.
      {7, {70, 100}},
      {17, {150, 100}},
      {-1, {70, 100}},
      {1234, {150, 40}},
  };
  for (const auto& c : cases) {
    C_Transformacion t = Made(0, 0, 100, 50, c.code);
    CRect zone(10, 20, 210, 120);
    t.PonerVentanaAux(zone);
    EXPECT_EQ(ToDevice(t, 30, 10), c.device) << c.code;
    // Map mode 3 converts as the general case does.
    t.ModifMapMode(3);
    EXPECT_EQ(ToDevice(t, 30, 10), c.device) << c.code;
  }
}

TEST_F(TransformationTest, DeviceToWorldInvertsOnlyForAZoneAtTheOrigin) {
  for (const int code : {0, 10, 100, 110, 1, 11, 101, 111, 2, 12, 102, 112, 3, 13, 103, 113}) {
    C_Transformacion t = Made(0, 0, 100, 50, code);
    t.PonerVentanaVal(200, 100);
    for (const Point p : {Point{0, 0}, Point{17, 99}, Point{200, 3}, Point{-40, 250}}) {
      double X = 0, Y = 0;
      t.CoordDevALog(p.x, p.y, X, Y);
      EXPECT_EQ(ToDevice(t, X, Y), p) << code << " " << p.x << "," << p.y;
    }
  }
  // Zone at (10, 20): the inverse subtracts the origin where the forward
  // conversion adds it. (30, 10) went to (70, 100) and, mirrored, (150, 40).
  C_Transformacion t = Made(0, 0, 100, 50, 0);
  CRect zone(10, 20, 210, 120);
  t.PonerVentanaAux(zone);
  double X = 0, Y = 0;
  t.CoordDevALog(70, 100, X, Y);
  EXPECT_EQ(X, 30);
  EXPECT_EQ(Y, -10);  // (100 - 20 - 100) / 2
  t.ModifTransfEjes(0, 1, 1);
  t.CoordDevALog(150, 40, X, Y);
  EXPECT_EQ(X, 20);  // (200 - 10 - 150) / 2
  EXPECT_EQ(Y, 10);  // (40 - 20) / 2
}

TEST_F(TransformationTest, DeviceLimitsTruncationAndMapMode2) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInf = std::numeric_limits<double>::infinity();
  C_Transformacion t = Made(0, 0, 100, 50, 0);
  t.PonerVentanaVal(200, 100);  // s = 2, y = 100 - 2Y
  const struct {
    double X, Y;
    Point general, tenths;
  } cases[] = {
      {5.375, 44.875, {10, 10}, {53, 448}},  // 10.75 and 10.25, cut toward zero
      {-5.375, 55.125, {-10, -10}, {-53, 551}},
      {1e6, -1e6, {32767, 32767}, {10000000, -10000000}},
      {-1e300, 1e300, {-32767, -32767}, {INT_MIN, INT_MAX}},
      {kInf, -kInf, {32767, 32767}, {INT_MAX, INT_MIN}},
      {kNaN, kNaN, {-32767, -32767}, {INT_MIN, INT_MIN}},
      {12.34, -5.67, {24, 111}, {123, -56}},
  };
  for (const auto& c : cases) {
    t.ModifMapMode(1);
    EXPECT_EQ(ToDevice(t, c.X, c.Y), c.general) << c.X << "," << c.Y;
    t.ModifMapMode(2);
    EXPECT_EQ(ToDevice(t, c.X, c.Y), c.tenths) << c.X << "," << c.Y;
  }
  double X = 0, Y = 0;
  t.CoordDevALog(123, -56, X, Y);
  EXPECT_EQ(X, 12.3);
  EXPECT_EQ(Y, -5.6);
}

TEST_F(TransformationTest, DegenerateZonesAndWindowsStayDefined) {
  // Zero and negative zones and a zero window give infinities and NaNs, which
  // the conversions hold to the device range.
  for (const auto& [w, h, extent] : {std::tuple{0, 0, 100.0}, std::tuple{-5, 0, 100.0},
                                     std::tuple{200, 100, 0.0}, std::tuple{0, 100, 0.0}}) {
    C_Transformacion t = Made(0, 0, extent, extent, 0);
    t.PonerVentanaVal(w, h);
    t.AjustarTransfSinLimites();
    const Point p = ToDevice(t, 1, 1);
    EXPECT_LE(std::abs(p.x), 32767);
    EXPECT_LE(std::abs(p.y), 32767);
    double X = 0, Y = 0;
    t.CoordDevALog(INT_MAX, INT_MIN, X, Y);
  }
}

TEST_F(TransformationTest, ZoneOfAWindowAndClientRect) {
  C_Transformacion t = Made(0, 0, 100, 100, 0);
  CRect rect(10, 20, 110, 220);
  t.PonerVentanaAux(rect);
  EXPECT_EQ(t.GetClientRect(), CRect(10, 20, 100, 200));
  CWnd window;
  window.SetClientSize(401, 201);  // no handle: the size it was given
  t.PonerVentana(&window);
  EXPECT_EQ(t.GetClientRect(), CRect(0, 0, 400, 200));
  int w = 0, h = 0;
  t.DameExtZnGraf(w, h);
  EXPECT_EQ(w * 1000 + h, 400200);
  t.PonerVentana(nullptr);
  EXPECT_EQ(t.GetClientRect(), CRect(0, 0, 400, 200));
#if defined(_WIN32)
  // A window with a handle: its own client area, not the size given.
  HWND handle = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 301, 151, nullptr, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
  ASSERT_NE(handle, nullptr);
  CWnd real(handle);
  real.SetClientSize(9, 9);
  t.PonerVentana(&real);
  EXPECT_EQ(t.GetClientRect(), CRect(0, 0, 300, 150));
  DestroyWindow(handle);
#endif
}

TEST_F(TransformationTest, AttributesAndCopies) {
  korvalen::testing::WriteBytes(
      "Languages.xml", "<L><LANGUAGE LanID=\"7\" LanguageDLL=\"SP.DLL\" CharSet=\"238\"/></L>");
  C_Transformacion t;
  t.Inicializar(1, 2, 3, 4, 7, 42, 0);
  int charset = -1;
  t.DameCharSetFont(charset);
  EXPECT_EQ(charset, 238);
  EXPECT_EQ(t.DameTipoDibujo(), 42);
  EXPECT_EQ(t.DameMapMode(), 1);
  t.ModifTipoDibujo(7);
  t.PonerVentanaVal(400, 200);
  C_Transformacion copy;
  copy = t;
  EXPECT_EQ(copy.DameTipoDibujo(), 7);
  EXPECT_EQ(ToDevice(copy, 2.5, 3), ToDevice(t, 2.5, 3));
  EXPECT_EQ(Fitted(copy).ex, Fitted(t).ex);
}

}  // namespace
