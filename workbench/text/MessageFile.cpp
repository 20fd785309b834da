#include "workbench/text/MessageFile.h"

#include <sstream>

#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

std::string Trimmed(const std::string& line) {
  constexpr const char* kBlank = " \t\r";
  const std::size_t first = line.find_first_not_of(kBlank);
  return first == std::string::npos ? "" : line.substr(first, line.find_last_not_of(kBlank) - first + 1);
}

bool IsNumbered(const std::wstring& text, std::size_t at) {
  return at + 1 < text.size() && text[at + 1] >= L'1' && text[at + 1] <= L'9';
}

/// The length of a place for an argument that begins with the percent sign at `at`; 0 for none.
std::size_t PlaceholderLength(const std::wstring& text, std::size_t at) {
  if (IsNumbered(text, at)) return 2;
  const std::size_t conversion = text.find_first_not_of(L"-+ #0123456789.lh", at + 1);
  if (conversion == std::wstring::npos) return 0;
  return std::wstring(L"sdiufgeExXc").find(text[conversion]) != std::wstring::npos ? conversion - at + 1 : 0;
}

/// What a text puts where: the kind of each argument by its number.
std::map<std::size_t, std::wstring> ArgumentsOf(const std::wstring& text) {
  std::map<std::size_t, std::wstring> arguments;
  std::size_t next = 0;
  for (const std::wstring& place : PlaceholdersOf(text)) {
    const bool numbered = IsNumbered(place, 0);
    const std::size_t number = numbered ? static_cast<std::size_t>(place[1] - L'0') : ++next;
    arguments.emplace(number, numbered ? L"%s" : place);
  }
  return arguments;
}

}  // namespace

MessageFile ParseMessages(const std::string& bytes) {
  MessageFile file;
  // Reading replaces what is no UTF-8, so it would not come out again as it went in.
  if (ToUtf8(FromUtf8(bytes)) != bytes) {
    file.faults.emplace_back("not UTF-8");
    return file;
  }
  const std::string mark = "\xEF\xBB\xBF";
  std::istringstream lines(bytes.starts_with(mark) ? bytes.substr(mark.size()) : bytes);
  int number = 0;
  for (std::string raw; std::getline(lines, raw);) {
    ++number;
    const std::string line = Trimmed(raw);
    if (line.empty() || line.front() == '#') continue;
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos || equals == 0) {
      file.faults.push_back("line " + std::to_string(number) + ": no \"KEY=text\"");
    } else if (!file.texts.emplace(line.substr(0, equals), FromUtf8(line.substr(equals + 1))).second) {
      file.faults.push_back("line " + std::to_string(number) + ": " + line.substr(0, equals) + " comes again");
    }
  }
  return file;
}

std::vector<std::wstring> PlaceholdersOf(const std::wstring& text) {
  std::vector<std::wstring> places;
  for (std::size_t at = text.find(L'%'); at != std::wstring::npos; at = text.find(L'%', at)) {
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

std::wstring PseudoText(const std::wstring& text) {
  const std::wstring plain = L"AEIOUYaeiouycnsz";
  const std::wstring accented = L"ÅÉÎÖÜÝåéîöüýçñšž";
  std::wstring out = L"[";
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t place = text[i] == L'%' ? PlaceholderLength(text, i) : 0;
    if (place != 0) {
      out += text.substr(i, place);
      i += place;
      continue;
    }
    const std::size_t letter = plain.find(text[i]);
    out += letter != std::wstring::npos ? accented[letter] : text[i];
    ++i;
  }
  out.append(text.size() / 2 + 1, L'~');
  return out + L"]";
}

bool LookUpText(std::string_view key, std::initializer_list<const MessageTexts*> tables, std::wstring& text) {
  for (const MessageTexts* texts : tables) {
    const auto found = texts->find(key);
    if (found == texts->end()) continue;
    text = found->second;
    return true;
  }
  return false;
}

}  // namespace qd::workbench
