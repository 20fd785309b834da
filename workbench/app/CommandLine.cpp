#include "workbench/app/CommandLine.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <set>

#include "workbench/session/VariantNames.h"

namespace qd::workbench {

namespace {

using Mode = CommandLine::Mode;

/// An option. A new one is a line of the table below, and a member of CommandLine for its value.
struct Option {
  std::string_view name;
  std::string_view value;  ///< what its value is called; empty for one without
  const char* help;
  void (*take)(CommandLine& line, const std::string& value);
};

template <Mode kMode>
void Choose(CommandLine& line, const std::string& value) {
  line.mode = kMode;
  line.document = value;
}

void Export(CommandLine& line, const std::string& value) {
  line.mode = Mode::Export;
  line.exported = value;
}

template <std::string CommandLine::*kMember>
void Keep(CommandLine& line, const std::string& value) {
  line.*kMember = value;
}

constexpr Option kOptions[] = {
    {"--print-tree", "", "print the model tree and end", Choose<Mode::PrintTree>},
    {"--verify", "DOCUMENT", "check a document, say what is wrong with it and end", Choose<Mode::Verify>},
    {"--repair", "DOCUMENT", "write what is sound of a document into a new one, the FILE, and end",
     Choose<Mode::Repair>},
    {"--force", "", "with --repair: replace a file that is there",
     [](CommandLine& line, const std::string&) { line.force = true; }},
    {"--export", "OUT", "write what the FILEs hold into one, in the format of its ending, and end", Export},
    {"--example", "FILE", "the file to show where no other is named", Keep<&CommandLine::example>},
    {"--screenshot", "PNG", "write a picture of the window and end", Keep<&CommandLine::screenshot>},
    {"--language", "L", "language of the texts, such as de; en without it", Keep<&CommandLine::language>},
    {"--variant", "V", "product variant: standard, ksl, rvt or zdh", Keep<&CommandLine::variant>},
    {"--messages", "FOLDER", "message tables to use in place of the program's own", Keep<&CommandLine::messages>},
    {"--allow-includes", "FOLDER", "solver decks may include files of this folder beside those of their own",
     Keep<&CommandLine::includes>},
    {"--reader-memory", "MIB", "memory that reading a file may take; without it three quarters of the machine's",
     Keep<&CommandLine::readerMemory>},
    {"--reader-seconds", "N", "how long reading may work without getting on before it is given up",
     Keep<&CommandLine::readerSeconds>},
    {"--help", "", "say how the program is called and end", Choose<Mode::Help>},
    {"--version", "", "say which version this is and end", Choose<Mode::Version>},
};

/// What is done without a window, and with how many files.
struct ModeRule {
  Mode mode;
  std::string_view option;
  std::size_t leastFiles;
  std::size_t mostFiles;
  const char* files;  ///< the fault when there are others
};
constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();
constexpr ModeRule kModeRules[] = {
    {Mode::PrintTree, "--print-tree", 0, kMany, ""},
    {Mode::Verify, "--verify", 0, 0, "--verify takes one document and no other file: "},
    {Mode::Repair, "--repair", 1, 1, "--repair DOCUMENT needs one more name, that of the new document"},
    {Mode::Export, "--export", 1, kMany, "--export OUT needs the files that are to be written into it"},
};

const ModeRule* RuleOf(Mode mode) {
  const auto* rule = std::find_if(std::begin(kModeRules), std::end(kModeRules),
                                  [mode](const ModeRule& known) { return known.mode == mode; });
  return rule != std::end(kModeRules) ? rule : nullptr;
}

/// Goes through the arguments one by one.
class Reader {
 public:
  Reader(const std::vector<std::string>& arguments, CommandLine& line) : m_arguments(arguments), m_line(line) {}

  std::optional<std::string> Read() {
    while (m_place < m_arguments.size()) {
      const std::string& argument = m_arguments[m_place++];
      if (argument == "--" && !m_onlyFiles) {
        m_onlyFiles = true;
      } else if (!m_onlyFiles && argument.size() > 1 && argument.front() == '-') {
        if (auto fault = ReadOption(argument)) return fault;
      } else if (argument.empty()) {
        return "a file has an empty name";
      } else {
        m_line.files.push_back(argument);
      }
    }
    if (m_given.contains("--help")) m_line.mode = Mode::Help;
    return std::nullopt;
  }

 private:
  std::optional<std::string> ReadOption(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto* option = std::find_if(std::begin(kOptions), std::end(kOptions),
                                      [&name](const Option& known) { return known.name == name; });
    if (option == std::end(kOptions)) return "there is no option " + name;
    if (!m_given.insert(option->name).second) return name + " is given twice";
    std::string value;
    if (option->value.empty()) {
      if (equals != std::string::npos) return name + " takes no value";
    } else if (equals != std::string::npos) {
      value = argument.substr(equals + 1);
    } else if (m_place < m_arguments.size() && !m_arguments[m_place].starts_with("--")) {
      value = m_arguments[m_place++];
    }
    if (!option->value.empty() && value.empty()) return name + " needs a value: " + std::string(option->value);
    const Mode before = m_line.mode;
    option->take(m_line, value);
    const bool second = before != Mode::Window && before != m_line.mode;
    // Whoever asks for help gets it, whatever else was asked for.
    if (second && before != Mode::Help && m_line.mode != Mode::Help) {
      return name + " cannot be used together with what was asked for before it";
    }
    return std::nullopt;
  }

  const std::vector<std::string>& m_arguments;
  CommandLine& m_line;
  std::size_t m_place = 0;
  bool m_onlyFiles = false;
  std::set<std::string_view> m_given;
};

/// Of what is counted: neither nothing nor more than anything has.
bool IsCount(const std::string& text) {
  constexpr std::size_t kDigits = 9;
  return text.size() <= kDigits && text.find_first_not_of("0123456789") == std::string::npos &&
         text.find_first_not_of('0') != std::string::npos;
}

/// What holds between the options and the files.
std::optional<std::string> CheckLine(const CommandLine& line) {
  if (line.mode == Mode::Help || line.mode == Mode::Version) return std::nullopt;
  if (std::none_of(kVariants.begin(), kVariants.end(),
                   [&line](const VariantName& known) { return line.variant == known.name; })) {
    return "there is no product variant " + line.variant;
  }
  if (line.force && line.mode != Mode::Repair) return "--force goes only with --repair";
  for (const std::string* count : {&line.readerMemory, &line.readerSeconds}) {
    if (!count->empty() && !IsCount(*count)) return *count + " is not a number that can be a limit";
  }
  const ModeRule* rule = RuleOf(line.mode);
  if (rule == nullptr) return std::nullopt;
  if (!line.screenshot.empty())
    return "--screenshot shows a window; it does not go with " + std::string(rule->option);
  if (line.files.size() < rule->leastFiles) return rule->files;
  if (line.files.size() > rule->mostFiles) return rule->files + line.files[rule->mostFiles];
  if (line.mode == Mode::Repair) return std::nullopt;
  const auto isDocument = [](const std::string& name) { return IsDocumentName(name); };
  const auto first = std::find_if(line.files.begin(), line.files.end(), isDocument);
  const auto second = first != line.files.end() ? std::find_if(first + 1, line.files.end(), isDocument) : first;
  if (second != line.files.end()) return "only one document can be open at a time: " + *second;
  return std::nullopt;
}

}  // namespace

std::optional<std::string> ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line) {
  if (auto fault = Reader(arguments, line).Read()) return fault;
  const bool shows = line.mode == Mode::Window || line.mode == Mode::PrintTree;
  if (shows && line.files.empty() && !line.example.empty()) line.files.push_back(line.example);
  return CheckLine(line);
}

std::string CommandLineHelp() {
  std::string text =
      "Usage: workbench [OPTION...] [FILE...]\n"
      "Shows CAD and mesh files with their works tree: opens documents (.qdw) and imports other files.\n\n";
  constexpr std::size_t kColumn = 24;
  for (const Option& option : kOptions) {
    std::string line = "  " + std::string(option.name);
    if (!option.value.empty()) line += " " + std::string(option.value);
    line.resize(std::max(kColumn, line.size() + 2), ' ');
    text += line + option.help + "\n";
  }
  return text +
         "  --                    what follows are files, whatever they are called\n\n"
         "Ends with 0, with 1 when something failed, with 2 when it was called in a wrong way.\n";
}

bool IsDocumentName(std::string_view name) {
  return name.ends_with(".qdw");
}

}  // namespace qd::workbench
