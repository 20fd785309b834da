#pragma once

#include <utility>

#include "platform/win32/System.h"

namespace qd {

/// Owns a drawing object of the system.
template <typename Handle>
class GdiObject {
 public:
  GdiObject() = default;
  explicit GdiObject(Handle handle) : m_handle(handle) {}
  GdiObject(GdiObject&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
  GdiObject& operator=(GdiObject&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
  }
  ~GdiObject() {
    if (m_handle != nullptr) DeleteObject(m_handle);
  }
  Handle Get() const { return m_handle; }
  explicit operator bool() const { return m_handle != nullptr; }

 private:
  Handle m_handle = nullptr;
};

/// Selects an object into a device context and puts the one before back at the end.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : m_dc(dc), m_before(SelectObject(dc, object)) {}
  ~Selected() { SelectObject(m_dc, m_before); }
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;

 private:
  HDC m_dc;
  HGDIOBJ m_before;
};

/// A bitmap in the program's own memory, 32 bits a pixel, top row first; `bits` is null when there is no memory.
inline GdiObject<HBITMAP> MakePixels(SIZE size, void*& bits) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = size.cx;
  info.bmiHeader.biHeight = -size.cy;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  bits = nullptr;
  return GdiObject<HBITMAP>(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
}

/// A device context in memory.
class MemoryDc {
 public:
  MemoryDc() : m_dc(CreateCompatibleDC(nullptr)) {}
  ~MemoryDc() { DeleteDC(m_dc); }
  MemoryDc(const MemoryDc&) = delete;
  MemoryDc& operator=(const MemoryDc&) = delete;
  HDC Get() const { return m_dc; }

 private:
  HDC m_dc;
};

}  // namespace qd
