// The library's own way from a STEP file to a document of products searches the document for every use, for every
// name and every colour, which takes minutes where there are ten thousand of them. Here its plain reader makes the
// shapes, and names, colours and structure are taken from the file's entities, each looked at once.

#include "workbench/exchange/child/StepFile.h"

#include <Interface_EntityIterator.hxx>
#include <STEPConstruct_Styles.hxx>
#include <STEPControl_Reader.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <StepShape_SolidModel.hxx>
#include <StepVisual_PresentationStyleByContext.hxx>
#include <StepVisual_StyledItem.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Iterator.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>
#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "workbench/exchange/child/CadNotes.h"
#include "workbench/exchange/child/Shapes.h"
#include "workbench/exchange/pipe/Protocol.h"

namespace qd::workbench {

namespace {

using Product = Handle(StepBasic_ProductDefinition);
using Use = Handle(StepRepr_NextAssemblyUsageOccurrence);

constexpr std::size_t kMostBodies = 1'000'000;
constexpr std::size_t kMostUses = 4 * kMostBodies;  // with those of assemblies
constexpr std::size_t kDeepest = 200;               // a product that holds itself never ends

std::string TextOf(const Handle(TCollection_HAsciiString) & text) {
  return text.IsNull() ? std::string() : std::string(text->ToCString(), static_cast<std::size_t>(text->Length()));
}

std::string FirstOf(std::initializer_list<Handle(TCollection_HAsciiString)> texts) {
  for (const Handle(TCollection_HAsciiString) & text : texts) {
    if (std::string name = TextOf(text); !name.empty()) return name;
  }
  return {};
}

std::string NameOf(const Product& product) {
  if (product->Formation().IsNull() || product->Formation()->OfProduct().IsNull()) return {};
  const Handle(StepBasic_Product) of = product->Formation()->OfProduct();
  return FirstOf({of->Name(), of->Id()});
}

std::string NameOf(const Use& use) {
  return FirstOf({use->Name(), use->HasDescription() ? use->Description() : nullptr, use->Id()});
}

/// What the file's entities say, each looked at once.
class Entities {
 public:
  explicit Entities(const Handle(XSControl_WorkSession) & session)
      : m_process(session->TransferReader()->TransientProcess()), m_styles(session) {
    const Handle(Interface_InterfaceModel) model = session->Model();
    for (int i = 1; i <= model->NbEntities(); ++i) Look(model->Value(i));
    for (const Handle(StepVisual_StyledItem) & style : m_styled) TakeColour(style);
  }

  TopoDS_Shape ShapeOf(const Handle(Standard_Transient) & entity) const {
    const Handle(Transfer_Binder) binder = m_process->Find(entity);
    return binder.IsNull() ? TopoDS_Shape() : TransferBRep::ShapeResult(binder);
  }
  /// The uses that make up a product, in the file's order.
  const std::vector<Use>& UsesIn(const Product& product) const {
    static const std::vector<Use> kNone;
    const auto found = m_uses.find(product.get());
    return found == m_uses.end() ? kNone : found->second;
  }
  std::optional<COLORREF> ColourOf(const TopoDS_Shape& shape) const {
    return Find(m_colours, shape.TShape().get());
  }
  std::optional<COLORREF> ColourOf(const Use& use) const { return Find(m_useColours, use.get()); }
  std::string NameOf(const TopoDS_Shape& body) const {
    const auto found = m_names.find(body.TShape().get());
    return found == m_names.end() ? std::string() : found->second;
  }

 private:
  template <typename Map>
  static std::optional<COLORREF> Find(const Map& colours, typename Map::key_type key) {
    const auto found = colours.find(key);
    return found == colours.end() ? std::nullopt : std::optional(found->second);
  }

  void Look(const Handle(Standard_Transient) & entity) {
    if (const Use use = Use::DownCast(entity); !use.IsNull()) {
      if (!use->RelatingProductDefinition().IsNull())
        m_uses[use->RelatingProductDefinition().get()].push_back(use);
    } else if (const auto styled = Handle(StepVisual_StyledItem)::DownCast(entity); !styled.IsNull()) {
      m_styled.push_back(styled);
    } else if (const auto solid = Handle(StepShape_SolidModel)::DownCast(entity); !solid.IsNull()) {
      const TopoDS_Shape shape = ShapeOf(entity);
      if (!shape.IsNull() && !TextOf(solid->Name()).empty()) m_names[shape.TShape().get()] = TextOf(solid->Name());
    } else if (const auto shown = Handle(StepShape_ShapeDefinitionRepresentation)::DownCast(entity);
               !shown.IsNull()) {
      TakeUseOf(shown);
    }
  }

  /// The representation of a use: styles of it are the use's own.
  void TakeUseOf(const Handle(StepShape_ShapeDefinitionRepresentation) & shown) {
    const auto shape = Handle(StepRepr_ProductDefinitionShape)::DownCast(shown->Definition().PropertyDefinition());
    if (shape.IsNull()) return;
    const Use use = Use::DownCast(shape->Definition().ProductDefinitionRelationship());
    if (!use.IsNull()) m_useShown[shown->UsedRepresentation().get()] = use.get();
  }

  void TakeColour(const Handle(StepVisual_StyledItem) & style) {
    Handle(StepVisual_Colour) surface;
    Handle(StepVisual_Colour) boundary;
    Handle(StepVisual_Colour) curve;
    Handle(StepVisual_Colour) rendering;
    double transparency = 0;
    bool ofUse = false;
    if (!m_styles.GetColors(style, surface, boundary, curve, rendering, transparency, ofUse)) return;
    Quantity_Color colour;
    for (const auto& given : {surface, rendering, curve, boundary}) {
      if (given.IsNull() || !STEPConstruct_Styles::DecodeColor(given, colour)) continue;
      Colour(style, ofUse, RgbOf(colour));
      return;
    }
  }

  void Colour(const Handle(StepVisual_StyledItem) & style, bool ofUse, COLORREF colour) {
    if (ofUse) {
      for (int i = 1; i <= style->NbStyles(); ++i) {
        const auto context = Handle(StepVisual_PresentationStyleByContext)::DownCast(style->StylesValue(i));
        if (context.IsNull()) continue;
        const auto found = m_useShown.find(context->StyleContext().Representation().get());
        if (found == m_useShown.end()) continue;
        m_useColours[found->second] = colour;
        return;
      }
    }
    const TopoDS_Shape shape = ShapeOf(style->Item());
    if (!shape.IsNull()) m_colours[shape.TShape().get()] = colour;
  }

  Handle(Transfer_TransientProcess) m_process;
  STEPConstruct_Styles m_styles;
  std::unordered_map<const StepBasic_ProductDefinition*, std::vector<Use>> m_uses;
  std::vector<Handle(StepVisual_StyledItem)> m_styled;
  std::unordered_map<const StepRepr_Representation*, const StepRepr_NextAssemblyUsageOccurrence*> m_useShown;
  std::unordered_map<const StepRepr_NextAssemblyUsageOccurrence*, COLORREF> m_useColours;
  std::unordered_map<const TopoDS_TShape*, COLORREF> m_colours;
  std::unordered_map<const TopoDS_TShape*, std::string> m_names;
};

/// A body of a product, in the product's own place.
struct OwnBody {
  Body body;
  std::string name;                // of its own; empty for the only one of a product
  std::optional<COLORREF> colour;  // of its own or of what holds it within the product
};

/// Walks the uses of products and gathers a body for each.
class Walk {
 public:
  Walk(const Entities& entities, CadModel& model) : m_entities(entities), m_model(model) {}

  void Root(const Handle(Standard_Transient) & root) {
    const Product product = Product::DownCast(root);
    if (product.IsNull()) return Loose(root);
    Run({product, {}, {}, {}, {}, std::nullopt});
  }

 private:
  struct Step {
    Product product;
    TopLoc_Location place;
    std::vector<ImportedAssembly> above;  // the assemblies that hold this use, outermost first
    std::string instance;                 // name of the use
    std::uint32_t use = 0;                // which one in the assembly above
    std::optional<COLORREF> colour;       // of the use, or of an assembly above
  };

  void Run(const Step& start) {
    std::vector<Step> stack{start};
    while (!stack.empty()) {
      const Step step = std::move(stack.back());
      stack.pop_back();
      // A few nested assemblies can describe more uses than any memory holds.
      if (++m_steps > kMostUses) throw ImportError{"IDS_WB_IMPORT_TOO_MANY", std::to_string(kMostBodies)};
      Collect(step);
      PushUses(step, stack);
    }
  }

  /// Uses in their order: the last one goes onto the stack first.
  void PushUses(const Step& step, std::vector<Step>& stack) {
    const std::vector<Use>& uses = m_entities.UsesIn(step.product);
    if (uses.empty()) return;
    std::vector<ImportedAssembly> path = step.above;
    path.push_back({NameOf(step.product), step.instance, step.use});
    if (path.size() > kDeepest) return m_model.notes.Add("IDS_WB_NOTE_TOO_DEEP", path.back().product);
    for (std::size_t i = uses.size(); i-- > 0;) {
      const Product product = uses[i]->RelatedProductDefinition();
      if (product.IsNull()) continue;  // told as damaged
      std::optional<COLORREF> colour = m_entities.ColourOf(uses[i]);
      stack.push_back({product, step.place * PlaceOf(uses[i]), path, NameOf(uses[i]),
                       static_cast<std::uint32_t>(i + 1), colour ? colour : step.colour});
    }
  }

  /// Where a use stands in the assembly above. The library's shape of the use is the product's, moved.
  TopLoc_Location PlaceOf(const Use& use) const {
    const TopoDS_Shape used = m_entities.ShapeOf(use);
    const TopoDS_Shape product = m_entities.ShapeOf(use->RelatedProductDefinition());
    if (used.IsNull() || product.IsNull()) return {};
    return used.Location() * product.Location().Inverted();
  }

  void Collect(const Step& step) {
    const std::vector<OwnBody>& bodies = BodiesOfProduct(step.product);
    const std::string product = NameOf(step.product);
    const std::string name = product.empty() ? step.instance : product;
    int number = 0;
    for (const OwnBody& own : bodies) {
      ++number;
      if (m_model.bodies.size() >= kMostBodies) {
        throw ImportError{"IDS_WB_IMPORT_TOO_MANY", std::to_string(kMostBodies)};
      }
      CadBody& result = m_model.bodies.emplace_back();
      result.shape = own.body.shape.Moved(step.place);
      ImportedPart& part = result.part;
      part.kind = own.body.kind;
      part.product = product;
      part.instance = step.instance;
      part.use = step.use;
      part.assemblies = step.above;
      part.name = bodies.size() == 1  ? name
                  : !own.name.empty() ? own.name
                                      : name + " [" + std::to_string(number) + "]";
      // The use's colour wins over the product's, as the file means it.
      const std::optional<COLORREF> colour = step.colour ? step.colour : own.colour;
      if (colour) part.colour = *colour;
    }
  }

  /// A root that belongs to no product: its bodies have the names that their entities have.
  void Loose(const Handle(Standard_Transient) & root) {
    for (const OwnBody& own : BodiesIn(m_entities.ShapeOf(root), nullptr)) {
      CadBody& result = m_model.bodies.emplace_back();
      result.shape = own.body.shape;
      result.part.kind = own.body.kind;
      result.part.name = own.name;
      if (own.colour) result.part.colour = *own.colour;
    }
  }

  const std::vector<OwnBody>& BodiesOfProduct(const Product& product) {
    const auto [place, isNew] = m_bodies.try_emplace(product.get());
    std::vector<OwnBody>& bodies = place->second;
    if (!isNew) return bodies;
    bodies = BodiesIn(m_entities.ShapeOf(product), product);
    if (bodies.empty() && m_entities.UsesIn(product).empty()) {
      m_model.notes.Add("IDS_WB_NOTE_NO_SHAPE", NameOf(product));
    }
    return bodies;
  }

  /// The bodies of a shape without those that uses of other products bring into it.
  std::vector<OwnBody> BodiesIn(const TopoDS_Shape& whole, const Product& product) const {
    std::unordered_set<const TopoDS_TShape*> ofUses;
    if (!product.IsNull()) {
      for (const Use& use : m_entities.UsesIn(product)) {
        const TopoDS_Shape used = m_entities.ShapeOf(use);
        if (!used.IsNull()) ofUses.insert(used.TShape().get());
      }
    }
    std::vector<OwnBody> bodies;
    if (!whole.IsNull()) Gather(whole, m_entities.ColourOf(whole), ofUses, bodies);
    return bodies;
  }

  /// Goes down through compounds, which may have a colour for all that they hold.
  void Gather(const TopoDS_Shape& shape, const std::optional<COLORREF>& colour,
              const std::unordered_set<const TopoDS_TShape*>& ofUses, std::vector<OwnBody>& bodies) const {
    struct Level {
      TopoDS_Shape shape;
      std::optional<COLORREF> colour;
    };
    std::vector<Level> stack{{shape, colour}};
    while (!stack.empty()) {
      const Level level = std::move(stack.back());
      stack.pop_back();
      if (level.shape.ShapeType() > TopAbs_COMPSOLID) {
        for (const Body& body : BodiesOf(level.shape)) bodies.push_back(Own(body, level.colour));
        continue;
      }
      std::vector<Level> inside;
      for (TopoDS_Iterator at(level.shape); at.More(); at.Next()) {
        if (ofUses.count(at.Value().TShape().get()) > 0) continue;
        const std::optional<COLORREF> own = m_entities.ColourOf(at.Value());
        inside.push_back({at.Value(), own ? own : level.colour});
      }
      std::move(inside.rbegin(), inside.rend(), std::back_inserter(stack));
    }
  }

  OwnBody Own(const Body& body, const std::optional<COLORREF>& outer) const {
    OwnBody own{body, m_entities.NameOf(body.shape), m_entities.ColourOf(body.shape)};
    if (!own.colour) own.colour = outer;
    // A part that is coloured face by face shows the colour of its first coloured face.
    for (TopExp_Explorer at(body.shape, TopAbs_FACE); at.More() && !own.colour; at.Next()) {
      own.colour = m_entities.ColourOf(at.Current());
    }
    return own;
  }

  const Entities& m_entities;
  CadModel& m_model;
  std::size_t m_steps = 0;
  std::unordered_map<const StepBasic_ProductDefinition*, std::vector<OwnBody>> m_bodies;
};

}  // namespace

CadModel ReadStep(const std::string& path, const Message_ProgressRange& range) {
  STEPControl_Reader reader;
  if (reader.ReadFile(path.c_str()) != IFSelect_RetDone) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  const int roots = reader.NbRootsForTransfer();
  if (roots == 0) throw ImportError{"IDS_WB_IMPORT_NOTHING", ""};
  reader.TransferRoots(range);
  CadModel model;
  NoteFaults(reader, model.notes);
  const Entities entities(reader.WS());
  Walk walk(entities, model);
  for (int i = 1; i <= roots; ++i) walk.Root(reader.RootForTransfer(i));
  return model;
}

}  // namespace qd::workbench
