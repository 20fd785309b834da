// Icons that programs add.

#include <optional>

#include "platform/text/Utf8.h"
#include "qd_wrt/c/Tree.h"
#include "qd_wrt/core/CQDTreeIcon.h"

using namespace qd::c;

namespace {

/// Icons belong to all trees, and so to the thread that makes them.
qd_status OnTheirThread() {
  if (!qd::IToolkit::Exists()) return Fail(QD_ERROR_STATE, "There is no tree yet.");
  return qd::IToolkit::IsOnItsThread() ? QD_OK : Fail(QD_ERROR_THREAD);
}

}  // namespace

qd_status qd_icon_add(const uint8_t* pixels, int32_t width, int32_t height, const char* name, uint32_t* icon) {
  if (icon != nullptr) *icon = 0;
  return Guarded([=]() -> qd_status {
    if (const qd_status right = OnTheirThread(); right != QD_OK) return right;
    if (pixels == nullptr || icon == nullptr) return Fail(QD_ERROR_NULL, "It is that of an icon or its number.");
    constexpr int kLargest = 1024;
    if (width < 1 || height < 1 || width > kLargest || height > kLargest) {
      return Fail(QD_ERROR_VALUE, "It is the size of an icon.");
    }
    const std::optional<qd::CString> text = qd::DecodeUtf8(name != nullptr ? name : "");
    if (!text) return Fail(QD_ERROR_TEXT);
    qd::IconImage image{.width = width, .height = height, .pixels = {}};
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    image.pixels.reserve(count);
    for (const uint8_t* at = pixels; image.pixels.size() < count; at += 4) {
      image.pixels.push_back(std::uint32_t{at[3]} << 24U | std::uint32_t{at[0]} << 16U |
                             std::uint32_t{at[1]} << 8U | at[2]);
    }
    *icon = qd::CQDTreeIcon::AddIcon(image, *text);
    return *icon != 0 ? QD_OK : Fail(QD_ERROR_STATE, "There are too many icons.");
  });
}

qd_status qd_icon_find(const char* name, uint32_t* icon) {
  if (icon != nullptr) *icon = 0;
  return Guarded([=]() -> qd_status {
    if (const qd_status right = OnTheirThread(); right != QD_OK) return right;
    if (name == nullptr || icon == nullptr)
      return Fail(QD_ERROR_NULL, "It is that of an icon's name or its number.");
    const std::optional<qd::CString> text = qd::DecodeUtf8(name);
    if (!text) return Fail(QD_ERROR_TEXT);
    *icon = qd::CQDTreeIcon::FindIcon(*text);
    return QD_OK;
  });
}
