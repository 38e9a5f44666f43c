// A doubly linked list of directory entries, for code that collects tag entries one by one.
// The profile objects keep their own directory in fixed arrays and do not use it.
#pragma once

#include "profile/profile.h"

#include <cstdint>
#include <iterator>
#include <list>

template <class T> class LinkedList {
public:
    virtual ~LinkedList() = default;

    std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }

    // The i-th value counted from the head, or null when i is out of range.
    T* at(std::int32_t i) {
        if (i < 0 || i >= count())
            return nullptr;
        return &*std::next(items_.begin(), i);
    }
    bool get(T& value, std::int32_t i) {
        const T* item = at(i);
        if (item)
            value = *item;
        return item != nullptr;
    }

    bool peekHead(T& value) const { return peek(items_.front(), value); }
    bool peekTail(T& value) const { return peek(items_.back(), value); }
    void pushHead(const T& value) { items_.push_front(value); }
    void pushTail(const T& value) { items_.push_back(value); }
    bool popHead(T& value) {
        if (!peekHead(value))
            return false;
        items_.pop_front();
        return true;
    }
    bool popTail(T& value) {
        if (!peekTail(value))
            return false;
        items_.pop_back();
        return true;
    }
    void clear() { items_.clear(); }

private:
    bool peek(const T& end, T& value) const {
        if (items_.empty())
            return false;
        value = end;
        return true;
    }

    std::list<T> items_;
};

class iccTagList : public LinkedList<icTag> {};
