// What the module asks the document to do by name: all of it as one act, or nothing.

#include <gtest/gtest.h>

#include "host/CQDCommandObj.h"
#include "support/Model.h"
#include "workbench/model/Values.h"

namespace qd::test {
namespace {

using namespace workbench;
using Records = std::vector<iterator>;

class HostCommands : public ModelTest {
 protected:
  HostCommands() {
    m_set = AddSet(L"first");
    m_other = AddSet(L"other");
    m_parts = {AddPartTo(m_set, L"a"), AddPartTo(m_set, L"b"), AddPartTo(m_set, L"c")};
    m_steel = AddMaterial(L"Steel");
    Open();
  }
  CQDCommandObj New(const CString& name) { return CQDCommandObj(&m_doc, name); }
  /// The material and the set of each part.
  std::vector<std::pair<iterator, iterator>> Parts() {
    std::vector<std::pair<iterator, iterator>> parts;
    for (const iterator part : m_parts) parts.emplace_back(Part(part).material, Part(part).gset);
    return parts;
  }
  std::vector<CString> Sets() {
    std::vector<CString> names;
    for (const iterator set : Data().GetGsetPool().GetItrList()) {
      names.push_back(Data().GetGsetPool().GetAtNU(set)->name);
    }
    return names;
  }
  static std::vector<tagTGset> Named(const std::vector<CString>& names) {
    std::vector<tagTGset> sets(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) sets[i].name = names[i];
    return sets;
  }

  iterator m_set = 0, m_other = 0, m_steel = 0;
  Records m_parts;
};

TEST_F(HostCommands, AreOneActThatCanBeTakenBack) {
  const auto run = [this](CQDCommandObj& command, const CString& title) {
    ExpectOneAct(title, [&] { return command.Execute(); });
  };
  const Records two{m_parts[0], m_parts[2]};
  run(New(L"Geom").Set(L"Action", CString(L"ApplyMaterial")).Set(L"Itr", two).Set(L"ItrMaterial", m_steel),
      L"IDS_QD_TRANS_Modify_Geometry");
  EXPECT_EQ(Parts(), (std::vector<std::pair<iterator, iterator>>{{m_steel, m_set}, {0, m_set}, {m_steel, m_set}}));
  run(New(L"Geom").Set(L"Action", CString(L"ApplyMaterial")).Set(L"Itr", m_parts).Set(L"ItrMaterial", iterator{0}),
      L"IDS_QD_TRANS_Modify_Geometry");
  EXPECT_EQ(Parts(), (std::vector<std::pair<iterator, iterator>>{{0, m_set}, {0, m_set}, {0, m_set}}));
  run(New(L"Geom").Set(L"Action", CString(L"ApplyGset")).Set(L"Itr", two).Set(L"ItrGset", m_other),
      L"IDS_QD_TRANS_Modify_Geometry");
  EXPECT_EQ(Parts(), (std::vector<std::pair<iterator, iterator>>{{0, m_other}, {0, m_set}, {0, m_other}}));
  run(New(L"GeomSet").Set(L"Action", 0).Set(L"Data", Named({L"x", L"y"})), L"IDS_QD_WRT_GEOMSET_NEW");
  EXPECT_EQ(Sets(), (std::vector<CString>{L"first", L"other", L"x", L"y"}));
  run(New(L"GeomSet").Set(L"Action", 1).Set(L"Itr", Records{m_other, m_set}).Set(L"Data", Named({L"2", L"1"})),
      L"IDS_QD_TRANS_Modify_GeomSet");
  EXPECT_EQ(Sets(), (std::vector<CString>{L"1", L"2", L"x", L"y"}));
}

TEST_F(HostCommands, ThatNameWhatIsNotThereChangeNothing) {
  const CString material = L"ApplyMaterial";
  const CString set = L"ApplyGset";
  const iterator part = m_parts[0];
  const Records mixed{part, m_steel};
  CQDCommandObj commands[] = {
      New(L"Other").Set(L"Action", material).Set(L"Itr", m_parts).Set(L"ItrMaterial", m_steel),
      New(L"Geom").Set(L"Itr", m_parts).Set(L"ItrMaterial", m_steel),
      New(L"Geom").Set(L"Action", CString(L"Paint")).Set(L"Itr", m_parts).Set(L"ItrMaterial", m_steel),
      New(L"Geom").Set(L"Action", material).Set(L"ItrMaterial", m_steel),
      New(L"Geom").Set(L"Action", material).Set(L"Itr", Records()).Set(L"ItrMaterial", m_steel),
      New(L"Geom").Set(L"Action", material).Set(L"Itr", m_parts),
      New(L"Geom").Set(L"Action", material).Set(L"Itr", m_parts).Set(L"ItrMaterial", part),
      New(L"Geom").Set(L"Action", material).Set(L"Itr", mixed).Set(L"ItrMaterial", m_steel),
      New(L"Geom").Set(L"Action", set).Set(L"Itr", m_parts),
      New(L"Geom").Set(L"Action", set).Set(L"Itr", m_parts).Set(L"ItrGset", iterator{0}),
      New(L"Geom").Set(L"Action", set).Set(L"Itr", m_parts).Set(L"ItrGset", m_steel),
      New(L"Geom").Set(L"Action", set).Set(L"Itr", mixed).Set(L"ItrGset", m_other),
      New(L"GeomSet").Set(L"Data", Named({L"x"})),
      New(L"GeomSet").Set(L"Action", 0),
      New(L"GeomSet").Set(L"Action", 0).Set(L"Data", Named({})),
      New(L"GeomSet").Set(L"Action", 0).Set(L"Data", Named({L"x", CString(kMostName + 1, L'y')})),
      New(L"GeomSet").Set(L"Action", 1).Set(L"Data", Named({L"x"})),
      New(L"GeomSet").Set(L"Action", 2).Set(L"Itr", Records{m_set}).Set(L"Data", Named({L"x"})),
      New(L"GeomSet").Set(L"Action", 1).Set(L"Itr", Records{m_set}).Set(L"Data", Named({L"x", L"y"})),
      New(L"GeomSet").Set(L"Action", 1).Set(L"Itr", Records{m_set, m_other}).Set(L"Data", Named({L"x"})),
      New(L"GeomSet").Set(L"Action", 1).Set(L"Itr", Records{m_set, part}).Set(L"Data", Named({L"x", L"y"}))};
  const auto before = Data().Snapshot();
  const std::uint64_t acts = Data().ActNumber();
  for (std::size_t i = 0; i < std::size(commands); ++i) {
    EXPECT_EQ(commands[i].Execute(), 0) << i;
    EXPECT_FALSE(Data().IsInTransaction()) << i;
    EXPECT_EQ(Data().Snapshot(), before) << i;
  }
  EXPECT_EQ(Data().ActNumber(), acts);
  Settle();
  Heard();
}

}  // namespace
}  // namespace qd::test
