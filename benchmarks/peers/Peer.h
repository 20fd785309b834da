#pragma once

#include <cstddef>
#include <string>

namespace qd::bench {

/// How the rows stand below the one at the top.
enum class Shape {
  Branches,  ///< branches of a thousand rows, the first one of ten thousand
  Flat,      ///< all below the top
  Chain,     ///< each below the one before
};

/// Titles, numbers, colours and boxes are the same in every peer: row `number` counts through the leaves from 0.
struct Sample {
  Shape shape = Shape::Branches;
  std::size_t leaves = 0;      ///< a chain's rows
  const char* only = nullptr;  ///< the one work to do, null for all

  static constexpr std::size_t kFirst = 10'000;  // in the first branch
  static constexpr std::size_t kOther = 1'000;   // in each of the others

  std::size_t Branches() const {
    if (shape != Shape::Branches) return 0;
    return leaves <= kFirst ? 1 : 1 + (leaves - kFirst) / kOther;
  }
  std::size_t RowsOf(std::size_t branch) const { return branch > 0 ? kOther : leaves - (Branches() - 1) * kOther; }
  std::size_t FirstOf(std::size_t branch) const { return branch == 0 ? 0 : RowsOf(0) + (branch - 1) * kOther; }
  /// Rows with everything open.
  std::size_t All() const { return 1 + Branches() + leaves; }
  /// Its place in the order of the titles.
  std::size_t Rank(std::size_t number) const { return (number + 1) * 7919 % leaves; }
  std::string Title(std::size_t number) const {
    std::string digits = std::to_string(Rank(number));
    digits.insert(0, 7 - digits.size(), '0');  // so that order by characters is order by numbers
    return (number % 1000 == 7 ? "Flange " : "Part ") + digits;
  }
  unsigned Colour(std::size_t number) const { return static_cast<unsigned>(number * 2'654'435'761U) & 0xFFFFFFU; }
  /// Leaves that "flange" finds.
  std::size_t Flanges() const { return leaves < 8 ? 0 : (leaves - 8) / 1000 + 1; }
};

/// A tree that a user could pick, in its window. Acts may leave drawing to Settle. What a peer has no function for
/// returns false and is not measured.
class Peer {
 public:
  Peer() = default;
  virtual ~Peer() = default;
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  virtual void Build(const Sample& sample) = 0;  ///< until the rows stand; all but the top is closed
  /// Handles and draws until nothing is left. Returns whether anything was drawn.
  virtual bool Settle() = 0;

  virtual bool ExpandAll(bool open) = 0;                ///< all below the top, or the whole chain
  virtual bool ExpandFirst(bool) { return false; }      ///< the first branch
  virtual bool ScrollTo(std::size_t) { return false; }  ///< a position among the rows that are shown
  virtual bool SelectAll(bool) { return false; }
  virtual bool Invert() { return false; }
  virtual bool SelectRange() { return false; }        ///< the first branch's rows, or all below the top
  virtual bool Sort(bool) { return false; }           ///< all branches by name, or by number
  virtual bool Filter(const char*) { return false; }  ///< empty: ends it
  virtual bool Insert() { return false; }             ///< a row behind all of the first branch, or of the top
  virtual bool Change(const std::string&) { return false; }         ///< the title of a row that is on screen
  virtual bool ChangeMany(std::size_t, unsigned) { return false; }  ///< gives so many rows a colour
  virtual bool CheckAll(bool) { return false; }                     ///< switches all boxes

  /// @{
  /// What the tree is asked for behind the timed part.
  virtual std::size_t Visible() = 0;  ///< rows that no closed branch and no filter hides
  virtual std::size_t Selected() { return 0; }
  virtual std::size_t Top() { return 0; }          ///< position of the first row on screen
  virtual std::string FirstTitle() { return {}; }  ///< of the first row of the first branch, or below the top
  virtual unsigned FirstColour() { return 0; }
  virtual std::size_t Checked() { return 0; }  ///< leaves with a checked box
  /// @}
};

/// Does all works of a shape and prints a line for each: what, milliseconds of processor time and of the clock,
/// each the median, and whether it was done. Returns whether all was done.
bool DoWorks(Peer& peer, const Sample& sample, const char* name);

/// What a program of peers does with its arguments: SHAPE ROWS PEER [WORK].
Sample SampleOf(int count, char** arguments);

}  // namespace qd::bench
