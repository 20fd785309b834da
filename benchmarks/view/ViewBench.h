#pragma once

namespace qd::bench {

/// Prints a figure; what was not done fails the program.
void Tell(const char* what, double milliseconds, bool proven);

/// Still frames of many parts and of one mesh of the same triangles and edges, by turns in one renderer.
void StillFrames(int parts);
/// What a user does with many parts in the program's own window.
void WindowActs(int parts);

/// Picks of elements and nodes in one mesh of as many triangles.
void PicksInOneMesh(int triangles);

}  // namespace qd::bench
