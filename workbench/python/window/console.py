"""What the interpreter of the window does in Python: runs what is typed and scripts of files."""

import ast
import builtins
import codeop
import functools
import gc
import inspect
import linecache
import os
import re
import signal
import sys
import traceback
import types

import qd

space = {}
typed = 0
_native = None


class Output:
    """A stream that the console shows."""

    encoding = "utf-8"
    errors = "replace"

    def __init__(self, is_error):
        self.is_error = is_error

    def write(self, text):
        if not isinstance(text, str):
            raise TypeError("write() argument must be str")
        _native.write(text.encode("utf-8", "replace"), self.is_error)
        return len(text)

    def writelines(self, lines):
        for line in lines:
            self.write(line)

    def flush(self):
        pass

    def isatty(self):
        return False


class NoInput:
    """There is nobody to answer a script but by the window."""

    encoding = "utf-8"

    def readline(self, size=-1):
        raise EOFError("scripts in the window read no input")

    read = readline

    def isatty(self):
        return False


def start(native, stop_signal):
    """Called once, with the functions of the program."""
    global _native
    _native = native
    sys.stdout, sys.stderr, sys.stdin = Output(False), Output(True), NoInput()
    sys.__stdout__, sys.__stderr__, sys.__stdin__ = sys.stdout, sys.stderr, sys.stdin
    sys.argv = [""]
    signal.signal(stop_signal, signal.default_int_handler)
    take_over(qd)


def take_over(module):
    """Makes all of the module that touches documents run on the window's thread."""

    def there(function):
        @functools.wraps(function, assigned=("__doc__", "__name__", "__qualname__"), updated=())
        def call(*arguments, **named):
            return _native.call(function, arguments, named)

        return call

    def near(function, writes):
        if function is None:
            return None

        def call(*arguments):
            return _native.call_here(function, arguments, writes)

        return call

    # What only records hear of while an act is open; of all others the window hears at once.
    kept = ("name", "colour", "material", "group", "youngs_modulus", "poissons_ratio", "density")
    alone = ("__eq__", "__hash__", "screenshot")  # what does not, and what does by itself
    special = ("__init__", "__enter__", "__exit__", "__repr__", "__len__")
    for kind in [thing for thing in vars(module).values() if inspect.isclass(thing)]:
        if issubclass(kind, BaseException):
            continue
        for name, value in list(vars(kind).items()):
            if isinstance(value, property) and issubclass(kind, module.Record):
                put = near(value.fset, True) if name in kept else there(value.fset) if value.fset else None
                setattr(kind, name, property(near(value.fget, False), put, doc=value.__doc__))
            elif isinstance(value, property):
                put = there(value.fset) if value.fset is not None else None
                setattr(kind, name, property(there(value.fget), put, doc=value.__doc__))
            elif callable(value) and name not in alone and (name in special or not name.startswith("_")):
                setattr(kind, name, there(value))
    module.open = there(module.open)
    module.current = there(module.current)


def begin():
    """A window has come: nothing is left of what was typed in another one."""
    space.clear()
    space.update(__name__="__main__", __builtins__=builtins, qd=qd, doc=qd.current())


def end():
    """The window goes: what only the console holds is closed."""
    space.clear()
    gc.collect()


def show_error():
    """Shows the exception that goes on as Python does, without what stands in this file."""
    kind, error, trace = sys.exc_info()
    while trace is not None and trace.tb_frame.f_code.co_filename == __file__:
        trace = trace.tb_next
    kept = []
    while trace is not None:
        if trace.tb_frame.f_code.co_filename != __file__:
            kept.append((trace.tb_frame, trace.tb_lasti, trace.tb_lineno))
        trace = trace.tb_next
    for frame, last, line in reversed(kept):
        trace = types.TracebackType(trace, frame, last, line)
    traceback.print_exception(kind, error, trace)


def status_of(ended):
    """The status of a program that ends so."""
    if ended.code is None or isinstance(ended.code, int):
        return (ended.code or 0) & 0xFF
    print(ended.code, file=sys.stderr)
    return 1


def run(work):
    """Runs something to its end, whatever that is. Returns the status that a program would end with."""
    try:
        work()
        return 0
    except SystemExit as ended:
        return status_of(ended)
    except BaseException:
        show_error()
        return 1


def run_lines(lines):
    """Runs statements as a prompt does: what an expression is, is shown."""
    global typed
    typed += 1
    name = f"<line {typed}>"
    linecache.cache[name] = (len(lines), None, lines.splitlines(True), name)

    def work():
        for statement in ast.parse(lines, name).body:
            exec(compile(ast.Interactive([statement]), name, "single"), space)

    return run(work)


def run_file(path, arguments):
    """Runs a script in a space of its own."""
    def work():
        with open(path, "rb") as file:
            code = compile(file.read(), path, "exec")
        exec(code, {"__name__": "__main__", "__file__": path, "__builtins__": builtins})

    sys.argv = [path, *arguments]
    folder = os.path.dirname(os.path.abspath(path))
    sys.path.insert(0, folder)
    try:
        return run(work)
    finally:
        sys.argv = [""]
        if folder in sys.path:
            sys.path.remove(folder)


def run_entry(function, records):
    """Does what a script has put into the menus of rows."""
    return run(lambda: function(records))


def is_whole(lines):
    """Whether lines are all of a statement, or so wrong that more would not mend it. An empty line ends a block."""
    last = lines.split("\n")[-1]
    try:
        ast.parse(lines)
        return not last.strip() or not last[0].isspace()
    except IndentationError as error:
        if error.msg.startswith("expected an indented block") and last.strip() and error.lineno >= lines.count("\n") + 1:
            return False
    except (SyntaxError, ValueError, OverflowError, MemoryError, RecursionError):
        pass
    try:
        return codeop.compile_command(lines, symbol="exec") is not None
    except (SyntaxError, ValueError, OverflowError, MemoryError, RecursionError):
        return True


def names_in(thing):
    """The names of what a thing has, and of its classes; nothing of it is called."""
    names = set()
    holders = [thing] if isinstance(thing, (type, types.ModuleType)) else [thing, *type(thing).__mro__]
    if isinstance(thing, type):
        holders = list(type.__getattribute__(thing, "__mro__"))
    for holder in holders:
        try:
            names.update(name for name in object.__getattribute__(holder, "__dict__") if isinstance(name, str))
        except (AttributeError, TypeError):
            pass
    return names


def complete(text):
    """What the name at the end of a text can be completed to: looked up, never called."""
    found = re.search(r"(?:\b\w+\.)*\w*$", text)
    *owners, start = found.group().split(".")
    if not owners:
        if not start:
            return []
        import keyword
        names = set(space) | set(vars(builtins)) | set(keyword.kwlist)
    else:
        nothing = object()
        thing = space.get(owners[0], getattr(builtins, owners[0], nothing))
        for name in owners[1:]:
            thing = inspect.getattr_static(thing, name, nothing) if thing is not nothing else nothing
            if isinstance(thing, property) or hasattr(type(thing), "__get__"):
                thing = nothing  # which only a call could tell
        if thing is nothing:
            return []
        names = names_in(thing)
    names = [name for name in names if name.startswith(start) and (start.startswith("_") or not name.startswith("_"))]
    return [".".join([*owners, name]) for name in sorted(names)]
