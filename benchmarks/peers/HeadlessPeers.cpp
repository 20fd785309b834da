// Our panel without a screen, and the arrays alone, which nothing that shows them can undercut.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <vector>

#include "benchmarks/peers/PanelPeer.h"
#include "platform/headless/HeadlessToolkit.h"

namespace qd::bench {
namespace {

/// What the acts are about, without a window and without rows: each leaf's title, number, colour and two flags.
class Arrays final : public Peer {
 public:
  void Build(const Sample& sample) override {
    m_sample = sample;
    for (std::size_t i = 0; i < sample.leaves; ++i) {
      m_titles.push_back(sample.Title(i));
      m_colours.push_back(sample.Colour(i));
    }
    m_order.resize(sample.leaves);
    std::iota(m_order.begin(), m_order.end(), 0U);
    m_checked.assign(sample.leaves, 1);
    m_selected.assign(sample.All(), 0);
    m_found.assign(sample.leaves, 1);
  }
  bool Settle() override { return true; }
  bool ExpandAll(bool) override { return false; }
  bool SelectAll(bool select) override {
    std::fill(m_selected.begin(), m_selected.end(), select ? 1 : 0);
    return true;
  }
  bool Invert() override {
    for (char& one : m_selected) one ^= 1;
    return true;
  }
  bool SelectRange() override {
    const auto rows = static_cast<std::ptrdiff_t>(m_sample.Branches() > 0 ? m_sample.RowsOf(0) : m_sample.leaves);
    std::fill(m_selected.begin(), m_selected.begin() + rows, 1);
    std::fill(m_selected.begin() + rows, m_selected.end(), 0);
    return true;
  }
  bool Sort(bool byName) override {
    ForEachBranch([&](auto first, auto last) {
      if (!byName) return std::sort(first, last);
      std::sort(first, last, [this](unsigned a, unsigned b) { return m_titles[a] < m_titles[b]; });
    });
    return true;
  }
  bool Filter(const char* text) override {
    // Upper and lower case are one; titles are ASCII here.
    const std::size_t length = std::strlen(text);
    const auto same = [](char a, char b) { return (static_cast<unsigned char>(a) | 0x20) == b; };
    for (std::size_t i = 0; i < m_titles.size(); ++i) {
      const std::string& title = m_titles[i];
      m_found[i] =
          length == 0 || std::search(title.begin(), title.end(), text, text + length, same) != title.end();
    }
    return true;
  }
  bool Change(const std::string& title) override {
    m_titles[0] = title;
    return true;
  }
  bool ChangeMany(std::size_t count, unsigned colour) override {
    for (std::size_t i = 0; i < count; ++i) m_colours[i * (m_colours.size() / count)] = colour;
    return true;
  }
  bool CheckAll(bool checked) override {
    std::fill(m_checked.begin(), m_checked.end(), checked ? 1 : 0);
    return true;
  }
  std::size_t Visible() override { return Count(m_found) + (m_sample.All() - m_sample.leaves); }
  std::size_t Selected() override { return Count(m_selected); }
  std::string FirstTitle() override { return m_titles[m_order[0]]; }
  unsigned FirstColour() override { return m_colours[0]; }
  std::size_t Checked() override { return Count(m_checked); }

 private:
  static std::size_t Count(const std::vector<char>& flags) {
    return static_cast<std::size_t>(std::count(flags.begin(), flags.end(), 1));
  }
  template <typename Each>
  void ForEachBranch(const Each& each) {
    const auto at = [this](std::size_t place) { return m_order.begin() + static_cast<std::ptrdiff_t>(place); };
    if (m_sample.Branches() == 0) each(at(0), m_order.end());
    for (std::size_t branch = 0; branch < m_sample.Branches(); ++branch) {
      each(at(m_sample.FirstOf(branch)), at(m_sample.FirstOf(branch) + m_sample.RowsOf(branch)));
    }
  }

  Sample m_sample;
  std::vector<std::string> m_titles;
  std::vector<unsigned> m_colours;
  std::vector<unsigned> m_order;
  std::vector<char> m_checked;
  std::vector<char> m_selected;
  std::vector<char> m_found;
};

bool Panel(const Sample& sample) {
  HeadlessToolkit toolkit;
  CWorksTreeBar bar;
  bar.Create(nullptr, 0, {0, 0, 400, 800});
  PanelPeer peer(bar, [&](const std::function<bool()>& isBusy) {
    toolkit.Pump();
    while (isBusy()) {
      toolkit.Advance(1);
      toolkit.Pump();
    }
    return !toolkit.Paint(bar.GetTreeCtrl()).empty();
  });
  return DoWorks(peer, sample, "panel-headless");
}

}  // namespace
}  // namespace qd::bench

int main(int count, char** arguments) {
  using namespace qd::bench;
  const Sample sample = SampleOf(count, arguments);
  const bool wantsArrays = count > 3 && std::strcmp(arguments[3], "arrays") == 0;
  if (wantsArrays) {
    Arrays arrays;
    return DoWorks(arrays, sample, "arrays") ? 0 : 1;
  }
  return Panel(sample) ? 0 : 1;
}
