// KeyIndex.h: a read-only hash index from the distinct keys of a loaded table to what a
// look-up of each answers. Built once at load; the keys are copied into one buffer and
// each slot keeps its key's hash, so a look-up reads the slot and, on a hash match, the
// key's characters, nothing else.
#pragma once

#include <framework/QanString.h>

#include <cstddef>
#include <cwchar>
#include <functional>
#include <utility>
#include <vector>

namespace Framework::Internal {

template <class Value>
class KeyIndex {
public:
    // keys must be distinct; they are copied.
    explicit KeyIndex(const std::vector<std::pair<QanStringViewT<wchar_t>, Value>>& keys = {}) {
        std::size_t characters = 0;
        for (const auto& key : keys)
            characters += key.first.size();
        names.reserve(characters);
        std::size_t count = 2;
        while (count < 2 * keys.size())
            count *= 2;
        slots.resize(count);
        const std::size_t mask = count - 1;
        for (const auto& [key, value] : keys) {
            const std::size_t hash = Hash(key);
            std::size_t at = hash & mask;
            while (slots[at].used)
                at = (at + 1) & mask;
            slots[at] = {hash, names.size(), key.size(), true, value};
            names.insert(names.end(), key.begin(), key.end());
        }
    }

    // The value of key, or null when key is not one of the keys.
    const Value* Find(QanStringViewT<wchar_t> key) const {
        const std::size_t hash = Hash(key);
        const std::size_t mask = slots.size() - 1;
        for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
            const Slot& slot = slots[at];
            if (!slot.used)
                return nullptr;
            if (slot.hash == hash && slot.length == key.size() &&
                (key.empty() ||
                 std::wmemcmp(names.data() + slot.offset, key.data(), key.size()) == 0))
                return &slot.value;
        }
    }

private:
    struct Slot {
        std::size_t hash = 0;
        std::size_t offset = 0;
        std::size_t length = 0;
        bool used = false;
        Value value{};
    };

    static std::size_t Hash(QanStringViewT<wchar_t> key) {
        return std::hash<QanStringViewT<wchar_t>>{}(key);
    }

    std::vector<Slot> slots;
    std::vector<wchar_t> names;
};

} // namespace Framework::Internal
