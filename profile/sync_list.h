// The list that the two parts of an install description are kept in.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

#include "platform/owned.h"

namespace vgl {

// A list that owns its entries, in the order in which they were appended, with a mutex beside it.
//
// The mutex is a barrier and no lock: every access waits for it without limit and gives it back at
// once, before the list is touched; nothing holds it meanwhile. An access is one walk, one filling
// or one emptying as a whole. (One for each step would say no more, as nobody else knows the mutex,
// and would cost two calls of the system for each line of a file.)
template <class T>
class CSyncList {
 public:
  // The entries behind the barrier: a doubly linked list. Its nodes come out of blocks of ten;
  // a node that is given back is used again, and all blocks go with the last entry.
  class Entries {
   public:
    Entries() = default;
    Entries(const Entries&) = delete;
    Entries& operator=(const Entries&) = delete;
    ~Entries() { Clear(); }

    void Append(std::unique_ptr<T> entry);
    // Deletes the last entry, of which there must be one.
    void RemoveLast();
    void Clear();

    // Null when the list is empty.
    const T* Last() const { return m_pTail == nullptr ? nullptr : m_pTail->entry.get(); }
    std::size_t Count() const { return m_nCount; }
    // How many blocks the list has now.
    std::size_t Blocks() const;

    // For a walk from the first entry to the last. It ends with any change of the list.
    class Iterator;
    Iterator begin() const { return Iterator(m_pHead); }
    Iterator end() const { return Iterator(nullptr); }

   private:
    struct Node {
      Node* next = nullptr;  // of a free node: the next free one
      Node* previous = nullptr;
      std::unique_ptr<T> entry;
    };
    struct Block {
      Block* next = nullptr;
      std::array<Node, 10> nodes;
    };

    Node& TakeNode();
    void FreeBlocks();

    Node* m_pHead = nullptr;
    Node* m_pTail = nullptr;
    std::size_t m_nCount = 0;
    Node* m_pFree = nullptr;
    Block* m_pBlocks = nullptr;

   public:
    class Iterator {
     public:
      explicit Iterator(const Node* node) : m_pNode(node) {}
      const T& operator*() const { return *m_pNode->entry; }
      Iterator& operator++() {
        m_pNode = m_pNode->next;
        return *this;
      }
      bool operator==(const Iterator&) const = default;

     private:
      const Node* m_pNode;
    };
  };

  CSyncList() : m_hMutex(platform::Os().objects.CreateMutexW(nullptr, false, nullptr)) {}
  CSyncList(const CSyncList&) = delete;
  CSyncList& operator=(const CSyncList&) = delete;
  // Deletes the entries without waiting: nobody else may have a use for the list any more.
  ~CSyncList() = default;

  // Deletes the entries, as one access.
  virtual void RemoveAll() { Access().Clear(); }

  // Passes the barrier, and gives the entries for one access.
  Entries& Access() {
    PassBarrier();
    return m_Entries;
  }
  const Entries& Access() const {
    PassBarrier();
    return m_Entries;
  }

 private:
  // Where there is no mutex, because the system had none left, the wait fails, and nothing is lost.
  void PassBarrier() const {
    using namespace platform;
    if (Os().objects.WaitForSingleObject(m_hMutex.get(), INFINITE) != WAIT_FAILED)
      Os().objects.ReleaseMutex(m_hMutex.get());
  }

  platform::OwnedObject m_hMutex;  // unnamed
  Entries m_Entries;
};

template <class T>
void CSyncList<T>::Entries::Append(std::unique_ptr<T> entry) {
  Node& node = TakeNode();
  node.entry = std::move(entry);
  node.next = nullptr;
  node.previous = m_pTail;
  (m_pTail == nullptr ? m_pHead : m_pTail->next) = &node;
  m_pTail = &node;
  ++m_nCount;
}

template <class T>
void CSyncList<T>::Entries::RemoveLast() {
  Node& node = *m_pTail;
  m_pTail = node.previous;
  (m_pTail == nullptr ? m_pHead : m_pTail->next) = nullptr;
  node.entry.reset();
  node.next = m_pFree;
  m_pFree = &node;
  if (--m_nCount == 0) FreeBlocks();
}

template <class T>
void CSyncList<T>::Entries::Clear() {
  m_pHead = nullptr;
  m_pTail = nullptr;
  m_nCount = 0;
  FreeBlocks();
}

template <class T>
std::size_t CSyncList<T>::Entries::Blocks() const {
  std::size_t count = 0;
  for (const Block* block = m_pBlocks; block != nullptr; block = block->next) ++count;
  return count;
}

template <class T>
typename CSyncList<T>::Entries::Node& CSyncList<T>::Entries::TakeNode() {
  if (m_pFree == nullptr) {
    auto block = std::make_unique<Block>();
    for (Node& node : block->nodes) {
      node.next = m_pFree;
      m_pFree = &node;
    }
    block->next = m_pBlocks;
    m_pBlocks = block.release();
  }
  Node& node = *m_pFree;
  m_pFree = node.next;
  return node;
}

// The entries that are still in the nodes go with them.
template <class T>
void CSyncList<T>::Entries::FreeBlocks() {
  m_pFree = nullptr;
  while (m_pBlocks != nullptr) {
    const std::unique_ptr<Block> block(m_pBlocks);
    m_pBlocks = block->next;
  }
}

}  // namespace vgl
