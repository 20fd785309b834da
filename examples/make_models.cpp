// Makes the example models. Usage: make_models pump FILE.step | grid COUNT FILE.step | uses COUNT FILE.step |
// groups COUNT FILE.step | box FILE.brep | box FILE.igs | mixed FILE.brep | mixed FILE.igs | specks FILE.brep |
// specks FILE.step

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <IGESControl_Writer.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <STEPControl_Writer.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Vertex.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax2.hxx>
#include <gp_Pln.hxx>
#include <iostream>
#include <string>

namespace {

/// A product structure under construction.
class Product {
 public:
  Product() {
    XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", m_document);
    m_shapes = XCAFDoc_DocumentTool::ShapeTool(m_document->Main());
    m_colours = XCAFDoc_DocumentTool::ColorTool(m_document->Main());
  }
  TDF_Label Part(const std::string& name, const TopoDS_Shape& shape, const Quantity_Color& colour) {
    const TDF_Label label = m_shapes->AddShape(shape, false);
    Name(label, name);
    m_colours->SetColor(label, colour, XCAFDoc_ColorSurf);
    return label;
  }
  TDF_Label Assembly(const std::string& name) {
    const TDF_Label label = m_shapes->NewShape();
    Name(label, name);
    return label;
  }
  TDF_Label Use(const TDF_Label& assembly, const TDF_Label& product, const gp_Vec& at, const std::string& name) {
    gp_Trsf place;
    place.SetTranslation(at);
    const TDF_Label use = m_shapes->AddComponent(assembly, product, TopLoc_Location(place));
    Name(use, name);
    return use;
  }
  void Colour(const TDF_Label& label, const Quantity_Color& colour) {
    m_colours->SetColor(label, colour, XCAFDoc_ColorSurf);
  }
  bool Write(const char* path) {
    m_shapes->UpdateAssemblies();
    STEPCAFControl_Writer writer;
    writer.SetColorMode(true);
    writer.SetNameMode(true);
    return writer.Transfer(m_document, STEPControl_AsIs) && writer.Write(path) == IFSelect_RetDone;
  }

 private:
  static void Name(const TDF_Label& label, const std::string& name) {
    TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), true));
  }
  Handle(TDocStd_Document) m_document;
  Handle(XCAFDoc_ShapeTool) m_shapes;
  Handle(XCAFDoc_ColorTool) m_colours;
};

Quantity_Color Colour(double red, double green, double blue) {
  return {red, green, blue, Quantity_TOC_sRGB};
}

gp_Ax2 Along(double x, double y, double z) {
  return {gp_Pnt(x, y, z), gp_Dir(0, 0, 1)};
}

/// A pump: housing with bore, shaft with impeller, a cover with four bolts.
bool MakePump(const char* path) {
  Product product;
  const TopoDS_Shape block = BRepPrimAPI_MakeBox(gp_Pnt(-40, -30, 0), gp_Pnt(40, 30, 50)).Shape();
  const TopoDS_Shape bore = BRepPrimAPI_MakeCylinder(Along(0, 0, 10), 22, 60).Shape();
  const TDF_Label housing =
      product.Part("Housing", BRepAlgoAPI_Cut(block, bore).Shape(), Colour(0.55, 0.62, 0.70));
  const TDF_Label shaft =
      product.Part("Shaft", BRepPrimAPI_MakeCylinder(Along(0, 0, 0), 6, 90).Shape(), Colour(0.85, 0.72, 0.30));
  const TDF_Label impeller =
      product.Part("Impeller", BRepPrimAPI_MakeCone(Along(0, 0, 0), 20, 8, 14).Shape(), Colour(0.25, 0.60, 0.45));
  const TDF_Label seal = product.Part("Seal ring Ø20", BRepPrimAPI_MakeTorus(Along(0, 0, 0), 10, 3).Shape(),
                                      Colour(0.20, 0.20, 0.22));
  const TopoDS_Shape plate = BRepPrimAPI_MakeBox(gp_Pnt(-40, -30, 0), gp_Pnt(40, 30, 6)).Shape();
  const TopoDS_Shape hole = BRepPrimAPI_MakeCylinder(Along(0, 0, -1), 11, 10).Shape();
  const TDF_Label cover = product.Part("Cover", BRepAlgoAPI_Cut(plate, hole).Shape(), Colour(0.70, 0.36, 0.28));
  const TDF_Label bolt =
      product.Part("Bolt M6", BRepPrimAPI_MakeCylinder(Along(0, 0, 0), 4, 10).Shape(), Colour(0.75, 0.77, 0.80));

  const TDF_Label pump = product.Assembly("Pump");
  const TDF_Label rotor = product.Assembly("Rotor");
  const TDF_Label lid = product.Assembly("Lid");
  product.Use(rotor, shaft, {0, 0, 0}, "Shaft 1");
  product.Use(rotor, impeller, {0, 0, 14}, "Impeller 1");
  product.Use(rotor, seal, {0, 0, 60}, "Upper seal");
  product.Use(lid, cover, {0, 0, 0}, "Cover 1");
  int bolts = 0;
  for (const double x : {-32.0, 32.0}) {
    for (const double y : {-22.0, 22.0}) product.Use(lid, bolt, {x, y, 6}, "Bolt " + std::to_string(++bolts));
  }
  product.Use(pump, housing, {0, 0, 0}, "Housing 1");
  product.Use(pump, rotor, {0, 0, 10}, "Rotor 1");
  product.Use(pump, lid, {0, 0, 50}, "Lid 1");
  return product.Write(path);
}

/// Many bodies with names, for measurements.
bool MakeGrid(int count, const char* path) {
  Product product;
  const TDF_Label grid = product.Assembly("Grid");
  constexpr int kSide = 40;
  for (int i = 0; i < count; ++i) {
    const TopoDS_Shape shape =
        i % 2 == 0 ? BRepPrimAPI_MakeBox(6, 6, 6 + i % 5).Shape() : BRepPrimAPI_MakeCylinder(3, 6 + i % 7).Shape();
    const TDF_Label part = product.Part("Body " + std::to_string(i + 1), shape,
                                        Colour((i * 37 % 100) / 100.0, (i * 61 % 100) / 100.0, 0.5));
    product.Use(grid, part, {10.0 * (i % kSide), 10.0 * (i / kSide), 0}, "Place " + std::to_string(i + 1));
  }
  return product.Write(path);
}

/// Uses of a few products with names of their own, all in one assembly or in groups of a hundred, for
/// measurements.
bool MakeUses(int count, bool inGroups, const char* path) {
  constexpr int kSide = 100;
  constexpr int kGroup = 100;
  Product product;
  const TDF_Label products[] = {product.Part("Block", BRepPrimAPI_MakeBox(6, 6, 6).Shape(), Colour(0.8, 0.3, 0.3)),
                                product.Part("Pin", BRepPrimAPI_MakeCylinder(3, 8).Shape(), Colour(0.3, 0.8, 0.3)),
                                product.Part("Ring", BRepPrimAPI_MakeTorus(3, 1).Shape(), Colour(0.3, 0.3, 0.8)),
                                product.Part("Tip", BRepPrimAPI_MakeCone(3, 1, 6).Shape(), Colour(0.8, 0.8, 0.3))};
  const TDF_Label all = product.Assembly("All");
  TDF_Label group = all;
  for (int i = 0; i < count; ++i) {
    if (inGroups && i % kGroup == 0) {
      group = product.Assembly("Group " + std::to_string(i / kGroup + 1));
      product.Use(all, group, {0, 0, 0}, "Place " + std::to_string(i / kGroup + 1));
    }
    product.Use(group, products[i % 4], {10.0 * (i % kSide), 10.0 * (i / kSide), 0},
                "Use " + std::to_string(i + 1));
  }
  return product.Write(path);
}

bool MakeBox(const std::string& path) {
  const TopoDS_Shape box = BRepPrimAPI_MakeBox(10, 20, 30).Shape();
  if (path.ends_with(".brep")) return BRepTools::Write(box, path.c_str());
  IGESControl_Writer writer("MM", 1);  // one solid
  return writer.AddShape(box) && writer.Write(path.c_str());
}

/// A block with a small hole, a face above it and a line above both: one body of each kind.
bool MakeMixed(const std::string& path) {
  const gp_Ax2 axis(gp_Pnt(5, 5, 0), gp_Dir(0, 0, 1));
  TopoDS_Compound all;
  const BRep_Builder builder;
  builder.MakeCompound(all);
  builder.Add(all, BRepAlgoAPI_Cut(BRepPrimAPI_MakeBox(20, 20, 10).Shape(),
                                   BRepPrimAPI_MakeCylinder(axis, 0.5, 10).Shape())
                       .Shape());
  builder.Add(all, BRepBuilderAPI_MakeFace(gp_Pln(gp_Pnt(0, 0, 20), gp_Dir(0, 0, 1)), 0, 10, 0, 10).Shape());
  builder.Add(all, BRepBuilderAPI_MakeEdge(gp_Pnt(2, 15, 30), gp_Pnt(18, 15, 30)).Shape());
  if (path.ends_with(".brep")) return BRepTools::Write(all, path.c_str());
  IGESControl_Writer writer("MM", 0);  // faces one by one, as most files of the kind have them
  return writer.AddShape(all) && writer.Write(path.c_str());
}

/// Two blocks, the second without its last face, face by face.
bool MakeLoose(const std::string& path) {
  IGESControl_Writer writer("MM", 0);
  int faces = 0;
  for (const double x : {0.0, 50.0}) {
    const TopoDS_Shape block = BRepPrimAPI_MakeBox(gp_Pnt(x, 0, 0), 10, 20, 30).Shape();
    for (TopExp_Explorer at(block, TopAbs_FACE); at.More() && faces < 11; at.Next(), ++faces) {
      if (!writer.AddShape(at.Current())) return false;
    }
  }
  return writer.Write(path.c_str());
}

/// A block, a free point, and a ball finer than facets usually are: what real files hold beside their solids.
bool MakeSpecks(const std::string& path) {
  constexpr double kTiny = 1e-5;
  TopoDS_Compound all;
  const BRep_Builder builder;
  builder.MakeCompound(all);
  builder.Add(all, BRepPrimAPI_MakeBox(10, 20, 30).Shape());
  builder.Add(all, BRepPrimAPI_MakeSphere(gp_Pnt(5, 5, 40), kTiny).Shape());
  builder.Add(all, BRepBuilderAPI_MakeVertex(gp_Pnt(1, 2, 50)).Vertex());
  if (path.ends_with(".brep")) return BRepTools::Write(all, path.c_str());
  STEPControl_Writer writer;
  return writer.Transfer(all, STEPControl_AsIs) == IFSelect_RetDone &&
         writer.Write(path.c_str()) == IFSelect_RetDone;
}

bool Make(const std::string& what, int argc, char** argv) {
  if (what == "pump" && argc == 3) return MakePump(argv[2]);
  if (what == "grid" && argc == 4) return MakeGrid(std::stoi(argv[2]), argv[3]);
  if (what == "uses" && argc == 4) return MakeUses(std::stoi(argv[2]), false, argv[3]);
  if (what == "groups" && argc == 4) return MakeUses(std::stoi(argv[2]), true, argv[3]);
  if (what == "box" && argc == 3) return MakeBox(argv[2]);
  if (what == "mixed" && argc == 3) return MakeMixed(argv[2]);
  if (what == "loose" && argc == 3) return MakeLoose(argv[2]);
  if (what == "specks" && argc == 3) return MakeSpecks(argv[2]);
  std::cerr << "usage: make_models pump FILE.step | grid COUNT FILE.step | uses COUNT FILE.step | groups COUNT "
               "FILE.step | "
               "box FILE.brep | box FILE.igs | "
               "mixed FILE.brep | mixed FILE.igs | loose FILE.igs | specks FILE.brep | specks FILE.step\n";
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  return argc >= 3 && Make(argv[1], argc, argv) ? 0 : 1;
}
