#include "workbench/store/RecordTables.h"

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "workbench/mesh/ModelBytes.h"
#include "workbench/model/Pools.h"
#include "workbench/model/Values.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

// ---- values ---------------------------------------------------------------------------------------------

/// A value on its way into a statement; its bytes must outlive the run.
struct Value {
  enum class Kind { Integer, Real, Text, Blob } kind = Kind::Integer;
  std::int64_t integer = 0;
  double real = 0;
  std::string bytes;
};

Value ValueOf(std::int64_t integer) {
  return {.kind = Value::Kind::Integer, .integer = integer, .bytes = {}};
}
Value ValueOf(double real) {
  return {.kind = Value::Kind::Real, .real = real, .bytes = {}};
}
Value BlobOf(ByteWriter& writer) {
  return {.kind = Value::Kind::Blob, .bytes = writer.Take()};
}

/// Text, or, for what no text file could hold as it is, its elements one by one.
Value ValueOf(const CString& text) {
  std::string utf8 = ToUtf8(text);
  if (text.find(L'\0') == CString::npos && FromUtf8(utf8) == text) {
    return {.kind = Value::Kind::Text, .bytes = std::move(utf8)};
  }
  ByteWriter elements;
  for (const wchar_t element : text) elements.Put(static_cast<std::uint32_t>(element));
  return BlobOf(elements);
}

bool Read(const Statement& row, int column, std::int64_t& value) {
  value = row.Integer(column);
  return row.IsInteger(column);
}
bool Read(const Statement& row, int column, double& value) {
  value = row.Real(column);
  return !row.IsNull(column) && !row.IsBlob(column);
}
bool Read(const Statement& row, int column, CString& text) {
  const std::string_view bytes = row.Bytes(column);
  if (bytes.size() > kMostName * sizeof(std::uint32_t)) return false;
  if (!row.IsBlob(column)) {
    text = FromUtf8(std::string(bytes));
    return row.IsText(column);
  }
  ByteReader reader(bytes);
  while (!reader.IsWhole() && reader.IsGood()) {
    std::uint32_t element = 0;
    reader.Get(element);
    text += static_cast<wchar_t>(element);
  }
  return reader.IsWhole();
}

// ---- columns --------------------------------------------------------------------------------------------

template <typename T>
struct Column {
  const char* name;
  std::function<Value(const T&)> get;
  std::function<bool(const Statement&, int column, T&)> set;
};

template <typename T, typename V>
Column<T> Integer(const char* name, V T::*member, std::int64_t least, std::int64_t greatest) {
  return {name, [member](const T& record) { return ValueOf(static_cast<std::int64_t>(record.*member)); },
          [=](const Statement& row, int column, T& record) {
            std::int64_t value = 0;
            if (!Read(row, column, value) || value < least || value > greatest) return false;
            record.*member = static_cast<V>(value);
            return true;
          }};
}
// What fits into a field; what is allowed there stands in Values.h.
constexpr std::int64_t kMost8 = 0xFF;
constexpr std::int64_t kMost32 = 0xFFFFFFFF;
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
template <typename T>
Column<T> Reference(const char* name, iterator T::*member) {
  return Integer(name, member, 0, kMost);
}
template <typename T>
Column<T> Real(const char* name, double T::*member) {
  return {name, [member](const T& record) { return ValueOf(record.*member); },
          [member](const Statement& row, int column, T& record) { return Read(row, column, record.*member); }};
}
template <typename T>
Column<T> Text(const char* name, CString T::*member) {
  return {name, [member](const T& record) { return ValueOf(record.*member); },
          [member](const Statement& row, int column, T& record) { return Read(row, column, record.*member); }};
}
template <typename T>
Column<T> Triple(const char* name, std::array<double, 3> T::*member) {
  return {name,
          [member](const T& record) {
            ByteWriter bytes;
            bytes.Put(record.*member);
            return BlobOf(bytes);
          },
          [member](const Statement& row, int column, T& record) {
            return ByteReader(row.Bytes(column)).Get(record.*member).IsWhole();
          }};
}

// ---- large parts ----------------------------------------------------------------------------------------

// What a record shares with others by pointer and is kept beside its row.

struct ShapePart {
  static constexpr const char* kTable = "shape";
  static constexpr auto kMember = &tagTGeom::shape;
  using Type = PartShape;
  static void Put(ByteWriter& writer, const PartShape& shape) { PutShape(writer, shape); }
  static bool Get(ByteReader& reader, PartShape& shape) { return GetShape(reader, shape); }
};
struct OriginPart {
  static constexpr const char* kTable = "part_origin";
  static constexpr auto kMember = &tagTGeom::origin;
  using Type = PartOrigin;
  static void Put(ByteWriter& writer, const PartOrigin& origin) {
    writer.Put(ToUtf8(origin.product)).Put(ToUtf8(origin.instance)).Put(origin.use).Put(origin.import);
    writer.Put(static_cast<std::uint64_t>(origin.assemblies.size()));
    for (const AssemblyUse& assembly : origin.assemblies) {
      writer.Put(ToUtf8(assembly.product)).Put(ToUtf8(assembly.instance)).Put(assembly.use);
    }
  }
  static bool Get(ByteReader& reader, PartOrigin& origin) {
    const auto get = [&reader](CString& text) {
      std::string utf8;
      reader.Get(utf8);
      text = FromUtf8(utf8);
    };
    std::uint64_t assemblies = 0;
    get(origin.product);
    get(origin.instance);
    reader.Get(origin.use).Get(origin.import).Get(assemblies);
    for (std::uint64_t i = 0; i < assemblies && reader.IsGood(); ++i) {
      AssemblyUse& assembly = origin.assemblies.emplace_back();
      get(assembly.product);
      get(assembly.instance);
      reader.Get(assembly.use);
    }
    return reader.IsGood();
  }
};
struct MeshPart {
  static constexpr const char* kTable = "mesh";
  static constexpr auto kMember = &tagTMset::mesh;
  using Type = MeshData;
  static void Put(ByteWriter& writer, const MeshData& mesh) { PutMesh(writer, mesh); }
  static bool Get(ByteReader& reader, MeshData& mesh) { return GetMesh(reader, mesh); }
};

struct DeckPart {
  static constexpr const char* kTable = "deck_text";
  static constexpr auto kMember = &tagTDeck::text;
  using Type = std::string;
  static void Put(ByteWriter& writer, const std::string& text) { writer.Put(text); }
  static bool Get(ByteReader& reader, std::string& text) {
    reader.Get(text);
    return reader.IsGood();
  }
};

// ---- tables ---------------------------------------------------------------------------------------------

/// Tables that a file has, by name.
using HasTable = std::function<bool(const std::string&)>;

template <typename T, typename... Parts>
class RecordTable final : public IRecordTable {
 public:
  RecordTable(const HasTable& has, std::uint16_t type, const char* name, std::vector<Column<T>> columns)
      : m_type(type), m_name(name), m_columns(std::move(columns)), m_has{has(Parts::kTable)...} {}

  std::uint16_t Type() const override { return m_type; }
  const char* Name() const override { return m_name; }

  void Attach(Connection& file) override {
    std::string names = "itr";
    std::string places = "?";
    for (const Column<T>& column : m_columns) {
      names += std::string(", ") + column.name;
      places += ", ?";
    }
    m_put =
        file.Prepare("INSERT OR REPLACE INTO " + std::string(m_name) + " (" + names + ") VALUES (" + places + ")");
    m_erase = file.Prepare("DELETE FROM " + std::string(m_name) + " WHERE itr = ?");
    ForEachPart([&](auto part, std::size_t place) {
      const std::string table = decltype(part)::kTable;
      if (!m_has[place]) return;
      m_putPart[place] = file.Prepare("INSERT OR REPLACE INTO " + table + " (itr, data) VALUES (?, ?)");
      m_erasePart[place] = file.Prepare("DELETE FROM " + table + " WHERE itr = ?");
    });
  }

  bool Put(iterator itr, const tagTRecord* before, const tagTRecord* after) override {
    if (!PutRow(itr, static_cast<const T*>(after))) return false;
    bool good = true;
    ForEachPart([&](auto part, std::size_t place) {
      const auto* was = PartOf<decltype(part)>(before);
      const auto* is = PartOf<decltype(part)>(after);
      if (was != is) good = good && PutPart<decltype(part)>(place, itr, is);
    });
    return good;
  }

  bool Read(Connection& file, const Row& onRow, const Fault& onFault) override {
    return ReadOrdered(file, "", onRow, onFault);
  }
  bool ReadBackwards(Connection& file, const Row& onRow, const Fault& onFault) override {
    return ReadOrdered(file, " DESC", onRow, onFault);
  }

 private:
  /// Calls `what` with each kind of large part and its place.
  template <typename What>
  static void ForEachPart(const What& what) {
    [[maybe_unused]] std::size_t place = 0;
    (what(Parts{}, place++), ...);
  }

  bool ReadOrdered(Connection& file, const char* order, const Row& onRow, const Fault& onFault) {
    std::string sql = "SELECT r.itr";
    for (const Column<T>& column : m_columns) sql += std::string(", r.") + column.name;
    std::string joins;
    ForEachPart([&](auto part, std::size_t place) {
      if (!m_has[place]) return;
      const std::string table = decltype(part)::kTable;
      sql += ", " + table + ".data";
      joins += " LEFT JOIN " + table + " ON " + table + ".itr = r.itr";
    });
    sql += " FROM " + std::string(m_name) + " r" + joins;
    Statement rows = file.Prepare(sql + " ORDER BY r.itr" + order);
    const bool forward = *order == 0;
    std::int64_t last = 0;
    for (bool first = true; rows.Step(); first = false) {
      // Pages of a damaged file can hang in several places, or in a circle; their rows come more than once then.
      const std::int64_t number = rows.Integer(0);
      if (!first && (forward ? number <= last : number >= last)) {
        onFault(Wrong(static_cast<iterator>(number), "IDS_WB_FAULT_TWICE"));
        return false;
      }
      last = number;
      if (!file.Take(rows)) {
        onFault(Wrong(static_cast<iterator>(number), "IDS_WB_FAULT_ROOM"));
        return false;
      }
      ReadRow(rows, onRow, onFault);
    }
    return !rows.Failed() && (!forward || FindLeftParts(file, onFault));
  }

  /// Large parts whose record is not there: what they belonged to lacks them, or is gone.
  bool FindLeftParts(Connection& file, const Fault& onFault) const {
    bool read = true;
    ForEachPart([&](auto part, std::size_t place) {
      if (!m_has[place]) return;
      const std::string table = decltype(part)::kTable;
      Statement left = file.Prepare("SELECT p.itr FROM " + table + " p LEFT JOIN " + m_name +
                                    " r ON r.itr = p.itr WHERE r.itr IS NULL LIMIT 100");
      while (left.Step()) {
        onFault(Wrong(static_cast<iterator>(left.Integer(0)), "IDS_WB_FAULT_LEFT_PART", table.c_str()));
      }
      read = read && !left.Failed();
    });
    return read;
  }

  RecordFault Wrong(iterator itr, const char* key, const char* what = "") const {
    return {m_type, NumberOf(itr), key, FromUtf8(what)};
  }

  template <typename Part>
  static const auto* PartOf(const tagTRecord* record) {
    return record != nullptr ? (static_cast<const T*>(record)->*Part::kMember).get() : nullptr;
  }

  bool PutRow(iterator itr, const T* record) {
    if (record == nullptr) {
      m_erase->Bind(1, static_cast<std::int64_t>(itr));
      return m_erase->Run();
    }
    m_put->Bind(1, static_cast<std::int64_t>(itr));
    std::vector<Value> values;  // alive until the statement has run
    values.reserve(m_columns.size());
    int place = 1;
    for (const Column<T>& column : m_columns) {
      const Value& value = values.emplace_back(column.get(*record));
      ++place;
      switch (value.kind) {
        case Value::Kind::Integer:
          m_put->Bind(place, value.integer);
          break;
        case Value::Kind::Real:
          m_put->Bind(place, value.real);
          break;
        case Value::Kind::Text:
          m_put->BindText(place, value.bytes);
          break;
        case Value::Kind::Blob:
          m_put->BindBlob(place, value.bytes);
          break;
      }
    }
    return m_put->Run();
  }

  template <typename Part>
  bool PutPart(std::size_t place, iterator itr, const typename Part::Type* part) {
    Statement& statement = part != nullptr ? *m_putPart[place] : *m_erasePart[place];
    ByteWriter writer;
    std::string bytes;
    statement.Bind(1, static_cast<std::int64_t>(itr));
    if (part != nullptr) {
      Part::Put(writer, *part);
      bytes = writer.Take();
      statement.BindBlob(2, bytes);
    }
    return statement.Run();
  }

  void ReadRow(const Statement& row, const Row& onRow, const Fault& onFault) {
    const auto itr = static_cast<iterator>(row.Integer(0));
    auto record = std::make_shared<T>();
    if (TypeOf(itr) != m_type || NumberOf(itr) == 0 || NumberOf(itr) > kMostRecords) {
      return onFault({m_type, itr, "IDS_WB_FAULT_OTHER_TABLE"});
    }
    record->id = static_cast<std::int32_t>(NumberOf(itr));
    int place = 0;
    for (const Column<T>& column : m_columns) {
      if (!column.set(row, ++place, *record)) return onFault(Wrong(itr, "IDS_WB_FAULT_COLUMN", column.name));
    }
    ForEachPart([&](auto kind, std::size_t which) {
      if (!m_has[which] || row.IsNull(++place)) return;
      using Part = decltype(kind);
      auto part = std::make_shared<typename Part::Type>();
      ByteReader reader(row.Bytes(place));
      if (Part::Get(reader, *part) && reader.IsWhole() && FaultOf(*part) == nullptr) {
        (*record).*Part::kMember = std::move(part);
      } else {
        onFault(Wrong(itr, "IDS_WB_FAULT_PART", Part::kTable));
      }
    });
    onRow(itr, std::move(record));
  }

  std::uint16_t m_type;
  const char* m_name;
  std::vector<Column<T>> m_columns;
  std::optional<Statement> m_put;
  std::optional<Statement> m_erase;
  std::array<bool, sizeof...(Parts)> m_has;  // the tables of the large parts
  std::array<std::optional<Statement>, sizeof...(Parts)> m_putPart;
  std::array<std::optional<Statement>, sizeof...(Parts)> m_erasePart;
};

// ---- columns of single records --------------------------------------------------------------------------

Column<tagTCord> CordName() {
  return {"name", [](const tagTCord& record) { return ValueOf(record.GetName()); },
          [](const Statement& row, int column, tagTCord& record) {
            CString name;
            const bool good = Read(row, column, name);
            record.SetName(name);
            return good && !name.empty();
          }};
}

Column<tagMGInfo> Targets() {
  return {"targets",
          [](const tagMGInfo& record) {
            ByteWriter bytes;
            bytes.Put(record.targets);
            return BlobOf(bytes);
          },
          [](const Statement& row, int column, tagMGInfo& record) {
            return ByteReader(row.Bytes(column)).Get(record.targets).IsWhole();
          }};
}

/// Options by key: which of the three kinds it is, then the value as a number.
Column<tagMGInfo> Options() {
  return {"options",
          [](const tagMGInfo& record) {
            ByteWriter bytes;
            for (const auto& [key, option] : record.options) {
              const double value = std::visit([](auto held) { return static_cast<double>(held); }, option);
              bytes.Put(key).Put(static_cast<std::uint8_t>(option.index())).Put(value);
            }
            return BlobOf(bytes);
          },
          [](const Statement& row, int column, tagMGInfo& record) {
            ByteReader reader(row.Bytes(column));
            while (!reader.IsWhole() && reader.IsGood()) {
              std::string key;
              std::uint8_t kind = 0;
              double value = 0;
              reader.Get(key).Get(kind).Get(value);
              if (kind > 2 || (kind == 1 && !(std::abs(value) < kMostChoice))) return false;
              if (kind == 0) record.options[key] = value != 0;
              if (kind == 1) record.options[key] = static_cast<int>(value);
              if (kind == 2) record.options[key] = value;
            }
            return reader.IsWhole();
          }};
}

/// What a deck's names stand for, as one value: they are read and written together.
Column<tagTDeck> DeckNames() {
  return {"names",
          [](const tagTDeck& deck) {
            ByteWriter bytes;
            PutDeckNames(bytes, deck);
            return BlobOf(bytes);
          },
          [](const Statement& row, int column, tagTDeck& deck) {
            ByteReader reader(row.Bytes(column));
            return GetDeckNames(reader, deck) && reader.IsWhole();
          }};
}

}  // namespace

std::vector<std::unique_ptr<IRecordTable>> MakeRecordTables(
    const std::function<bool(const std::string& table)>& has) {
  std::vector<std::unique_ptr<IRecordTable>> tables;
  const auto add = [&](auto table) {
    if (has(table.Name())) tables.push_back(std::make_unique<decltype(table)>(std::move(table)));
  };
  add(RecordTable<tagTSettings>(has, kDataSettings, "settings",
                                {Reference("current_gset", &tagTSettings::currentGset),
                                 Reference("default_mset", &tagTSettings::defaultMset)}));
  add(RecordTable<tagTCord>(has, kDataCord, "cord",
                            {CordName(), Integer("kind", &tagTCord::kind, 0, kMost8),
                             Reference("parent", &tagTCord::parent), Triple("origin", &tagTCord::origin),
                             Triple("x_axis", &tagTCord::xAxis), Triple("xy_plane", &tagTCord::xyPlane)}));
  add(RecordTable<tagTMaterial>(
      has, kDataMaterial, "material",
      {Text("name", &tagTMaterial::name), Real("youngs_modulus", &tagTMaterial::youngsModulus),
       Real("poissons_ratio", &tagTMaterial::poissonsRatio), Real("density", &tagTMaterial::density),
       Integer("colour", &tagTMaterial::colour, 0, kMost32)}));
  add(RecordTable<tagTProperty>(
      has, kDataProperty, "property",
      {Text("name", &tagTProperty::name), Integer("kind", &tagTProperty::kind, 0, kMost8),
       Reference("material", &tagTProperty::material), Real("size", &tagTProperty::size)}));
  add(RecordTable<tagTGset>(has, kDataGset, "gset", {Text("name", &tagTGset::name)}));
  add(RecordTable<tagTGeom, ShapePart, OriginPart>(
      has, kDataGeom, "geom",
      {Text("name", &tagTGeom::name), Integer("colour", &tagTGeom::colour, 0, kMost32),
       Integer("cad_item", &tagTGeom::cadItem, 0, kMost32 / 2), Integer("kind", &tagTGeom::kind, 0, kMost8),
       Reference("material", &tagTGeom::material), Reference("gset", &tagTGeom::gset),
       Integer("flexible", &tagTGeom::flexible, 0, 1)}));
  add(RecordTable<tagMGInfo>(has, kDataMGInfo, "mesh_generation",
                             {Integer("kind", &tagMGInfo::kind, 0, kMost32 / 2),
                              Integer("method", &tagMGInfo::method, 0, kMost32 / 2), Targets(), Options()}));
  add(RecordTable<tagTMset, MeshPart>(
      has, kDataMset, "mset",
      {Text("name", &tagTMset::name), Integer("key", &tagTMset::key, 0, kMost32),
       Integer("colour", &tagTMset::colour, 0, kMost32), Integer("parent", &tagTMset::parent, 0, kMost32),
       Reference("geom", &tagTMset::geom), Reference("property", &tagTMset::property),
       Integer("mg_info", &tagTMset::mgInfo, 0, kMost32), Integer("node_count", &tagTMset::nodeCount, 0, kMost),
       Integer("element_count", &tagTMset::elementCount, 0, kMost)}));
  add(RecordTable<tagTDeck, DeckPart>(has, kDataDeck, "deck",
                                      {Text("name", &tagTDeck::name), Integer("nodes", &tagTDeck::nodes, 0, kMost),
                                       Integer("elements", &tagTDeck::elements, 0, kMost),
                                       Integer("rest", &tagTDeck::rest, 0, kMost32), DeckNames()}));
  return tables;
}

}  // namespace qd::workbench
