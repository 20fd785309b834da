/* A program in C99 that uses the whole interface, rightly and wrongly. Built here, against the installed package,
   and for Windows. */
#include <qd_wrt.h>
#include <stdio.h>
#include <string.h>

static int failures = 0;
static void expect(int right, const char* what, int line) {
  if (right) return;
  ++failures;
  fprintf(stderr, "interface.c:%d: %s; the last error: %s\n", line, what, qd_last_error());
}
#define EXPECT(condition) expect((condition) != 0, #condition, __LINE__)
#define OK(call) EXPECT((call) == QD_OK)
#define FAILS(status, call) EXPECT((call) == (status) && strstr(qd_last_error(), qd_error_text(status)) != NULL)

static char heard[400];
static void hear(const char* what, qd_tree* tree, qd_node node) {
  char title[40] = "?";
  qd_node_title(tree, node, title, sizeof title, NULL);
  snprintf(heard + strlen(heard), sizeof heard - strlen(heard), "%s %s;", what, title);
}
static int heard_is(const char* wanted) {
  const int same = strcmp(heard, wanted) == 0;
  if (!same) fprintf(stderr, "heard: %s\n", heard);
  heard[0] = 0;
  return same;
}

static qd_menu* old_menu = NULL;
static void on_selected(void* user, qd_tree* tree) {
  (void)tree;
  ++*(int*)user;
}
static void on_clicked(void* user, qd_tree* tree, qd_node node) {
  (void)user;
  hear("clicked", tree, node);
  FAILS(QD_ERROR_STATE, qd_shutdown());
}
static void on_switched(void* user, qd_tree* tree, qd_node node, int checked) {
  (void)user;
  hear(checked ? "on" : "off", tree, node);
}
static int on_renamed(void* user, qd_tree* tree, qd_node node, const char* title) {
  (void)user;
  hear(title, tree, node);
  return strcmp(title, "refused") != 0;
}
static void on_menu(void* user, qd_tree* tree, qd_node node, qd_menu* menu) {
  (void)user;
  (void)tree;
  (void)node;
  FAILS(QD_ERROR_VALUE, qd_menu_add(menu, 0, "x", 0));
  FAILS(QD_ERROR_TEXT, qd_menu_add(menu, 1, "\xC0\x80", 0));
  FAILS(QD_ERROR_NULL, qd_menu_add(menu, 1, NULL, 0));
  OK(qd_menu_add(menu, 7, "Open", 0));
  OK(qd_menu_add_separator(menu));
  OK(qd_menu_add(menu, 8, "Drawn", 1));
  old_menu = menu;
}
static void on_command(void* user, qd_tree* tree, qd_node node, uint32_t command) {
  (void)user;
  hear(command == 7 ? "seven" : "other", tree, node);
}
static void on_dropped(void* user, qd_tree* tree, qd_node target, const qd_node* dragged, size_t count) {
  (void)user;
  EXPECT(count == 1);
  hear("onto", tree, target);
  OK(qd_node_move(tree, dragged[0], target));
}
static void on_children(void* user, qd_tree* tree, qd_node node) {
  const qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE, .title = "Child"};
  (void)user;
  hear("children of", tree, node);
  OK(qd_node_add(tree, node, &row, NULL));
}
static void on_destroy(void* user, qd_tree* tree, qd_node node) {
  (void)user;
  (void)node;
  OK(qd_tree_destroy(tree));
  FAILS(QD_ERROR_TREE, qd_tree_clear(tree));
}

static qd_tree_options options_of(int* selections) {
  qd_tree_options options = {.size = sizeof options, .interface_number = QD_INTERFACE, .selected = on_selected};
  options.user = selections;
  return options;
}
static qd_node add(qd_tree* tree, qd_node parent, const char* title, uint64_t key, qd_kind kind) {
  qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE | QD_ROW_CHECKED | QD_ROW_COLOUR};
  qd_node node = 0;
  row.title = title;
  row.colour = 0x102030;
  if (key != 0) row.fields |= QD_ROW_KEY;
  row.key = key;
  if (kind != 0) row.fields |= QD_ROW_KIND;
  row.kind = kind;
  OK(qd_node_add(tree, parent, &row, &node));
  return node;
}

static void try_options(void) {
  int selections = 0;
  qd_tree* tree = (qd_tree*)1;
  qd_tree_options options = options_of(&selections);
  FAILS(QD_ERROR_NULL, qd_tree_create_headless(&options, NULL));
  FAILS(QD_ERROR_NULL, qd_tree_create_headless(NULL, &tree));
  EXPECT(tree == NULL);
  options.size -= 1;
  FAILS(QD_ERROR_SIZE, qd_tree_create_headless(&options, &tree));
  options = options_of(&selections);
  options.interface_number = QD_INTERFACE + 1;
  FAILS(QD_ERROR_INTERFACE, qd_tree_create_headless(&options, &tree));
  options = options_of(&selections);
  options.width = -1;
  FAILS(QD_ERROR_VALUE, qd_tree_create_headless(&options, &tree));
  FAILS(QD_ERROR_TREE, qd_tree_destroy((qd_tree*)12345));
  EXPECT(qd_interface() == QD_INTERFACE && qd_version()[0] != 0);
}

static void try_rows(void) {
  int selections = 0;
  const qd_tree_options options = options_of(&selections);
  qd_tree* tree = NULL;
  qd_tree* other = NULL;
  qd_node a, b, foreign, found = 1;
  qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE, .title = "x"};
  qd_kind kind = 0;
  const qd_callbacks none = {.size = sizeof none};
  size_t count = 9;
  char text[16];
  static const char* const bad[] = {
      "\x80",         "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF0\x8F\xBF\xBF",
      "cut \xE2\x82", "\xFF"};
  size_t i;
  OK(qd_tree_create_headless(&options, &tree));
  OK(qd_tree_create_headless(&options, &other));
  OK(qd_kind_create(other, &none, &kind));
  a = add(tree, 0, "a \xE2\x82\xAC \xF0\x9F\x98\x80", 11, 0);
  b = add(tree, a, "b", 12, 0);
  foreign = add(other, 0, "foreign", 11, 0);
  OK(qd_node_title(tree, a, text, sizeof text, &count));
  EXPECT(strcmp(text, "a \xE2\x82\xAC \xF0\x9F\x98\x80") == 0 && count == strlen(text) + 1);
  text[0] = '!';
  FAILS(QD_ERROR_SPACE, qd_node_title(tree, a, text, count - 1, &count));
  EXPECT(text[0] == '!');
  FAILS(QD_ERROR_NULL, qd_node_title(tree, a, NULL, 5, &count));
  for (i = 0; i < sizeof bad / sizeof *bad; ++i) {
    row.title = bad[i];
    FAILS(QD_ERROR_TEXT, qd_node_add(tree, 0, &row, &found));
    FAILS(QD_ERROR_TEXT, qd_node_change(tree, a, &row));
    FAILS(QD_ERROR_TEXT, qd_filter(tree, bad[i]));
  }
  row.title = NULL;
  FAILS(QD_ERROR_NULL, qd_node_add(tree, 0, &row, &found));
  EXPECT(found == 0);
  row.title = "x";
  FAILS(QD_ERROR_NULL, qd_node_add(tree, 0, NULL, &found));
  FAILS(QD_ERROR_NULL, qd_node_add(NULL, 0, &row, &found));
  FAILS(QD_ERROR_FOREIGN, qd_node_add(tree, foreign, &row, &found));
  FAILS(QD_ERROR_FOREIGN, qd_node_move(tree, a, foreign));
  FAILS(QD_ERROR_STATE, qd_node_move(tree, a, b));
  FAILS(QD_ERROR_NODE, qd_node_remove(tree, 0));
  FAILS(QD_ERROR_NODE, qd_node_remove(tree, b + 1));
  FAILS(QD_ERROR_VALUE, qd_node_child(tree, 0, 1, &found));
  row.fields = QD_ROW_KIND;
  row.kind = kind;
  FAILS(QD_ERROR_FOREIGN, qd_node_add(tree, 0, &row, &found));
  FAILS(QD_ERROR_NODE, qd_node_remove(other, kind));
  row.kind = kind + 1;
  FAILS(QD_ERROR_VALUE, qd_node_add(other, 0, &row, &found));
  row.fields = QD_ROW_KEY;
  row.key = 12;
  FAILS(QD_ERROR_KEY, qd_node_add(tree, 0, &row, &found));
  row.key = 0;
  FAILS(QD_ERROR_VALUE, qd_node_add(tree, 0, &row, &found));
  row.fields = 128;
  FAILS(QD_ERROR_VALUE, qd_node_add(tree, 0, &row, &found));
  row.fields = QD_ROW_COLOUR;
  row.colour = 0x1000000;
  FAILS(QD_ERROR_VALUE, qd_node_change(tree, a, &row));
  row.fields = QD_ROW_ICON;
  row.icon = 100000;
  FAILS(QD_ERROR_VALUE, qd_node_change(tree, a, &row));
  row.size = 8;
  FAILS(QD_ERROR_SIZE, qd_node_change(tree, a, &row));
  OK(qd_node_child_count(tree, 0, &count));
  EXPECT(count == 1);

  row.size = sizeof row;
  row.fields = QD_ROW_TITLE | QD_ROW_ID | QD_ROW_COLOUR | QD_ROW_CHECKED | QD_ROW_ICON;
  row.title = "\xC3\xA4";
  row.id = 77;
  row.colour = 0x405060;
  row.checked = 1;
  row.icon = 21;
  OK(qd_node_change(tree, b, &row));
  memset(&row, 0, sizeof row);
  row.size = sizeof row;
  OK(qd_node_read(tree, b, &row));
  EXPECT(row.id == 77 && row.colour == 0x405060 && row.checked == 1 && row.icon == 21 && row.key == 12);
  OK(qd_node_title(tree, b, text, sizeof text, NULL));
  EXPECT(strcmp(text, "\xC3\xA4") == 0);

  OK(qd_node_find(tree, 12, &found));
  EXPECT(found == b);
  OK(qd_node_parent(tree, b, &found));
  EXPECT(found == a);
  OK(qd_node_move(tree, b, 0));
  OK(qd_node_parent(tree, b, &found));
  EXPECT(found == 0);
  OK(qd_node_move(tree, b, a));
  OK(qd_node_remove(tree, a));
  FAILS(QD_ERROR_NODE, qd_node_remove(tree, b));
  OK(qd_node_find(tree, 12, &found));
  EXPECT(found == 0);
  add(tree, 0, "again", 12, 0);
  OK(qd_tree_destroy(other));
  FAILS(QD_ERROR_FOREIGN, qd_node_remove(tree, foreign));
  OK(qd_tree_destroy(tree));
  FAILS(QD_ERROR_TREE, qd_tree_destroy(tree));
}

static qd_cell* old_cell = NULL;
static void on_cell(void* user, qd_tree* tree, qd_node node, int32_t column, qd_cell* cell) {
  qd_row row = {.size = sizeof row};
  *(int*)user = column;
  old_cell = cell;
  OK(qd_node_read(tree, node, &row));
  OK(qd_cell_text(cell, "mass"));
  OK(qd_cell_number(cell, -row.id));
  OK(qd_cell_colour(cell, 0xFF0000));
  EXPECT(qd_cell_background(cell, 0x1000000) == QD_ERROR_VALUE);
  EXPECT(qd_cell_text(cell, "\xFF") == QD_ERROR_TEXT);
}

static void try_columns(void) {
  int heard_column = 0;
  int32_t column = 0, shown[8];
  size_t count = 0;
  qd_tree* tree = NULL;
  qd_kind kind = 0;
  int selections = 0;
  qd_tree_options options = options_of(&selections);
  qd_callbacks calls = {.size = sizeof calls, .user = &heard_column, .cell = on_cell};
  qd_column what = {.size = sizeof what, .title = "Mass", .width = 70};
  qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE | QD_ROW_ID | QD_ROW_KIND, .title = "a", .id = 1};
  qd_node a, b, first;
  OK(qd_tree_create_headless(&options, &tree));
  OK(qd_kind_create(tree, &calls, &kind));
  calls.size = offsetof(qd_callbacks, cell);  /* a program of the first interface */
  OK(qd_kind_create(tree, &calls, &row.kind));
  calls.size += 1;
  EXPECT(qd_kind_create(tree, &calls, &row.kind) == QD_ERROR_SIZE);
  row.kind = kind;
  OK(qd_node_add(tree, 0, &row, &a));
  row.id = 2;
  OK(qd_node_add(tree, 0, &row, &b));
  OK(qd_column_add(tree, &what, &column));
  EXPECT(column == 3);
  what.align = 3;
  EXPECT(qd_column_add(tree, &what, &column) == QD_ERROR_VALUE && column == 0);
  OK(qd_headless_caption(tree, 3));
  EXPECT(heard_column == 3);
  EXPECT(qd_cell_text(old_cell, "late") == QD_ERROR_STATE);
  OK(qd_columns_show(tree, (const int32_t[]){0, 3, 1}, 3));
  EXPECT(qd_columns_show(tree, (const int32_t[]){3, 0}, 2) == QD_ERROR_VALUE);
  EXPECT(qd_columns_get(tree, shown, 2, &count) == QD_ERROR_SPACE && count == 3);
  OK(qd_columns_get(tree, shown, 8, &count));
  EXPECT(count == 3 && shown[1] == 3 && shown[2] == 1);
  EXPECT(qd_headless_caption(tree, 2) == QD_ERROR_STATE);
  {
    char state[400];
    OK(qd_state_save(tree, state, sizeof state, NULL));
    EXPECT(strstr(state, "shown 0\nshown 3\nshown 1\nsorted-up 3\n") != NULL);
    OK(qd_columns_show(tree, (const int32_t[]){0}, 1));
    OK(qd_state_load(tree, state));
    OK(qd_columns_get(tree, shown, 8, &count));
    EXPECT(count == 3);
  }
  OK(qd_node_child(tree, 0, 0, &first));
  EXPECT(first == a); /* as they were added */
  OK(qd_columns_sort(tree, 3, 0));
  EXPECT(qd_columns_sort(tree, 4, 1) == QD_ERROR_VALUE);
  OK(qd_node_refresh(tree, b));
  OK(qd_column_title(tree, 3, "Weight"));
  OK(qd_tree_destroy(tree));
}

static void try_icons(void) {
  int selections = 0;
  const uint8_t pixels[2 * 2 * 4] = {255, 0, 0, 255};
  uint32_t icon = 0, same = 0;
  qd_tree* tree = NULL;
  qd_node node;
  qd_tree_options options = options_of(&selections);
  qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE | QD_ROW_ICON, .title = "a"};
  OK(qd_tree_create_headless(&options, &tree));
  OK(qd_icon_add(pixels, 2, 2, "corner", &icon));
  OK(qd_icon_add(pixels, 2, 2, NULL, &same));
  EXPECT(icon > 378 && same == icon);
  OK(qd_icon_find("corner", &same));
  EXPECT(same == icon);
  OK(qd_icon_find("none", &same));
  EXPECT(same == 0);
  row.icon = icon;
  OK(qd_node_add(tree, 0, &row, &node));
  OK(qd_node_read(tree, node, &row));
  EXPECT(row.icon == icon);
  row.icon = icon + 100000;
  EXPECT(qd_node_change(tree, node, &row) == QD_ERROR_VALUE);
  EXPECT(qd_icon_add(pixels, 0, 2, NULL, &icon) == QD_ERROR_VALUE && icon == 0);
  EXPECT(qd_icon_add(NULL, 2, 2, NULL, &icon) == QD_ERROR_NULL);
  EXPECT(qd_icon_add(pixels, 2, 2, "\xFF", &icon) == QD_ERROR_TEXT);
  OK(qd_tree_destroy(tree));
}

static void try_callbacks(void) {
  int selections = 0;
  const qd_tree_options options = options_of(&selections);
  qd_callbacks calls = {.size = sizeof calls,
                        .flags = QD_KIND_DRAGGED,
                        .clicked = on_clicked,
                        .switched = on_switched,
                        .renamed = on_renamed,
                        .menu = on_menu,
                        .command = on_command,
                        .dropped = on_dropped};
  qd_tree* tree = NULL;
  qd_kind kind = 0;
  qd_node a, b, lazy, parent, selected[2] = {0, 0};
  qd_row row = {.size = sizeof row};
  size_t count = 0;
  int open = 0, done = 0, i;
  char state[200];
  OK(qd_tree_create_headless(&options, &tree));
  OK(qd_kind_create(tree, &calls, &kind));
  a = add(tree, 0, "a", 1, kind);
  b = add(tree, 0, "b", 2, kind);
  memset(&calls, 0, sizeof calls);
  calls.size = sizeof calls;
  calls.children = on_children;
  calls.flags = 2;
  FAILS(QD_ERROR_VALUE, qd_kind_create(tree, &calls, &kind));
  calls.flags = 0;
  OK(qd_kind_create(tree, &calls, &kind));
  lazy = add(tree, 0, "lazy", 3, kind);

  OK(qd_headless_click(tree, a, QD_PART_TITLE));
  OK(qd_headless_click(tree, b, QD_PART_BOX));
  EXPECT(heard_is("clicked a;on b;"));
  OK(qd_node_read(tree, b, &row));
  EXPECT(row.checked == 1);
  OK(qd_headless_click(tree, a, QD_PART_TITLE));
  OK(qd_headless_rename(tree, "c"));
  OK(qd_headless_rename(tree, "refused"));
  OK(qd_headless_menu(tree, a, 7));
  EXPECT(heard_is("clicked a;c a;refused c;clicked c;seven c;"));
  FAILS(QD_ERROR_STATE, qd_menu_add(old_menu, 1, "late", 0));
  FAILS(QD_ERROR_STATE, qd_headless_menu(tree, lazy, 7));
  OK(qd_headless_click(tree, lazy, QD_PART_BUTTON));
  EXPECT(heard_is("children of lazy;"));
  OK(qd_node_is_open(tree, lazy, &open));
  EXPECT(open == 1);
  FAILS(QD_ERROR_STATE, qd_headless_click(tree, a, QD_PART_BUTTON));
  FAILS(QD_ERROR_VALUE, qd_headless_click(tree, a, 3));
  OK(qd_headless_drag(tree, b, a));
  EXPECT(heard_is("clicked b;onto c;"));
  OK(qd_node_parent(tree, b, &parent));
  EXPECT(parent == a);

  OK(qd_node_show(tree, b));
  OK(qd_selection_set(tree, &b, 1));
  FAILS(QD_ERROR_SPACE, qd_selection_get(tree, selected, 0, &count));
  OK(qd_selection_get(tree, selected, 2, &count));
  EXPECT(count == 1 && selected[0] == b);
  selected[0] = lazy + 1000;
  FAILS(QD_ERROR_NODE, qd_selection_set(tree, selected, 1));
  OK(qd_selection_get(tree, selected, 2, &count));
  EXPECT(count == 1);

  OK(qd_state_save(tree, state, sizeof state, &count));
  OK(qd_node_expand(tree, a, 0));
  OK(qd_selection_set(tree, NULL, 0));
  FAILS(QD_ERROR_VALUE, qd_state_load(tree, "qd_wrt state 1\nopen 1\nopen x\n"));
  FAILS(QD_ERROR_VALUE, qd_state_load(tree, "qd_wrt state 1\nopen 1"));
  OK(qd_node_is_open(tree, a, &open));
  EXPECT(open == 0);
  OK(qd_state_load(tree, state));
  OK(qd_node_is_open(tree, a, &open));
  OK(qd_selection_get(tree, selected, 2, &count));
  EXPECT(open == 1 && count == 1 && selected[0] == b);

  FAILS(QD_ERROR_QUERY, qd_filter(tree, "id:x"));
  OK(qd_filter(tree, "B"));
  OK(qd_headless_pump());
  OK(qd_find_count(tree, &count, &done));
  EXPECT(count == 1 && done == 1);
  OK(qd_find_next(tree, 1));
  /* Within a batch the search and who follows the selection wait. */
  selections = 0;
  OK(qd_changes_begin(tree));
  OK(qd_changes_begin(tree));
  for (i = 0; i < 3; ++i) add(tree, 0, "new b", 0, 0);
  OK(qd_changes_end(tree));
  OK(qd_changes_end(tree));
  FAILS(QD_ERROR_STATE, qd_changes_end(tree));
  OK(qd_find_count(tree, &count, &done));
  EXPECT(count == 4);
  OK(qd_changes_begin(tree));
  OK(qd_find_select(tree));
  OK(qd_find_next(tree, 1));
  EXPECT(selections == 0);
  OK(qd_changes_end(tree));
  EXPECT(selections == 1);
  OK(qd_filter(tree, ""));
  OK(qd_tree_clear(tree));
  FAILS(QD_ERROR_STATE, qd_find_next(tree, 1));

  /* A tree may go in its own callback. */
  calls.children = NULL;
  calls.clicked = on_destroy;
  OK(qd_kind_create(tree, &calls, &kind));
  a = add(tree, 0, "a", 1, kind);
  FAILS(QD_ERROR_STATE, qd_headless_rename(tree, "x"));
  OK(qd_headless_click(tree, a, QD_PART_TITLE));
  FAILS(QD_ERROR_TREE, qd_node_remove(tree, a));
}

int main(void) {
  FAILS(QD_ERROR_TOOLKIT, qd_headless_pump());
  try_options();
  try_rows();
  try_columns();
  try_icons();
  try_callbacks();
  OK(qd_shutdown());
  FAILS(QD_ERROR_TOOLKIT, qd_headless_pump());
  try_rows(); /* from the beginning */
  return failures == 0 ? 0 : 1;
}
