#include "workbench/app/CommandLine.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "workbench/session/VariantNames.h"
#include "workbench/text/Units.h"

namespace qd::workbench {

namespace {

using Mode = CommandLine::Mode;

/// A set of modes, one bit each.
using Modes = unsigned;
constexpr Modes BitOf(Mode mode) {
  return 1U << static_cast<unsigned>(mode);
}
constexpr Modes kAllModes = ~0U;
constexpr Modes kPicture = BitOf(Mode::Screenshot);
constexpr Modes kLooks = BitOf(Mode::Export) | BitOf(Mode::Info);

/// What a shell offers for the value of an option.
enum class Offer { Nothing, Files, Folders, Views, Units, Variants, Languages, Shells };

/// An option. A new one is a line of the table below, and a member of CommandLine for its value.
struct Option {
  std::string_view name;
  std::string_view value;  ///< what its value is called; empty for one without
  const char* help;
  void (*take)(CommandLine& line, const std::string& value);
  Modes with = kAllModes;  ///< what it goes with
  Offer offer = Offer::Nothing;
};

template <Mode kMode>
void Choose(CommandLine& line, const std::string& value) {
  line.mode = kMode;
  line.target = value;
}

template <std::string CommandLine::*kMember>
void Keep(CommandLine& line, const std::string& value) {
  line.*kMember = value;
}

template <bool CommandLine::*kMember>
void Set(CommandLine& line, const std::string&) {
  line.*kMember = true;
}

template <std::string PictureTexts::*kMember>
void Wish(CommandLine& line, const std::string& value) {
  line.wishes.*kMember = value;
}

constexpr Option kOptions[] = {
    {"--export", "OUT", "write what the FILEs hold into one, in the format of its ending, and end",
     Choose<Mode::Export>, kAllModes, Offer::Files},
    {"--select", "QUERY", "with --export, --info: only what the query of the find bar matches",
     Keep<&CommandLine::select>, kLooks},
    {"--mesh", "SIZE", "with --export, --info: mesh solids and surfaces first, in elements of this size",
     Keep<&CommandLine::mesh>, kLooks},
    {"--units", "LENGTH", "with --export, --info: in the units of mm, m or in", Keep<&CommandLine::units>, kLooks,
     Offer::Units},
    {"--info", "", "say what each of the FILEs holds: counts, boxes, masses, quality", Choose<Mode::Info>},
    {"--json", "", "with --info: as JSON", Set<&CommandLine::json>, BitOf(Mode::Info)},
    {"--print-tree", "", "print the trees of the FILEs and end", Choose<Mode::PrintTree>},
    {"--screenshot", "PNG", "write a picture of the window and end", Choose<Mode::Screenshot>, kAllModes,
     Offer::Files},
    {"--view", "NAME", "with --screenshot: look from front, back, left, right, top, bottom or iso",
     Wish<&PictureTexts::view>, kPicture, Offer::Views},
    {"--size", "WxH", "with --screenshot: a picture of the view alone, in pixels", Wish<&PictureTexts::size>,
     kPicture},
    {"--hide", "QUERY", "with --screenshot: hide what the query matches", Wish<&PictureTexts::hide>, kPicture},
    {"--section", "AXES", "with --screenshot: cut across axes, such as x or y=12.5,z",
     Wish<&PictureTexts::section>, kPicture},
    {"--verify", "DOCUMENT", "check a document, say what is wrong with it and end", Choose<Mode::Verify>,
     kAllModes, Offer::Files},
    {"--repair", "DOCUMENT", "write what is sound of a document into a new one, the FILE, and end",
     Choose<Mode::Repair>, kAllModes, Offer::Files},
    {"--force", "", "with --repair: replace a file that is there", Set<&CommandLine::force>, BitOf(Mode::Repair)},
    {"--script", "FILE", "let Python run a script, with what follows as its arguments", Choose<Mode::Script>,
     kAllModes, Offer::Files},
    {"--window", "", "before --script: in a window that shows the FILEs and stays open",
     Set<&CommandLine::window>},
    {"--example", "FILE", "the file to show where no other is named", Keep<&CommandLine::example>, kAllModes,
     Offer::Files},
    {"--language", "L", "language of the texts, such as de; en without it", Keep<&CommandLine::language>,
     kAllModes, Offer::Languages},
    {"--variant", "V", "product variant: standard, ksl, rvt or zdh", Keep<&CommandLine::variant>, kAllModes,
     Offer::Variants},
    {"--messages", "FOLDER", "message tables to use in place of the program's own", Keep<&CommandLine::messages>,
     kAllModes, Offer::Folders},
    {"--allow-includes", "FOLDER", "solver decks may include files of this folder beside those of their own",
     Keep<&CommandLine::includes>, kAllModes, Offer::Folders},
    {"--reader-memory", "MIB", "memory that reading a file may take; without it three quarters of the machine's",
     Keep<&CommandLine::readerMemory>},
    {"--reader-seconds", "N", "how long reading may work without getting on before it is given up",
     Keep<&CommandLine::readerSeconds>},
    {"--completion", "SHELL", "print what completes the options in a shell, bash, and end",
     Choose<Mode::Completion>, kAllModes, Offer::Shells},
    {"--help", "", "say how the program is called and end", Choose<Mode::Help>},
    {"--version", "", "say which version this is and end", Choose<Mode::Version>},
};

/// What is done without a window, and with how many files.
struct ModeRule {
  Mode mode;
  std::size_t leastFiles;
  std::size_t mostFiles;
  std::size_t mostDocuments;
  const char* files;  ///< the fault when there are others
};
constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();
constexpr ModeRule kModeRules[] = {
    {Mode::Screenshot, 0, kMany, 1, ""},
    {Mode::PrintTree, 0, kMany, 1, ""},
    {Mode::Info, 1, kMany, kMany, "--info needs the files that it is to look at"},
    {Mode::Verify, 0, 0, 0, "--verify takes one document and no other file: "},
    {Mode::Repair, 1, 1, kMany, "--repair DOCUMENT needs one more name, that of the new document"},
    {Mode::Export, 1, kMany, 1, "--export OUT needs the files that are to be written into it"},
    {Mode::Completion, 0, 0, 0, "--completion takes no file: "},
};

/// The option that asks for a mode; empty for the window, which needs none.
template <Mode kMode>
constexpr std::string_view OptionOf() {
  for (const Option& option : kOptions) {
    if (option.take == Choose<kMode>) return option.name;
  }
  return {};
}

/// The options that one with few friends goes with, as a sentence says them.
std::string FriendsOf(const Option& option) {
  constexpr std::pair<Mode, std::string_view> kNames[] = {{Mode::Export, OptionOf<Mode::Export>()},
                                                          {Mode::Info, OptionOf<Mode::Info>()},
                                                          {Mode::Screenshot, OptionOf<Mode::Screenshot>()},
                                                          {Mode::Repair, OptionOf<Mode::Repair>()}};
  std::string friends;
  for (const auto& [mode, name] : kNames) {
    if ((option.with & BitOf(mode)) != 0) friends += (friends.empty() ? "" : " and ") + std::string(name);
  }
  return friends;
}

/// Goes through the arguments one by one.
class Reader {
 public:
  Reader(const std::vector<std::string>& arguments, CommandLine& line) : m_arguments(arguments), m_line(line) {}

  std::optional<std::string> Read() {
    while (m_place < m_arguments.size()) {
      if (m_line.mode == Mode::Script) return TakeScript();
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
    if (m_line.mode == Mode::Script) return TakeScript();
    return CheckFriends();
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

  /// What follows a script is its own; what stands before it would be of no use without a window.
  std::optional<std::string> TakeScript() {
    if (!m_line.window && (m_given.size() > 1 || !m_line.files.empty())) {
      return "nothing but --window, and what belongs to a window, stands before --script";
    }
    if (m_line.window) {
      m_line.mode = Mode::Window;
      m_line.script = m_line.target;
    }
    m_line.arguments.assign(m_arguments.begin() + static_cast<std::ptrdiff_t>(m_place), m_arguments.end());
    return m_line.window ? CheckFriends() : std::nullopt;
  }

  /// Whether each option goes with what is asked for.
  std::optional<std::string> CheckFriends() const {
    if (m_line.mode == Mode::Help || m_line.mode == Mode::Version) return std::nullopt;
    if (m_line.window && m_line.script.empty()) return "--window goes only with --script, which follows it";
    for (const Option& option : kOptions) {
      if (!m_given.contains(option.name) || (option.with & BitOf(m_line.mode)) != 0) continue;
      return std::string(option.name) + " goes only with " + FriendsOf(option);
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

bool IsIn(const std::vector<std::string_view>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// What holds of the values.
std::optional<std::string> CheckValues(const CommandLine& line) {
  if (std::none_of(kVariants.begin(), kVariants.end(),
                   [&line](const VariantName& known) { return line.variant == known.name; })) {
    return "there is no product variant " + line.variant;
  }
  for (const std::string* count : {&line.readerMemory, &line.readerSeconds}) {
    if (!count->empty() && !IsCount(*count)) return *count + " is not a number that can be a limit";
  }
  if (!line.units.empty() && !IsIn({"mm", "m", "in"}, line.units)) {
    return "there are no units of " + line.units + ", only mm, m and in";
  }
  const NumberLimits positive = NumberLimits::Positive();
  if (!line.mesh.empty() &&
      !ReadQuantity(line.mesh, '.', Quantity::Length, UnitSystems().front(), positive).IsGood()) {
    return line.mesh + " is no size of elements, such as 2.5 or 0.1in";
  }
  if (line.mode == Mode::Completion && line.target != "bash") {
    return "options can be completed in bash only, not in " + line.target;
  }
  if (line.mode == Mode::Screenshot && !line.target.ends_with(".png") && !line.target.ends_with(".PNG")) {
    return "--screenshot writes PNG files, whose names end with .png: " + line.target;
  }
  PictureWishes wishes;
  return ReadPictureWishes(line.wishes, wishes);
}

/// What holds between the mode and the files.
std::optional<std::string> CheckFiles(const CommandLine& line) {
  const auto* rule = std::find_if(std::begin(kModeRules), std::end(kModeRules),
                                  [&line](const ModeRule& known) { return known.mode == line.mode; });
  if (rule == std::end(kModeRules)) return std::nullopt;
  if (line.files.size() < rule->leastFiles) return rule->files;
  if (line.files.size() > rule->mostFiles) return rule->files + line.files[rule->mostFiles];
  std::size_t documents = 0;
  for (const std::string& file : line.files) {
    if (IsDocumentName(file) && ++documents > rule->mostDocuments) {
      return "only one document can be open at a time: " + file;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line) {
  if (auto fault = Reader(arguments, line).Read()) return fault;
  if (line.mode == Mode::Help || line.mode == Mode::Version || line.mode == Mode::Script) return std::nullopt;
  const bool shows = line.mode == Mode::Window || line.mode == Mode::Screenshot || line.mode == Mode::PrintTree ||
                     line.mode == Mode::Info;
  if (shows && line.files.empty() && !line.example.empty()) line.files.push_back(line.example);
  if (auto fault = CheckValues(line)) return fault;
  return CheckFiles(line);
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

std::string ShellCompletion() {
  std::string names;
  std::string cases;
  for (const Option& option : kOptions) {
    names += (names.empty() ? "" : " ") + std::string(option.name);
    if (option.value.empty()) continue;
    cases += "    " + std::string(option.name) + ") ";
    const auto words = [](const std::string& list) {
      return "COMPREPLY=($(compgen -W '" + list + "' -- \"$now\"))";
    };
    switch (option.offer) {
      case Offer::Files:
        cases += "COMPREPLY=($(compgen -f -- \"$now\"))";
        break;
      case Offer::Folders:
        cases += "COMPREPLY=($(compgen -d -- \"$now\"))";
        break;
      case Offer::Views:
        cases += words(ViewWords());
        break;
      case Offer::Units:
        cases += words("mm m in");
        break;
      case Offer::Variants:
        cases += words("standard ksl rvt zdh");
        break;
      case Offer::Languages:
        cases += words("en de ja ko zh");
        break;
      case Offer::Shells:
        cases += words("bash");
        break;
      case Offer::Nothing:
        cases += ":";
        break;
    }
    cases += "; return ;;\n";
  }
  return "# Completes the options of workbench in bash; printed by workbench --completion bash.\n"
         "_workbench() {\n"
         "  local now=\"${COMP_WORDS[COMP_CWORD]}\" before=\"${COMP_WORDS[COMP_CWORD-1]}\"\n"
         "  COMPREPLY=()\n"
         "  case \"$before\" in\n" +
         cases +
         "  esac\n"
         "  if [[ $now == -* ]]; then\n"
         "    COMPREPLY=($(compgen -W '" +
         names +
         "' -- \"$now\"))\n"
         "  else\n"
         "    COMPREPLY=($(compgen -f -- \"$now\"))\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _workbench workbench\n";
}

bool IsDocumentName(std::string_view name) {
  return name.ends_with(".qdw");
}

}  // namespace qd::workbench
