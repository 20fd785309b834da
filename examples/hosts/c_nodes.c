/* A tree of a program's own rows in C, with a scripted user in place of a window. In one it is made by
   qd_tree_create_in_hwnd or qd_tree_create_in_qwidget; the rest is the same. */
#include <qd_wrt.h>
#include <stdio.h>

static void on_switched(void* user, qd_tree* tree, qd_node node, int checked) {
  char title[80];
  if (qd_node_title(tree, node, title, sizeof title, NULL) == QD_OK)
    printf("%s is %s\n", title, checked ? "on" : "off");
  *(int*)user += 1;
}

static void on_cell(void* user, qd_tree* tree, qd_node node, int32_t column, qd_cell* cell) {
  char title[80] = "";
  (void)user;
  (void)column; /* there is only one */
  qd_node_title(tree, node, title, sizeof title, NULL);
  qd_cell_text(cell, title[0] == 'S' ? "steel" : "cast iron");
}

int main(void) {
  int switches = 0;
  qd_tree* tree = NULL;
  qd_kind part = 0;
  qd_node set = 0, screw = 0;
  const qd_tree_options options = {.size = sizeof options, .interface_number = QD_INTERFACE};
  const qd_callbacks calls = {.size = sizeof calls, .user = &switches, .switched = on_switched, .cell = on_cell};
  const qd_row housing = {.size = sizeof housing, .fields = QD_ROW_TITLE, .title = "Housing"};
  qd_row row = {.size = sizeof row, .fields = QD_ROW_TITLE | QD_ROW_CHECKED | QD_ROW_KIND, .title = "Screw"};
  if (qd_tree_create_headless(&options, &tree) || qd_kind_create(tree, &calls, &part)) {
    fprintf(stderr, "%s\n", qd_last_error());
    return 1;
  }
  row.kind = part;
  qd_node_add(tree, 0, &housing, &set);
  qd_node_add(tree, set, &row, &screw);
  const qd_column material = {.size = sizeof material, .title = "Material"};
  int32_t column = 0;
  if (qd_column_add(tree, &material, &column)) return 1;
  qd_node_expand(tree, set, 1);
  qd_headless_click(tree, screw, QD_PART_BOX);
  return switches == 1 ? 0 : 1;
}
