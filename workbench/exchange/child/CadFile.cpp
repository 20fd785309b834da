#include "workbench/exchange/child/CadFile.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <IGESCAFControl_Reader.hxx>
#include <IGESControl_Controller.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <Message_ProgressIndicator.hxx>
#include <Message_ProgressScope.hxx>
#include <Quantity_Color.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <new>
#include <optional>
#include <vector>

#include "workbench/exchange/child/CadNotes.h"
#include "workbench/exchange/child/Sewing.h"
#include "workbench/exchange/child/Shapes.h"
#include "workbench/exchange/child/StepFile.h"

namespace qd::workbench {

namespace {

constexpr double kReadShare = 0.5;  // of the whole progress; faceting takes the rest

/// Sends the reader's progress on.
class ReadProgress final : public Message_ProgressIndicator {
 public:
  explicit ReadProgress(Sink& sink) : m_sink(sink) {}

 protected:
  void Show(const Message_ProgressScope&, const Standard_Boolean) override {
    m_sink.Progress(GetPosition() * kReadShare);
  }

 private:
  Sink& m_sink;
};

std::string NameOf(const TDF_Label& label) {
  Handle(TDataStd_Name) name;
  if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
  const TCollection_ExtendedString& text = name->Get();
  std::string utf8(static_cast<std::size_t>(text.LengthOfCString()) + 1, '\0');
  char* place = utf8.data();
  utf8.resize(static_cast<std::size_t>(text.ToUTF8CString(place)));
  return utf8;
}

/// Walks a document's product structure and gathers its bodies.
class Harvest {
 public:
  explicit Harvest(const Handle(TDocStd_Document) & document)
      : m_shapes(XCAFDoc_DocumentTool::ShapeTool(document->Main())),
        m_colours(XCAFDoc_DocumentTool::ColorTool(document->Main())) {}

  void Run() {
    TDF_LabelSequence free;
    m_shapes->GetFreeShapes(free);
    for (int i = 1; i <= free.Length(); ++i) Visit({free.Value(i), TopLoc_Location(), {}, {}, 0, {}});
  }

  std::vector<CadBody> found;

 private:
  struct Step {
    TDF_Label label;
    TopLoc_Location place;
    std::vector<ImportedAssembly> above;
    std::string instance;            // name of the use of this product, if it has one
    std::uint32_t use = 0;           // which one in the assembly above
    std::optional<COLORREF> colour;  // of the use, or of an assembly above
  };

  void Visit(const Step& start) {
    std::vector<Step> stack{start};
    while (!stack.empty()) {
      const Step step = stack.back();
      stack.pop_back();
      if (XCAFDoc_ShapeTool::IsAssembly(step.label)) {
        PushComponents(step, stack);
      } else {
        Collect(step);
      }
    }
  }

  /// Components in their order: the last one goes onto the stack first.
  void PushComponents(const Step& step, std::vector<Step>& stack) {
    std::vector<ImportedAssembly> path = step.above;
    path.push_back({NameOf(step.label), step.instance, step.use});
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(step.label, components);
    for (int i = components.Length(); i >= 1; --i) {
      const TDF_Label use = components.Value(i);
      TDF_Label product;
      if (!XCAFDoc_ShapeTool::GetReferredShape(use, product)) continue;
      std::optional<COLORREF> colour = ColourAt(use);
      stack.push_back({product, step.place * XCAFDoc_ShapeTool::GetLocation(use), path, NameOf(use),
                       static_cast<std::uint32_t>(i), colour ? colour : step.colour});
    }
  }

  void Collect(const Step& step) {
    const TopoDS_Shape whole = XCAFDoc_ShapeTool::GetShape(step.label);
    std::string name = NameOf(step.label);
    if (name.empty()) name = step.instance;
    const std::vector<Body> bodies = BodiesOf(whole);
    int number = 0;
    for (const Body& body : bodies) {
      ++number;
      CadBody& result = found.emplace_back();
      result.shape = body.shape.Moved(step.place);
      result.part.kind = body.kind;
      result.part.product = NameOf(step.label);
      result.part.instance = step.instance;
      result.part.use = step.use;
      result.part.assemblies = step.above;
      const std::string bodyName = bodies.size() > 1 ? SubName(step.label, body.shape) : std::string();
      result.part.name = !bodyName.empty()   ? bodyName
                         : bodies.size() > 1 ? name + " [" + std::to_string(number) + "]"
                                             : name;
      // The use's colour wins over the product's, as the file means it.
      const std::optional<COLORREF> own = ColourOfShape(body.shape, step.label);
      if (step.colour) {
        result.part.colour = *step.colour;
      } else if (own) {
        result.part.colour = *own;
      }
    }
  }

  std::string SubName(const TDF_Label& label, const TopoDS_Shape& body) const {
    TDF_Label sub;
    return m_shapes->FindSubShape(label, body, sub) ? NameOf(sub) : std::string();
  }

  std::optional<COLORREF> ColourAt(const TDF_Label& label) const {
    Quantity_Color colour;
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen, XCAFDoc_ColorCurv}) {
      if (m_colours->GetColor(label, type, colour)) return RgbOf(colour);
    }
    return std::nullopt;
  }

  std::optional<COLORREF> ColourOfShape(const TopoDS_Shape& body, const TDF_Label& product) const {
    Quantity_Color colour;
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen, XCAFDoc_ColorCurv}) {
      if (m_colours->GetColor(body, type, colour)) return RgbOf(colour);
    }
    if (const std::optional<COLORREF> whole = ColourAt(product)) return whole;
    // A part that is coloured face by face shows the colour of its first coloured face.
    for (TopExp_Explorer at(body, TopAbs_FACE); at.More(); at.Next()) {
      if (m_colours->GetColor(at.Current(), XCAFDoc_ColorSurf, colour)) return RgbOf(colour);
    }
    return std::nullopt;
  }

  Handle(XCAFDoc_ShapeTool) m_shapes;
  Handle(XCAFDoc_ColorTool) m_colours;
};

CadModel ReadIges(const std::string& path, const Message_ProgressRange& range) {
  Handle(TDocStd_Document) document;
  XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
  IGESCAFControl_Reader reader;
  reader.SetColorMode(true);
  reader.SetNameMode(true);
  if (reader.ReadFile(path.c_str()) != IFSelect_RetDone) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  Message_ProgressScope scope(range, "", 2);
  if (!reader.Transfer(document, scope.Next())) throw ImportError{"IDS_WB_IMPORT_NOTHING", ""};
  CadModel model;
  NoteFaults(reader, model.notes);
  Harvest harvest(document);
  harvest.Run();
  model.bodies = std::move(harvest.found);
  SewSolids(model, scope.Next());
  return model;
}

CadModel ReadBrep(const std::string& path) {
  TopoDS_Shape shape;
  try {
    std::ifstream in(path);
    // The library goes on where no number is, and waits for ever for one at the end: what it cannot read must end
    // it.
    in.exceptions(std::ios::failbit | std::ios::badbit);
    BRepTools::Read(shape, in, BRep_Builder());
  } catch (const Standard_Failure&) {
    shape.Nullify();
  } catch (const std::ios::failure&) {
    shape.Nullify();
  }
  if (shape.IsNull()) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  CadModel model;
  for (const Body& body : BodiesOf(shape)) {
    model.bodies.push_back({body.shape, {}});
    model.bodies.back().part.kind = body.kind;
  }
  return model;
}

CadModel Read(const std::string& path, const Format& format, Sink& sink) {
  if (format.ReadBy() == Engine::Brep) return ReadBrep(path);
  const Handle(ReadProgress) progress = new ReadProgress(sink);  // reference-counted
  const Message_ProgressRange range = progress->Start();
  return format.ReadBy() == Engine::Step ? ReadStep(path, range) : ReadIges(path, range);
}

/// A part without a name is named by its kind and a number of its own.
std::string NameByKind(TopologyKind kind, std::map<TopologyKind, int>& numbers) {
  constexpr const char* kNames[] = {"Point", "Curve", "Surface", "Solid", "Compound"};
  return std::string(kNames[static_cast<int>(kind)]) + " " + std::to_string(++numbers[kind]);
}

}  // namespace

void ReadCadFile(const std::string& path, const Format& format, bool isDrawn, Sink& sink) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  try {
    CadModel model = Read(path, format, sink);
    std::vector<CadBody>& found = model.bodies;
    NoteCounts& notes = model.notes;
    sink.Progress(kReadShare);
    PartShapes shapes(isDrawn);
    for (const CadBody& body : found) shapes.Expect(body.shape);
    std::map<TopologyKind, int> numbers;
    for (std::size_t i = 0; i < found.size(); ++i) {
      ImportedPart& part = found[i].part;
      if (part.name.empty()) part.name = NameByKind(part.kind, numbers);
      Drawn drawn{};
      bool sound = true;
      part.shape = shapes.Make(found[i].shape, drawn, sound);
      if (!sound) notes.Add("IDS_WB_NOTE_UNSOUND", part.name);
      if (drawn == Drawn::Nothing) notes.Add("IDS_WB_NOTE_NOT_DRAWN", part.name);
      if (drawn == Drawn::Part) notes.Add("IDS_WB_NOTE_PARTLY_DRAWN", part.name);
      sink.Part(part);
      part.shape = {};
      sink.Progress(kReadShare +
                    (1 - kReadShare) * static_cast<double>(i + 1) / static_cast<double>(found.size()));
    }
    for (const ImportNote& note : notes.Notes()) sink.Note(note);
  } catch (const Standard_OutOfMemory&) {
    throw std::bad_alloc();
  } catch (const Standard_Failure& failure) {
    throw ImportError{"IDS_WB_IMPORT_READER",
                      failure.GetMessageString() != nullptr ? failure.GetMessageString() : ""};
  }
}

}  // namespace qd::workbench
