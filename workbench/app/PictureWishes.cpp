#include "workbench/app/PictureWishes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "workbench/text/NumberText.h"

namespace qd::workbench {

namespace {

constexpr std::array<std::pair<std::string_view, StandardView>, 7> kViews{{{"front", StandardView::Front},
                                                                           {"back", StandardView::Back},
                                                                           {"left", StandardView::Left},
                                                                           {"right", StandardView::Right},
                                                                           {"top", StandardView::Top},
                                                                           {"bottom", StandardView::Bottom},
                                                                           {"iso", StandardView::Isometric}}};
constexpr int kLeastSide = 16;
constexpr int kGreatestSide = 8192;

/// A side of a picture; 0 for what is none.
int SideOf(std::string_view text) {
  int side = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), side);
  const bool whole = fault == std::errc() && end == text.data() + text.size();
  return whole && side >= kLeastSide && side <= kGreatestSide ? side : 0;
}

std::optional<PictureWishes::Cut> CutOf(std::string_view text) {
  constexpr std::string_view kAxes = "xyz";
  if (text.empty()) return std::nullopt;
  const std::size_t axis = kAxes.find(text.front());
  if (axis == std::string_view::npos) return std::nullopt;
  PictureWishes::Cut cut{static_cast<unsigned>(axis), std::nullopt};
  if (text.size() == 1) return cut;
  if (text[1] != '=') return std::nullopt;
  const NumberReading place = ReadNumber(text.substr(2), '.');
  if (!place.IsGood()) return std::nullopt;
  cut.at = place.value;
  return cut;
}

}  // namespace

std::string ViewWords() {
  std::string words;
  for (const auto& [word, view] : kViews) words += (words.empty() ? "" : " ") + std::string(word);
  return words;
}

std::optional<std::string> ReadPictureWishes(const PictureTexts& texts, PictureWishes& wishes) {
  if (!texts.view.empty()) {
    const auto* known = std::find_if(kViews.begin(), kViews.end(),
                                     [&texts](const auto& candidate) { return candidate.first == texts.view; });
    if (known == kViews.end()) return "there is no view " + texts.view + ", only " + ViewWords();
    wishes.view = known->second;
  }
  if (!texts.size.empty()) {
    const std::string_view size = texts.size;
    const std::size_t by = size.find('x');
    const int width = SideOf(size.substr(0, by));
    const int height = by != std::string_view::npos ? SideOf(size.substr(by + 1)) : 0;
    if (width == 0 || height == 0) {
      return texts.size + " is no size of a picture, such as 1600x1200, with sides of " +
             std::to_string(kLeastSide) + " to " + std::to_string(kGreatestSide);
    }
    wishes.size = {width, height};
  }
  for (std::size_t from = 0; !texts.section.empty() && from <= texts.section.size();) {
    const std::size_t end = std::min(texts.section.find(',', from), texts.section.size());
    const auto cut = CutOf(std::string_view(texts.section).substr(from, end - from));
    const auto same = [&cut](const PictureWishes::Cut& other) { return other.axis == cut->axis; };
    if (!cut || std::any_of(wishes.cuts.begin(), wishes.cuts.end(), same)) {
      return texts.section + " is no section, such as x, y=12.5 or x,z=-3, each axis once";
    }
    wishes.cuts.push_back(*cut);
    from = end + 1;
  }
  return std::nullopt;
}

}  // namespace qd::workbench
