#pragma once

namespace qd {

/// Numbers of context-menu commands. A number may mean different things in different branches; the branch of the
/// first selected node decides.
enum CommandNumber : unsigned {
  kCommandShowAll = 41007,
  kCommandHideAll = 41008,
};

}  // namespace qd
