#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "host/Display.h"
#include "platform/FlatMap.h"
#include "workbench/display/DisplayLog.h"
#include "workbench/mesh/MeshQuality.h"

namespace qd::workbench {

/// Which mesh sets are shown, by record, and how they are drawn, by key.
class MeshDisplay final : public CQDMeshManager, public CMPUData {
 public:
  /// How a mesh set is drawn.
  struct Look {
    std::uint8_t mode = 1;
    std::uint8_t opacity = 255;
    bool shrink = false;
    std::uint32_t addOns = 0;
    bool operator==(const Look&) const = default;
  };
  /// The looks of mesh sets that differ from the one of all.
  struct LookTable {
    std::unordered_map<std::uint32_t, Look> looks;
    std::uint32_t addOns = 0;
    bool operator==(const LookTable&) const = default;
  };

  /// What elements are coloured by, where their quality is what colours them: from one value to another, which are
  /// found out unless they were typed.
  struct Quality {
    QualityMeasure measure = QualityMeasure::ScaledJacobian;
    bool isTyped = false;
    double least = 0;
    double greatest = 1;
    bool operator==(const Quality&) const = default;
  };
  /// What all meshes are coloured by.
  struct Colouring {
    static constexpr unsigned kByQuality = 5;
    unsigned mode = 0;
    Quality quality{};  ///< also while something else colours
    bool operator==(const Colouring&) const = default;
  };

  explicit MeshDisplay(DisplayLog& log) : m_log(log) {}

  /// The mesh sets that are hidden now, in no order.
  std::vector<iterator> Hidden() const;
  Look GetLook(std::uint32_t key) const;
  /// As the table keeps it: add-ons are those that differ from the ones of all.
  void PutLook(std::uint32_t key, const Look& look);
  void PutLooks(const LookTable& looks);
  const LookTable& Looks() const { return m_looks; }
  unsigned GetMeshColorMode() const { return m_colouring.mode; }
  const Colouring& GetColouring() const { return m_colouring; }
  void PutColouring(const Colouring& colouring);
  /// The quality that colours, null where it does not.
  const Quality* ColouringQuality() const {
    return m_colouring.mode == Colouring::kByQuality ? &m_colouring.quality : nullptr;
  }

  int IsMsetShown(iterator mset) const override { return m_hidden.Contains(mset) ? 0 : 1; }
  void ShowHideMset(iterator mset, int show) override;
  void ShowHideMset(const std::vector<iterator>& msets, int show) override;
  void ShowHideMsetUnit(iterator mset, int show) override { ShowHideMset(mset, show); }
  void CommitShowHideMsetUnit() override { m_log.Mark(); }
  void SetMeshColorMode(unsigned mode) override;
  void UpdateMeshColor() override { m_log.Mark(); }

  void SetRenderMode(const std::vector<std::uint32_t>& keys, unsigned mode) override;
  void SetTransparency(const std::vector<std::uint32_t>& keys, unsigned char value) override;
  void ToggleShrink(const std::vector<std::uint32_t>& keys) override;
  int HasAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) const override;
  void SetAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) override;
  void DelAddOnInfo(const std::vector<std::uint32_t>& keys, std::uint32_t bits) override;
  int HasAddOnInfoAll(std::uint32_t bits) const override;
  void SetAddOnInfoAll(std::uint32_t bits) override;
  void DelAddOnInfoAll(std::uint32_t bits) override;

 private:
  template <typename Change>
  void ChangeLooks(const std::vector<std::uint32_t>& keys, const Change& change);
  template <typename Change>
  void ChangeAllLooks(const Change& change);

  DisplayLog& m_log;
  FlatMap m_hidden;
  LookTable m_looks;
  Colouring m_colouring;
};

}  // namespace qd::workbench
