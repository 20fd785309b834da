#include "workbench/exchange/child/StepStructure.h"

#include <BRepBuilderAPI_Copy.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRep_Builder.hxx>
#include <TopoDS_Compound.hxx>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <unordered_set>
#include <utility>

#include "workbench/exchange/child/Shapes.h"
#include "workbench/mesh/Bytes.h"

namespace qd::workbench {

namespace {

/// Where something stands in what it belongs to, as a text in which places that are equal but for rounding are
/// mostly equal.
std::string TextOf(const TopLoc_Location& place) {
  std::string text;
  const gp_Trsf motion = place.Transformation();
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 4; ++column) {
      char number[40];
      const double value = motion.Value(row, column);
      std::snprintf(number, sizeof(number), "%.7f ", std::abs(value) < 5e-8 ? 0.0 : value);
      text += number;
    }
  }
  return text;
}

TopoDS_Shape CompoundOf(const std::vector<TopoDS_Shape>& shapes) {
  const BRep_Builder builder;
  TopoDS_Compound compound;
  builder.MakeCompound(compound);
  for (const TopoDS_Shape& shape : shapes) builder.Add(compound, shape);
  return compound;
}

class Structure {
 public:
  StepStructure Make(std::vector<SolidPart> parts) {
    for (SolidPart& part : parts) Sort(part);
    for (Node& node : m_nodes) {
      std::stable_sort(node.children.begin(), node.children.end(),
                       [](const Child& left, const Child& right) { return left.use < right.use; });
    }
    for (const Child& root : m_roots)
      (root.isNode ? m_nodes[root.place].isRoot : m_leaves[root.place].isRoot) = true;
    for (const Leaf& leaf : m_leaves) m_leafUses.push_back(UseOf(leaf));
    // An assembly stands behind the one that it lies in.
    m_nodeUses.resize(m_nodes.size());
    for (std::size_t node = m_nodes.size(); node-- > 0;) m_nodeUses[node] = UseOf(m_nodes[node]);
    for (const Child& root : m_roots) m_result.roots.push_back(At(root));
    return std::move(m_result);
  }

 private:
  struct Child {
    bool isNode = false;
    std::size_t place = 0;  // among the nodes or leaves
    std::uint32_t use = 0;
  };
  /// An assembly.
  struct Node {
    std::string product;
    std::string instance;
    bool isRoot = false;
    std::vector<Child> children;
  };
  /// One use of a product with bodies.
  struct Leaf {
    std::string product;
    std::string instance;
    bool isRoot = false;
    std::vector<SolidPart> parts;
  };

  std::vector<Child>& ChildrenOf(std::size_t node) { return node == kNone ? m_roots : m_nodes[node].children; }

  /// Puts a part where it belongs, with the assemblies around it.
  void Sort(SolidPart& given) {
    ExportedPart& part = given.part;
    std::size_t above = kNone;
    ByteWriter key;
    key.Put(part.import);
    std::string path = key.Take();
    for (const ImportedAssembly& assembly : part.assemblies) {
      path += ByteWriter().Put(assembly.product).Put(assembly.instance).Put(assembly.use).Take();
      const auto [place, isNew] = m_nodeAt.try_emplace(path, m_nodes.size());
      if (isNew) {
        ChildrenOf(above).push_back({true, m_nodes.size(), assembly.use});
        m_nodes.push_back({assembly.product, assembly.instance, false, {}});
      }
      above = place->second;
    }
    Bake(given.shape);
    // Other bodies have no names of their own in files, so each makes a product with its name.
    const bool joins = part.kind == TopologyKind::Solid && !part.product.empty();
    std::size_t leaf = m_leaves.size();
    if (joins) {
      path += ByteWriter().Put(part.product).Put(part.instance).Put(part.use).Take();
      leaf = m_leafAt.try_emplace(path, leaf).first->second;
    }
    if (leaf == m_leaves.size()) {
      ChildrenOf(above).push_back({false, leaf, part.use});
      m_leaves.push_back({part.product, part.instance, false, {}});
    }
    m_leaves[leaf].parts.push_back(std::move(given));
  }

  /// Places in files turn and shift only.
  static void Bake(TopoDS_Shape& shape) {
    constexpr double kSame = 1e-12;
    const gp_Trsf motion = shape.Location().Transformation();
    if (std::abs(motion.ScaleFactor() - 1) < kSame && !motion.IsNegative()) return;
    shape = BRepBuilderAPI_Transform(shape.Located(TopLoc_Location()), motion, true).Shape();
  }

  /// Number of a shape without its place; equal ones have one number and become one object.
  std::size_t Intern(const TopoDS_Shape& shape) {
    const TopoDS_Shape alone = shape.Located(TopLoc_Location());
    const auto [place, isNew] = m_shapeAt.try_emplace(BrepOf(alone), m_shapes.size());
    if (isNew) m_shapes.push_back(alone);
    return place->second;
  }

  /// A shape for one body. The file has names and colours with the shape, so no two bodies have the same object.
  TopoDS_Shape Take(std::size_t number) {
    return m_taken.insert(number).second ? m_shapes[number] : BRepBuilderAPI_Copy(m_shapes[number]).Shape();
  }

  StepProduct::Use UseOf(const Leaf& leaf) {
    const TopLoc_Location place = leaf.parts.front().shape.Location();
    StepProduct product;
    product.name = leaf.parts.size() == 1 ? leaf.parts.front().part.name : leaf.product;
    std::string key = ByteWriter().Put(product.name).Take();
    std::vector<std::size_t> numbers;
    for (const SolidPart& one : leaf.parts) {
      numbers.push_back(Intern(one.shape));
      const bool isFirst = numbers.size() == 1;
      const TopLoc_Location inside = isFirst ? TopLoc_Location() : place.Inverted() * one.shape.Location();
      key += ByteWriter().Put(numbers.back()).Put(one.part.name).Put(one.part.colour).Take() + TextOf(inside);
      product.bodies.push_back({one.part.name, one.part.colour, inside, {}});
    }
    const std::size_t number = Keep(key, leaf.isRoot, std::move(product), [&](StepProduct& kept) {
      std::vector<TopoDS_Shape> shapes;
      for (std::size_t i = 0; i < numbers.size(); ++i) {
        shapes.push_back(Take(numbers[i]).Located(kept.bodies[i].place));
        kept.bodies[i].shape = shapes.back();
      }
      kept.shape = shapes.size() == 1 ? shapes.front() : CompoundOf(shapes);
    });
    return {number, leaf.instance, place};
  }

  StepProduct::Use UseOf(const Node& node) {
    StepProduct product;
    product.name = node.product;
    // Inside, places count from the first use, so that assemblies are the same wherever they stand; the outermost
    // one stays where the model has it.
    TopLoc_Location place;
    if (!node.isRoot && !node.children.empty()) place = At(node.children.front()).place;
    std::string key = ByteWriter().Put(node.product).Take() + "A";
    std::vector<TopoDS_Shape> shapes;
    for (std::size_t i = 0; i < node.children.size(); ++i) {
      StepProduct::Use use = At(node.children[i]);
      use.place = i == 0 && !node.isRoot ? TopLoc_Location() : place.Inverted() * use.place;
      key += ByteWriter().Put(use.product).Put(use.name).Take() + TextOf(use.place);
      shapes.push_back(m_result.products[use.product].shape.Moved(use.place));
      product.uses.push_back(std::move(use));
    }
    const std::size_t number =
        Keep(key, node.isRoot, std::move(product), [&](StepProduct& kept) { kept.shape = CompoundOf(shapes); });
    return {number, node.instance, place};
  }

  /// A product that stands by itself is not taken for another one: it would stand in the file once.
  template <typename Finish>
  std::size_t Keep(std::string key, bool isRoot, StepProduct product, const Finish& finish) {
    if (isRoot) key += ByteWriter().Put(m_result.products.size()).Take();
    const auto [place, isNew] = m_productAt.try_emplace(key, m_result.products.size());
    if (isNew) {
      finish(product);
      m_result.products.push_back(std::move(product));
    }
    return place->second;
  }

  StepProduct::Use At(const Child& child) const {
    return child.isNode ? m_nodeUses[child.place] : m_leafUses[child.place];
  }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  // Maps by texts are ordered: whoever chose the texts could choose them to meet in a table.
  std::vector<Node> m_nodes;
  std::vector<Leaf> m_leaves;
  std::vector<Child> m_roots;
  std::map<std::string, std::size_t> m_nodeAt;  // by the way to it
  std::map<std::string, std::size_t> m_leafAt;
  std::vector<StepProduct::Use> m_leafUses;
  std::vector<StepProduct::Use> m_nodeUses;
  std::vector<TopoDS_Shape> m_shapes;
  std::map<std::string, std::size_t> m_shapeAt;  // by the exchange form
  std::unordered_set<std::size_t> m_taken;
  std::map<std::string, std::size_t> m_productAt;
  StepStructure m_result;
};

}  // namespace

StepStructure StructureOf(std::vector<SolidPart> parts) {
  return Structure().Make(std::move(parts));
}

}  // namespace qd::workbench
