// Takes the module's texts out of a table of the program around it: into one that is installed with the module, or
// as source, of which the module is made, for hosts that bring no table. Usage: lay_texts MESSAGES.txt
// OUTPUT.txt|OUTPUT.cpp

#include <cstdint>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

/// The program around the module has texts of its own in the same table.
constexpr const char* kOfTheProgram = "IDS_WB_";

std::map<std::string, std::string> Read(const char* path) {
  std::ifstream in(path);
  std::map<std::string, std::string> texts;
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    const std::size_t equals = line.find('=');
    if (line.empty() || line.front() == '#' || equals == std::string::npos || line.starts_with(kOfTheProgram))
      continue;
    texts.emplace(line.substr(0, equals), line.substr(equals + 1));
  }
  if (texts.empty()) throw std::runtime_error("no texts in " + std::string(path));
  return texts;
}

/// The text of a wide literal. The bytes are UTF-8, which was checked when the table was read by others.
std::string Literal(const std::string& text) {
  std::ostringstream out;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      if (lead == '"' || lead == '\\') out << '\\';
      out << text[i++];
      continue;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (i + length > text.size()) throw std::runtime_error("no UTF-8: " + text);
    std::uint32_t code = lead & (0x7FU >> length);
    for (std::size_t k = 1; k < length; ++k) code = code << 6U | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
    out << "\\U" << std::hex << std::setw(8) << std::setfill('0') << code;
    i += length;
  }
  return out.str();
}

void WriteSource(std::ostream& out, const std::map<std::string, std::string>& texts) {
  out << "#include \"host/BuiltInTexts.h\"\n\nnamespace qd {\n\nconstexpr BuiltInText kTexts[] = {\n";
  for (const auto& [key, text] : texts) out << "    {\"" << key << "\", L\"" << Literal(text) << "\"},\n";
  out << "};\n\nstd::span<const BuiltInText> BuiltInTexts() {\n  return kTexts;\n}\n\n}  // namespace qd\n";
}

}  // namespace

int main(int count, char** arguments) try {
  if (count != 3) throw std::runtime_error("usage: lay_texts MESSAGES.txt OUTPUT.txt|OUTPUT.cpp");
  const std::map<std::string, std::string> texts = Read(arguments[1]);
  std::ofstream out(arguments[2], std::ios::binary);
  if (std::string(arguments[2]).ends_with(".cpp")) {
    WriteSource(out, texts);
  } else {
    for (const auto& [key, text] : texts) out << key << '=' << text << '\n';
  }
  out.close();
  if (!out) throw std::runtime_error("cannot write " + std::string(arguments[2]));
  return 0;
} catch (const std::exception& fault) {
  std::cerr << "lay_texts: " << fault.what() << '\n';
  return 1;
}
