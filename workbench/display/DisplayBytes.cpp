#include "workbench/display/DisplayBytes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_set>
#include <utility>
#include <vector>

#include "workbench/mesh/Bytes.h"

namespace qd::workbench {

namespace {

/// Stands first; another form gets another number.
constexpr std::uint32_t kForm = 0x31445351;

// The greatest values that there are.
constexpr std::uint8_t kPartModes = 4;
constexpr std::uint8_t kMeshModes = 7;
constexpr int kPartColours = 4;
constexpr unsigned kMeshColours = 6;
constexpr int kBoxStates = 4;

// ---- as bytes -------------------------------------------------------------------------------------------

void PutBoxes(ByteWriter& writer, const std::map<RowBox, int>& boxes) {
  writer.Put(static_cast<std::uint64_t>(boxes.size()));
  for (const auto& [box, state] : boxes) {
    writer.Put(box.branch).Put(box.itr).Put(static_cast<std::int32_t>(box.kind));
    writer.Put(static_cast<std::int32_t>(state));
  }
}

/// By number: how they lie in memory says nothing.
std::vector<iterator> Sorted(std::vector<iterator> msets) {
  std::sort(msets.begin(), msets.end());
  return msets;
}

void PutParts(ByteWriter& writer, const PartDisplay& display) {
  const std::vector<std::pair<int, PartDisplay::Look>> looks = display.Looks();
  writer.Put(static_cast<std::uint64_t>(looks.size()));
  for (const auto& [cadItem, look] : looks) {
    writer.Put(static_cast<std::int32_t>(cadItem)).Put(static_cast<std::uint8_t>(look.shown ? 1 : 0));
    writer.Put(look.mode).Put(look.opacity);
  }
}

void PutMeshes(ByteWriter& writer, const MeshDisplay& display) {
  writer.Put(Sorted(display.Hidden()));
  const MeshDisplay::LookTable& table = display.Looks();
  std::vector<std::pair<std::uint32_t, MeshDisplay::Look>> looks(table.looks.begin(), table.looks.end());
  std::sort(looks.begin(), looks.end(),
            [](const auto& left, const auto& right) { return left.first < right.first; });
  writer.Put(table.addOns).Put(static_cast<std::uint64_t>(looks.size()));
  for (const auto& [key, look] : looks) {
    writer.Put(key).Put(look.mode).Put(look.opacity).Put(static_cast<std::uint8_t>(look.shrink ? 1 : 0));
    writer.Put(look.addOns);
  }
}

// ---- and back -------------------------------------------------------------------------------------------

/// What the bytes say, as far as the database has it.
struct Shown {
  int partColours = 0;
  MeshDisplay::Colouring meshColours{};
  std::vector<std::pair<int, PartDisplay::Look>> parts;
  std::vector<iterator> hiddenMsets;
  MeshDisplay::LookTable meshLooks;
  std::vector<std::int32_t> hiddenLabels;
  std::map<RowBox, int> boxes;
  std::shared_ptr<Visibility> isolation;
};

class Taker {
 public:
  Taker(std::string_view bytes, const Database& database) : m_reader(bytes), m_database(database) {
    for (const iterator itr : database.GetGeomPool().GetItrList()) {
      m_cadItems.insert(database.GetGeomPool().GetAtNU(itr)->cadItem);
    }
    for (const iterator itr : database.GetMsetPool().GetItrList()) {
      m_keys.insert(database.GetMsetPool().GetAtNU(itr)->key & kMsetKeyMask);
    }
    for (const iterator itr : database.GetCordPool().GetItrList()) {
      m_cords.insert(database.GetCordPool().GetAtNU(itr)->id);
    }
  }

  bool Take(Shown& shown) {
    if (Next<std::uint32_t>() != kForm) return false;
    shown.partColours = Next<std::int32_t>();
    shown.meshColours.mode = Next<std::uint32_t>();
    TakeParts(shown);
    shown.hiddenMsets = TakeMsets();
    TakeMeshLooks(shown.meshLooks);
    TakeLabels(shown);
    shown.boxes = TakeBoxes();
    if (Next<std::uint8_t>() != 0) TakeIsolation(shown);
    if (shown.meshColours.mode == MeshDisplay::Colouring::kByQuality) TakeQuality(shown.meshColours);
    return m_reader.IsWhole();
  }

 private:
  /// 0 once anything is missing.
  template <typename T>
  T Next() {
    T value{};
    m_reader.Get(value);
    return value;
  }
  /// Calls as often as the bytes say, as long as there are any.
  template <typename Call>
  void ForCount(const Call& call) {
    for (auto count = Next<std::uint64_t>(); count > 0 && m_reader.IsGood(); --count) call();
  }

  void TakeParts(Shown& shown) {
    ForCount([&] {
      const int cadItem = Next<std::int32_t>();
      PartDisplay::Look look;
      look.shown = Next<std::uint8_t>() != 0;
      look.mode = Next<std::uint8_t>();
      look.opacity = Next<float>();
      const bool fits = look.mode < kPartModes && look.opacity >= 0 && look.opacity <= 1;
      if (fits && m_cadItems.contains(cadItem)) shown.parts.emplace_back(cadItem, look);
    });
  }

  std::vector<iterator> TakeMsets() {
    std::vector<iterator> msets;
    m_reader.Get(msets);
    std::erase_if(msets, [this](iterator itr) { return m_database.GetDataType(itr) != kDataMset; });
    return msets;
  }

  void TakeMeshLooks(MeshDisplay::LookTable& table) {
    table.addOns = Next<std::uint32_t>();
    ForCount([&] {
      const auto key = Next<std::uint32_t>();
      MeshDisplay::Look look;
      look.mode = Next<std::uint8_t>();
      look.opacity = Next<std::uint8_t>();
      look.shrink = Next<std::uint8_t>() != 0;
      look.addOns = Next<std::uint32_t>();
      // The table keeps what is not as made only.
      if (look.mode < kMeshModes && m_keys.contains(key) && look != MeshDisplay::Look{}) table.looks[key] = look;
    });
  }

  void TakeLabels(Shown& shown) {
    m_reader.Get(shown.hiddenLabels);
    std::erase_if(shown.hiddenLabels, [this](std::int32_t id) { return !m_cords.contains(id); });
  }

  std::map<RowBox, int> TakeBoxes() {
    std::map<RowBox, int> boxes;
    ForCount([&] {
      RowBox box;
      box.branch = Next<std::uint16_t>();
      box.itr = Next<iterator>();
      box.kind = Next<std::int32_t>();
      const int state = Next<std::int32_t>();
      const bool isThere = box.itr == 0 || m_database.GetDataType(box.itr) != 0;
      if (isThere && state >= 0 && state < kBoxStates) boxes[box] = state;
    });
    return boxes;
  }

  /// What is no quality colours nothing.
  void TakeQuality(MeshDisplay::Colouring& colouring) {
    MeshDisplay::Quality& quality = colouring.quality;
    const int measure = Next<std::uint8_t>();
    quality.isTyped = Next<std::uint8_t>() != 0;
    quality.least = Next<double>();
    quality.greatest = Next<double>();
    const bool fits = std::isfinite(quality.least) && std::isfinite(quality.greatest) &&
                      quality.least < quality.greatest && measure < kQualityMeasures;
    if (!fits) {
      colouring = {};
    } else {
      quality.measure = static_cast<QualityMeasure>(measure);
    }
  }

  void TakeIsolation(Shown& shown) {
    shown.isolation = std::make_shared<Visibility>();
    std::vector<std::int32_t> parts;
    m_reader.Get(parts);
    std::erase_if(parts, [this](int cadItem) { return !m_cadItems.contains(cadItem); });
    std::sort(parts.begin(), parts.end());
    parts.erase(std::unique(parts.begin(), parts.end()), parts.end());
    shown.isolation->hiddenParts.assign(parts.begin(), parts.end());
    shown.isolation->hiddenMsets = TakeMsets();
    shown.isolation->boxes = TakeBoxes();
  }

  ByteReader m_reader;
  const Database& m_database;
  std::unordered_set<int> m_cadItems;
  std::unordered_set<std::uint32_t> m_keys;
  std::unordered_set<std::int32_t> m_cords;
};

}  // namespace

std::string BytesOfDisplay(const Display& display) {
  ByteWriter writer;
  writer.Put(kForm);
  writer.Put(static_cast<std::int32_t>(display.Parts().Colours()));
  writer.Put(static_cast<std::uint32_t>(display.Meshes().GetMeshColorMode()));
  PutParts(writer, display.Parts());
  PutMeshes(writer, display.Meshes());
  writer.Put(display.Labels().Hidden());
  PutBoxes(writer, display.Boxes().States());
  const std::shared_ptr<const Visibility>& isolation = display.Isolation();
  writer.Put(static_cast<std::uint8_t>(isolation != nullptr ? 1 : 0));
  if (isolation != nullptr) {
    writer.Put(std::vector<std::int32_t>(isolation->hiddenParts.begin(), isolation->hiddenParts.end()));
    writer.Put(Sorted(isolation->hiddenMsets));
    PutBoxes(writer, isolation->boxes);
  }
  // Behind all else: what shows nothing of it is kept as it always was.
  if (const MeshDisplay::Quality* quality = display.Meshes().ColouringQuality()) {
    writer.Put(static_cast<std::uint8_t>(quality->measure))
        .Put(static_cast<std::uint8_t>(quality->isTyped ? 1 : 0));
    writer.Put(quality->least).Put(quality->greatest);
  }
  return writer.Take();
}

bool TakeUpDisplay(std::string_view bytes, const Database& database, Display& display) {
  Shown shown;
  if (!Taker(bytes, database).Take(shown)) return false;
  {
    const auto unrecorded = display.StopRecording();
    if (shown.partColours >= 0 && shown.partColours < kPartColours) {
      display.Parts().PutColours(shown.partColours);
    }
    if (shown.meshColours.mode < kMeshColours) display.Meshes().PutColouring(shown.meshColours);
    for (const auto& [cadItem, look] : shown.parts) display.Parts().SetLook(cadItem, look);
    display.Meshes().ShowHideMset(shown.hiddenMsets, 0);
    display.Meshes().PutLooks(shown.meshLooks);
    for (const std::int32_t id : shown.hiddenLabels) display.Labels().SetShowHide(0, kLabelCord, id);
    display.Boxes().PutStates(shown.boxes);
    display.SetIsolation(std::move(shown.isolation));
  }
  display.Deliver();
  return true;
}

}  // namespace qd::workbench
