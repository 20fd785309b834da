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
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Reader.hxx>
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
#include <functional>
#include <map>
#include <new>
#include <optional>
#include <vector>

#include "workbench/exchange/child/NoteCounts.h"
#include "workbench/exchange/child/Shapes.h"

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

COLORREF ColourOf(const Quantity_Color& colour) {
  double red = 0;
  double green = 0;
  double blue = 0;
  colour.Values(red, green, blue, Quantity_TOC_sRGB);
  const auto byte = [](double value) { return static_cast<unsigned>(std::lround(value * 255)); };
  return Rgb(byte(red), byte(green), byte(blue));
}

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
    for (int i = 1; i <= free.Length(); ++i) Visit({free.Value(i), TopLoc_Location(), {}, {}, {}});
  }

  struct Found {
    TopoDS_Shape shape;
    ImportedPart part;
  };
  std::vector<Found> found;

 private:
  struct Step {
    TDF_Label label;
    TopLoc_Location place;
    std::string assembly;
    std::string instance;            // name of the use of this product, if it has one
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
    const std::string own = NameOf(step.label);
    const std::string path = step.assembly.empty() ? own : step.assembly + "/" + own;
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(step.label, components);
    for (int i = components.Length(); i >= 1; --i) {
      const TDF_Label use = components.Value(i);
      TDF_Label product;
      if (!XCAFDoc_ShapeTool::GetReferredShape(use, product)) continue;
      std::optional<COLORREF> colour = ColourAt(use);
      stack.push_back({product, step.place * XCAFDoc_ShapeTool::GetLocation(use), path, NameOf(use),
                       colour ? colour : step.colour});
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
      Found& result = found.emplace_back();
      result.shape = body.shape.Moved(step.place);
      result.part.kind = body.kind;
      result.part.assembly = step.assembly;
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
      if (m_colours->GetColor(label, type, colour)) return ColourOf(colour);
    }
    return std::nullopt;
  }

  std::optional<COLORREF> ColourOfShape(const TopoDS_Shape& body, const TDF_Label& product) const {
    Quantity_Color colour;
    for (const XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen, XCAFDoc_ColorCurv}) {
      if (m_colours->GetColor(body, type, colour)) return ColourOf(colour);
    }
    if (const std::optional<COLORREF> whole = ColourAt(product)) return whole;
    // A part that is coloured face by face shows the colour of its first coloured face.
    for (TopExp_Explorer at(body, TopAbs_FACE); at.More(); at.Next()) {
      if (m_colours->GetColor(at.Current(), XCAFDoc_ColorSurf, colour)) return ColourOf(colour);
    }
    return std::nullopt;
  }

  Handle(XCAFDoc_ShapeTool) m_shapes;
  Handle(XCAFDoc_ColorTool) m_colours;
};

template <typename Reader>
void ReadWith(Reader& reader, const std::string& path, Handle(TDocStd_Document) document,
              const Message_ProgressRange& range) {
  reader.SetColorMode(true);
  reader.SetNameMode(true);
  if (reader.ReadFile(path.c_str()) != IFSelect_RetDone) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  if (!reader.Transfer(document, range)) throw ImportError{"IDS_WB_IMPORT_NOTHING", ""};
}

std::vector<Harvest::Found> ReadDocument(const std::string& path, const Format& format, Sink& sink) {
  Handle(TDocStd_Document) document;
  XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
  const Handle(ReadProgress) progress = new ReadProgress(sink);  // reference-counted
  const Message_ProgressRange range = progress->Start();
  if (format.ReadBy() == Engine::Step) {
    STEPCAFControl_Reader reader;
    ReadWith(reader, path, document, range);
  } else {
    IGESCAFControl_Reader reader;
    ReadWith(reader, path, document, range);
  }
  Harvest harvest(document);
  harvest.Run();
  return std::move(harvest.found);
}

std::vector<Harvest::Found> ReadBrep(const std::string& path) {
  TopoDS_Shape shape;
  bool good = false;
  try {
    good = BRepTools::Read(shape, path.c_str(), BRep_Builder());
  } catch (const Standard_Failure&) {
    good = false;  // thrown where the text ends too early
  }
  if (!good || shape.IsNull()) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  std::vector<Harvest::Found> found;
  for (const Body& body : BodiesOf(shape)) {
    found.push_back({body.shape, {}});
    found.back().part.kind = body.kind;
  }
  return found;
}

/// A part without a name is named by its kind and a number of its own.
std::string NameByKind(TopologyKind kind, std::map<TopologyKind, int>& numbers) {
  constexpr const char* kNames[] = {"Point", "Curve", "Surface", "Solid", "Compound"};
  return std::string(kNames[static_cast<int>(kind)]) + " " + std::to_string(++numbers[kind]);
}

}  // namespace

void ReadCadFile(const std::string& path, const Format& format, Sink& sink) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  try {
    std::vector<Harvest::Found> found =
        format.ReadBy() == Engine::Brep ? ReadBrep(path) : ReadDocument(path, format, sink);
    sink.Progress(kReadShare);
    NoteCounts notes;
    std::map<TopologyKind, int> numbers;
    for (std::size_t i = 0; i < found.size(); ++i) {
      ImportedPart& part = found[i].part;
      if (part.name.empty()) part.name = NameByKind(part.kind, numbers);
      Drawn drawn{};
      part.shape = PartShapeOf(found[i].shape, drawn);
      if (drawn == Drawn::Nothing) notes.Add("IDS_WB_NOTE_NOT_DRAWN", part.name);
      if (drawn == Drawn::Part) notes.Add("IDS_WB_NOTE_PARTLY_DRAWN", part.name);
      sink.Part(part);
      sink.Progress(kReadShare +
                    (1 - kReadShare) * static_cast<double>(i + 1) / static_cast<double>(found.size()));
      found[i] = {};
    }
    notes.Send(sink);
  } catch (const Standard_OutOfMemory&) {
    throw std::bad_alloc();
  } catch (const Standard_Failure& failure) {
    throw ImportError{"IDS_WB_IMPORT_READER",
                      failure.GetMessageString() != nullptr ? failure.GetMessageString() : ""};
  }
}

}  // namespace qd::workbench
