// Stand-ins of the windowing framework's rectangle and window classes, the
// ones the exported drawing and dialog classes take. They hold data only; the
// library reads a window's client area through its own platform layer.
//
//   CWnd view(my_hwnd);            // Windows: the client area is the window's own
//   view.SetClientSize(800, 600);  // elsewhere: the size the view was given
//   transformation.PonerVentana(&view);
#pragma once

#include "korvalen/platform/windows_types.h"

// A rectangle with the framework's helpers; laid out as RECT.
class CRect : public RECT {
 public:
  CRect() : RECT{0, 0, 0, 0} {}
  CRect(LONG l, LONG t, LONG r, LONG b) : RECT{l, t, r, b} {}
  CRect(const RECT& rect) : RECT(rect) {}  // NOLINT: as the framework

  LONG Width() const { return right - left; }
  LONG Height() const { return bottom - top; }
  bool IsRectEmpty() const { return Width() <= 0 || Height() <= 0; }

  friend bool operator==(const CRect& a, const CRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
  }
};

// A window: its handle and, for systems where the library draws into no
// native window of its own, the client size the application gave it. On
// Windows a window with a handle reports the handle's real client area and
// the stored size serves only a window without handle.
class CWnd {
 public:
  CWnd() = default;
  explicit CWnd(HWND window) : m_hWnd(window) {}
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;
  virtual ~CWnd() = default;

  HWND GetSafeHwnd() const { return m_hWnd; }

  void SetClientSize(int width, int height) {
    client_width_ = width;
    client_height_ = height;
  }
  int ClientWidth() const { return client_width_; }
  int ClientHeight() const { return client_height_; }

  HWND m_hWnd = nullptr;

 private:
  int client_width_ = 0;
  int client_height_ = 0;
};
