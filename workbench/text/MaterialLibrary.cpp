#include "workbench/text/MaterialLibrary.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace qd::workbench {

namespace {

struct Named {
  std::string_view name;
  const char* key;
};
constexpr Named kNames[] = {{"steel", "IDS_WB_LIBRARY_STEEL"},
                            {"stainless_steel", "IDS_WB_LIBRARY_STAINLESS"},
                            {"cast_iron", "IDS_WB_LIBRARY_CAST_IRON"},
                            {"ductile_iron", "IDS_WB_LIBRARY_DUCTILE_IRON"},
                            {"aluminium", "IDS_WB_LIBRARY_ALUMINIUM"},
                            {"magnesium", "IDS_WB_LIBRARY_MAGNESIUM"},
                            {"titanium", "IDS_WB_LIBRARY_TITANIUM"},
                            {"copper", "IDS_WB_LIBRARY_COPPER"},
                            {"brass", "IDS_WB_LIBRARY_BRASS"},
                            {"nickel_alloy", "IDS_WB_LIBRARY_NICKEL"},
                            {"concrete", "IDS_WB_LIBRARY_CONCRETE"},
                            {"glass", "IDS_WB_LIBRARY_GLASS"},
                            {"abs", "IDS_WB_LIBRARY_ABS"},
                            {"polyamide", "IDS_WB_LIBRARY_POLYAMIDE"},
                            {"polycarbonate", "IDS_WB_LIBRARY_POLYCARBONATE"},
                            {"polypropylene", "IDS_WB_LIBRARY_POLYPROPYLENE"}};

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// What stands before the next sign, which is taken away with it.
std::string_view TakeUntil(std::string_view& text, char sign) {
  const std::size_t end = std::min(text.find(sign), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return Trimmed(part);
}

bool ReadLine(std::string_view line, const UnitSystem& units, CommonMaterial& material) {
  const std::string_view name = TakeUntil(line, '|');
  const auto* known = std::find_if(std::begin(kNames), std::end(kNames),
                                   [name](const Named& candidate) { return candidate.name == name; });
  if (known == std::end(kNames)) return false;
  const auto read = [&](Quantity quantity, const NumberLimits& limits, double& value) {
    const NumberReading reading = ReadQuantity(TakeUntil(line, '|'), '.', quantity, units, limits);
    value = reading.value;
    return reading.IsGood();
  };
  material.nameKey = known->key;
  return read(Quantity::Stress, NumberLimits::Positive(), material.youngsModulus) &&
         read(Quantity::Plain, {.least = -1, .greatest = 0.5, .aboveLeast = true}, material.poissonsRatio) &&
         read(Quantity::Density, NumberLimits::NotNegative(), material.density) && line.empty();
}

}  // namespace

std::vector<CommonMaterial> ReadMaterials(std::string_view text, const UnitSystem& units,
                                          std::vector<std::string>& faults) {
  std::vector<CommonMaterial> materials;
  while (!text.empty()) {
    const std::string_view line = TakeUntil(text, '\n');
    if (line.empty() || line.front() == '#') continue;
    CommonMaterial material{};
    if (ReadLine(line, units, material)) {
      materials.push_back(material);
    } else {
      faults.emplace_back(line);
    }
  }
  return materials;
}

}  // namespace qd::workbench
