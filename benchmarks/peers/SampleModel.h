#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "benchmarks/peers/Peer.h"

namespace qd::bench {

/// The sample as a model for Qt's views, as well as one can write it: flat arrays, indexes that carry numbers, one
/// notice for many changes.
class SampleModel final : public QAbstractItemModel {
 public:
  explicit SampleModel(const Sample& sample);

  QModelIndex Top() const { return createIndex(0, 0, kTop); }
  QModelIndex Branch(std::size_t branch) const {
    return createIndex(static_cast<int>(branch), 0, kBranch + branch);
  }
  QModelIndex Leaf(std::size_t number, int column = 0) const;
  /// What the first branch's rows stand below: the branch, or the top without branches.
  QModelIndex FirstParent() const { return m_sample.Branches() > 0 ? Branch(0) : Top(); }
  const Sample& Of() const { return m_sample; }

  void Insert();
  void ChangeColours(std::size_t count, unsigned colour);
  void CheckAll(bool checked);
  std::size_t Checked() const;

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex&) const override { return 3; }
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  // An index carries the number of a leaf, or one of these.
  static constexpr quintptr kTop = quintptr{1} << 62;
  static constexpr quintptr kBranch = quintptr{1} << 61;
  static bool IsBranch(quintptr id) { return (id & kBranch) != 0; }
  static std::size_t BranchOf(quintptr id) { return id & ~kBranch; }
  std::size_t BranchOfLeaf(std::size_t number) const { return m_parents[number]; }

  Sample m_sample;
  std::vector<QString> m_titles;
  std::vector<unsigned> m_colours;
  std::vector<char> m_checked;
  std::vector<unsigned> m_parents;                // of each leaf, its branch
  std::vector<unsigned> m_rows;                   // of each leaf, its place below its branch
  std::vector<std::vector<unsigned>> m_children;  // leaves of each branch; of the top without branches
};

}  // namespace qd::bench
