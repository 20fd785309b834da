#include "workbench/mesh/OutlineFill.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <queue>
#include <set>
#include <utility>

namespace qd::workbench {

double OutlinePiece::At(double y) const {
  // Exact at the ends, where pieces meet.
  if (y <= y0) return x0;
  if (y >= y1) return x1;
  return x0 + (x1 - x0) * ((y - y0) / (y1 - y0));
}

namespace {

/// A line goes upwards over the outline and knows the pieces that it crosses, from the left. Something is done
/// only where a piece begins or ends or crosses another.
class Sweep {
 public:
  Sweep(std::vector<OutlinePiece> pieces, const PutStrip& put) : m_put(put) {
    m_pieces.reserve(pieces.size());
    for (const OutlinePiece& piece : pieces) {
      if (piece.y0 < piece.y1) m_pieces.push_back({.line = piece});
      if (piece.y0 > piece.y1) m_pieces.push_back({.line = {piece.x1, piece.y1, piece.x0, piece.y0}});
    }
    constexpr std::size_t kStepsEach = 32;
    m_stepsLeft = (m_pieces.size() + 1000) * kStepsEach;
  }

  bool Run() {
    std::vector<Piece*> starts;
    starts.reserve(m_pieces.size());
    for (Piece& piece : m_pieces) starts.push_back(&piece);
    std::vector<Piece*> ends = starts;
    std::sort(starts.begin(), starts.end(), [](auto* a, auto* b) { return a->line.y0 < b->line.y0; });
    std::sort(ends.begin(), ends.end(), [](auto* a, auto* b) { return a->line.y1 < b->line.y1; });
    auto start = starts.begin();
    for (auto end = ends.begin(); end != ends.end() && m_stepsLeft > 0;) {
      m_y = (*end)->line.y1;
      if (start != starts.end()) m_y = std::min(m_y, (*start)->line.y0);
      if (!m_crossings.empty()) m_y = std::min(m_y, m_crossings.top().y);
      for (; end != ends.end() && (*end)->line.y1 <= m_y; ++end) Remove(**end);
      while (!m_crossings.empty() && m_crossings.top().y <= m_y) {
        const Crossing crossing = m_crossings.top();
        m_crossings.pop();
        Exchange(*crossing.left, *crossing.right);
      }
      for (; start != starts.end() && (*start)->line.y0 <= m_y; ++start) Insert(**start);
      PairTouched();
    }
    return m_stepsLeft > 0;
  }

 private:
  struct Piece;
  struct Slot {
    mutable Piece* piece;  // two that cross exchange their slots
  };
  struct Before {
    const double* y;
    bool operator()(const Slot& a, const Slot& b) const;
  };
  using Order = std::multiset<Slot, Before>;
  struct Piece {
    OutlinePiece line{};
    Order::iterator place{};
    Piece* partner = nullptr;  // at the other side of what is filled
    double since = 0;          // that is so
    bool left = true;
    bool active = false;
    bool touched = false;
  };
  struct Crossing {
    double y;
    Piece* left;
    Piece* right;
    bool operator<(const Crossing& other) const { return y > other.y; }  // the lowest comes first
  };

  void Touch(Piece& piece) {
    if (!piece.touched) m_touched.push_back(&piece);
    piece.touched = true;
  }

  void Insert(Piece& piece) {
    piece.place = m_order.insert({&piece});
    piece.active = true;
    Touch(piece);
  }

  void Remove(Piece& piece) {
    Part(piece);
    const auto after = m_order.erase(piece.place);
    piece.active = false;
    if (after != m_order.end()) Touch(*after->piece);
    if (after != m_order.begin()) Touch(*std::prev(after)->piece);
  }

  void Exchange(Piece& left, Piece& right) {
    if (!left.active || !right.active || std::next(left.place) != right.place) return;
    std::swap(left.place->piece, right.place->piece);
    std::swap(left.place, right.place);
    Touch(left);
    Touch(right);
    Step();
  }

  void Step() {
    if (m_stepsLeft > 0) --m_stepsLeft;
  }

  /// Ends what is filled beside a piece.
  void Part(Piece& piece) {
    if (piece.partner == nullptr) return;
    Piece& other = *piece.partner;
    const Piece& left = piece.left ? piece : other;
    const Piece& right = piece.left ? other : piece;
    if (left.since < m_y) m_put(left.line, right.line, left.since, m_y);
    piece.partner = other.partner = nullptr;
  }

  void Join(Piece& left, Piece& right) {
    if (left.partner == &right && left.left) return;
    Part(left);
    Part(right);
    left.partner = &right;
    right.partner = &left;
    left.left = true;
    right.left = false;
    left.since = m_y;
  }

  /// Finds new partners for what has changed and for what comes after that, as far as it has to change too.
  void PairTouched() {
    for (std::size_t i = 0; i < m_touched.size(); ++i) {
      if (m_touched[i]->active && m_touched[i]->touched) PairFrom(m_touched[i]->place);
    }
    for (Piece* piece : m_touched) {
      piece->touched = false;
      if (!piece->active) continue;
      if (piece->place != m_order.begin()) AwaitCrossing(std::prev(piece->place));
      AwaitCrossing(piece->place);
    }
    m_touched.clear();
  }

  void PairFrom(Order::iterator at) {
    while (at != m_order.begin() && std::prev(at)->piece->touched) --at;
    if (at != m_order.begin() && std::prev(at)->piece->left) --at;
    while (at != m_order.end() && m_stepsLeft > 0) {
      Piece& left = *at->piece;
      if (++at == m_order.end()) {
        Part(left);
        left.left = true;
        left.touched = false;
        return;
      }
      Piece& right = *at->piece;
      const bool asBefore = left.left && left.partner == &right;
      if (asBefore && !left.touched && !right.touched) return;
      Join(left, right);
      left.touched = right.touched = false;
      ++at;
      Step();
    }
  }

  /// Whether a piece will cross the one after it.
  void AwaitCrossing(Order::iterator at) {
    const auto after = std::next(at);
    if (after == m_order.end()) return;
    const OutlinePiece& left = at->piece->line;
    const OutlinePiece& right = after->piece->line;
    const double top = std::min(left.y1, right.y1);
    const double there = left.At(top) - right.At(top);
    if (!(there > 0)) return;
    const double here = left.At(m_y) - right.At(m_y);
    const double y = here < 0 ? m_y + (top - m_y) * (here / (here - there)) : m_y;
    m_crossings.push({std::clamp(y, m_y, top), at->piece, after->piece});
  }

  const PutStrip& m_put;
  std::vector<Piece> m_pieces;
  std::size_t m_stepsLeft = 0;
  double m_y = 0;
  Order m_order{Before{&m_y}};
  std::priority_queue<Crossing> m_crossings;
  std::vector<Piece*> m_touched;
};

bool Sweep::Before::operator()(const Slot& a, const Slot& b) const {
  const OutlinePiece& one = a.piece->line;
  const OutlinePiece& other = b.piece->line;
  const double x = one.At(*y);
  const double otherX = other.At(*y);
  if (x != otherX) return x < otherX;
  return (one.x1 - one.x0) * (other.y1 - other.y0) < (other.x1 - other.x0) * (one.y1 - one.y0);
}

}  // namespace

bool FillOutline(std::vector<OutlinePiece> pieces, const PutStrip& put) {
  return Sweep(std::move(pieces), put).Run();
}

}  // namespace qd::workbench
