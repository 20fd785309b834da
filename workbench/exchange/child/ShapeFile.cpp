#include "workbench/exchange/child/ShapeFile.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <Message_ProgressIndicator.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <TopTools_FormatVersion.hxx>
#include <TopoDS_Compound.hxx>
#include <new>
#include <ostream>
#include <streambuf>
#include <utility>

#include "workbench/exchange/child/Shapes.h"
#include "workbench/exchange/child/StepWriter.h"
#include "workbench/exchange/pipe/NoteCounts.h"

namespace qd::workbench {

namespace {

constexpr double kReadShare = 0.2;   // of the whole progress
constexpr double kBuildShare = 0.6;  // with what comes before it

/// Sends what is written in pieces.
class PipeBuffer final : public std::streambuf {
 public:
  explicit PipeBuffer(Sink& sink) : m_sink(sink) { m_piece.reserve(kPiece); }
  void Flush() {
    if (!m_piece.empty()) m_sink.Bytes(m_piece);
    m_piece.clear();
  }

 protected:
  int_type overflow(int_type letter) override {
    if (traits_type::eq_int_type(letter, traits_type::eof())) return traits_type::not_eof(letter);
    const char byte = traits_type::to_char_type(letter);
    return xsputn(&byte, 1) == 1 ? letter : traits_type::eof();
  }
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    m_piece.append(bytes, static_cast<std::size_t>(count));
    if (m_piece.size() >= kPiece) Flush();
    return count;
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{1} << 18;
  Sink& m_sink;
  std::string m_piece;
};

class BuildProgress final : public Message_ProgressIndicator {
 public:
  explicit BuildProgress(Sink& sink) : m_sink(sink) {}

 protected:
  void Show(const Message_ProgressScope&, const Standard_Boolean) override {
    m_sink.Progress(kReadShare + GetPosition() * (kBuildShare - kReadShare));
  }

 private:
  Sink& m_sink;
};

std::vector<SolidPart> ShapesOf(std::vector<ExportedPart>& parts, NoteCounts& notes, Sink& sink) {
  std::vector<SolidPart> shapes;
  double done = 0;
  const auto count = static_cast<double>(parts.size());
  for (ExportedPart& part : parts) {
    const TopoDS_Shape shape = ShapeOf(part.shape->brep);
    part.shape = nullptr;
    if (shape.IsNull()) {
      notes.Add("IDS_WB_EXPORT_LEFT_SHAPE", part.name);
    } else {
      shapes.push_back({std::move(part), shape});
    }
    sink.Progress(++done / count * kReadShare);
  }
  return shapes;
}

void WriteBrep(const std::vector<SolidPart>& parts, std::ostream& out) {
  const BRep_Builder builder;
  TopoDS_Compound all;
  builder.MakeCompound(all);
  for (const SolidPart& part : parts) builder.Add(all, part.shape);
  BRepTools::Write(all, out, false, false, TopTools_FormatVersion_CURRENT);
}

}  // namespace

void WriteShapes(ShapeExport wanted, Sink& sink) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  try {
    NoteCounts notes;
    std::vector<SolidPart> parts = ShapesOf(wanted.parts, notes, sink);
    if (parts.empty()) throw ImportError{"IDS_WB_EXPORT_NOTHING", ""};
    PipeBuffer buffer(sink);
    std::ostream out(&buffer);
    std::size_t written = parts.size();
    if (wanted.kind == ShapeExport::Kind::Brep) {
      WriteBrep(parts, out);
    } else {
      const Handle(BuildProgress) progress = new BuildProgress(sink);  // reference-counted
      written = WriteStep(std::move(parts), out, notes, progress->Start());
    }
    if (!out) throw ImportError{"IDS_WB_IMPORT_READER", ""};
    buffer.Flush();
    for (const ImportNote& note : notes.Notes()) sink.Note(note);
    sink.Written(written);
  } catch (const Standard_OutOfMemory&) {
    throw std::bad_alloc();
  } catch (const Standard_Failure& failure) {
    throw ImportError{"IDS_WB_IMPORT_READER",
                      failure.GetMessageString() != nullptr ? failure.GetMessageString() : ""};
  }
}

}  // namespace qd::workbench
