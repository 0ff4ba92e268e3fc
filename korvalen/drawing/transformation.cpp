#include "korvalen/drawing/transformation.h"

#include <cstdint>

#include "korvalen/platform/internal/window_geometry.h"
#include "korvalen/settings/language_resources.h"

namespace {

// Extents outside this range are held to it by AjustarTransf; an extent above
// the upper test becomes exactly kCutExtent.
constexpr double kMinExtent = 1.0;
constexpr double kMaxExtent = 99999.999;
constexpr double kCutExtent = 99999.0;

// The int arithmetic of 32-bit Windows: differences of zone values and
// device points wrap around instead of overflowing.
int Wrapped(std::int64_t value) { return static_cast<int>(static_cast<std::uint32_t>(value)); }

// An extent grown about its centre.
void Grow(double& origin, double& extent, double grown) {
  origin -= (grown - extent) * 0.5;
  extent = grown;
}

}  // namespace

C_Transformacion& C_Transformacion::operator=(const C_Transformacion& other) = default;

void C_Transformacion::Inicializar(double x, double y, double width, double height, int language,
                                   int drawing_type, int axes_code) {
  CambiarVentana(x, y, width, height);
  font_charset_ = DameCharSetDeIdioma(language);
  drawing_type_ = drawing_type;
  map_mode_ = 1;
  axes_code_ = axes_code;
}

void C_Transformacion::CambiarVentana(double x, double y, double width, double height) {
  requested_x_ = x;
  requested_y_ = y;
  requested_width_ = width;
  requested_height_ = height;
  RestoreRequest();
  zone_left_ = zone_top_ = zone_width_ = zone_height_ = 0;
}

void C_Transformacion::ModifTransfEjes(int base, int mirror_h, int mirror_v) {
  axes_code_ = base + (mirror_h != 0 ? 10 : 0) + (mirror_v != 0 ? 100 : 0);
}

void C_Transformacion::DameTransfEjes(int& base, int& mirror_h, int& mirror_v) const {
  const Axes axes = Decode(axes_code_);
  base = axes.base;
  mirror_h = axes.mirror_h;
  mirror_v = axes.mirror_v;
}

void C_Transformacion::PonerVentana(CWnd* window) {
  if (ZoneFromWindow(window)) AjustarTransf();
}

void C_Transformacion::PonerVentanaSinLimites(CWnd* window) {
  if (ZoneFromWindow(window)) AjustarTransfSinLimites();
}

bool C_Transformacion::ZoneFromWindow(CWnd* window) {
  if (window == nullptr) return false;
  RECT area{0, 0, window->ClientWidth(), window->ClientHeight()};
  if (window->GetSafeHwnd() != nullptr) {
    RECT client;
    if (!korvalen::platform::client_area(window->GetSafeHwnd(), client)) area = client;
  }
  zone_left_ = 0;
  zone_top_ = 0;
  zone_width_ = Wrapped(std::int64_t{area.right} - 1);
  zone_height_ = Wrapped(std::int64_t{area.bottom} - 1);
  RestoreRequest();
  return true;
}

void C_Transformacion::PonerVentanaAux(CRect& rect) {
  zone_left_ = rect.left;
  zone_top_ = rect.top;
  zone_width_ = Wrapped(std::int64_t{rect.right} - rect.left);
  zone_height_ = Wrapped(std::int64_t{rect.bottom} - rect.top);
  RestoreRequest();
  AjustarTransf();
}

void C_Transformacion::PonerVentanaVal(int width, int height) {
  zone_left_ = 0;
  zone_top_ = 0;
  zone_width_ = width;
  zone_height_ = height;
  RestoreRequest();
  AjustarTransf();
}

void C_Transformacion::AjustarTransf() {
  for (double* extent : {&extent_x_, &extent_y_}) {
    if (*extent < kMinExtent) *extent = kMinExtent;
    if (*extent > kMaxExtent) *extent = kCutExtent;
  }
  Fit();
}

void C_Transformacion::AjustarTransfSinLimites() { Fit(); }

void C_Transformacion::RestoreRequest() {
  origin_x_ = requested_x_;
  origin_y_ = requested_y_;
  extent_x_ = requested_width_;
  extent_y_ = requested_height_;
}

void C_Transformacion::Fit() {
  const double w = zone_width_;
  const double h = zone_height_;
  const int base = Orientation(Decode(axes_code_));
  // The world axis that lies across the zone (X for bases 0 and 2) and the
  // one that lies down it. Where the height limits (h / down < w / across)
  // the window grows across, otherwise (equal ratios too) down; the scale is
  // that of the axis across.
  const bool x_across = base == 0 || base == 2;
  double& across = x_across ? extent_x_ : extent_y_;
  double& across_origin = x_across ? origin_x_ : origin_y_;
  double& down = x_across ? extent_y_ : extent_x_;
  double& down_origin = x_across ? origin_y_ : origin_x_;
  if (h / down < w / across) {
    Grow(across_origin, across, w * down / h);
  } else {
    Grow(down_origin, down, h * across / w);
  }
  scale_ = w / across;
}

void C_Transformacion::CoordDevALog(int x, int y, double& X, double& Y) const {
  if (map_mode_ == kTenthUnits) {
    X = x / 10.0;
    Y = y / 10.0;
    return;
  }
  const Axes axes = Decode(axes_code_);
  const std::int64_t left = zone_left_;
  const std::int64_t top = zone_top_;
  // The zone's origin enters the mirrored and flipped terms with the sign
  // opposite to that of the forward conversion; kept as the views expect.
  const int from_left = Wrapped(x - left);
  const int from_right = Wrapped(zone_width_ - left - x);
  const int from_top = Wrapped(y - top);
  const int from_bottom = Wrapped(zone_height_ - top - y);
  int across = 0;
  int down = 0;
  switch (Orientation(axes)) {
    case 0:
      across = axes.mirror_h ? from_right : from_left;
      down = axes.mirror_v ? from_top : from_bottom;
      break;
    case 1:
      across = axes.mirror_v ? from_top : from_bottom;
      down = axes.mirror_h ? from_left : from_right;
      break;
    case 2:
      across = axes.mirror_h ? from_left : from_right;
      down = axes.mirror_v ? from_bottom : from_top;
      break;
    default:
      across = axes.mirror_v ? from_bottom : from_top;
      down = axes.mirror_h ? from_right : from_left;
      break;
  }
  X = across / scale_ + origin_x_;
  Y = down / scale_ + origin_y_;
}

CRect C_Transformacion::GetClientRect() const {
  return CRect(zone_left_, zone_top_, zone_width_, zone_height_);
}

void C_Transformacion::DameExtZnGraf(int& width, int& height) const {
  width = zone_width_;
  height = zone_height_;
}

void C_Transformacion::DameExtMundo(double& ext_x, double& ext_y) const {
  ext_x = extent_x_;
  ext_y = extent_y_;
}

void C_Transformacion::DameDatosMundo(double& origin_x, double& origin_y, double& ext_x,
                                      double& ext_y) const {
  origin_x = origin_x_;
  origin_y = origin_y_;
  ext_x = extent_x_;
  ext_y = extent_y_;
}

void C_Transformacion::DameCharSetFont(int& charset) const { charset = font_charset_; }

int C_Transformacion::DameTipoDibujo() const { return drawing_type_; }

void C_Transformacion::ModifTipoDibujo(int drawing_type) { drawing_type_ = drawing_type; }

int C_Transformacion::DameMapMode() const { return map_mode_; }

void C_Transformacion::ModifMapMode(int map_mode) { map_mode_ = map_mode; }
