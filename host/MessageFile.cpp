#include "host/MessageFile.h"

#include <istream>
#include <optional>

#include "host/BuiltInTexts.h"
#include "platform/text/Utf8.h"

namespace qd {

namespace {

std::string_view Trimmed(std::string_view line) {
  constexpr std::string_view kBlank = " \t\r";
  const std::size_t first = line.find_first_not_of(kBlank);
  return first == std::string_view::npos ? "" : line.substr(first, line.find_last_not_of(kBlank) - first + 1);
}

bool IsNumbered(const CString& text, std::size_t at) {
  return at + 1 < text.size() && text[at + 1] >= L'1' && text[at + 1] <= L'9';
}

/// The length of a place for an argument that begins with the percent sign at `at`; 0 for none.
std::size_t PlaceholderLength(const CString& text, std::size_t at) {
  if (IsNumbered(text, at)) return 2;
  const std::size_t conversion = text.find_first_not_of(L"-+ #0123456789.lh", at + 1);
  if (conversion == CString::npos) return 0;
  return CString(L"sdiufgeExXc").find(text[conversion]) != CString::npos ? conversion - at + 1 : 0;
}

/// What a text puts where: the kind of each argument by its number.
std::map<std::size_t, CString> ArgumentsOf(const CString& text) {
  std::map<std::size_t, CString> arguments;
  std::size_t next = 0;
  for (const CString& place : PlaceholdersOf(text)) {
    const bool numbered = IsNumbered(place, 0);
    const std::size_t number = numbered ? static_cast<std::size_t>(place[1] - L'0') : ++next;
    arguments.emplace(number, numbered ? L"%s" : place);
  }
  return arguments;
}

}  // namespace

MessageFile ParseMessages(std::string_view bytes) {
  MessageFile file;
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  if (!DecodeUtf8(bytes)) {
    file.faults.emplace_back("not UTF-8");
    return file;
  }
  for (int number = 1; !bytes.empty(); ++number) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = Trimmed(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.empty() || line.front() == '#') continue;
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || equals == 0) {
      file.faults.push_back("line " + std::to_string(number) + ": no \"KEY=text\"");
      continue;
    }
    const std::string key(line.substr(0, equals));
    if (!file.texts.emplace(key, *DecodeUtf8(line.substr(equals + 1))).second) {
      file.faults.push_back("line " + std::to_string(number) + ": " + key + " comes again");
    }
  }
  return file;
}

MessageFile ReadMessages(std::istream& in) {
  MessageFile file;
  std::string bytes(MessageFile::kMostBytes + 1, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!in.eof()) {
    file.faults.emplace_back(in.good() ? "too long for a table" : "cannot be read");
    return file;
  }
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  file = ParseMessages(bytes);
  DropMisformatted(file);
  return file;
}

std::vector<CString> PlaceholdersOf(const CString& text) {
  std::vector<CString> places;
  for (std::size_t at = text.find(L'%'); at != CString::npos; at = text.find(L'%', at)) {
    if (at + 1 < text.size() && text[at + 1] == L'%') {
      at += 2;
      continue;
    }
    const std::size_t length = PlaceholderLength(text, at);
    if (length != 0) places.push_back(text.substr(at, length));
    at += length != 0 ? length : 1;
  }
  return places;
}

void DropMisformatted(MessageFile& file, const MessageTexts& reference) {
  std::erase_if(file.texts, [&](const auto& entry) {
    const auto known = reference.find(entry.first);
    if (known == reference.end() || ArgumentsOf(known->second) == ArgumentsOf(entry.second)) return false;
    file.faults.push_back(entry.first + ": not the same arguments");
    return true;
  });
}

void DropMisformatted(MessageFile& file) {
  MessageTexts own;
  for (const BuiltInText& text : BuiltInTexts()) own.emplace(text.key, text.text);
  DropMisformatted(file, own);
}

CString PseudoText(const CString& text) {
  const CString plain = L"AEIOUYaeiouycnsz";
  const CString accented = L"ÅÉÎÖÜÝåéîöüýçñšž";
  CString out = L"[";
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t place = text[i] == L'%' ? PlaceholderLength(text, i) : 0;
    if (place != 0) {
      out += text.substr(i, place);
      i += place;
      continue;
    }
    const std::size_t letter = plain.find(text[i]);
    out += letter != CString::npos ? accented[letter] : text[i];
    ++i;
  }
  out.append(text.size() / 2 + 1, L'~');
  return out + L"]";
}

bool LookUpText(std::string_view key, std::initializer_list<const MessageTexts*> tables, CString& text) {
  for (const MessageTexts* texts : tables) {
    const auto found = texts->find(key);
    if (found == texts->end()) continue;
    text = found->second;
    return true;
  }
  return false;
}

}  // namespace qd
