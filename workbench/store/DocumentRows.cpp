#include "workbench/store/DocumentRows.h"

#include <algorithm>
#include <array>

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "workbench/model/Pools.h"
#include "workbench/model/Values.h"
#include "workbench/text/Shown.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

constexpr std::array<std::uint16_t, 9> kPools{kDataSettings, kDataCord,   kDataMaterial, kDataProperty, kDataGset,
                                              kDataGeom,     kDataMGInfo, kDataMset,     kDataDeck};

/// Entries of windows: this program writes one of some kilobytes.
constexpr int kMostViews = 100;
constexpr std::size_t kMostViewName = 200;
constexpr std::size_t kMostView = 16U << 20U;

std::string Line(const char* key, std::int64_t number = 0) {
  return ToUtf8(qdFormat(CMSGFunction::GetValue(key), {std::to_wstring(number)}));
}

}  // namespace

std::string ReadNumbers(Connection& file, const std::function<void(iterator last)>& onLast) {
  std::string fault;
  std::size_t count = 0;
  Statement numbers = file.Prepare("SELECT type, last FROM pool ORDER BY type");
  while (fault.empty() && numbers.Step()) {
    const std::int64_t type = numbers.Integer(0);
    const std::int64_t last = numbers.Integer(1);
    // A pool stands once; rows that come again hang in a circle.
    const bool known = ++count <= kPools.size() && std::find(kPools.begin(), kPools.end(), type) != kPools.end();
    if (!known) {
      fault = Line("IDS_WB_FAULT_NO_POOL", type);
    } else if (!numbers.IsInteger(1) || last < 1 || last > static_cast<std::int64_t>(kMostRecords)) {
      fault = Line("IDS_WB_FAULT_POOL_NUMBER", type);
    } else {
      onLast(static_cast<iterator>(type) << kTypeShift | static_cast<iterator>(last));
    }
  }
  return numbers.Failed() ? "pool: " + ShownText(file.Error()) : fault;
}

std::string ReadMark(Connection& file, DocumentMark& mark) {
  Statement marks = file.Prepare("SELECT mark FROM document");
  const auto first = marks.Step() ? DocumentMark::Decode(marks.Bytes(0)) : std::nullopt;
  if (first && !marks.Step() && !marks.Failed()) {
    mark = *first;
    return {};
  }
  return marks.Failed() ? "document: " + ShownText(file.Error()) : Line("IDS_WB_FAULT_MARK");
}

std::string CheckViews(Connection& file) {
  int count = 0;
  // By the names' order, so that their index is walked to its end too.
  Statement views = file.Prepare("SELECT name, length(data) FROM view ORDER BY name");
  while (views.Step()) {
    if (++count > kMostViews || views.Bytes(0).size() > kMostViewName ||
        views.Integer(1) > static_cast<std::int64_t>(kMostView)) {
      return Line("IDS_WB_FAULT_VIEWS");
    }
  }
  return views.Failed() ? "view: " + ShownText(file.Error()) : std::string();
}

std::string CheckPages(Connection& file) {
  Statement check = file.Prepare("PRAGMA quick_check(1)");
  const std::string line = check.Step() ? std::string(check.Bytes(0)) : std::string();
  if (check.Failed()) return ShownText(file.Error());
  return line == "ok" ? std::string() : ShownText(line);
}

}  // namespace qd::workbench
