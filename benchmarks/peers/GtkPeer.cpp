// GTK's column view over its own tree, filter, sort and selection models.

#include <gtk/gtk.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "benchmarks/peers/Peer.h"

// ---- a row as an object of the library ----------------------------------------------------------------------

extern "C" {
struct QdRow {
  GObject parent;
  char* title;
  unsigned number;  // 0: no leaf
  unsigned colour;
  gboolean checked;
  GListStore* below;
};
struct QdRowClass {
  GObjectClass parent;
};
}

namespace {

enum { kTitle = 1, kColour, kChecked };

G_DEFINE_TYPE(QdRow, qd_row, G_TYPE_OBJECT)

QdRow* AsRow(gpointer object) {
  return static_cast<QdRow*>(object);
}

void qd_row_init(QdRow*) {}

void Read(GObject* object, guint id, GValue* value, GParamSpec*) {
  const QdRow* row = AsRow(object);
  if (id == kTitle) g_value_set_string(value, row->title);
  if (id == kColour) g_value_set_uint(value, row->colour);
  if (id == kChecked) g_value_set_boolean(value, row->checked);
}

void Write(GObject* object, guint id, const GValue* value, GParamSpec*) {
  QdRow* row = AsRow(object);
  if (id == kTitle) {
    g_free(row->title);
    row->title = g_value_dup_string(value);
  }
  if (id == kColour) row->colour = g_value_get_uint(value);
  if (id == kChecked) row->checked = g_value_get_boolean(value);
}

void Finish(GObject* object) {
  g_free(AsRow(object)->title);
  g_clear_object(&AsRow(object)->below);
  G_OBJECT_CLASS(qd_row_parent_class)->finalize(object);
}

void qd_row_class_init(QdRowClass* type) {
  GObjectClass* object = G_OBJECT_CLASS(type);
  object->get_property = Read;
  object->set_property = Write;
  object->finalize = Finish;
  const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE);
  g_object_class_install_property(object, kTitle, g_param_spec_string("title", nullptr, nullptr, "", flags));
  g_object_class_install_property(object, kColour,
                                  g_param_spec_uint("colour", nullptr, nullptr, 0, G_MAXUINT, 0, flags));
  g_object_class_install_property(object, kChecked,
                                  g_param_spec_boolean("checked", nullptr, nullptr, FALSE, flags));
}

QdRow* NewRow(const std::string& title, unsigned number, unsigned colour, bool checked) {
  QdRow* row = AsRow(g_object_new(qd_row_get_type(), nullptr));
  row->title = g_strdup(title.c_str());
  row->number = number;
  row->colour = colour;
  row->checked = checked ? TRUE : FALSE;
  return row;
}

}  // namespace

namespace qd::bench {
namespace {

QdRow* RowOfCell(GtkListItem* cell) {
  auto* tree = GTK_TREE_LIST_ROW(gtk_list_item_get_item(cell));
  auto* row = AsRow(gtk_tree_list_row_get_item(tree));
  g_object_unref(row);  // the tree keeps it
  return row;
}

// ---- what the columns show: each follows its row, as the library's own bindings do --------------------------

void FillTitle(GObject* row, GParamSpec*, gpointer box) {
  gtk_check_button_set_label(GTK_CHECK_BUTTON(box), AsRow(row)->title);
  gtk_check_button_set_active(GTK_CHECK_BUTTON(box), AsRow(row)->checked);
}
void FillColour(GObject* row, GParamSpec*, gpointer label) {
  char text[16];
  g_snprintf(text, sizeof(text), "#%06x", AsRow(row)->colour);
  gtk_label_set_text(GTK_LABEL(label), AsRow(row)->number != 0 ? text : "");
}
void FillNumber(GObject* row, GParamSpec*, gpointer label) {
  const unsigned number = AsRow(row)->number;
  gtk_label_set_text(GTK_LABEL(label), number != 0 ? std::to_string(number).c_str() : "");
}
using Fill = void (*)(GObject*, GParamSpec*, gpointer);

constexpr char kRow[] = "row";

GtkWidget* Inside(GtkListItem* cell) {
  GtkWidget* child = gtk_list_item_get_child(cell);
  return GTK_IS_TREE_EXPANDER(child) ? gtk_tree_expander_get_child(GTK_TREE_EXPANDER(child)) : child;
}
void SetUpTitle(GtkListItemFactory*, GtkListItem* cell, gpointer) {
  GtkWidget* expander = gtk_tree_expander_new();
  gtk_tree_expander_set_child(GTK_TREE_EXPANDER(expander), gtk_check_button_new());
  gtk_list_item_set_child(cell, expander);
}
void SetUpLabel(GtkListItemFactory*, GtkListItem* cell, gpointer) {
  gtk_list_item_set_child(cell, gtk_label_new(nullptr));
}
void Bind(GtkListItemFactory*, GtkListItem* cell, gpointer fill) {
  GtkWidget* child = gtk_list_item_get_child(cell);
  if (GTK_IS_TREE_EXPANDER(child)) {
    gtk_tree_expander_set_list_row(GTK_TREE_EXPANDER(child), GTK_TREE_LIST_ROW(gtk_list_item_get_item(cell)));
  }
  QdRow* row = RowOfCell(cell);
  g_object_set_data(G_OBJECT(Inside(cell)), kRow, row);
  const auto call = reinterpret_cast<Fill>(fill);
  call(G_OBJECT(row), nullptr, Inside(cell));
  g_signal_connect(row, "notify", G_CALLBACK(call), Inside(cell));
}
void Unbind(GtkListItemFactory*, GtkListItem* cell, gpointer) {
  // Which the cell may not know any more; the row itself ends with the program.
  g_signal_handlers_disconnect_by_data(g_object_get_data(G_OBJECT(Inside(cell)), kRow), Inside(cell));
}

GListModel* Below(gpointer item, gpointer) {
  GListStore* below = AsRow(item)->below;
  return below != nullptr ? G_LIST_MODEL(g_object_ref(below)) : nullptr;
}

class GtkPeer final : public Peer {
 public:
  void Build(const Sample& sample) override {
    m_sample = sample;
    m_roots = g_list_store_new(qd_row_get_type());
    m_top = NewRow("Model", 0, 0, false);
    m_top->below = g_list_store_new(qd_row_get_type());
    QdRow* above = m_top;
    if (sample.shape != Shape::Branches) {
      std::vector<gpointer> rows;
      for (std::size_t i = 0; i < sample.leaves; ++i) {
        QdRow* leaf = NewLeaf();
        if (sample.shape == Shape::Flat) {
          rows.push_back(leaf);
          continue;
        }
        if (above->below == nullptr) above->below = g_list_store_new(qd_row_get_type());
        g_list_store_append(above->below, leaf);
        above = leaf;
      }
      Put(m_top->below, rows);
    }
    std::vector<gpointer> branches;
    for (std::size_t branch = 0; branch < sample.Branches(); ++branch) {
      QdRow* made = NewRow("Branch " + std::to_string(branch), 0, 0, false);
      made->below = g_list_store_new(qd_row_get_type());
      std::vector<gpointer> rows;
      for (std::size_t i = 0; i < sample.RowsOf(branch); ++i) rows.push_back(NewLeaf());
      Put(made->below, rows);
      branches.push_back(made);
    }
    m_branches = branches;
    if (!branches.empty()) Put(m_top->below, branches);
    g_list_store_append(m_roots, m_top);
    ShowWindow();
  }

  /// Until a frame was drawn behind which nothing is asked for.
  bool Settle() override {
    const auto before = m_frames;
    for (int quiet = 0; quiet < 3;) {
      const auto frames = m_frames;
      bool any = false;
      while (g_main_context_iteration(nullptr, FALSE) != FALSE) any = true;
      if (any || m_frames != frames) {
        quiet = 0;
        continue;
      }
      ++quiet;
      g_usleep(6'000);  // its clock asks for a frame within sixteen milliseconds
    }
    return m_frames != before;
  }

  bool ExpandAll(bool open) override {
    if (!open) {
      if (m_sample.shape == Shape::Chain) return Expand(1, false);
      for (std::size_t branch = m_branches.size(); branch-- > 0;) Expand(PositionOf(branch), false);
      return true;
    }
    for (guint position = 0; position < Rows(); ++position) Expand(position, true);
    return true;
  }
  bool ExpandFirst(bool open) override { return Expand(1, open); }
  bool ScrollTo(std::size_t position) override {
    GtkAdjustment* place = gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(m_scroller));
    const double rows = static_cast<double>(Rows());
    const double all = gtk_adjustment_get_upper(place) - gtk_adjustment_get_lower(place);
    m_asked = position;
    gtk_adjustment_set_value(place, all * static_cast<double>(position) / rows);
    m_wasSet = gtk_adjustment_get_value(place) > 0 || position == 0;
    return true;
  }
  bool SelectAll(bool select) override {
    auto* model = GTK_SELECTION_MODEL(m_selection);
    select ? gtk_selection_model_select_all(model) : gtk_selection_model_unselect_all(model);
    return true;
  }
  bool Invert() override {
    auto* model = GTK_SELECTION_MODEL(m_selection);
    GtkBitset* selected = gtk_bitset_copy(gtk_selection_model_get_selection(model));
    GtkBitset* all = gtk_bitset_new_range(0, Rows());
    gtk_bitset_difference(all, selected);
    GtkBitset* everything = gtk_bitset_new_range(0, Rows());
    gtk_selection_model_set_selection(model, all, everything);
    gtk_bitset_unref(everything);
    gtk_bitset_unref(all);
    gtk_bitset_unref(selected);
    return true;
  }
  bool SelectRange() override {
    const bool hasBranches = !m_branches.empty();
    gtk_selection_model_select_range(GTK_SELECTION_MODEL(m_selection), hasBranches ? 2 : 1,
                                     static_cast<guint>(hasBranches ? m_sample.RowsOf(0) : m_sample.leaves), TRUE);
    return true;
  }
  bool Sort(bool byName) override {
    const GCompareDataFunc compare = byName ? ByTitle : ByNumber;
    if (m_branches.empty()) g_list_store_sort(m_top->below, compare, nullptr);
    for (gpointer branch : m_branches) g_list_store_sort(AsRow(branch)->below, compare, nullptr);
    return true;
  }
  bool Filter(const char* text) override {
    m_wanted = text;
    gtk_filter_changed(GTK_FILTER(m_filter), GTK_FILTER_CHANGE_DIFFERENT);
    return true;
  }
  bool Insert() override {
    QdRow* made = NewRow("Screw", 7, 0, false);
    g_list_store_append(m_branches.empty() ? m_top->below : AsRow(m_branches[0])->below, made);
    g_object_unref(made);
    return true;
  }
  bool Change(const std::string& title) override {
    g_object_set(m_leaves[0], "title", title.c_str(), nullptr);
    return true;
  }
  bool ChangeMany(std::size_t count, unsigned colour) override {
    for (std::size_t i = 0; i < count; ++i) {
      g_object_set(m_leaves[i * (m_leaves.size() / count)], "colour", colour, nullptr);
    }
    return true;
  }
  bool CheckAll(bool checked) override {
    for (gpointer leaf : m_leaves) g_object_set(leaf, "checked", checked ? TRUE : FALSE, nullptr);
    return true;
  }
  std::size_t Visible() override { return Rows(); }
  std::size_t Selected() override {
    GtkBitset* selected = gtk_selection_model_get_selection(GTK_SELECTION_MODEL(m_selection));
    const std::size_t count = gtk_bitset_get_size(selected);
    gtk_bitset_unref(selected);
    return count;
  }
  std::size_t Top() override { return m_wasSet ? m_asked : 0; }
  std::string FirstTitle() override {
    auto* first = AsRow(
        g_list_model_get_item(G_LIST_MODEL(m_branches.empty() ? m_top->below : AsRow(m_branches[0])->below), 0));
    g_object_unref(first);
    return first->title;
  }
  unsigned FirstColour() override { return AsRow(m_leaves[0])->colour; }
  std::size_t Checked() override {
    return static_cast<std::size_t>(std::count_if(m_leaves.begin(), m_leaves.end(),
                                                  [](gpointer leaf) { return AsRow(leaf)->checked != FALSE; }));
  }

 private:
  QdRow* NewLeaf() {
    const std::size_t number = m_leaves.size();
    m_leaves.push_back(
        NewRow(m_sample.Title(number), static_cast<unsigned>(number + 1), m_sample.Colour(number), true));
    return AsRow(m_leaves.back());
  }
  static void Put(GListStore* store, std::vector<gpointer>& rows) {
    if (!rows.empty()) g_list_store_splice(store, 0, 0, rows.data(), static_cast<guint>(rows.size()));
  }
  guint Rows() const { return g_list_model_get_n_items(G_LIST_MODEL(m_selection)); }
  /// Of a branch while all before it are open.
  guint PositionOf(std::size_t branch) const { return static_cast<guint>(1 + m_sample.FirstOf(branch) + branch); }
  bool Expand(guint position, bool open) const {
    GtkTreeListRow* row = gtk_tree_list_model_get_row(m_tree, position);
    if (row == nullptr) return true;
    if (gtk_tree_list_row_is_expandable(row) != FALSE) gtk_tree_list_row_set_expanded(row, open ? TRUE : FALSE);
    g_object_unref(row);
    return true;
  }
  static int ByTitle(gconstpointer a, gconstpointer b, gpointer) {
    return std::strcmp(static_cast<const QdRow*>(a)->title, static_cast<const QdRow*>(b)->title);
  }
  static int ByNumber(gconstpointer a, gconstpointer b, gpointer) {
    const unsigned x = static_cast<const QdRow*>(a)->number;
    const unsigned y = static_cast<const QdRow*>(b)->number;
    return x < y ? -1 : x > y ? 1 : 0;
  }
  static gboolean Matches(gpointer item, gpointer self) {
    const std::string& wanted = static_cast<GtkPeer*>(self)->m_wanted;
    auto* row = AsRow(gtk_tree_list_row_get_item(GTK_TREE_LIST_ROW(item)));
    g_object_unref(row);
    if (wanted.empty() || row->number == 0) return TRUE;
    return strcasestr(row->title, wanted.c_str()) != nullptr ? TRUE : FALSE;
  }
  void AddColumn(const char* title, GCallback setUp, Fill fill) const {
    GtkListItemFactory* factory = gtk_signal_list_item_factory_new();
    g_signal_connect(factory, "setup", setUp, nullptr);
    g_signal_connect(factory, "bind", G_CALLBACK(Bind), reinterpret_cast<gpointer>(fill));
    g_signal_connect(factory, "unbind", G_CALLBACK(Unbind), nullptr);
    GtkColumnViewColumn* column = gtk_column_view_column_new(title, factory);
    gtk_column_view_append_column(GTK_COLUMN_VIEW(m_view), column);
    g_object_unref(column);
  }
  void ShowWindow() {
    m_tree = gtk_tree_list_model_new(G_LIST_MODEL(m_roots), FALSE, FALSE, Below, nullptr, nullptr);
    m_filter = gtk_custom_filter_new(Matches, this, nullptr);
    auto* filtered = gtk_filter_list_model_new(G_LIST_MODEL(m_tree), GTK_FILTER(g_object_ref(m_filter)));
    m_selection = gtk_multi_selection_new(G_LIST_MODEL(filtered));
    m_view = gtk_column_view_new(GTK_SELECTION_MODEL(g_object_ref(m_selection)));
    AddColumn("Item", G_CALLBACK(SetUpTitle), FillTitle);
    AddColumn("ID", G_CALLBACK(SetUpLabel), FillNumber);
    AddColumn("Color", G_CALLBACK(SetUpLabel), FillColour);
    m_scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(m_scroller), m_view);
    m_window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(m_window), 400, 800);
    gtk_window_set_child(GTK_WINDOW(m_window), m_scroller);
    gtk_window_present(GTK_WINDOW(m_window));
    GdkFrameClock* clock = gtk_widget_get_frame_clock(m_window);
    g_signal_connect(clock, "after-paint",
                     G_CALLBACK(+[](GdkFrameClock*, gpointer frames) { ++*static_cast<unsigned long*>(frames); }),
                     &m_frames);
    Expand(0, true);
  }

  Sample m_sample;
  // The objects end with the program.
  GListStore* m_roots = nullptr;
  QdRow* m_top = nullptr;
  std::vector<gpointer> m_branches;
  std::vector<gpointer> m_leaves;
  GtkTreeListModel* m_tree = nullptr;
  GtkCustomFilter* m_filter = nullptr;
  GtkMultiSelection* m_selection = nullptr;
  GtkWidget* m_view = nullptr;
  GtkWidget* m_scroller = nullptr;
  GtkWidget* m_window = nullptr;
  std::string m_wanted;
  std::size_t m_asked = 0;
  unsigned long m_frames = 0;
  bool m_wasSet = false;
};

}  // namespace
}  // namespace qd::bench

int main(int count, char** arguments) {
  if (gtk_init_check() == FALSE) return 1;
  qd::bench::GtkPeer peer;
  return qd::bench::DoWorks(peer, qd::bench::SampleOf(count, arguments), "GtkColumnView") ? 0 : 1;
}
