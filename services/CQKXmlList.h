#pragma once
// The doubly linked lists of the document tree: a node's attributes and its children.
//
// A walk keeps a position, an opaque handle to a cell of the list. As with the classic
// GetNext idiom, reading an entry moves the position on to the next cell, so that the entry
// just returned may be deleted while the walk goes on.
#include <cstdint>

// The opaque position of a walk; null once the walk has passed the last entry.
struct tagQKXmlPosition;
using QKXMLPOS = tagQKXmlPosition*;

template <typename T>
class CQKXmlList
{
public:
    CQKXmlList() = default;
    CQKXmlList(const CQKXmlList&) = delete;
    CQKXmlList& operator=(const CQKXmlList&) = delete;
    // The list owns its cells, not the entries they point to.
    ~CQKXmlList() { RemoveAll(); }

    int64_t GetCount() const { return nCount; }
    bool IsEmpty() const { return nCount == 0; }
    QKXMLPOS GetHeadPosition() const { return ToPos(pHead); }
    QKXMLPOS GetTailPosition() const { return ToPos(pTail); }
    T* GetHead() const { return pHead ? pHead->pItem : nullptr; }
    T* GetTail() const { return pTail ? pTail->pItem : nullptr; }

    // The entry at pos; pos moves to the next cell (null after the last).
    T* GetNext(QKXMLPOS& pos) const
    {
        Cell* p = FromPos(pos);
        pos = ToPos(p->pNext);
        return p->pItem;
    }
    // The entry at pos; pos moves to the previous cell (null before the first).
    T* GetPrev(QKXMLPOS& pos) const
    {
        Cell* p = FromPos(pos);
        pos = ToPos(p->pPrev);
        return p->pItem;
    }
    T* GetAt(QKXMLPOS pos) const { return FromPos(pos)->pItem; }

    QKXMLPOS AddTail(T* pItem)
    {
        Cell* p = new Cell { pItem, pTail, nullptr };
        if (pTail)
            pTail->pNext = p;
        else
            pHead = p;
        pTail = p;
        ++nCount;
        return ToPos(p);
    }
    // The position of the first cell holding pItem, or null.
    QKXMLPOS Find(const T* pItem) const
    {
        for (Cell* p = pHead; p; p = p->pNext) {
            if (p->pItem == pItem)
                return ToPos(p);
        }
        return nullptr;
    }
    void RemoveAt(QKXMLPOS pos)
    {
        Cell* p = FromPos(pos);
        (p->pPrev ? p->pPrev->pNext : pHead) = p->pNext;
        (p->pNext ? p->pNext->pPrev : pTail) = p->pPrev;
        delete p;
        --nCount;
    }
    void RemoveAll()
    {
        while (pHead) {
            Cell* p = pHead;
            pHead = p->pNext;
            delete p;
        }
        pTail = nullptr;
        nCount = 0;
    }

private:
    struct Cell
    {
        T* pItem;
        Cell* pPrev;
        Cell* pNext;
    };
    static QKXMLPOS ToPos(Cell* p) { return reinterpret_cast<QKXMLPOS>(p); }
    static Cell* FromPos(QKXMLPOS pos) { return reinterpret_cast<Cell*>(pos); }

    Cell* pHead { nullptr };
    Cell* pTail { nullptr };
    int64_t nCount { 0 };
};
