#include "workbench/exchange/formats/InpSets.h"

#include <algorithm>

#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {
constexpr std::string_view kOwnElements = "_QD_OWN_";
}

std::string OwnElementsName(std::int32_t number) {
  return std::string(kOwnElements) + std::to_string(number);
}

bool IsOwnElementsName(std::string_view name) {
  const std::string upper = UpperCase(name);
  return upper.starts_with(kOwnElements) && upper.size() > kOwnElements.size() &&
         upper.find_first_not_of("0123456789", kOwnElements.size()) == std::string::npos;
}

InpSetTree::InpSetTree(const ExportModel& model)
    : m_model(model),
      m_children(model.sets.size()),
      m_first(model.sets.size()),
      m_own(model.sets.size()),
      m_last(model.sets.size()) {
  for (std::size_t set = 0; set < model.sets.size(); ++set) {
    if (model.sets[set].parent >= 0) {
      m_children[Place(model.sets[set].parent)].push_back(static_cast<std::int32_t>(set));
    }
  }
  MakeOrder();
  std::size_t listed = 0;
  for (std::size_t set = 0; set < model.sets.size(); ++set) listed += m_last[set] - m_first[set];
  constexpr std::size_t kMostTimes = 16;
  constexpr std::size_t kAlwaysFine = 1'000'000;
  m_swells = listed > m_elements.size() * kMostTimes + kAlwaysFine;
}

/// Sets may be nested as deeply as the model likes, so nothing here calls itself.
void InpSetTree::MakeOrder() {
  struct Step {
    std::int32_t set;
    std::size_t nextChild;
  };
  std::vector<Step> path;
  for (std::size_t top = 0; top < m_model.sets.size(); ++top) {
    if (m_model.sets[top].parent >= 0) continue;
    path.push_back({static_cast<std::int32_t>(top), 0});
    m_first[top] = m_elements.size();
    while (!path.empty()) {
      Step& step = path.back();
      const auto& children = m_children[Place(step.set)];
      if (step.nextChild < children.size()) {
        const std::int32_t child = children[step.nextChild++];
        m_first[Place(child)] = m_elements.size();
        path.push_back({child, 0});
        continue;
      }
      const std::size_t place = Place(step.set);
      m_own[place] = m_elements.size();
      if (m_model.sets[place].mesh != nullptr) {
        for (const MeshData::Block& block : m_model.sets[place].mesh->blocks) {
          m_elements.insert(m_elements.end(), block.elementIds.begin(), block.elementIds.end());
        }
      }
      m_last[place] = m_elements.size();
      m_order.push_back(step.set);
      path.pop_back();
    }
  }
}

std::vector<std::uint64_t> InpSetTree::OwnElementsOf(std::int32_t set) const {
  const auto begin = m_elements.begin();
  std::vector<std::uint64_t> own(begin + static_cast<std::ptrdiff_t>(m_own[Place(set)]),
                                 begin + static_cast<std::ptrdiff_t>(m_last[Place(set)]));
  std::sort(own.begin(), own.end());
  return own;
}

void InpSetTree::ListOf(std::int32_t set, std::vector<std::uint64_t>& elements) const {
  const auto& children = m_children[Place(set)];
  const bool ownOnly = m_swells || std::any_of(children.begin(), children.end(),
                                               [&](std::int32_t child) { return IsSameAs(set, child); });
  const auto begin = m_elements.begin();
  const std::size_t first = ownOnly ? m_own[Place(set)] : m_first[Place(set)];
  elements.assign(begin + static_cast<std::ptrdiff_t>(first),
                  begin + static_cast<std::ptrdiff_t>(m_last[Place(set)]));
  std::sort(elements.begin(), elements.end());
}

std::vector<std::int32_t> InpSetTree::NamesIn(std::int32_t set) const {
  std::vector<std::int32_t> names;
  for (const std::int32_t child : m_children[Place(set)]) {
    const bool empty = m_first[Place(child)] == m_last[Place(child)];
    if (m_swells || empty || IsSameAs(set, child)) names.push_back(child);
  }
  return names;
}

std::vector<bool> InpSetTree::FindUniform() const {
  constexpr std::int32_t kNone = -2;
  constexpr std::int32_t kSeveral = -3;
  std::vector<std::int32_t> common(m_model.sets.size(), kNone);
  std::vector<bool> uniform(m_model.sets.size());
  const auto join = [](std::int32_t& all, std::int32_t more) {
    if (more == kNone || more == all) return;
    all = all == kNone ? more : kSeveral;
  };
  for (const std::int32_t set : m_order) {
    const std::size_t place = Place(set);
    if (m_own[place] != m_last[place]) join(common[place], m_model.sets[place].property);
    for (const std::int32_t child : m_children[place]) join(common[place], common[Place(child)]);
    uniform[place] = common[place] == m_model.sets[place].property;
  }
  return uniform;
}

std::vector<InpSetTree::Section> InpSetTree::Sections() const {
  const std::vector<bool> uniform = FindUniform();
  std::vector<bool> reached(m_model.sets.size(), false);
  std::vector<Section> sections;
  // Sets come after the ones that they are nested in.
  for (std::size_t set = 0; set < m_model.sets.size(); ++set) {
    const ExportSet& written = m_model.sets[set];
    if (written.parent >= 0 && reached[Place(written.parent)]) reached[set] = true;
    if (reached[set] || written.property < 0) continue;
    if (uniform[set]) {
      reached[set] = true;
      sections.push_back({static_cast<std::int32_t>(set), false});
    } else if (m_own[set] != m_last[set]) {
      sections.push_back({static_cast<std::int32_t>(set), true});
    }
  }
  return sections;
}

}  // namespace qd::workbench
