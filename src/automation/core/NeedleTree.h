#pragma once

#include <QByteArray>
#include <array>
#include <span>
#include <vector>

namespace kelmora::automation {

/// Byte strings as a tree. Each node stands for the bytes on the way from the root
/// to it; the root stands for none. Needles with the same beginning share the nodes
/// of that beginning, so there is at most one node for each byte of the needles.
///
/// Nodes are numbered level by level from the root, which is 0. So the children of
/// a node are neighbours, and every node has a higher number than all nodes of the
/// levels above it. A node takes 9 bytes.
class NeedleTree {
 public:
  /// A needle may come twice and may hold any byte. Empty ones are left out.
  explicit NeedleTree(const std::vector<QByteArray>& needles);

  /// The number of nodes, with the root.
  [[nodiscard]] quint32 size() const { return static_cast<quint32>(labels_.size()); }
  /// The byte that leads to the node from the one above it.
  [[nodiscard]] char label(quint32 node) const { return labels_[node]; }
  [[nodiscard]] quint32 firstChild(quint32 node) const { return nodes_[node].firstChild; }
  [[nodiscard]] quint32 endOfChildren(quint32 node) const { return nodes_[node + 1].firstChild; }
  /// The child that the byte leads to; 0 where there is none.
  [[nodiscard]] quint32 child(quint32 node, char byte) const;

  /// The number of needles that are in the tree.
  [[nodiscard]] std::size_t needleCount() const { return needles_.size(); }
  /// The needles that the node stands for, by their places in the list that the
  /// tree was made from.
  [[nodiscard]] std::span<const quint32> needlesAt(quint32 node) const {
    return std::span(needles_).subspan(nodes_[node].firstNeedle, needleCountAt(node));
  }
  /// Where the node's first needle stands in the order of the nodes.
  [[nodiscard]] quint32 firstNeedle(quint32 node) const { return nodes_[node].firstNeedle; }
  [[nodiscard]] bool hasNeedles(quint32 node) const { return needleCountAt(node) != 0; }

 private:
  struct Branch;
  struct Node {
    quint32 firstChild;
    quint32 firstNeedle;
  };

  void addNode(const Branch& branch, const std::vector<QByteArray>& needles,
               const std::vector<quint32>& sorted, std::vector<Branch>& branches);
  [[nodiscard]] quint32 needleCountAt(quint32 node) const {
    return nodes_[node + 1].firstNeedle - nodes_[node].firstNeedle;
  }

  std::vector<Node> nodes_;  // one more than there are, to end the ranges of the last one
  std::vector<char> labels_;
  std::vector<quint32> needles_;  // in the order of their nodes
  std::array<quint32, 256> rootChildren_ = {};
};

}  // namespace kelmora::automation
