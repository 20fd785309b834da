"""Small meshes for the oracles: nodes by number, elements by kind, groups by name."""
import itertools

# Corners of the edges of a hexahedron and a tetrahedron, in the order in which solvers have their middle nodes.
HEX_EDGES = [(0, 1), (1, 2), (2, 3), (3, 0), (4, 5), (5, 6), (6, 7), (7, 4), (0, 4), (1, 5), (2, 6), (3, 7)]
TET_EDGES = [(0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3)]
PRISM_EDGES = [(0, 1), (1, 2), (2, 0), (3, 4), (4, 5), (5, 3), (0, 3), (1, 4), (2, 5)]
QUAD_EDGES = [(0, 1), (1, 2), (2, 3), (3, 0)]
TRIANGLE_EDGES = [(0, 1), (1, 2), (2, 0)]
LINE_EDGES = [(0, 1)]

CORNERS = {"C3D4": 4, "C3D10": 4, "C3D8": 8, "C3D20": 8, "C3D6": 6, "C3D15": 6, "S4": 4, "S8R": 4, "S3": 3, "S6": 3,
           "B31": 2, "B32": 2}
EDGES = {"C3D10": TET_EDGES, "C3D20": HEX_EDGES, "C3D15": PRISM_EDGES, "S8R": QUAD_EDGES, "S6": TRIANGLE_EDGES,
         "B32": LINE_EDGES}
# A hexahedron as other solids: corners of each.
SPLITS = {"C3D4": [(0, 1, 2, 6), (0, 2, 3, 6), (0, 3, 7, 6), (0, 7, 4, 6), (0, 4, 5, 6), (0, 5, 1, 6)],
          "C3D6": [(0, 1, 2, 4, 5, 6), (0, 2, 3, 4, 6, 7)], "C3D8": [tuple(range(8))],
          "S4": [(0, 1, 2, 3)], "S3": [(0, 1, 2), (0, 2, 3)]}
FIRST_ORDER = {"C3D10": "C3D4", "C3D20": "C3D8", "C3D15": "C3D6", "S8R": "S4", "S6": "S3", "B32": "B31"}


class Mesh:
    def __init__(self):
        self.nodes = {}  # number: (x, y, z)
        self.elements = {}  # number: (kind, nodes)
        self.groups = {}  # name: numbers of elements
        self.parents = {}  # name of a group: the one that it lies in
        self._at = {}

    def node(self, place):
        place = tuple(round(value, 9) for value in place)
        if place not in self._at:
            self._at[place] = 10 * (len(self.nodes) + 1)
            self.nodes[self._at[place]] = place
        return self._at[place]

    def element(self, kind, places):
        """Adds an element by the places of its corners."""
        middles = [tuple((a + b) / 2 for a, b in zip(places[i], places[j])) for i, j in EDGES.get(kind, [])]
        if kind == "B32":
            places = [places[0], middles[0], places[1]]
        else:
            places = list(places) + middles
        number = len(self.elements) + 101
        self.elements[number] = (kind, [self.node(place) for place in places])
        return number

    def beam(self, kind, group, start, cells):
        """Boxes in a row along x, each cut into elements of a kind; shells are their bottoms, beams their edges."""
        for i in range(cells):
            x, y, z = start[0] + i, start[1], start[2]
            box = [(x, y, z), (x + 1, y, z), (x + 1, y + 1, z), (x, y + 1, z)]
            box += [(a, b, c + 1) for a, b, c in box]
            first = FIRST_ORDER.get(kind, kind)
            for corners in SPLITS.get(first, [(0, 1)]):
                number = self.element(kind, [box[corner] for corner in corners])
                self.groups.setdefault(group, set()).add(number)

    def nest(self, parent, children):
        for child in children:
            self.parents[child] = parent
        own = self.groups.get(parent, set())
        self.groups[parent] = own.union(*(self.groups[child] for child in children))

    def own(self, group):
        """Elements that lie in no group within this one."""
        return self.groups[group].difference(*(self.groups[child] for child, parent in self.parents.items()
                                               if parent == group))

    def deck(self):
        lines = ["*NODE"] + ["%d, %r, %r, %r" % ((number,) + at) for number, at in self.nodes.items()]
        by_kind = sorted(self.elements.items(), key=lambda item: (item[1][0], item[0]))
        for kind, elements in itertools.groupby(by_kind, key=lambda item: item[1][0]):
            lines.append("*ELEMENT, TYPE=" + kind)
            for number, (_, nodes) in elements:
                fields = [str(number)] + [str(node) for node in nodes]
                lines += [", ".join(fields[i:i + 16]) + ("," if i + 16 < len(fields) else "")
                          for i in range(0, len(fields), 16)]
        done = []
        while len(done) < len(self.groups):  # what lies in others comes first
            for name in self.groups:
                inside = [child for child, parent in self.parents.items() if parent == name]
                if name in done or any(child not in done for child in inside):
                    continue
                done.append(name)
                lines.append("*ELSET, ELSET=" + name)
                lines += ["%d," % number for number in sorted(self.own(name))]
                lines += [child + "," for child in inside]
        return "\n".join(lines) + "\n"
