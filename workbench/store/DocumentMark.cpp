#include "workbench/store/DocumentMark.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

#include "workbench/store/DocumentSchema.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSign = "QD document mark";
constexpr std::size_t kCode = std::tuple_size_v<DocumentMark::Code>;

DocumentMark::Code NewCode() {
  std::random_device random;
  DocumentMark::Code code;
  for (char& byte : code) byte = static_cast<char>(random());
  return code;
}

}  // namespace

DocumentMark DocumentMark::New() {
  return {NewCode(), NewCode(), NewCode()};
}

DocumentMark DocumentMark::Next() const {
  return {document, NewCode(), state};
}

std::string DocumentMark::Encode() const {
  std::string bytes(kSign);
  for (const Code* code : {&document, &state, &previous}) bytes.append(code->data(), code->size());
  return bytes;
}

std::optional<DocumentMark> DocumentMark::Decode(std::string_view bytes) {
  if (bytes.size() != kSign.size() + 3 * kCode || !bytes.starts_with(kSign)) return std::nullopt;
  DocumentMark mark;
  const char* at = bytes.data() + kSign.size();
  for (Code* code : {&mark.document, &mark.state, &mark.previous}) {
    std::copy_n(at, kCode, code->begin());
    at += kCode;
  }
  return mark;
}

std::optional<DocumentMark> DocumentMark::Find(std::string_view page) {
  const std::size_t place = page.find(kSign);
  if (place == std::string_view::npos) return std::nullopt;
  return Decode(page.substr(place, kSign.size() + 3 * kCode));
}

// ---- logs -----------------------------------------------------------------------------------------------

namespace {

constexpr std::string_view kDatabase("SQLite format 3\0", 16);
constexpr std::string_view kJournal("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);
constexpr std::array<const char*, 3> kLogs{"-journal", "-wal", "-shm"};

/// Numbers in the library's files have the high byte first.
std::uint32_t NumberAt(std::string_view bytes, std::size_t place) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    number = number << 8U | static_cast<unsigned char>(bytes.size() > place + i ? bytes[place + i] : 0);
  }
  return number;
}

/// Bytes of a file; fewer, or none, where it ends.
std::string BytesOf(std::ifstream& file, std::uint64_t from, std::size_t count) {
  std::string bytes(count, 0);
  file.clear();
  file.seekg(static_cast<std::streamoff>(from));
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return bytes;
}

/// What a file's first page says of it.
struct Head {
  explicit Head(std::string_view page)
      : isDatabase(page.starts_with(kDatabase)),
        hasWriteAhead(page.size() > 18 && page[18] == 2),
        application(NumberAt(page, 68)),
        version(NumberAt(page, 60)),
        changes(NumberAt(page, 24)) {}

  bool isDatabase;
  bool hasWriteAhead;
  std::uint32_t application;
  std::uint32_t version;
  std::uint32_t changes;
};

std::uint64_t SizeOf(const std::string& path) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(path, failed);
  return failed ? 0 : size;
}

/// The log of a single act: the pages that it changes, as they were. The mark's is among the first ones.
LogKind CheckJournal(const std::string& path, std::ifstream& document, const Head& head) {
  std::ifstream log(path + "-journal", std::ios::binary);
  const std::string start = BytesOf(log, 0, 28);
  if (!start.starts_with(kJournal)) return LogKind::None;  // ended
  const std::uint32_t records = NumberAt(start, 8);
  const std::uint32_t sector = NumberAt(start, 20);
  const std::uint32_t page = NumberAt(start, 24);
  constexpr std::uint32_t kLargest = 65'536;
  if (sector < 32 || sector > kLargest || page < 512 || page > kLargest) return LogKind::Foreign;
  constexpr int kFirst = 8;
  std::optional<std::uint32_t> oldChanges;
  for (int record = 0; record < kFirst; ++record) {
    const std::uint64_t size = 8ULL + page;  // with the number of the page, and a sum
    const std::string bytes = BytesOf(log, sector + size * static_cast<unsigned>(record), size);
    if (bytes.size() < size) break;
    const std::uint32_t number = NumberAt(bytes, 0);
    const std::string_view old = std::string_view(bytes).substr(4, page);
    if (number == 1 && Head(old).version == 1) oldChanges = Head(old).changes;
    const auto before = DocumentMark::Find(old);
    if (!before || number == 0) continue;
    const auto now = DocumentMark::Find(BytesOf(document, (number - 1ULL) * page, page));
    const bool own = now && now->document == before->document &&
                     (now->state == before->state || now->previous == before->state);
    return own ? LogKind::Own : LogKind::Foreign;
  }
  // Bringing a document forward from the first version, which has no mark.
  if (oldChanges && head.changes - *oldChanges <= 1) return LogKind::Own;
  return records == 0 ? LogKind::None : LogKind::Foreign;  // without records nothing of the file was changed yet
}

}  // namespace

bool IsDocument(const std::string& path) {
  std::ifstream document(path, std::ios::binary);
  const Head head(BytesOf(document, 0, 100));
  return head.isDatabase && head.application == kDocumentApplication;
}

int StatedVersion(const std::string& path) {
  std::ifstream document(path, std::ios::binary);
  const Head head(BytesOf(document, 0, 100));
  const bool isDocument = head.isDatabase && head.application == kDocumentApplication;
  return isDocument ? static_cast<int>(head.version & 0x7FFFFFFFU) : 0;
}

LogKind CheckLogs(const std::string& path) {
  const bool anyAhead = SizeOf(path + "-wal") > 0;
  const bool anyJournal = SizeOf(path + "-journal") > 0;
  if (!anyAhead && !anyJournal) return LogKind::None;
  // A pipe would be waited for.
  std::error_code none;
  if (!fs::is_regular_file(path, none)) return LogKind::None;
  std::ifstream document(path, std::ios::binary);
  const Head head(BytesOf(document, 0, 100));
  if (!head.isDatabase) return LogKind::Foreign;
  // The first version wrote ahead. No later one does.
  if (anyAhead && !(head.version == 1 && head.hasWriteAhead)) return LogKind::Foreign;
  if (!anyJournal) return LogKind::Own;
  const LogKind kind = CheckJournal(path, document, head);
  return kind == LogKind::None && anyAhead ? LogKind::Own : kind;
}

std::string SetLogsAside(const std::string& path) {
  std::string last;
  for (const char* log : kLogs) {
    if (SizeOf(path + log) == 0) continue;
    const std::string aside = path + log + ".foreign-" + std::to_string(std::time(nullptr));
    std::error_code failed;
    fs::rename(path + log, aside, failed);
    if (!failed) last = aside;
  }
  return last;
}

void RemoveIdleLogs(const std::string& path) {
  std::error_code none;
  for (const char* log : kLogs) fs::remove(path + log, none);
}

}  // namespace qd::workbench
