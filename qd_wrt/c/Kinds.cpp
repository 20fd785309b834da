// What rows do: from the calls of nodes to the program's callbacks.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "platform/text/Utf8.h"
#include "qd_wrt/c/Colour.h"
#include "qd_wrt/c/Tree.h"

namespace qd::c {

namespace {

/// What a callback fills, such as a menu. Its handle is a number that no other of its kind has.
template <typename Name, typename What>
class Open {
 public:
  Open() : m_before(theLast), m_number(m_before != nullptr ? m_before->m_number + 1 : ++theCount) {
    theLast = this;
  }
  ~Open() { theLast = m_before; }
  Open(const Open&) = delete;
  Open& operator=(const Open&) = delete;

  /// Null when it is not open any more.
  static What* Of(const Name* handle) {
    Open* open = theLast;
    while (open != nullptr && open->Handle() != handle) open = open->m_before;
    return open != nullptr ? &open->m_what : nullptr;
  }
  Name* Handle() const { return reinterpret_cast<Name*>(m_number); }
  What& Get() { return m_what; }

 private:
  static inline thread_local Open* theLast = nullptr;
  static inline thread_local std::uintptr_t theCount = 0;

  Open* m_before;
  std::uintptr_t m_number;
  What m_what;
};
using OpenMenu = Open<qd_menu, std::vector<HostMenuEntry>>;
using OpenCell = Open<qd_cell, TreeCell>;

/// The calls of a kind. They keep nothing of the tree alive but its handle, and go with the rows.
std::shared_ptr<const HostNodeKind> MakeKind(qd_tree* tree, const qd_callbacks& calls) {
  auto kind = std::make_shared<HostNodeKind>();
  kind->isDragged = (calls.flags & QD_KIND_DRAGGED) != 0;
  if (calls.clicked != nullptr) {
    kind->clicked = [=](const HostNode& node) { Call([&] { calls.clicked(calls.user, tree, node.GetKey()); }); };
  }
  if (calls.switched != nullptr) {
    kind->switched = [=](const HostNode& node, bool on) {
      Call([&] { calls.switched(calls.user, tree, node.GetKey(), on ? 1 : 0); });
    };
  }
  if (calls.renamed != nullptr) {
    kind->renamed = [=](const HostNode& node, const CString& title) {
      int taken = 0;
      Call([&] { taken = calls.renamed(calls.user, tree, node.GetKey(), EncodeUtf8(title).c_str()); });
      return taken != 0;
    };
  }
  if (calls.menu != nullptr) {
    kind->menu = [=](const HostNode& node) {
      OpenMenu menu;
      const bool made = Call([&] { calls.menu(calls.user, tree, node.GetKey(), menu.Handle()); });
      return made ? std::move(menu.Get()) : std::vector<HostMenuEntry>();
    };
  }
  if (calls.command != nullptr) {
    kind->command = [=](const HostNode& node, unsigned command) {
      Call([&] { calls.command(calls.user, tree, node.GetKey(), command); });
    };
  }
  if (calls.dropped != nullptr) {
    kind->dropped = [=](const HostNode& node, const std::vector<HostNode*>& rows) {
      std::vector<qd_node> dragged;
      dragged.reserve(rows.size());
      for (const HostNode* row : rows) dragged.push_back(row->GetKey());
      Call([&] { calls.dropped(calls.user, tree, node.GetKey(), dragged.data(), dragged.size()); });
    };
  }
  if (calls.children != nullptr) {
    kind->children = [=](const HostNode& node) { Call([&] { calls.children(calls.user, tree, node.GetKey()); }); };
  }
  if (calls.cell != nullptr) {
    kind->cell = [=](const HostNode& node, int column) {
      OpenCell cell;
      const bool made = Call([&] { calls.cell(calls.user, tree, node.GetKey(), column, cell.Handle()); });
      return made ? std::move(cell.Get()) : TreeCell();
    };
  }
  return kind;
}

qd_status AddTo(const qd_menu* handle, HostMenuEntry entry) {
  if (handle == nullptr) return Fail(QD_ERROR_NULL, "No menu is given.");
  std::vector<HostMenuEntry>* menu = OpenMenu::Of(handle);
  if (menu == nullptr) return Fail(QD_ERROR_STATE, "The menu is not being made any more.");
  menu->push_back(std::move(entry));
  return QD_OK;
}

/// Writes into a cell that is being described.
template <typename Write>
qd_status WriteTo(const qd_cell* handle, const Write& write) {
  return Guarded([&]() -> qd_status {
    if (handle == nullptr) return Fail(QD_ERROR_NULL, "No cell is given.");
    TreeCell* cell = OpenCell::Of(handle);
    if (cell == nullptr) return Fail(QD_ERROR_STATE, "The cell is not being described any more.");
    return write(*cell);
  });
}

/// The callbacks of programs that know fewer of them end before these.
constexpr std::size_t kFirstCallbacks = offsetof(qd_callbacks, cell);

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_kind_create(qd_tree* handle, const qd_callbacks* callbacks, qd_kind* kind) {
  if (kind != nullptr) *kind = 0;
  return WithTree(handle, [&](Tree& tree) {
    if (callbacks == nullptr || kind == nullptr)
      return Fail(QD_ERROR_NULL, "It is that of the callbacks or the kind.");
    if (callbacks->size != sizeof(qd_callbacks) && callbacks->size != kFirstCallbacks) {
      return Fail(QD_ERROR_SIZE, "It is that of qd_callbacks.");
    }
    qd_callbacks calls{};
    std::memcpy(&calls, callbacks, callbacks->size);
    if ((callbacks->flags & ~static_cast<unsigned>(QD_KIND_DRAGGED)) != 0) {
      return Fail(QD_ERROR_VALUE, "It is the flags of a kind.");
    }
    *kind = tree.AddKind(MakeKind(handle, calls));
    return QD_OK;
  });
}

qd_status qd_menu_add(qd_menu* menu, uint32_t command, const char* text, int checked) {
  return Guarded([=]() -> qd_status {
    if (text == nullptr) return Fail(QD_ERROR_NULL, "The entry of a menu has no text.");
    std::optional<qd::CString> shown = qd::DecodeUtf8(text);
    if (!shown) return Fail(QD_ERROR_TEXT);
    if (command == 0 || shown->empty()) return Fail(QD_ERROR_VALUE, "An entry has a number above 0 and a text.");
    return AddTo(menu, {.command = command, .text = std::move(*shown), .checked = checked != 0});
  });
}

qd_status qd_menu_add_separator(qd_menu* menu) {
  return Guarded([=] { return AddTo(menu, {}); });
}

qd_status qd_cell_text(qd_cell* handle, const char* text) {
  return WriteTo(handle, [=](qd::TreeCell& cell) -> qd_status {
    if (text == nullptr) return Fail(QD_ERROR_NULL, "The text of a cell.");
    std::optional<qd::CString> shown = qd::DecodeUtf8(text);
    if (!shown) return Fail(QD_ERROR_TEXT);
    cell.text = std::move(*shown);
    return QD_OK;
  });
}

qd_status qd_cell_number(qd_cell* handle, double number) {
  return WriteTo(handle, [=](qd::TreeCell& cell) -> qd_status {
    if (std::isnan(number)) return Fail(QD_ERROR_VALUE, "It is the number of a cell.");
    cell.number = number;
    return QD_OK;
  });
}

qd_status qd_cell_colour(qd_cell* handle, uint32_t colour) {
  return WriteTo(handle, [=](qd::TreeCell& cell) -> qd_status {
    if (colour > kWhite) return Fail(QD_ERROR_VALUE, "It is the colour of a cell.");
    cell.colour = Turned(colour);
    return QD_OK;
  });
}

qd_status qd_cell_background(qd_cell* handle, uint32_t colour) {
  return WriteTo(handle, [=](qd::TreeCell& cell) -> qd_status {
    if (colour > kWhite) return Fail(QD_ERROR_VALUE, "It is the colour of a cell.");
    cell.background = Turned(colour);
    return QD_OK;
  });
}
