#include "workbench/exchange/formats/InpLines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>

#include "workbench/text/Ascii.h"
#include "workbench/text/Paths.h"

namespace qd::workbench {

std::string CompactInpWord(std::string_view text) {
  std::string compact = UpperCase(text);
  std::erase_if(compact, [](char letter) { return letter == ' ' || letter == '\t'; });
  return compact;
}

std::string InpLine::Parameter(const std::string& name) const {
  const auto found = parameters.find(name);
  return found != parameters.end() ? found->second : std::string();
}

InpLines::InpLines(const std::filesystem::path& path, const std::vector<std::filesystem::path>& folders) {
  Open(path);
  const std::filesystem::path own = path.parent_path();
  for (const std::filesystem::path& folder : folders) m_folders.push_back(folder);
  m_folders.push_back(own.empty() ? "." : own);
}

InpLines::InpLines(const std::filesystem::path& path, std::string text) {
  m_sources.push_back(std::make_unique<Source>(Source{.path = path, .text = std::move(text)}));
}

void InpLines::Open(const std::filesystem::path& path) {
  std::error_code error;
  // A pipe or a device would let us wait for ever.
  const bool readable = std::filesystem::is_regular_file(path, error);
  std::ifstream in;
  if (readable) in.open(path, std::ios::binary);
  if (!in.is_open()) {
    if (m_sources.empty()) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", PathText(path)};
    Fail("IDS_WB_IMPORT_INP_INCLUDE", PathText(path));
  }
  auto source = std::make_unique<Source>();
  source->path = path;
  source->text.resize(static_cast<std::size_t>(std::filesystem::file_size(path, error)));
  in.read(source->text.data(), static_cast<std::streamsize>(source->text.size()));
  source->text.resize(static_cast<std::size_t>(in.gcount()));
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string& text = source->text;
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  // Marked as such, or with every other byte of its first letter empty.
  const bool wide = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
                    (text.size() >= 2 && (text[0] == '\0') != (text[1] == '\0'));
  if (wide) throw ImportError{"IDS_WB_IMPORT_INP_WIDE", PathText(path.filename())};
  // Old systems end their lines so.
  if (text.find('\n') == std::string::npos) std::replace(text.begin(), text.end(), '\r', '\n');
  m_sources.push_back(std::move(source));
}

void InpLines::Include(const std::string& name) {
  constexpr std::size_t kDeepest = 16;   // a file that includes itself ends here
  constexpr std::size_t kMost = 10'000;  // and files that include each other many times here
  constexpr std::uintmax_t kMostBytes = std::uintmax_t{64} << 30U;
  // What is read again takes memory that no file on the disk stands for.
  constexpr std::uintmax_t kMostAgain = std::uintmax_t{256} << 20U;
  const std::filesystem::path given = PathOf(name);
  const std::filesystem::path path = given.is_absolute() ? given : m_sources.back()->path.parent_path() / given;
  std::error_code error;
  // Links lead anywhere, so it counts where the file is in the end.
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  const bool allowed = std::any_of(m_folders.begin(), m_folders.end(), [&](const std::filesystem::path& folder) {
    std::error_code none;
    const std::filesystem::path top = std::filesystem::canonical(folder, none);
    return !none && std::mismatch(top.begin(), top.end(), real.begin(), real.end()).first == top.end();
  });
  // What cannot be looked at is told by its name.
  const std::filesystem::path below = given.lexically_normal();
  const bool outer = given.is_absolute() || (!below.empty() && *below.begin() == "..");
  if (error ? outer : !allowed) {
    throw ImportError{"IDS_WB_IMPORT_INP_OUTSIDE", Place() + ": " + PathText(given), error ? "" : real.string()};
  }
  const std::uintmax_t bytes = error ? 0 : std::filesystem::file_size(real, error);
  if (!error) (m_known.insert(real).second ? m_bytes : m_bytesAgain) += bytes;
  const bool isTooMuch = ++m_included > kMost || m_bytes > kMostBytes || m_bytesAgain > kMostAgain;
  if (error || m_sources.size() >= kDeepest || isTooMuch) {
    throw ImportError{"IDS_WB_IMPORT_INP_INCLUDE", Place() + ": " + PathText(given)};
  }
  Open(real);
}

std::string InpLines::Quoted(std::string_view what) const {
  constexpr std::size_t kMostShown = 60;
  return m_included == 0 ? std::string(what.substr(0, kMostShown)) : std::string();
}

void InpLines::Fail(const char* key, std::string_view what) const {
  const std::string quoted = Quoted(what);
  throw ImportError{key, quoted.empty() ? Place() : Place() + ": " + quoted};
}

std::string InpLines::Place() const {
  const Source& source = *m_sources.back();
  return PathText(source.path.filename()) + ", " + std::to_string(source.line);
}

double InpLines::Done() const {
  const Source& source = *m_sources.front();
  return source.text.empty() ? 1 : static_cast<double>(source.at) / static_cast<double>(source.text.size());
}

bool InpLines::Raw(std::string_view& text) {
  Source& source = *m_sources.back();
  if (source.at >= source.text.size()) return false;
  const std::size_t end = std::min(source.text.find('\n', source.at), source.text.size());
  text = Trimmed(std::string_view(source.text).substr(source.at, end - source.at));
  source.at = end + 1;
  ++source.line;
  m_taken.append(text).append("\n");
  return true;
}

bool InpLines::Next(InpLine& line) {
  for (;;) {
    std::string_view text;
    const std::size_t before = m_taken.size();
    if (!Raw(text)) {
      if (m_sources.size() == 1) return false;
      m_sources.pop_back();
      continue;
    }
    if (text.empty() || text.starts_with("**")) continue;
    line.text = text;
    line.isKeyword = text.front() == '*';
    if (!line.isKeyword) return true;
    if (text.back() == ',') {
      m_joined = text;
      while (m_joined.back() == ',' && Raw(text)) m_joined += text;
      line.text = m_joined;
    }
    ParseKeyword(line);
    if (line.keyword != "INCLUDE") return true;
    // The lines of the other file stand in place of this one.
    m_taken.resize(before);
    Include(line.Parameter("INPUT"));
  }
}

void InpLines::ParseKeyword(InpLine& line) {
  line.parameters.clear();
  std::vector<std::string_view> fields;
  Fields(line.text.substr(1), fields);
  line.keyword = fields.empty() ? std::string() : CompactInpWord(fields.front());
  for (std::size_t i = 1; i < fields.size(); ++i) {
    const std::size_t equals = fields[i].find('=');
    const std::string_view name = Trimmed(fields[i].substr(0, equals));
    std::string_view value =
        equals != std::string_view::npos ? Trimmed(fields[i].substr(equals + 1)) : std::string_view();
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
      value = value.substr(1, value.size() - 2);
    line.parameters[CompactInpWord(name)] = value;
  }
}

void InpLines::Fields(std::string_view text, std::vector<std::string_view>& fields) {
  fields.clear();
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    fields.push_back(Trimmed(text.substr(0, comma)));
    text.remove_prefix(std::min(comma + 1, text.size()));
  }
}

std::int64_t InpLines::Integer(std::string_view field) const {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  if (error != std::errc() || end != field.data() + field.size()) Fail("IDS_WB_IMPORT_INP_NUMBER", field);
  return value;
}

double InpLines::Number(std::string_view field) const {
  if (field.starts_with('+')) field.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  const bool whole = error == std::errc() && end == field.data() + field.size();
  if (!whole) {
    // Old files write exponents with D.
    std::string text(field);
    const std::size_t exponent = text.find_first_of("dD");
    if (exponent == std::string::npos) Fail("IDS_WB_IMPORT_INP_NUMBER", field);
    text[exponent] = 'e';
    const auto [last, again] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (again != std::errc() || last != text.data() + text.size()) Fail("IDS_WB_IMPORT_INP_NUMBER", field);
  }
  if (!std::isfinite(value)) Fail("IDS_WB_IMPORT_INP_NUMBER", field);
  return value;
}

}  // namespace qd::workbench
