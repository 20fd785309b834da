#include "benchmarks/peers/SampleModel.h"

#include <QColor>
#include <algorithm>

namespace qd::bench {

SampleModel::SampleModel(const Sample& sample) : m_sample(sample) {
  m_titles.reserve(sample.leaves);
  m_colours.reserve(sample.leaves);
  for (std::size_t i = 0; i < sample.leaves; ++i) {
    m_titles.push_back(QString::fromStdString(sample.Title(i)));
    m_colours.push_back(sample.Colour(i));
  }
  m_checked.assign(sample.leaves, 1);
  if (sample.shape == Shape::Chain) return;
  m_children.resize(std::max<std::size_t>(1, sample.Branches()));
  for (std::size_t branch = 0; branch < m_children.size(); ++branch) {
    const std::size_t rows = sample.Branches() > 0 ? sample.RowsOf(branch) : sample.leaves;
    for (std::size_t row = 0; row < rows; ++row) {
      m_children[branch].push_back(static_cast<unsigned>(m_parents.size()));
      m_parents.push_back(static_cast<unsigned>(branch));
      m_rows.push_back(static_cast<unsigned>(row));
    }
  }
}

QModelIndex SampleModel::Leaf(std::size_t number, int column) const {
  const bool isChain = m_sample.shape == Shape::Chain;
  return createIndex(isChain ? 0 : static_cast<int>(m_rows[number]), column, static_cast<quintptr>(number));
}

QModelIndex SampleModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  if (!parent.isValid()) return createIndex(0, column, kTop);
  const quintptr id = parent.internalId();
  if (m_sample.shape == Shape::Chain) {
    return createIndex(0, column, id == kTop ? quintptr{0} : id + 1);
  }
  if (id == kTop && m_sample.Branches() > 0) return createIndex(row, column, kBranch + static_cast<quintptr>(row));
  const std::size_t branch = id == kTop ? 0 : BranchOf(id);
  return createIndex(row, column, static_cast<quintptr>(m_children[branch][static_cast<std::size_t>(row)]));
}

QModelIndex SampleModel::parent(const QModelIndex& index) const {
  const quintptr id = index.internalId();
  if (!index.isValid() || id == kTop) return {};
  if (IsBranch(id) || m_sample.shape == Shape::Flat) return Top();
  if (m_sample.shape == Shape::Chain) return id == 0 ? Top() : createIndex(0, 0, id - 1);
  return Branch(BranchOfLeaf(id));
}

int SampleModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return 1;
  if (parent.column() > 0) return 0;
  const quintptr id = parent.internalId();
  if (m_sample.shape == Shape::Chain) return id == kTop || id + 1 < m_sample.leaves ? 1 : 0;
  if (id == kTop && m_sample.Branches() > 0) return static_cast<int>(m_children.size());
  if (id == kTop || IsBranch(id)) return static_cast<int>(m_children[id == kTop ? 0 : BranchOf(id)].size());
  return 0;
}

QVariant SampleModel::data(const QModelIndex& index, int role) const {
  const quintptr id = index.internalId();
  const bool isLeaf = id != kTop && !IsBranch(id);
  if (role == Qt::DisplayRole) {
    if (index.column() == 1 && isLeaf) return static_cast<int>(id + 1);
    if (index.column() != 0) return {};
    if (id == kTop) return QStringLiteral("Model");
    return isLeaf ? QVariant(m_titles[id]) : QVariant("Branch " + QString::number(BranchOf(id)));
  }
  if (!isLeaf) return {};
  if (role == Qt::CheckStateRole && index.column() == 0) return m_checked[id] != 0 ? Qt::Checked : Qt::Unchecked;
  if (role == Qt::DecorationRole && index.column() == 2) return QColor::fromRgb(m_colours[id]);
  return {};
}

bool SampleModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole) return false;
  m_titles[index.internalId()] = value.toString();
  emit dataChanged(index, index, {Qt::DisplayRole});
  return true;
}

Qt::ItemFlags SampleModel::flags(const QModelIndex&) const {
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

QVariant SampleModel::headerData(int section, Qt::Orientation, int role) const {
  if (role != Qt::DisplayRole) return {};
  return section == 0 ? "Item" : section == 1 ? "ID" : "Color";
}

void SampleModel::Insert() {
  std::vector<unsigned>& rows = m_children[0];
  const int at = static_cast<int>(rows.size());
  beginInsertRows(FirstParent(), at, at);
  rows.push_back(static_cast<unsigned>(m_titles.size()));
  m_titles.push_back(QStringLiteral("Screw"));
  m_colours.push_back(0);
  m_checked.push_back(0);
  m_parents.push_back(0);
  m_rows.push_back(static_cast<unsigned>(at));
  endInsertRows();
}

void SampleModel::ChangeColours(std::size_t count, unsigned colour) {
  const std::size_t step = m_sample.leaves / count;
  for (std::size_t i = 0; i < count; ++i) m_colours[i * step] = colour;
  for (std::size_t branch = 0; branch < m_children.size(); ++branch) {
    emit dataChanged(Leaf(m_children[branch].front(), 2), Leaf(m_children[branch].back(), 2),
                     {Qt::DecorationRole});
  }
}

void SampleModel::CheckAll(bool checked) {
  std::fill(m_checked.begin(), m_checked.end(), checked ? 1 : 0);
  for (const auto& rows : m_children)
    emit dataChanged(Leaf(rows.front()), Leaf(rows.back()), {Qt::CheckStateRole});
}

std::size_t SampleModel::Checked() const {
  return static_cast<std::size_t>(std::count(m_checked.begin(), m_checked.end(), 1));
}

void SampleModel::sort(int column, Qt::SortOrder) {
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  for (auto& rows : m_children) {
    if (column == 0) {
      std::stable_sort(rows.begin(), rows.end(),
                       [this](unsigned a, unsigned b) { return m_titles[a] < m_titles[b]; });
    } else {
      std::sort(rows.begin(), rows.end());
    }
    for (std::size_t row = 0; row < rows.size(); ++row) m_rows[rows[row]] = static_cast<unsigned>(row);
  }
  const QModelIndexList before = persistentIndexList();
  QModelIndexList after;
  for (const QModelIndex& index : before) {
    const quintptr id = index.internalId();
    after.append(id == kTop || IsBranch(id) ? index : Leaf(id, index.column()));
  }
  changePersistentIndexList(before, after);
  emit layoutChanged({}, VerticalSortHint);
}

}  // namespace qd::bench
