// World and device coordinates of a drawing view. World coordinates are the
// drawing's own (doubles, X to the right and Y upwards in the default
// orientation); device coordinates are the pixels of the view's client area
// (ints, y downwards). The world window the caller asks for is fitted into
// the view's graphic zone keeping its proportions: it grows along one axis,
// about its centre, and every fit starts again from the request, so
// adjustments never add up.
//
//   C_Transformacion view;
//   view.Inicializar(0.0, 0.0, 3000.0, 1500.0, language, 0, 0);  // the sheet
//   view.PonerVentana(&window);  // again whenever the window is resized
//   int x, y;
//   view.CoordLogADev(1500.0, 750.0, x, y);
//
// The axes code is base + 10 * mirrorH + 100 * mirrorV: base 0 to 3 turns the
// world axes a quarter turn counter-clockwise each (0: X right, Y up; 1: X up,
// Y left; 2: X left, Y down; 3: X down, Y right; a larger base counts as 0),
// mirrorH mirrors the horizontal device axis and mirrorV flips the vertical
// one. Map mode 2 converts at a fixed ten device units per world unit; any
// other mode (1 after Inicializar) through the fitted window.
//
// Kept as the suite's views expect it: device results are cut toward zero
// and held to -32767..32767 (a NaN gives the lower bound); the device-to-world
// conversion takes the zone's origin with the opposite sign in its mirrored
// and flipped terms, so the two are exact inverses only for a zone at (0, 0),
// as PonerVentana, PonerVentanaSinLimites and PonerVentanaVal make it; and
// GetClientRect gives the zone's width and height in right and bottom.
#pragma once

#include <bit>
#include <cstdint>

#include "korvalen/export.h"
#include "korvalen/platform/framework_window.h"

// A value: no virtual functions, no heap data, copied member by member.
class KORVALEN_API C_Transformacion {
 public:
  C_Transformacion() = default;
  C_Transformacion(const C_Transformacion&) = default;
  // Copies all seventeen fields.
  C_Transformacion& operator=(const C_Transformacion& other);

  // Request and current window := (x, y, width, height); zone := 0, 0, 0, 0;
  // the font charset of the language (DameCharSetDeIdioma); map mode 1. The
  // scale stays as it was.
  void Inicializar(double x, double y, double width, double height, int language, int drawing_type,
                   int axes_code);
  // A new request, zone 0, 0, 0, 0; no fit until the next PonerVentana...
  void CambiarVentana(double x, double y, double width, double height);
  // Axes code := base, plus 10 when mirror_h, plus 100 when mirror_v is not 0.
  void ModifTransfEjes(int base, int mirror_h, int mirror_v);
  // The axes code taken apart, as every conversion and fit takes it.
  void DameTransfEjes(int& base, int& mirror_h, int& mirror_v) const;

  // Zone := (0, 0, client width - 1, client height - 1) of the window (its
  // handle's client area on Windows; the size it was given where it has no
  // native window), then AjustarTransf. A null window changes nothing.
  void PonerVentana(CWnd* window);
  // The same, ending with AjustarTransfSinLimites.
  void PonerVentanaSinLimites(CWnd* window);
  // Zone := (left, top, right - left, bottom - top) of the rectangle, then
  // AjustarTransf.
  void PonerVentanaAux(CRect& rect);
  // Zone := (0, 0, width, height), then AjustarTransf.
  void PonerVentanaVal(int width, int height);
  // World extents held to 1.0..99999.999 (above, exactly 99999.0), then the
  // fit.
  void AjustarTransf();
  // The fit of any extents (a zone of width or height 0 gives infinities).
  void AjustarTransfSinLimites();

  // Inline, for the loops of drawing code that convert every point of a
  // view. What depends on the view alone is worked out without a branch, so
  // that such a loop works it out once and takes one way for every point:
  // both map modes are computed and the mode picks.
  void CoordLogADev(double X, double Y, int& x, int& y) const {
    const Axes axes = Decode(axes_code_);
    const int turn = Orientation(axes);
    // Bases 0 and 2 take world X across, 1 and 3 world Y. Across is measured
    // from the right (w - a) for bases 1 and 2, down from the bottom (h - b)
    // for 0 and 1, each turned round by its mirror; w - a as -a + w, which is
    // the same number.
    const bool x_across = (turn & 1) == 0;
    const int from_right = axes.mirror_h ^ (((turn + 1) >> 1) & 1);
    const int from_bottom = axes.mirror_v ^ (1 - (turn >> 1));
    const double sign_a = 1 - 2 * from_right;
    const double sign_b = 1 - 2 * from_bottom;
    const double far_a = from_right * zone_width_;
    const double far_b = from_bottom * zone_height_;

    const double dx = (X - origin_x_) * scale_;
    const double dy = (Y - origin_y_) * scale_;
    const double a = x_across ? dx : dy;
    const double b = x_across ? dy : dx;
    const bool tenths = map_mode_ == kTenthUnits;
    const double low = Pick(tenths, kIntLow, -kDeviceLimit);
    const double high = Pick(tenths, kIntHigh, kDeviceLimit);
    x = Bounded(tenths ? X * 10.0 : (sign_a * a + far_a) + zone_left_, low, high);
    y = Bounded(tenths ? Y * 10.0 : (sign_b * b + far_b) + zone_top_, low, high);
  }
  void CoordDevALog(int x, int y, double& X, double& Y) const;

  // (zone left, zone top, zone width, zone height).
  CRect GetClientRect() const;
  void DameExtZnGraf(int& width, int& height) const;
  // The fitted world window.
  void DameExtMundo(double& ext_x, double& ext_y) const;
  void DameDatosMundo(double& origin_x, double& origin_y, double& ext_x, double& ext_y) const;
  void DameCharSetFont(int& charset) const;
  int DameTipoDibujo() const;
  void ModifTipoDibujo(int drawing_type);
  int DameMapMode() const;
  void ModifMapMode(int map_mode);

 private:
  // Map mode 2: ten device units per world unit, no window.
  static constexpr int kTenthUnits = 2;
  // The device range of a conversion: what 16-bit drawing calls can take.
  static constexpr double kDeviceLimit = 32767.0;
  static constexpr double kIntLow = -2147483648.0;
  static constexpr double kIntHigh = 2147483647.0;

  struct Axes {
    int base;
    int mirror_h;
    int mirror_v;
  };
  // Hundreds first, then tens; a base above 3 is 0. Arithmetic rather than
  // branches, so that a loop over points keeps it out of its body.
  static constexpr Axes Decode(int code) {
    const int mirror_v = code >= 100;
    const int rest = code - mirror_v * (code / 100 * 100);
    const int mirror_h = rest >= 10;
    const int base = rest - mirror_h * (rest / 10 * 10);
    return Axes{base * static_cast<int>(base <= 3), mirror_h, mirror_v};
  }
  // The orientation a conversion or fit works in: a negative code leaves a
  // negative base, which turns nothing, as 4 to 9 do.
  static constexpr int Orientation(const Axes& axes) {
    return axes.base * static_cast<int>(axes.base >= 0);
  }
  // One of two numbers, picked on their bits: a choice that never becomes
  // a branch.
  static double Pick(bool first, double a, double b) {
    const std::uint64_t mask = std::uint64_t{0} - static_cast<std::uint64_t>(first);
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(a) & mask) |
                                 (std::bit_cast<std::uint64_t>(b) & ~mask));
  }
  // Held to the range, then cut toward zero. A NaN fails the first test and
  // takes the lower bound, so the conversion to int is always defined.
  static int Bounded(double value, double low, double high) {
    return static_cast<int>(!(value >= low) ? low : (high < value ? high : value));
  }

  // The zone of the window's client area and the request restored; false
  // for a null window.
  bool ZoneFromWindow(CWnd* window);
  void RestoreRequest();
  void Fit();

  int axes_code_ = 0;
  int font_charset_ = 0;
  int drawing_type_ = 0;
  int map_mode_ = 0;
  int zone_left_ = 0;
  int zone_top_ = 0;
  int zone_width_ = 0;
  int zone_height_ = 0;
  double origin_x_ = 0.0;
  double origin_y_ = 0.0;
  double extent_x_ = 0.0;
  double extent_y_ = 0.0;
  double scale_ = 0.0;
  double requested_x_ = 0.0;
  double requested_y_ = 0.0;
  double requested_width_ = 0.0;
  double requested_height_ = 0.0;
};
