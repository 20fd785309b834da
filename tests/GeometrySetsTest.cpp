// The geometry-set tree over the real model: the order of its groups and rows, and the boxes above the parts.

#include <random>

#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "support/Geometry.h"

namespace qd::test {
namespace {

using namespace workbench;

const CString kRoot = L"IDS_DB_DATA_NAME_GEOM";

/// Sets A (solids a1 and a2, surface a3) and B (solid b1).
class GeometrySets : public GeometryTest {
 protected:
  GeometrySets() {
    A = AddSet(L"A");
    B = AddSet(L"B");
    a1 = AddPartTo(A, L"a1");
    a2 = AddPartTo(A, L"a2");
    a3 = AddPartTo(A, L"a3", TopologyKind::Surface);
    b1 = AddPartTo(B, L"b1");
    Show(kGeometrySetTree);
    Open();
    Heard();
  }
  /// The tree below its root, with short names for the kinds.
  std::string Sets() {
    std::string state = State();
    const auto replace = [&state](const std::string& from, const std::string& to) {
      for (std::size_t at = state.find(from); at != std::string::npos; at = state.find(from)) {
        state.replace(at, from.size(), to);
      }
    };
    replace("IDS_QD_WRT_GEOMSET_", "");
    const std::size_t first = state.find('[', state.find("NAME_GEOM")) + 1;
    return state.substr(first, state.size() - 2 - first);
  }

  iterator A, B, a1, a2, a3, b1;
};

// ---- following the model --------------------------------------------------------------------------------

TEST_F(GeometrySets, PartsComeGoAndMoveInTheSameNotice) {
  const iterator curve = AddPartTo(A, L"a4", TopologyKind::Curve);
  EXPECT_EQ(Sets(), "A [CURVE [1] [a4] SURFACE [1] [a3] SOLID [2] [a1 a2]] B [SOLID [1] [b1]]");
  ChangePart(curve, [](tagTGeom& part) { part.kind = TopologyKind::Solid; });
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] SOLID [3] [a1 a2 a4]] B [SOLID [1] [b1]]");
  ChangePart(a3, [this](tagTGeom& part) { part.gset = B; });
  EXPECT_EQ(Sets(), "A [SOLID [3] [a1 a2 a4]] B [SURFACE [1] [a3] SOLID [1] [b1]]");
  Data().GetGeomPool().TR_Del({b1, a1});
  EXPECT_EQ(Sets(), "A [SOLID [2] [a2 a4]] B [SURFACE [1] [a3]]");
}

TEST_F(GeometrySets, ANoticeIsOfItsOwnChangesOnly) {
  Data().GetGeomPool().TR_Del({a1});
  Undo();
  Select({L"a1"});
  AddPartTo(A, L"a4");
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] SOLID [3] [a2 *a1 a4]] B [SOLID [1] [b1]]");
}

TEST_F(GeometrySets, PartsAreDraggedByTheMouse) {
  DragByMouse({L"a1", L"a3"}, L"B");
  EXPECT_EQ(Sets(), "A [SOLID [1] [a2]] B [SURFACE [1] [*a3] SOLID [2] [b1 *a1]]");
}

TEST_F(GeometrySets, RunsOfSeveralChangesInOneActAreFollowed) {
  std::mt19937 random(5);
  const auto roll = [&random](std::size_t sides) { return random() % sides; };
  for (int round = 0; round < 150; ++round) {
    Act([&] {
      for (std::size_t writes = 1 + roll(6); writes > 0; --writes) {
        const auto sets = Data().GetGsetPool().GetItrList();
        const auto parts = Data().GetGeomPool().GetItrList();
        switch (roll(6)) {
          case 0:
            Data().GetGsetPool().Add({{}, L"set" + std::to_wstring(round)});
            break;
          case 1:
            if (sets.size() > 1) Data().GetGsetPool().TR_Del({sets[roll(sets.size())]});
            break;
          case 2:
            if (!parts.empty()) Data().GetGeomPool().TR_Del({parts[roll(parts.size())]});
            break;
          case 3: {
            tagTGeom record;
            record.name = L"p" + std::to_wstring(round);
            record.kind = static_cast<TopologyKind>(roll(5));
            record.gset = sets[roll(sets.size())];
            Data().GetGeomPool().Add(record);
            break;
          }
          default:
            if (parts.empty()) break;
            const iterator itr = parts[roll(parts.size())];
            tagTGeom record = *Data().GetGeomPool().GetAtNU(itr);
            record.kind = static_cast<TopologyKind>(roll(5));
            record.gset = sets[roll(sets.size())];
            Data().GetGeomPool().Change(itr, record);
            break;
        }
      }
    });
    if (roll(4) == 0) Undo();
    ASSERT_FALSE(HasFailure()) << "round " << round;
  }
}

// ---- visibility and commands ----------------------------------------------------------------------------

/// Boxes of sets and groups are what was written to them: of A, its surfaces and solids, and of B and its solids.
TEST_F(GeometrySets, CommandsWriteTheBoxesOfAllThatIsBelow) {
  const struct {
    std::vector<CString> selected;
    unsigned command;
    const char* sets;
  } cases[] = {{{L"A"}, kCommandHide, "-A [-SURFACE [1] [-a3] -SOLID [2] [-a1 -a2]] B [SOLID [1] [b1]]"},
               {{L"A"}, kCommandShow, "A [SURFACE [1] [a3] SOLID [2] [a1 a2]] B [SOLID [1] [b1]]"},
               {{L"B"}, kCommandShowOnly, "-A [-SURFACE [1] [-a3] -SOLID [2] [-a1 -a2]] B [SOLID [1] [b1]]"},
               {{L"B"}, kCommandHideOnly, "A [SURFACE [1] [a3] SOLID [2] [a1 a2]] -B [-SOLID [1] [-b1]]"},
               {{L"A"}, kCommandReverse, "A [-SURFACE [1] [-a3] SOLID [2] [-a1 a2]] B [SOLID [1] [b1]]"},
               {{L"A", L"a2"}, kCommandReverse, "A [-SURFACE [1] [-a3] SOLID [2] [-a1 a2]] B [SOLID [1] [b1]]"},
               {{L"a3"}, kCommandHide, "A [SURFACE [1] [-a3] SOLID [2] [a1 -a2]] B [SOLID [1] [b1]]"},
               {{kRoot}, kCommandReverseAll, "A [-SURFACE [1] [-a3] SOLID [2] [-a1 a2]] -B [-SOLID [1] [-b1]]"}};
  for (const auto& [selected, command, expected] : cases) {
    Open();
    Node(L"a2")->OnClickCheck(kChecked);
    Select(selected);
    Command(command);
    std::string sets = Sets();
    std::erase(sets, '*');
    EXPECT_EQ(sets, expected) << command;
    while (Data().UndoTitle() == L"IDS_WB_ACT_VISIBILITY") Undo();
  }
}

TEST_F(GeometrySets, GroupsSortTheirParts) {
  AddPartTo(A, L"B2");
  AddPartTo(A, L"a10");
  const CString group = L"IDS_QD_WRT_GEOMSET_SOLID [4]";
  Select({group});
  Command(kCommandSortByName);
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] *SOLID [4] [a1 a2 a10 B2]] B [SOLID [1] [b1]]");
  Command(kCommandSortByCreation);
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] *SOLID [4] [a1 a2 B2 a10]] B [SOLID [1] [b1]]");
}

}  // namespace
}  // namespace qd::test
