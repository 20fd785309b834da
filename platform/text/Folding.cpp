#include "platform/text/Folding.h"

#include <algorithm>
#include <array>
#include <limits>

#include "platform/text/FoldedReader.h"

namespace qd {

namespace {

/// A code in bytes, the first of which says how many there are; as many as any number needs.
struct Bytes {
  std::array<char, 7> bytes{};
  std::size_t size = 0;

  explicit Bytes(char32_t code) {
    constexpr unsigned kBitsOfRest = 6;
    unsigned bitsOfFirst = 7;
    if (code < 0x80) {
      bytes[size++] = static_cast<char>(code);
      return;
    }
    // A byte more holds five bits more: six of its own, and one less in the first.
    std::size_t rest = 1;
    for (bitsOfFirst = 5; rest < 6 && (code >> (rest * kBitsOfRest + bitsOfFirst)) != 0; --bitsOfFirst) ++rest;
    const unsigned lead = 0xFFU << (bitsOfFirst + 1);
    size = rest + 1;
    for (std::size_t at = rest; at > 0; --at, code >>= kBitsOfRest)
      bytes[at] = static_cast<char>(0x80U | (code & 0x3FU));
    bytes[0] = static_cast<char>(lead | code);
  }
  std::string_view View() const { return {bytes.data(), size}; }
};

/// Compares what is left of two texts, of which each begins with a code that no mark before it touches.
int CompareReaders(std::wstring_view a, std::wstring_view b, Accents accents) {
  FoldedReader left(a, accents);
  FoldedReader right(b, accents);
  while (true) {
    const std::int64_t first = left.Next();
    const std::int64_t second = right.Next();
    if (first == second) {
      if (first == FoldedReader::kEnd) return 0;
      continue;
    }
    if (first == FoldedReader::kEnd) return -1;
    if (second == FoldedReader::kEnd) return 1;
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(first - second, -kMost, kMost));
  }
}

/// The last place, not behind `at`, before which stands what ends a run of marks: from there on two texts that are
/// the same so far can be compared.
std::size_t WithoutMarksBefore(std::wstring_view text, std::size_t at) {
  if (SplitsPair(text, at)) --at;
  while (at > 0 && !IsAscii(text[at - 1])) {
    const CodePoint before = CodePointBefore(text, at);
    const std::span<const char32_t> parts = FoldedTextOf(before.code);
    const CodeData& data = DataOf(parts.empty() ? before.code : parts.back());
    if (data.combining == 0 && !data.ignorable) break;
    at -= before.length;
  }
  return at;
}

/// A text whose codes stand so far away as the tables say.
std::wstring Moved(std::wstring_view text, std::int32_t CodeData::*distance) {
  std::wstring moved;
  moved.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint point = CodePointAt(text, at);
    const std::int64_t code = std::int64_t{point.code} + DataOf(point.code).*distance;
    AppendCodePoint(moved, static_cast<char32_t>(code));
    at += point.length;
  }
  return moved;
}

}  // namespace

char32_t FoldCase(char32_t code) {
  return static_cast<char32_t>(static_cast<std::int64_t>(code) + DataOf(code).toSmall);
}

std::wstring InCapitals(std::wstring_view text) {
  return Moved(text, &CodeData::toCapital);
}

std::wstring InSmallLetters(std::wstring_view text) {
  return Moved(text, &CodeData::toLower);
}

bool IsIgnorable(char32_t code) {
  return DataOf(code).ignorable;
}

void AppendFoldedKey(std::wstring_view text, Accents accents, std::string& keys) {
  std::size_t at = 0;
  for (; at < text.size() && IsAscii(text[at]); ++at) keys += static_cast<char>(SmallAscii(text[at]));
  if (at == text.size()) return;
  FoldedReader reader(text.substr(at), accents);
  for (std::int64_t code = reader.Next(); code != FoldedReader::kEnd; code = reader.Next()) {
    keys += Bytes(static_cast<char32_t>(code)).View();
  }
}

std::string FoldedKey(std::wstring_view text, Accents accents) {
  std::string key;
  key.reserve(text.size());
  AppendFoldedKey(text, accents, key);
  return key;
}

bool HasAccents(std::wstring_view text) {
  if (std::all_of(text.begin(), text.end(), IsAscii)) return false;
  FoldedReader reader(text, Accents::kCount);
  for (std::int64_t code = reader.Next(); code != FoldedReader::kEnd; code = reader.Next()) {
    if (DataOf(static_cast<char32_t>(code)).accent) return true;
  }
  return false;
}

bool StartsWithFolded(std::wstring_view text, std::string_view key, Accents accents) {
  std::size_t at = 0;
  for (; at < key.size() && at < text.size() && IsAscii(text[at]); ++at) {
    if (SmallAscii(text[at]) != static_cast<unsigned char>(key[at])) return false;
  }
  if (at == key.size() || at == text.size()) return at == key.size();
  key.remove_prefix(at);
  FoldedReader reader(text.substr(at), accents);
  while (!key.empty()) {
    const std::int64_t code = reader.Next();
    if (code == FoldedReader::kEnd) return false;
    const Bytes bytes(static_cast<char32_t>(code));
    if (!key.starts_with(bytes.View())) return false;
    key.remove_prefix(bytes.size);
  }
  return true;
}

int CompareFolded(std::wstring_view a, std::wstring_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  std::size_t at = 0;
  for (; at < common; ++at) {
    if (a[at] == b[at]) continue;
    if (!IsAscii(a[at]) || !IsAscii(b[at])) break;
    const auto left = static_cast<int>(SmallAscii(a[at]));
    const auto right = static_cast<int>(SmallAscii(b[at]));
    if (left != right) return left - right;
  }
  if (at == common) {
    if (a.size() == b.size()) return 0;
    // Unless only what shows nothing, or marks, are left of the longer.
    if (IsAscii((a.size() < b.size() ? b : a)[at])) return a.size() < b.size() ? -1 : 1;
  }
  at = std::min(WithoutMarksBefore(a, at), WithoutMarksBefore(b, at));
  const int letters = CompareReaders(a.substr(at), b.substr(at), Accents::kLeftOut);
  return letters != 0 ? letters : CompareReaders(a.substr(at), b.substr(at), Accents::kCount);
}

}  // namespace qd
