// Lays the Unicode data files into the tables of platform/text.
// Usage: lay_unicode DATA_FOLDER OUTPUT.cpp

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/text/UnicodeTables.h"

namespace fs = std::filesystem;

namespace {

using qd::BreakKind;
using qd::CodeData;
using Text = std::vector<char32_t>;
using Line = std::vector<std::string>;

/// Counted among the letters where accents are left out: what makes the voiced kana, what takes the vowel from an
/// Indic letter, and the vowels of Telugu, Thai, Lao and Tibetan.
constexpr int kSpellingMarks[] = {0, 8, 9, 84, 91, 103, 118, 129, 130, 132};
/// Comes behind all other marks before it is folded, into a letter.
constexpr char32_t kIotaBelow = 0x345;
/// The pattern without a dot: a symbol to the data files, and nothing to see.
constexpr char32_t kBrailleBlank = 0x2800;

const std::map<std::string, BreakKind>& BreakNames() {
  static const std::map<std::string, BreakKind> kNames{{"CR", BreakKind::kCarriageReturn},
                                                       {"LF", BreakKind::kLineFeed},
                                                       {"Control", BreakKind::kControl},
                                                       {"Extend", BreakKind::kExtend},
                                                       {"ZWJ", BreakKind::kJoiner},
                                                       {"Prepend", BreakKind::kPrepend},
                                                       {"SpacingMark", BreakKind::kSpacingMark},
                                                       {"Regional_Indicator", BreakKind::kFlagLetter},
                                                       {"L", BreakKind::kLeading},
                                                       {"V", BreakKind::kVowel},
                                                       {"T", BreakKind::kTrailing},
                                                       {"LV", BreakKind::kOpenSyllable},
                                                       {"LVT", BreakKind::kClosedSyllable}};
  return kNames;
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

/// The lines of a data file in fields, without comments.
std::vector<Line> Read(const fs::path& file) {
  std::ifstream in(file);
  std::vector<Line> lines;
  for (std::string raw; std::getline(in, raw);) {
    std::istringstream fields(raw.substr(0, raw.find('#')));
    Line line;
    for (std::string field; std::getline(fields, field, ';');) line.push_back(Trimmed(field));
    if (!line.empty() && !line.front().empty()) lines.push_back(line);
  }
  if (lines.empty()) throw std::runtime_error("nothing can be read from " + file.string());
  return lines;
}

char32_t CodeOf(const std::string& field) {
  const unsigned long code = std::stoul(field, nullptr, 16);
  if (code >= qd::kUnicodeEnd) throw std::runtime_error("no code: " + field);
  return static_cast<char32_t>(code);
}

Text TextOf(const std::string& field) {
  Text text;
  std::istringstream words(field);
  for (std::string word; words >> word;) text.push_back(CodeOf(word));
  return text;
}

/// Calls `act(code)` for each code of a field such as "0600..0605".
void ForCodes(const std::string& field, const auto& act) {
  const std::size_t dots = field.find("..");
  const char32_t last = CodeOf(dots == std::string::npos ? field : field.substr(dots + 2));
  for (char32_t code = CodeOf(field.substr(0, dots)); code <= last; ++code) act(code);
}

struct Unicode {
  std::vector<CodeData> data = std::vector<CodeData>(qd::kUnicodeEnd);
  std::map<char32_t, Text> decompositions;  ///< one step
  std::map<char32_t, Text> folded;          ///< case only
};

/// How far the code in a field is from the one that the line is about; 0 for an empty field. The last fields of a
/// line are missing where they are empty.
std::int32_t DistanceTo(const Line& line, std::size_t field, char32_t code) {
  if (field >= line.size() || line[field].empty()) return 0;
  return static_cast<std::int32_t>(CodeOf(line[field])) - static_cast<std::int32_t>(code);
}

Unicode ReadAll(const fs::path& folder) {
  Unicode unicode;
  for (const Line& line : Read(folder / "UnicodeData.txt")) {
    const char32_t code = CodeOf(line.at(0));
    CodeData& data = unicode.data[code];
    data.combining = static_cast<std::uint8_t>(std::stoi(line.at(3)));
    data.accent = std::find(std::begin(kSpellingMarks), std::end(kSpellingMarks), data.combining) ==
                  std::end(kSpellingMarks);
    const std::string& kind = line.at(2);
    data.blank = kind.front() == 'Z' || kind == "Cc" || kind == "Cf" || code == kBrailleBlank;
    const std::string& parts = line.at(5);
    if (!parts.empty() && parts.front() != '<') unicode.decompositions[code] = TextOf(parts);
    data.toCapital = DistanceTo(line, 12, code);
    data.toLower = DistanceTo(line, 13, code);
  }
  for (const Line& line : Read(folder / "CaseFolding.txt")) {
    const char32_t code = CodeOf(line.at(0));
    const Text text = TextOf(line.at(2));
    const std::string& kind = line.at(1);
    if (kind == "C" || kind == "F") unicode.folded[code] = text;
    if (kind == "C" || kind == "S") {
      unicode.data[code].toSmall = static_cast<std::int32_t>(text.at(0)) - static_cast<std::int32_t>(code);
    }
  }
  for (const Line& line : Read(folder / "auxiliary/GraphemeBreakProperty.txt")) {
    ForCodes(line.at(0), [&](char32_t code) { unicode.data[code].breaks = BreakNames().at(line.at(1)); });
  }
  for (const Line& line : Read(folder / "emoji/emoji-data.txt")) {
    if (line.at(1) != "Extended_Pictographic") continue;
    ForCodes(line.at(0), [&](char32_t code) {
      if (unicode.data[code].breaks != BreakKind::kOther) throw std::runtime_error("a code breaks in two ways");
      unicode.data[code].breaks = BreakKind::kPictograph;
    });
  }
  for (const Line& line : Read(folder / "DerivedCoreProperties.txt")) {
    if (line.at(1) != "Default_Ignorable_Code_Point") continue;
    ForCodes(line.at(0), [&](char32_t code) { unicode.data[code].ignorable = unicode.data[code].blank = true; });
  }
  return unicode;
}

Text Decomposed(const Unicode& unicode, char32_t code) {
  Text text{code};
  for (std::size_t at = 0; at < text.size();) {
    const auto parts = unicode.decompositions.find(text[at]);
    if (parts == unicode.decompositions.end()) {
      ++at;
      continue;
    }
    text.erase(text.begin() + static_cast<long>(at));
    text.insert(text.begin() + static_cast<long>(at), parts->second.begin(), parts->second.end());
  }
  return text;
}

/// Decomposed, folded, and decomposed again.
Text Folded(const Unicode& unicode, char32_t code) {
  Text text;
  for (const char32_t part : Decomposed(unicode, code)) {
    const auto known = unicode.folded.find(part);
    if (known == unicode.folded.end() || part == kIotaBelow) {
      text.push_back(part);
      continue;
    }
    for (const char32_t letter : known->second) {
      const Text parts = Decomposed(unicode, letter);
      text.insert(text.end(), parts.begin(), parts.end());
    }
  }
  return text;
}

/// Numbers what comes, the same the same; `text` is the C++ text of the table.
template <typename Key>
struct Numbered {
  std::map<Key, std::uint16_t> places;
  std::string text;
  std::size_t next = 0;

  std::uint16_t PlaceOf(const Key& key, std::size_t size, const auto& write) {
    const auto [place, isNew] = places.emplace(key, static_cast<std::uint16_t>(next));
    if (!isNew) return place->second;
    if (next > 0xFFFF) throw std::runtime_error("a table has grown too large");
    text += write(key);
    next += size;
    return place->second;
  }
};

template <typename Items>
std::string Joined(const Items& items) {
  std::string text;
  for (const auto item : items) text += std::to_string(static_cast<std::uint32_t>(item)) + ",";
  return text + "\n";
}

/// A table of two stages from the entries of all codes.
std::string Stages(const std::vector<std::uint16_t>& entries, const std::string& blocksName,
                   const std::string& placesName) {
  constexpr std::size_t kBlock = std::size_t{1} << qd::kUnicodeBlockBits;
  std::vector<std::uint16_t> blocks;
  Numbered<std::vector<std::uint16_t>> places;
  for (auto at = entries.begin(); at != entries.end(); at += kBlock) {
    blocks.push_back(places.PlaceOf({at, at + kBlock}, 1, Joined<std::vector<std::uint16_t>>));
  }
  return "const std::uint16_t " + blocksName + "[] = {" + Joined(blocks) + "};\nconst std::uint16_t " +
         placesName + "[] = {\n" + places.text + "};\n";
}

std::string Tables(const Unicode& unicode) {
  using DataKey = std::vector<std::int32_t>;
  Numbered<DataKey> data;
  Numbered<Text> texts;
  std::vector<std::uint16_t> dataEntries;
  std::vector<std::uint16_t> textEntries;
  const auto writeData = [](const DataKey& key) {
    return "{static_cast<BreakKind>(" + std::to_string(key[0]) + ")," + std::to_string(key[1]) + "," +
           (key[2] != 0 ? "true" : "false") + "," + (key[3] != 0 ? "true" : "false") + "," +
           (key[4] != 0 ? "true" : "false") + "," + std::to_string(key[5]) + "," + std::to_string(key[6]) + "," +
           std::to_string(key[7]) + "},\n";
  };
  const auto writeText = [](const Text& text) { return std::to_string(text.size()) + "," + Joined(text); };
  texts.PlaceOf({}, 1, writeText);
  for (char32_t code = 0; code < qd::kUnicodeEnd; ++code) {
    const CodeData& of = unicode.data[code];
    const DataKey key{static_cast<int>(of.breaks),
                      of.combining,
                      of.ignorable,
                      of.accent,
                      of.blank,
                      of.toSmall,
                      of.toCapital,
                      of.toLower};
    dataEntries.push_back(data.PlaceOf(key, 1, writeData));
    Text text = Folded(unicode, code);
    if (text == Text{code}) text.clear();
    textEntries.push_back(texts.PlaceOf(text, text.size() + 1, writeText));
  }
  return Stages(dataEntries, "kDataBlocks", "kDataPlaces") + "const CodeData kCodeData[] = {\n" + data.text +
         "};\n" + Stages(textEntries, "kFoldedBlocks", "kFoldedPlaces") + "const char32_t kFoldedTexts[] = {\n" +
         texts.text + "};\n";
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: lay_unicode DATA_FOLDER OUTPUT.cpp\n";
    return 2;
  }
  try {
    const std::string tables = Tables(ReadAll(arguments[1]));
    std::ofstream out(arguments[2]);
    out << "#include \"platform/text/UnicodeTables.h\"\n\nnamespace qd {\n\n"
        << tables << "\n}  // namespace qd\n";
    if (!out.flush()) throw std::runtime_error(std::string("cannot write ") + arguments[2]);
  } catch (const std::exception& fault) {
    std::cerr << "lay_unicode: " << fault.what() << "\n";
    return 1;
  }
  return 0;
}
