// The library's plain writer makes the entities of shapes and assemblies; names and colours are put on them here,
// each found by a single look.

#include "workbench/exchange/child/StepWriter.h"

#include <APIHeaderSection_MakeHeader.hxx>
#include <Interface_Static.hxx>
#include <Message_ProgressScope.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_ActorWrite.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPConstruct.hxx>
#include <STEPConstruct_Styles.hxx>
#include <STEPControl_Writer.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepData_Protocol.hxx>
#include <StepData_StepModel.hxx>
#include <StepData_StepWriter.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <StepVisual_Colour.hxx>
#include <StepVisual_MechanicalDesignGeometricPresentationRepresentation.hxx>
#include <StepVisual_PresentationStyleAssignment.hxx>
#include <StepVisual_StyledItem.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TopExp_Explorer.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeMapper.hxx>
#include <Transfer_FinderProcess.hxx>
#include <XSControl_Controller.hxx>
#include <XSControl_TransferWriter.hxx>
#include <XSControl_WorkSession.hxx>
#include <deque>
#include <map>
#include <streambuf>
#include <string>
#include <utility>

#include "workbench/exchange/child/Shapes.h"
#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

namespace {

using Definition = Handle(StepBasic_ProductDefinition);
using Shown = Handle(StepShape_ShapeDefinitionRepresentation);

Handle(TCollection_HAsciiString) TextOf(const std::string& text) {
  return new TCollection_HAsciiString(text.c_str());  // reference-counted
}

// The library writes letters beyond ASCII as they are, where the format has them by their numbers, and what it
// makes of backslashes its own reader does not understand; it breaks long texts into lines wherever that comes. So
// names are given to it with other letters in place of those that are special, and all are put right on the way
// out.
constexpr char32_t kSpecial = 0x10FF00;  // stands for the code 0; nobody's letters

/// The characters of valid UTF-8.
std::u32string Letters(const std::string& utf8) {
  std::u32string letters;
  for (const char byte : utf8) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 0x80) {
      letters.push_back(value);
    } else if (value >= 0xC0) {
      letters.push_back(value & (value >= 0xF0 ? 0x07U : value >= 0xE0 ? 0x0FU : 0x1FU));
    } else if (!letters.empty()) {
      letters.back() = letters.back() << 6U | (value & 0x3FU);
    }
  }
  return letters;
}

void Append(std::string& utf8, char32_t letter) {
  const auto put = [&utf8](char32_t byte) { utf8 += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (letter < 0x80) return put(letter);
  const int more = letter < 0x800 ? 1 : letter < 0x10000 ? 2 : 3;
  put((0xF0U << static_cast<unsigned>(3 - more) & 0xFFU) | letter >> static_cast<unsigned>(6 * more));
  for (int left = more - 1; left >= 0; --left) put(0x80U | (letter >> static_cast<unsigned>(6 * left) & 0x3FU));
}

/// A name for the library, cut to what readers take.
std::string Prepared(const std::string& name, bool& isCut) {
  constexpr std::size_t kMost = 15'000;  // bytes of a text in a file
  constexpr std::size_t kNumber = 12;    // bytes of a letter by its number, at most, and more beyond two bytes
  std::string text;
  std::size_t length = 0;
  for (const char32_t letter : Letters(name)) {
    const bool isPlain = letter >= ' ' && letter < 0x7F && letter != '\\' && letter != '\'';
    length += isPlain ? 1 : letter > 0xFFFF ? kNumber + 4 : kNumber;
    isCut = length > kMost;
    if (isCut) break;
    Append(text, !isPlain && letter < 0x80 ? kSpecial + letter : letter);
  }
  return text;
}

/// Puts the letters right in a file of the library.
class Ascii final : public std::streambuf {
 public:
  explicit Ascii(std::ostream& out) : m_out(out) {}

 protected:
  int_type overflow(int_type letter) override {
    if (traits_type::eq_int_type(letter, traits_type::eof())) return traits_type::not_eof(letter);
    Put(static_cast<unsigned char>(traits_type::to_char_type(letter)));
    return letter;
  }
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    for (std::streamsize i = 0; i < count; ++i) Put(static_cast<unsigned char>(bytes[i]));
    return count;
  }

 private:
  void Put(unsigned char byte) {
    if (byte < 0x80) {
      // The library may begin a line within a letter.
      if (m_missing > 0) {
        m_isBroken = true;
        return;
      }
      End();
      m_out.put(static_cast<char>(byte));
    } else if (byte >= 0xC0) {
      m_missing = byte >= 0xF0 ? 3 : byte >= 0xE0 ? 2 : 1;
      m_letter = byte & (0x3FU >> static_cast<unsigned>(m_missing));
    } else if (m_missing > 0) {
      m_letter = m_letter << 6U | (byte & 0x3FU);
      if (--m_missing == 0) Number();
    }
  }
  void Number() {
    if (m_letter >= kSpecial) m_letter -= kSpecial;
    const char kind = m_letter > 0xFFFF ? '4' : '2';  // with so many bytes
    if (kind != m_kind) {
      End();
      m_out << "\\X" << kind << "\\";
      m_kind = kind;
    }
    for (int bits = kind == '4' ? 28 : 12; bits >= 0; bits -= 4) {
      m_out.put("0123456789ABCDEF"[m_letter >> static_cast<unsigned>(bits) & 0xFU]);
    }
    if (!std::exchange(m_isBroken, false)) return;
    End();
    m_out.put('\n');
  }
  void End() {
    if (m_kind != 0) m_out << "\\X0\\";
    m_kind = 0;
  }

  std::ostream& m_out;
  char32_t m_letter = 0;
  int m_missing = 0;        // bytes of the letter
  bool m_isBroken = false;  // a line ends within it
  char m_kind = 0;          // of the numbers that are being written
};

class Writer {
 public:
  Writer(const StepStructure& structure, NoteCounts& notes)
      : m_structure(structure),
        m_notes(notes),
        m_definitions(structure.products.size()),
        m_places(structure.products.size()) {
    STEPCAFControl_Controller::Init();
    m_writer.SetWS(new XSControl_WorkSession);  // reference-counted
    Interface_Static::SetIVal("write.step.assembly", 2);
    Interface_Static::SetIVal("write.surfacecurve.mode", 1);
    Interface_Static::SetCVal("write.step.unit", "MM");
  }

  /// How many bodies are written.
  std::size_t Build(const Message_ProgressRange& range) {
    std::size_t written = 0;
    RegisterAssemblies();
    Message_ProgressScope scope(range, "", static_cast<double>(m_structure.roots.size()));
    for (const StepProduct::Use& root : m_structure.roots) {
      // Known to the library by its place from now on.
      m_places[root.product] = root.place;
      const TopoDS_Shape shape = ShapeOf(root.product);
      // Without the graph of all entities, which would be made anew for each root and which nobody asks.
      constexpr bool kWithGraph = false;
      if (m_writer.Transfer(shape, STEPControl_AsIs, kWithGraph, scope.Next()) != IFSelect_RetDone) {
        m_notes.Add("IDS_WB_EXPORT_LEFT_SHAPE", m_structure.products[root.product].name);
      } else {
        written += BodiesIn(root.product);
      }
    }
    if (written == 0) throw ImportError{"IDS_WB_EXPORT_NOTHING", ""};
    m_process = m_writer.WS()->TransferWriter()->FinderProcess();
    for (std::size_t i = 0; i < m_structure.products.size(); ++i) NameProduct(i);
    NameUses();
    Colour();
    return written;
  }

  bool Print(std::ostream& out) {
    const Handle(StepData_StepModel) model = m_writer.Model();
    APIHeaderSection_MakeHeader header(model);
    header.SetName(TextOf(""));
    header.SetOriginatingSystem(TextOf("workbench"));
    StepData_StepWriter writer(model);
    writer.SendModel(Handle(StepData_Protocol)::DownCast(model->Protocol()));
    Ascii ascii(out);
    std::ostream through(&ascii);
    return writer.Print(through);
  }

 private:
  Handle(TCollection_HAsciiString) NameOf(const std::string& name) {
    bool isCut = false;
    const std::string text = Prepared(name, isCut);
    if (isCut) m_notes.Add("IDS_WB_EXPORT_RENAMED", name);
    return TextOf(text);
  }

  void RegisterAssemblies() {
    const auto actor = Handle(STEPCAFControl_ActorWrite)::DownCast(m_writer.WS()->NormAdaptor()->ActorWrite());
    if (actor.IsNull()) return;
    actor->SetStdMode(false);
    for (const StepProduct& product : m_structure.products) {
      if (!product.uses.empty()) actor->RegisterAssembly(product.shape);
    }
  }

  /// Bodies of a product with those of what it uses, each as often as it is used.
  std::size_t BodiesIn(std::size_t product) const {
    const StepProduct& at = m_structure.products[product];
    std::size_t bodies = at.bodies.size();
    for (const StepProduct::Use& use : at.uses) bodies += BodiesIn(use.product);
    return bodies;
  }

  TopoDS_Shape ShapeOf(std::size_t product) const {
    return m_structure.products[product].shape.Moved(m_places[product]);
  }

  Shown ShownOf(std::size_t product) const {
    Shown shown;
    m_process->FindTypedTransient(TransferBRep::ShapeMapper(m_process, ShapeOf(product)),
                                  STANDARD_TYPE(StepShape_ShapeDefinitionRepresentation), shown);
    return shown;
  }

  void NameProduct(std::size_t number) {
    const StepProduct& product = m_structure.products[number];
    const Shown shown = ShownOf(number);
    if (shown.IsNull()) return;
    const Definition definition = shown->Definition().PropertyDefinition()->Definition().ProductDefinition();
    if (definition.IsNull() || definition->Formation().IsNull()) return;
    const Handle(StepBasic_Product) of = definition->Formation()->OfProduct();
    of->SetName(NameOf(product.name));
    of->SetId(of->Name());
    m_definitions[number] = definition;
  }

  void NameUses() {
    using Use = Handle(StepRepr_NextAssemblyUsageOccurrence);
    std::map<std::pair<const StepBasic_ProductDefinition*, const StepBasic_ProductDefinition*>, std::deque<Use>>
        uses;
    const Handle(StepData_StepModel) model = m_writer.Model();
    for (int i = 1; i <= model->NbEntities(); ++i) {
      const Use use = Use::DownCast(model->Value(i));
      if (use.IsNull()) continue;
      uses[{use->RelatingProductDefinition().get(), use->RelatedProductDefinition().get()}].push_back(use);
    }
    for (std::size_t above = 0; above < m_structure.products.size(); ++above) {
      for (const StepProduct::Use& use : m_structure.products[above].uses) {
        auto& waiting = uses[{m_definitions[above].get(), m_definitions[use.product].get()}];
        if (waiting.empty()) continue;
        waiting.front()->SetName(NameOf(use.name));
        waiting.pop_front();
      }
    }
  }

  void Colour() {
    STEPConstruct_Styles styles(m_writer.WS());
    STEPConstruct_DataMapOfAsciiStringTransient predefined;
    STEPConstruct_DataMapOfPointTransient colours;
    for (std::size_t number = 0; number < m_structure.products.size(); ++number) {
      const StepProduct& product = m_structure.products[number];
      if (product.bodies.empty()) continue;
      const Shown shown = ShownOf(number);
      if (shown.IsNull()) continue;
      styles.ClearStyles();
      for (const StepProduct::OwnBody& body : product.bodies) {
        const Handle(StepVisual_Colour) colour =
            STEPConstruct_Styles::EncodeColor(ColourOf(body.colour), predefined, colours);
        const std::vector<Handle(StepRepr_RepresentationItem)> items = ItemsOf(body.shape.Moved(m_places[number]));
        if (items.empty()) m_notes.Add("IDS_WB_EXPORT_LEFT_COLOUR", body.name);
        for (const auto& item : items) styles.AddStyle(item, styles.GetColorPSA(item, colour), {});
        if (items.size() == 1) items.front()->SetName(NameOf(body.name));
      }
      if (styles.NbStyles() == 0) continue;
      Handle(StepVisual_MechanicalDesignGeometricPresentationRepresentation) all;
      styles.CreateMDGPR(shown->UsedRepresentation()->ContextOfItems(), all);
      if (!all.IsNull()) m_writer.Model()->AddWithRefs(all);
    }
  }

  /// The entities that stand for a body: its own, or those of its faces or edges.
  std::vector<Handle(StepRepr_RepresentationItem)> ItemsOf(const TopoDS_Shape& body) const {
    std::vector<Handle(StepRepr_RepresentationItem)> items;
    if (const auto own = STEPConstruct::FindEntity(m_process, body); !own.IsNull()) return {own};
    for (const TopAbs_ShapeEnum kind : {TopAbs_FACE, TopAbs_EDGE, TopAbs_VERTEX}) {
      for (TopExp_Explorer at(body, kind); at.More(); at.Next()) {
        const auto item = STEPConstruct::FindEntity(m_process, at.Current());
        if (!item.IsNull()) items.push_back(item);
      }
      if (!items.empty()) break;
    }
    return items;
  }

  const StepStructure& m_structure;
  NoteCounts& m_notes;
  STEPControl_Writer m_writer;
  Handle(Transfer_FinderProcess) m_process;
  std::vector<Definition> m_definitions;  // beside the products
  std::vector<TopLoc_Location> m_places;  // likewise: of those that no other uses
};

}  // namespace

std::size_t WriteStep(std::vector<SolidPart> parts, std::ostream& out, NoteCounts& notes,
                      const Message_ProgressRange& range) {
  const StepStructure structure = StructureOf(std::move(parts));
  Writer writer(structure, notes);
  const std::size_t written = writer.Build(range);
  if (!writer.Print(out)) throw ImportError{"IDS_WB_IMPORT_READER", ""};
  return written;
}

}  // namespace qd::workbench
