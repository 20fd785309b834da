#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/batch/Windowless.h"
#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/ExportReport.h"
#include "workbench/exchange/watch/ExchangeRun.h"
#include "workbench/session/RecordQuery.h"
#include "workbench/text/Units.h"

namespace qd::workbench {

/// How something ended.
struct Outcome {
  CString fault{};               ///< a sentence, empty when all went well
  std::vector<CString> notes{};  ///< what is to be known beside
  bool cancelled = false;        ///< by the progress call; the fault says so
  bool IsGood() const { return fault.empty(); }
};

/// How parts are meshed: solids by solid elements, surfaces by surface elements.
struct MeshWish {
  double size = 0;  ///< of elements, in the document's unit of length; 0 for one that suits the parts
  bool secondOrder = false;
  bool mapped = false;  ///< in rows of quadrangles or hexahedra, where the shape allows it
  int dimension = 0;    ///< 2 for the faces of all, 3 for solid elements in all, 0 as the parts are
};

/// A document that is worked on without a window: the same records, trees and acts that a window has. All work is
/// done when a call returns; nothing of a failed one is kept. Progress calls get 0 to 1; false cancels.
class BatchDocument {
 public:
  /// Whether parts get facets, without which they can be neither drawn nor measured by their box.
  enum class Shapes { Bare, Drawn };

  explicit BatchDocument(Windowless& surroundings, Shapes shapes = Shapes::Bare);
  /// Works on the open document of a window and through its session; both outlive this.
  BatchDocument(Windowless& surroundings, WorkDocument& doc, Session& session);
  ~BatchDocument();
  BatchDocument(const BatchDocument&) = delete;
  BatchDocument& operator=(const BatchDocument&) = delete;

  WorkDocument& Document() { return m_doc; }
  Database& Data() { return m_doc.GetDatabase(); }
  /// The trees and the acts of a window, made when they are first asked for.
  Session& GetSession();
  CWorksTreeBar& Tree(TreeType type) { return GetSession().Trees().Bar(type); }
  /// What the numbers are meant in.
  const UnitSystem& Units() const { return *m_units; }
  void SetUnits(const UnitSystem& units) { m_units = &units; }
  void SetName(const std::string& file);

  /// Fills a new document from a file, which stays as it is.
  Outcome Open(const std::string& path, const ProgressCall& progress);
  /// Adds what stands in a file, as one act; `beforeStore` is called when all of it has been read.
  Outcome Import(const std::string& path, const ProgressCall& progress,
                 const std::function<void()>& beforeStore = nullptr);
  /// Writes all of the document into a document file, complete or not at all.
  Outcome Save(const std::string& path);
  /// The records that a query of the find bar matches.
  Outcome Find(const CString& query, std::vector<iterator>& records);
  /// Meshes parts in place of the meshes that they have, as one act.
  Outcome Mesh(const std::vector<iterator>& parts, const MeshWish& wish, const ProgressCall& progress);
  /// Other work on the shapes of parts, as one act under a title; the operands are filled in here.
  Outcome Work(const std::vector<iterator>& parts, ShapeOperation operation, const CString& title,
               const ProgressCall& progress);

  /// A copy of what is written of all records, or of some of them with what is nested in them.
  ExportModel Collect(const std::vector<iterator>* records) const;
  /// Writes a file whole or not at all; the reason when it was not, without a key for a cancel.
  std::optional<ImportError> Export(const std::string& path, const ExportModel& model,
                                    const ProgressCall& progress, ExportReport& report) const;

  /// What was warned of since the last act.
  std::vector<CString> TakeWarnings() { return m_surroundings.TakeWarnings(); }

 private:
  ExchangeRun::Result Run(ExchangeRun::Task task, const ProgressCall& progress) const;

  Windowless& m_surroundings;
  Shapes m_shapes;
  const UnitSystem* m_units;
  std::unique_ptr<WorkDocument> m_ownDoc;  // this and what follows for a document without a window
  std::unique_ptr<CWorksTreeBar> m_model;  // with the session
  std::unique_ptr<CWorksTreeBar> m_sets;
  std::unique_ptr<Session> m_ownSession;
  WorkDocument& m_doc;
  Session* m_session = nullptr;  // once somebody has asked for it
};

/// Converts what is written into another system of units.
void ConvertUnits(ExportModel& model, const UnitSystem& from, const UnitSystem& to);

}  // namespace qd::workbench
