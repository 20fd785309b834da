#pragma once

/// The works tree for programs in C99, and in all languages that can call C.
///
/// What was compiled against this header runs with every library whose qd_interface() is QD_INTERFACE or more: the
/// interface only grows, structs at their ends. Texts are UTF-8 and end with a zero. Colours are 0xRRGGBB. Handles
/// are numbers, never addresses, and are not used twice in a process: one that is stale, or belongs to another
/// tree, is refused.
///
/// Functions that can fail return a qd_status; what they were asked for is unchanged then, but that handles to be
/// returned become 0. No argument ends the program, in release builds either, as long as pointers that are not
/// null point to what they say. Nothing of C++ comes out: no exception, no class.
///
/// One thread makes the first tree and calls everything but qd_interface, qd_version, qd_error_text and
/// qd_last_error; other threads get QD_ERROR_THREAD. On Windows and with Qt it is the one that handles the events.
/// Callbacks come on it, too, and may call everything but qd_shutdown, on their own tree as well.
///
/// A callback returns; it must not leave by longjmp. An exception of a callback that is written in C++ ends in the
/// library, which goes on as if the callback had done nothing and answered 0; qd_last_error says so.

#include <stddef.h>
#include <stdint.h>

/// @cond
#if defined(_WIN32)
#define QD_C_IMPORTED __declspec(dllimport)
#define QD_C_EXPORTED __declspec(dllexport)
#elif defined(__GNUC__)
#define QD_C_IMPORTED __attribute__((visibility("default")))
#define QD_C_EXPORTED QD_C_IMPORTED
#else
#define QD_C_IMPORTED
#define QD_C_EXPORTED
#endif
#if defined(QD_WRT_BUILD)
#define QD_C_API QD_C_EXPORTED
#else
#define QD_C_API QD_C_IMPORTED
#endif
#if defined(QD_HEADLESS_BUILD)
#define QD_C_HEADLESS_API QD_C_EXPORTED
#else
#define QD_C_HEADLESS_API QD_C_IMPORTED
#endif
#if defined(QD_QT_BUILD)
#define QD_C_QT_API QD_C_EXPORTED
#else
#define QD_C_QT_API QD_C_IMPORTED
#endif
/// @endcond

#if defined(__cplusplus)
extern "C" {
#endif

/// The number of this interface.
#define QD_INTERFACE 3

/// How a call ended.
typedef enum qd_status {
  QD_OK = 0,               ///< as it should
  QD_ERROR_NULL = 1,       ///< a pointer is null that must not be
  QD_ERROR_SIZE = 2,       ///< the size in a struct is none that the library knows
  QD_ERROR_INTERFACE = 3,  ///< the program was compiled for a later interface than the library's
  QD_ERROR_TREE = 4,       ///< there is no such tree, or it was destroyed
  QD_ERROR_NODE = 5,       ///< there is no such row, or it was removed
  QD_ERROR_FOREIGN = 6,    ///< the row or kind belongs to another tree
  QD_ERROR_THREAD = 7,     ///< called from another thread than the one that made the first tree
  QD_ERROR_TEXT = 8,       ///< a text is no UTF-8
  QD_ERROR_VALUE = 9,      ///< a number or a flag is out of its range
  QD_ERROR_KEY = 10,       ///< another row of the tree has this key
  QD_ERROR_STATE = 11,     ///< not possible as things are, as to close a batch that nobody has opened
  QD_ERROR_QUERY = 12,     ///< the query cannot be understood
  QD_ERROR_WINDOW = 13,    ///< the window that the tree stood in is gone, or is none
  QD_ERROR_TOOLKIT = 14,   ///< the program works with another window system, or has none
  QD_ERROR_SPACE = 15,     ///< the buffer is too small; how much is needed was told
  QD_ERROR_CALLBACK = 16,  ///< a callback has thrown an exception
  QD_ERROR_MEMORY = 17,    ///< there is no memory left
  QD_ERROR_INTERNAL = 18   ///< a fault of the library
} qd_status;

/// A tree: a number, not an address.
typedef struct qd_tree qd_tree;
/// A menu that is being made; good until the callback returns.
typedef struct qd_menu qd_menu;
/// A cell of a column that is being described; good until the callback returns.
typedef struct qd_cell qd_cell;
/// A row of a tree; 0 is none, and as a parent the top level.
typedef uint64_t qd_node;
/// What rows do that do the same; 0 is none.
typedef uint64_t qd_kind;

/// QD_INTERFACE of the library.
QD_C_API uint32_t qd_interface(void);
/// The version of the library, such as "0.1.0".
QD_C_API const char* qd_version(void);
/// What a status means, in a sentence; never null.
QD_C_API const char* qd_error_text(qd_status status);
/// What was wrong with the last call of this thread that failed, in a sentence; never null, and good until the
/// next call of this thread fails.
QD_C_API const char* qd_last_error(void);
/// Destroys all trees, and the toolkit that the first one made. Not in a callback (QD_ERROR_STATE). A program that
/// ends need not call it; one that unloads the library does.
QD_C_API qd_status qd_shutdown(void);

// ---- trees --------------------------------------------------------------------------------------------------

/// How a tree is made. Fill it with zeros, then set size and interface_number.
typedef struct qd_tree_options {
  uint32_t size;              ///< sizeof(qd_tree_options)
  uint32_t interface_number;  ///< QD_INTERFACE
  int32_t width;              ///< at first, in pixels at 96 dots an inch; 0: as much as it likes
  int32_t height;             ///< likewise
  void* user;                 ///< for what follows
  /// What is selected is different, by the user or because selected rows went.
  void (*selected)(void* user, qd_tree* tree);
} qd_tree_options;

/// Makes a tree without a screen, for tests and services. In the library QD_wrtHeadless.
QD_C_HEADLESS_API qd_status qd_tree_create_headless(const qd_tree_options* options, qd_tree** tree);
/// Makes a tree in a window of this thread (HWND), which the program sizes it in by qd_tree_hwnd. On Windows only.
QD_C_API qd_status qd_tree_create_in_hwnd(const qd_tree_options* options, void* parent, qd_tree** tree);
/// Makes a tree as a widget in a QWidget, or a window of its own for null. The program has a QApplication; it puts
/// the widget (qd_tree_qwidget) into a layout. In the library QD_wrtQt.
QD_C_QT_API qd_status qd_tree_create_in_qwidget(const qd_tree_options* options, void* parent, qd_tree** tree);

/// Destroys a tree with its rows, kinds and window; callbacks of the tree that run go on.
QD_C_API qd_status qd_tree_destroy(qd_tree* tree);
/// Removes all rows. Kinds stay.
QD_C_API qd_status qd_tree_clear(qd_tree* tree);
/// The tree's window (HWND), for SetWindowPos. On Windows only.
QD_C_API qd_status qd_tree_hwnd(qd_tree* tree, void** window);
/// The tree's QWidget, which belongs to the tree and goes before it when its parent goes. In QD_wrtQt.
QD_C_QT_API qd_status qd_tree_qwidget(qd_tree* tree, void** widget);
/// To be asked about each message (MSG*) before accelerators are: 1 when it was for a text box of a tree and is
/// dealt with, else 0. On Windows only.
QD_C_API int qd_translate_message(const void* message);

// ---- what rows do -------------------------------------------------------------------------------------------

/// Flags of a kind.
enum qd_kind_flag {
  QD_KIND_DRAGGED = 1  ///< rows of this kind can be dragged, onto rows whose kind has `dropped`
};

/// What rows do that do the same; each callback may be null. Fill it with zeros, then set size.
typedef struct qd_callbacks {
  uint32_t size;   ///< sizeof(qd_callbacks)
  uint32_t flags;  ///< QD_KIND_...
  void* user;      ///< handed to each
  /// The row has become the only selected one.
  void (*clicked)(void* user, qd_tree* tree, qd_node node);
  /// The user has switched the box, which shows the new state already.
  void (*switched)(void* user, qd_tree* tree, qd_node node, int checked);
  /// The user has typed a title: 1 lets the row have it. Without this callback titles cannot be edited.
  int (*renamed)(void* user, qd_tree* tree, qd_node node, const char* title);
  /// The user wants the menu of a row: fill it with qd_menu_add.
  void (*menu)(void* user, qd_tree* tree, qd_node node, qd_menu* menu);
  /// The user has chosen from the menu.
  void (*command)(void* user, qd_tree* tree, qd_node node, uint32_t command);
  /// Rows were dragged onto this one, which does nothing by itself: qd_node_move moves rows.
  void (*dropped)(void* user, qd_tree* tree, qd_node target, const qd_node* dragged, size_t count);
  /// The row is opened for the first time: add its children.
  void (*children)(void* user, qd_tree* tree, qd_node node);
  /// What a row shows in a column of qd_column_add: fill it with qd_cell_.... Called when the row is painted, read
  /// out, copied or sorted; nothing is kept. Since interface 2; a struct may end before it.
  void (*cell)(void* user, qd_tree* tree, qd_node node, int32_t column, qd_cell* cell);
} qd_callbacks;

/// Makes a kind, which lives as long as the tree.
QD_C_API qd_status qd_kind_create(qd_tree* tree, const qd_callbacks* callbacks, qd_kind* kind);
/// Adds an entry to a menu, with a number above 0 and a text.
QD_C_API qd_status qd_menu_add(qd_menu* menu, uint32_t command, const char* text, int checked);
QD_C_API qd_status qd_menu_add_separator(qd_menu* menu);  ///< adds a line between entries

// ---- columns; since interface 2 -----------------------------------------------------------------------------

/// A column that a program adds. Fill it with zeros, then set size.
typedef struct qd_column {
  uint32_t size;       ///< sizeof(qd_column)
  const char* title;   ///< its caption
  int32_t width;       ///< at first, in pixels at 96 dots an inch; 0: what the caption takes
  int32_t align;       ///< 0 left, 1 right, 2 in the middle
  int32_t unsortable;  ///< 1: a click on the caption does not sort the rows
  int32_t hidden;      ///< 1: not shown until the user, or the program, shows it
} qd_column;

/// Adds a column behind those that are there: title (0), number (1), colour (2). The user shows, hides and moves
/// columns by the menu of the captions from then on. `column` gets its number.
QD_C_API qd_status qd_column_add(qd_tree* tree, const qd_column* what, int32_t* column);
/// Gives a column another caption.
QD_C_API qd_status qd_column_title(qd_tree* tree, int32_t column, const char* title);
/// Shows these columns and no others, from left to right; the title is the first one (QD_ERROR_VALUE).
QD_C_API qd_status qd_columns_show(qd_tree* tree, const int32_t* columns, size_t count);
/// Copies which columns are shown; `capacity` and `count` are as in qd_selection_get.
QD_C_API qd_status qd_columns_get(qd_tree* tree, int32_t* columns, size_t capacity, size_t* count);
/// Sorts all rows by what they show in a column: 1 the smallest first, -1 the greatest, 0 as they were added.
QD_C_API qd_status qd_columns_sort(qd_tree* tree, int32_t column, int32_t direction);

/// Gives a cell its text.
QD_C_API qd_status qd_cell_text(qd_cell* cell, const char* text);
/// Gives a cell a number that its row is sorted by, in place of the text.
QD_C_API qd_status qd_cell_number(qd_cell* cell, double number);
/// Gives the text of a cell a colour, 0xRRGGBB.
QD_C_API qd_status qd_cell_colour(qd_cell* cell, uint32_t colour);
/// Gives a cell a colour behind the text, 0xRRGGBB.
QD_C_API qd_status qd_cell_background(qd_cell* cell, uint32_t colour);
/// What a row shows in columns of the program is another now: it is asked for anew.
QD_C_API qd_status qd_node_refresh(qd_tree* tree, qd_node node);

// ---- rows ---------------------------------------------------------------------------------------------------

/// Which fields of a qd_row are given.
enum qd_row_field {
  QD_ROW_TITLE = 1,    ///< title
  QD_ROW_ID = 2,       ///< id
  QD_ROW_COLOUR = 4,   ///< colour
  QD_ROW_CHECKED = 8,  ///< checked
  QD_ROW_ICON = 16,    ///< icon
  QD_ROW_KEY = 32,     ///< key
  QD_ROW_KIND = 64     ///< kind
};

/// What a row shows.
typedef struct qd_row {
  uint32_t size;      ///< sizeof(qd_row)
  uint32_t fields;    ///< QD_ROW_..., added
  const char* title;  ///< any text
  int32_t id;         ///< in the second column; 0 or less: none
  uint32_t colour;    ///< in the third column, 0xRRGGBB; a row that is added without it has none later
  int32_t checked;    ///< 0 or 1, in a box; likewise
  uint32_t icon;      ///< number of an icon of the library, or of qd_icon_add
  uint64_t key;       ///< the program's own name of the row, unique in the tree and not 0; only when it is added
  qd_kind kind;       ///< that of the parent when it is not given; only when it is added
} qd_row;

/// Adds a row behind the last child of `parent`. `node` may be null.
QD_C_API qd_status qd_node_add(qd_tree* tree, qd_node parent, const qd_row* row, qd_node* node);
/// Changes the fields that are given. No callback hears of it.
QD_C_API qd_status qd_node_change(qd_tree* tree, qd_node node, const qd_row* row);
/// Reads what a row shows, but its title, which is null then; `fields` says what it has. Set size before.
QD_C_API qd_status qd_node_read(qd_tree* tree, qd_node node, qd_row* row);
/// Copies the title, its zero included. `needed`, which may be null, gets the bytes that takes; with too few in
/// `capacity` nothing is copied (QD_ERROR_SPACE). `text` may be null when `capacity` is 0.
QD_C_API qd_status qd_node_title(qd_tree* tree, qd_node node, char* text, size_t capacity, size_t* needed);
/// Removes a row with all below it.
QD_C_API qd_status qd_node_remove(qd_tree* tree, qd_node node);
/// Moves a row with all below it, as they are, behind the last child of `parent`, which does not stand below it.
QD_C_API qd_status qd_node_move(qd_tree* tree, qd_node node, qd_node parent);
/// Opens (1) or closes (0) a row.
QD_C_API qd_status qd_node_expand(qd_tree* tree, qd_node node, int open);
QD_C_API qd_status qd_node_is_open(qd_tree* tree, qd_node node, int* open);  ///< gives 1 for an open row, else 0
/// Opens what the row stands in and scrolls to it.
QD_C_API qd_status qd_node_show(qd_tree* tree, qd_node node);
/// The row above; 0 for one of the top level.
QD_C_API qd_status qd_node_parent(qd_tree* tree, qd_node node, qd_node* parent);
/// Children of a row, or of the top level for 0.
QD_C_API qd_status qd_node_child_count(qd_tree* tree, qd_node node, size_t* count);
/// One of them, in the order in which they were added.
QD_C_API qd_status qd_node_child(qd_tree* tree, qd_node node, size_t index, qd_node* child);
/// The row with a key; 0 for none, with QD_OK.
QD_C_API qd_status qd_node_find(qd_tree* tree, uint64_t key, qd_node* node);

/// Adds an icon for rows of all trees, of any size up to 1024 by 1024: pixels of four bytes, red, green, blue,
/// alpha, top row first. It is fitted into the place of an icon, at all scales of screens, and kept once however
/// often it is added. `icon` gets its number. With a name it is found again by qd_icon_find; `name` may be null.
/// Since interface 2; after the first tree was made.
QD_C_API qd_status qd_icon_add(const uint8_t* pixels, int32_t width, int32_t height, const char* name,
                               uint32_t* icon);
/// The icon of a name; 0 for none, with QD_OK. Since interface 2.
QD_C_API qd_status qd_icon_find(const char* name, uint32_t* icon);

/// Between the first and the last of these, which may stand within each other, changes make one notice: what is
/// searched for follows all of it at the end, and `selected` is told at most once, then.
QD_C_API qd_status qd_changes_begin(qd_tree* tree);
QD_C_API qd_status qd_changes_end(qd_tree* tree);  ///< QD_ERROR_STATE when none has begun

// ---- what is selected and searched for ----------------------------------------------------------------------

/// Copies the selected rows, top to bottom. `count` gets how many there are; with less room nothing is copied
/// (QD_ERROR_SPACE). `nodes` may be null when `capacity` is 0.
QD_C_API qd_status qd_selection_get(qd_tree* tree, qd_node* nodes, size_t capacity, size_t* count);
/// Selects these rows and no others, and scrolls to the first. No callback hears of it.
QD_C_API qd_status qd_selection_set(qd_tree* tree, const qd_node* nodes, size_t count);

/// Shows rows that match a query, and what they stand in, and no others; an empty one shows all rows again.
QD_C_API qd_status qd_filter(qd_tree* tree, const char* query);
/// Marks rows that match a query; an empty one ends that.
QD_C_API qd_status qd_find(qd_tree* tree, const char* query);
/// How many rows match so far, and whether all were looked at. A search goes on while events are handled.
QD_C_API qd_status qd_find_count(qd_tree* tree, size_t* matches, int* done);
/// Selects the next match (1) or the one before (0); QD_ERROR_STATE when there is none.
QD_C_API qd_status qd_find_next(qd_tree* tree, int forward);
/// Selects all matches; QD_ERROR_STATE when there is none.
QD_C_API qd_status qd_find_select(qd_tree* tree);
/// Opens (1) or closes (0) the bar in which the user searches.
QD_C_API qd_status qd_find_bar(qd_tree* tree, int show);

// ---- what the library says ----------------------------------------------------------------------------------

/// Gives what the library says itself (captions, the find bar) in another language, in all trees at once: the
/// bytes of a table of "KEY=text" lines, such as those that are installed in share/qd_wrt/messages. What a table
/// has not, or with other arguments, is said in English, as everything is for null. A table without a text that
/// can be used is refused as a whole (QD_ERROR_VALUE). Since interface 3.
QD_C_API qd_status qd_texts_set(const char* table);

// ---- what the user has made of the window -------------------------------------------------------------------

/// Copies what is open and selected, by the keys of rows, and what the user has made of the columns, as a
/// text for qd_state_load. `needed` and `capacity` are as in qd_node_title.
QD_C_API qd_status qd_state_save(qd_tree* tree, char* text, size_t capacity, size_t* needed);
/// Brings it back, as far as there are rows with such keys. A text that is none of these is refused as a whole
/// (QD_ERROR_VALUE).
QD_C_API qd_status qd_state_load(qd_tree* tree, const char* text);

// ---- a user without a screen; in the library QD_wrtHeadless -------------------------------------------------

/// What of a row is clicked.
enum qd_part {
  QD_PART_TITLE = 0,  ///< its title
  QD_PART_BOX = 1,    ///< its box
  QD_PART_BUTTON = 2  ///< what opens and closes it
};

/// Handles all events.
QD_C_HEADLESS_API qd_status qd_headless_pump(void);
/// Clicks a part of a row that is shown, which is scrolled to.
QD_C_HEADLESS_API qd_status qd_headless_click(qd_tree* tree, qd_node node, int part);
/// Opens the menu of a row by a right click and chooses a command; 0 closes it.
QD_C_HEADLESS_API qd_status qd_headless_menu(qd_tree* tree, qd_node node, uint32_t command);
/// Clicks the caption of a column. Since interface 2.
QD_C_HEADLESS_API qd_status qd_headless_caption(qd_tree* tree, int32_t column);
/// Drags a row onto another.
QD_C_HEADLESS_API qd_status qd_headless_drag(qd_tree* tree, qd_node node, qd_node target);
/// Edits the title of the selected row: F2, the text, Enter.
QD_C_HEADLESS_API qd_status qd_headless_rename(qd_tree* tree, const char* title);

#if defined(__cplusplus)
}
#endif
