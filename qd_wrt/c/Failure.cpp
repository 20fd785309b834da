#include "qd_wrt/c/Failure.h"

#include <algorithm>
#include <array>

#include "platform/Version.h"

namespace qd::c {

namespace {

struct Meaning {
  qd_status status;
  const char* text;
};
constexpr std::array<Meaning, 19> kMeanings{
    {{QD_OK, "Nothing is wrong."},
     {QD_ERROR_NULL, "A pointer is null that must not be."},
     {QD_ERROR_SIZE, "The size in a struct is none that the library knows."},
     {QD_ERROR_INTERFACE, "The program was compiled for a later interface than the library's."},
     {QD_ERROR_TREE, "There is no such tree; it may have been destroyed."},
     {QD_ERROR_NODE, "There is no such row in the tree; it may have been removed."},
     {QD_ERROR_FOREIGN, "The row or kind belongs to another tree."},
     {QD_ERROR_THREAD, "Only the thread that made the first tree may call this."},
     {QD_ERROR_TEXT, "A text is no UTF-8."},
     {QD_ERROR_VALUE, "A number, a flag or a text is none of those that are possible."},
     {QD_ERROR_KEY, "Another row of the tree has this key."},
     {QD_ERROR_STATE, "This is not possible as things are."},
     {QD_ERROR_QUERY, "The query cannot be understood."},
     {QD_ERROR_WINDOW, "The window that the tree stands in is gone, or is none of this thread's."},
     {QD_ERROR_TOOLKIT, "The program works with another window system, or has none."},
     {QD_ERROR_SPACE, "The buffer is too small."},
     {QD_ERROR_CALLBACK, "A callback has thrown an exception."},
     {QD_ERROR_MEMORY, "There is no memory left."},
     {QD_ERROR_INTERNAL, "The library has a fault."}}};

const char* MeaningOf(qd_status status) {
  const auto* found = std::find_if(kMeanings.begin(), kMeanings.end(),
                                   [status](const Meaning& meaning) { return meaning.status == status; });
  return found != kMeanings.end() ? found->text : "There is no such status.";
}

/// Of a fixed size: what a thread keeps until it ends must not need the library then.
constexpr std::size_t kLongest = 400;
thread_local std::array<char, kLongest> theLast{};

}  // namespace

qd_status Fail(qd_status status, std::string_view particulars) noexcept {
  char* at = theLast.data();
  char* const end = at + theLast.size() - 1;
  const auto add = [&at, end](std::string_view text) {
    const auto room = static_cast<std::size_t>(end - at);
    std::size_t length = std::min(text.size(), room);
    // Not in the middle of a character.
    while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80)
      --length;
    at = std::copy_n(text.begin(), length, at);
  };
  add(MeaningOf(status));
  if (!particulars.empty()) {
    add(" ");
    add(particulars);
  }
  *at = 0;
  return status;
}

}  // namespace qd::c

uint32_t qd_interface(void) {
  return QD_INTERFACE;
}

const char* qd_version(void) {
  return QD_WRT_VERSION;
}

const char* qd_error_text(qd_status status) {
  return qd::c::MeaningOf(status);
}

const char* qd_last_error(void) {
  return qd::c::theLast.data();
}
