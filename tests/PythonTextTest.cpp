// Acts as lines of Python: whatever names hold, a line stays a line, and says what it does.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/Act.h"
#include "support/SessionModel.h"
#include "workbench/session/ActRecorder.h"
#include "workbench/session/PythonText.h"
#include "workbench/session/RecordColour.h"
#include "workbench/session/RecordQuery.h"

namespace qd::test {
namespace {

using namespace workbench;

TEST(PythonText, NothingInANameEndsItsLine) {
  EXPECT_EQ(PythonText(L"Ø \"20\"\\"), "\"Ø \\\"20\\\"\\\\\"");
  EXPECT_EQ(PythonText(L"a\nimport os\r\x2028\x202E\x7F"), "\"a\\nimport os\\x0d\\u2028\\u202e\\x7f\"");
  EXPECT_EQ(PythonPath("/a\xFF\"b"), "\"/a\\udcff\\\"b\"");
  EXPECT_EQ(PythonNumbers({3, 4, 5}) + PythonNumbers({3, 5}) + PythonNumbers({3}), "range(3, 6)(3, 5)(3,)");
  EXPECT_EQ(PythonNumber(7.85e-9) + " " + PythonNumber(210000) + " " + PythonNumber(0.1), "7.85e-09 210000 0.1");
  EXPECT_EQ(PythonColour(0x203040), "\"#403020\"");
}

TEST_F(SessionTest, AnActIsLinesOfWhatItChanged) {
  std::string lines;
  ActRecorder acts(m_doc, [&lines](const std::string& text) { lines += text; });
  const auto took = [&] {
    acts.Flush();
    return std::exchange(lines, {});
  };
  Recolour(Data(), m_a, 0x203040);
  EXPECT_EQ(took(), "doc.at(\"part\", 1).colour = \"#403020\"\n");
  // Many that become the same, in an act with a title that could be code.
  RunAct(&Data(), CString(L"\"\nimport os"), [&] {
    for (const iterator part : {m_a, m_b, m_c}) {
      tagTGeom record = *Data().GetGeomPool().GetAtNU(part);
      record.gset = m_second;
      Data().GetGeomPool().Change(part, record);
    }
    return Data().GetGsetPool().TR_Del({m_first});
  });
  const std::string second = std::to_string(NumberOf(m_second));
  const std::string first = std::to_string(NumberOf(m_first));
  EXPECT_EQ(took(),
            "with doc.act(\"\\\"\\nimport os\"):\n    for n in (1, 2):\n        doc.at(\"part\", n).group = "
            "doc.at(\"group\", " +
                second + ")\n    doc.delete([doc.at(\"group\", " + first + ")])\n");
  // What is shown is of the act that it came with, or an act by itself; undoing is none.
  ShowRecords(m_doc, {m_a, m_c, m_inner}, false);
  EXPECT_EQ(took(), "doc.hide([doc.at(\"mesh_set\", " + std::to_string(NumberOf(m_inner)) +
                        ")] + [doc.at(\"part\", n) for n in (1, 3)])\n");
  Data().Undo();
  m_doc.GetDisplay().Deliver();
  EXPECT_EQ(took(), "");
  Data().GetMsetPool().Merge(m_outer, {m_inner});
  EXPECT_EQ(took(), "doc.at(\"mesh_set\", " + std::to_string(NumberOf(m_outer)) +
                        ").merge([doc.at(\"mesh_set\", " + std::to_string(NumberOf(m_inner)) + ")])\n");
  // What no line can do is said, and what is expected is taken for it once.
  const auto turn = [&] {
    RunAct(&Data(), CString(L"Rigid\n"), [&] {
      tagTGeom part = *Data().GetGeomPool().GetAtNU(m_b);
      part.kind = part.kind == TopologyKind::Solid ? TopologyKind::Surface : TopologyKind::Solid;
      return Data().GetGeomPool().Change(m_b, std::move(part));
    });
  };
  turn();
  EXPECT_EQ(took(), "# no line for: \"Rigid\\n\"\n");
  acts.Expect("doc.turn()");
  turn();
  turn();
  EXPECT_EQ(took(), "doc.turn()\n# no line for: \"Rigid\\n\"\n");
}

}  // namespace
}  // namespace qd::test
