#include "automation/core/NeedleTree.h"

#include <algorithm>
#include <cstring>

namespace kelmora::automation {

/// The part of the sorted needles that begin with the bytes of a node.
struct NeedleTree::Branch {
  std::size_t first;
  std::size_t end;
  qsizetype depth;  ///< bytes on the way from the root
};

NeedleTree::NeedleTree(const std::vector<QByteArray>& needles) {
  std::vector<quint32> sorted;
  for (quint32 needle = 0; needle < needles.size(); ++needle)
    if (!needles[needle].isEmpty())
      sorted.push_back(needle);
  std::sort(sorted.begin(), sorted.end(),
            [&](quint32 a, quint32 b) { return needles[a] < needles[b]; });

  // Each node adds the branches of its children at the end, where they wait until
  // all nodes of its own level are made.
  std::vector<Branch> branches{{0, sorted.size(), 0}};
  labels_.push_back('\0');
  while (nodes_.size() < branches.size())
    addNode(Branch(branches[nodes_.size()]), needles, sorted, branches);
  nodes_.push_back({size(), static_cast<quint32>(needles_.size())});
  for (quint32 node = firstChild(0); node < endOfChildren(0); ++node)
    rootChildren_[static_cast<unsigned char>(label(node))] = node;
}

void NeedleTree::addNode(const Branch& branch, const std::vector<QByteArray>& needles,
                         const std::vector<quint32>& sorted, std::vector<Branch>& branches) {
  nodes_.push_back({size(), static_cast<quint32>(needles_.size())});
  // A needle that ends here comes before those that go on.
  std::size_t place = branch.first;
  while (place < branch.end && needles[sorted[place]].size() == branch.depth)
    needles_.push_back(sorted[place++]);
  while (place < branch.end) {
    const std::size_t first = place;
    const char byte = needles[sorted[first]].at(branch.depth);
    while (place < branch.end && needles[sorted[place]].at(branch.depth) == byte)
      ++place;
    labels_.push_back(byte);
    branches.push_back({first, place, branch.depth + 1});
  }
}

quint32 NeedleTree::child(quint32 node, char byte) const {
  if (node == 0)
    return rootChildren_[static_cast<unsigned char>(byte)];
  const quint32 first = firstChild(node);
  const quint32 count = endOfChildren(node) - first;
  const char* const labels = labels_.data() + first;
  const void* const found = count == 0 ? nullptr : std::memchr(labels, byte, count);
  return found ? first + static_cast<quint32>(static_cast<const char*>(found) - labels) : 0;
}

}  // namespace kelmora::automation
