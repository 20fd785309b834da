// Rows: what they show, and where they stand.

#include <cstring>

#include "platform/text/Utf8.h"
#include "qd_wrt/c/Colour.h"
#include "qd_wrt/c/CopyOut.h"
#include "qd_wrt/c/Tree.h"
#include "qd_wrt/core/CQDTreeIcon.h"

namespace qd::c {

namespace {

constexpr std::uint32_t kAllFields =
    QD_ROW_TITLE | QD_ROW_ID | QD_ROW_COLOUR | QD_ROW_CHECKED | QD_ROW_ICON | QD_ROW_KEY | QD_ROW_KIND;

bool Has(const qd_row& row, std::uint32_t field) {
  return (row.fields & field) != 0;
}

/// Whether what is given of a row can be shown. Its title comes out.
qd_status Check(const qd_row* row, CString& title) {
  if (row == nullptr) return Fail(QD_ERROR_NULL, "No row is given.");
  if (row->size != sizeof(qd_row)) return Fail(QD_ERROR_SIZE, "It is that of qd_row.");
  if ((row->fields & ~kAllFields) != 0) return Fail(QD_ERROR_VALUE, "It is the fields of a row.");
  if (Has(*row, QD_ROW_COLOUR) && row->colour > kWhite) return Fail(QD_ERROR_VALUE, "It is the colour of a row.");
  if (Has(*row, QD_ROW_CHECKED) && row->checked != 0 && row->checked != 1) {
    return Fail(QD_ERROR_VALUE, "It is the box of a row.");
  }
  const auto icons = static_cast<std::uint32_t>(CQDTreeIcon::Instance().GetRowImageList().GetImageCount());
  if (Has(*row, QD_ROW_ICON) && row->icon >= icons) return Fail(QD_ERROR_VALUE, "It is the icon of a row.");
  if (Has(*row, QD_ROW_KEY) && row->key == 0) return Fail(QD_ERROR_VALUE, "It is the key of a row, which is 0.");
  if (!Has(*row, QD_ROW_TITLE)) return QD_OK;
  if (row->title == nullptr) return Fail(QD_ERROR_NULL, "The row has no title.");
  std::optional<CString> text = DecodeUtf8(row->title);
  if (!text) return Fail(QD_ERROR_TEXT);
  title = std::move(*text);
  return QD_OK;
}

qd_status Add(Tree& tree, HostNode& parent, const qd_row* given, qd_node* number) {
  HostRow row;
  if (const qd_status checked = Check(given, row.title); checked != QD_OK) return checked;
  std::shared_ptr<const HostNodeKind> kind;
  if (Has(*given, QD_ROW_KIND) && given->kind != 0) {
    kind = tree.FindKind(given->kind);
    if (kind == nullptr) {
      return tree.OwnsNumber(given->kind) ? Fail(QD_ERROR_VALUE, "It is the kind of a row.")
                                          : Fail(QD_ERROR_FOREIGN);
    }
  }
  if (Has(*given, QD_ROW_KEY) && tree.NodeOfKey(given->key) != 0) return Fail(QD_ERROR_KEY);
  if (Has(*given, QD_ROW_ID)) row.id = given->id;
  if (Has(*given, QD_ROW_COLOUR)) row.colour = Turned(given->colour);
  if (Has(*given, QD_ROW_CHECKED)) row.checked = given->checked != 0;
  if (Has(*given, QD_ROW_ICON)) row.icon = given->icon;
  row.key = tree.NewNode();
  const qd_node made = row.key;
  parent.Add(std::move(row), std::move(kind));
  if (Has(*given, QD_ROW_KEY)) tree.SetKey(made, given->key);
  if (number != nullptr) *number = made;
  return QD_OK;
}

qd_status Change(HostNode& node, const qd_row* given) {
  CString title;
  if (const qd_status checked = Check(given, title); checked != QD_OK) return checked;
  if ((given->fields & (QD_ROW_KEY | QD_ROW_KIND)) != 0) {
    return Fail(QD_ERROR_VALUE, "The key and the kind of a row cannot change.");
  }
  if (Has(*given, QD_ROW_COLOUR) && !node.IsShowColor()) {
    return Fail(QD_ERROR_STATE, "The row was added without a colour.");
  }
  if (Has(*given, QD_ROW_CHECKED) && !node.HasCheck())
    return Fail(QD_ERROR_STATE, "The row was added without a box.");
  if (Has(*given, QD_ROW_TITLE)) node.ChangeTitle(std::move(title));
  if (Has(*given, QD_ROW_ID)) node.ChangeID(given->id);
  if (Has(*given, QD_ROW_COLOUR)) node.SetColour(Turned(given->colour));
  if (Has(*given, QD_ROW_CHECKED)) node.SetChecked(given->checked != 0);
  if (Has(*given, QD_ROW_ICON)) node.ChangeImage(static_cast<int>(given->icon));
  return QD_OK;
}

}  // namespace

qd_status CopyOut(const std::string& bytes, char* text, std::size_t capacity, std::size_t* needed) {
  if (needed != nullptr) *needed = bytes.size() + 1;
  if (text == nullptr && (capacity != 0 || needed == nullptr))
    return Fail(QD_ERROR_NULL, "It is that of a buffer.");
  if (text == nullptr) return QD_OK;
  if (bytes.size() >= capacity) return Fail(QD_ERROR_SPACE);
  std::memcpy(text, bytes.c_str(), bytes.size() + 1);
  return QD_OK;
}

}  // namespace qd::c

using namespace qd::c;

qd_status qd_node_add(qd_tree* handle, qd_node parent, const qd_row* row, qd_node* node) {
  if (node != nullptr) *node = 0;
  return WithNode(handle, parent, true,
                  [=](Tree& tree, qd::HostNode& above) { return Add(tree, above, row, node); });
}

qd_status qd_node_change(qd_tree* handle, qd_node number, const qd_row* row) {
  return WithNode(handle, number, [=](Tree&, qd::HostNode& node) { return Change(node, row); });
}

qd_status qd_node_read(qd_tree* handle, qd_node number, qd_row* row) {
  return WithNode(handle, number, [=](Tree& tree, const qd::HostNode& node) {
    if (row == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the row.");
    if (row->size != sizeof(qd_row)) return Fail(QD_ERROR_SIZE, "It is that of qd_row.");
    *row = {};
    row->size = sizeof(qd_row);
    row->fields = QD_ROW_ID | QD_ROW_ICON;
    row->id = static_cast<std::int32_t>(node.GetID());
    row->icon = node.GetIconIndex();
    if (node.IsShowColor()) {
      row->fields |= QD_ROW_COLOUR;
      row->colour = Turned(node.GetColor());
    }
    if (node.HasCheck()) {
      row->fields |= QD_ROW_CHECKED;
      row->checked = node.IsChecked() ? 1 : 0;
    }
    row->key = tree.KeyOf(number);
    if (row->key != 0) row->fields |= QD_ROW_KEY;
    return QD_OK;
  });
}

qd_status qd_node_title(qd_tree* handle, qd_node number, char* text, size_t capacity, size_t* needed) {
  return WithNode(handle, number, [=](Tree&, const qd::HostNode& node) {
    return CopyOut(qd::EncodeUtf8(node.GetTitle()), text, capacity, needed);
  });
}

qd_status qd_node_remove(qd_tree* handle, qd_node number) {
  return WithNode(handle, number, [](Tree& tree, qd::HostNode& node) {
    tree.Remove(node);
    return QD_OK;
  });
}

qd_status qd_node_move(qd_tree* handle, qd_node number, qd_node parent) {
  return WithNode(handle, number, [=](Tree& tree, qd::HostNode& node) {
    qd::HostNode* above = parent == 0 ? &tree.Nodes().Root() : nullptr;
    if (above == nullptr) {
      if (const qd_status found = FindNode(tree, parent, above); found != QD_OK) return found;
    }
    return node.MoveBranch(above) != 0 ? QD_OK : Fail(QD_ERROR_STATE, "The parent stands below the row.");
  });
}

qd_status qd_node_expand(qd_tree* handle, qd_node number, int open) {
  return WithNode(handle, number, [=](Tree&, qd::HostNode& node) {
    node.Expand(open != 0 ? 1 : 0);
    return QD_OK;
  });
}

qd_status qd_node_is_open(qd_tree* handle, qd_node number, int* open) {
  return WithNode(handle, number, [=](Tree& tree, const qd::HostNode& node) {
    if (open == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the answer.");
    *open = tree.Rows().IsExpanded(node.GetTreeItemHandle()) ? 1 : 0;
    return QD_OK;
  });
}

qd_status qd_node_show(qd_tree* handle, qd_node number) {
  return WithNode(handle, number, [](Tree& tree, const qd::HostNode& node) {
    tree.Rows().EnsureVisible(node.GetTreeItemHandle());
    return QD_OK;
  });
}

qd_status qd_node_parent(qd_tree* handle, qd_node number, qd_node* parent) {
  return WithNode(handle, number, [=](Tree&, const qd::HostNode& node) {
    if (parent == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the parent.");
    *parent = node.Above()->GetKey();
    return QD_OK;
  });
}

qd_status qd_node_child_count(qd_tree* handle, qd_node number, size_t* count) {
  return WithNode(handle, number, true, [=](Tree&, const qd::HostNode& node) {
    if (count == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the number.");
    *count = static_cast<std::size_t>(node.GetChildCount());
    return QD_OK;
  });
}

qd_status qd_node_child(qd_tree* handle, qd_node number, size_t index, qd_node* child) {
  if (child != nullptr) *child = 0;
  return WithNode(handle, number, true, [=](Tree&, qd::HostNode& node) {
    if (child == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the child.");
    if (index >= static_cast<std::size_t>(node.GetChildCount())) return Fail(QD_ERROR_VALUE, "It is the index.");
    *child = node.Child(static_cast<int>(index)).GetKey();
    return QD_OK;
  });
}

qd_status qd_node_find(qd_tree* handle, uint64_t key, qd_node* node) {
  if (node != nullptr) *node = 0;
  return WithTree(handle, [=](const Tree& tree) {
    if (node == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the row.");
    *node = tree.NodeOfKey(key);
    return QD_OK;
  });
}
