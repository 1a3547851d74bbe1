#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace propertylist {

/// The numbers of the leaves of a list, found by the leaves' bytes, which stand elsewhere. A number
/// takes 5 to 11 bytes here; std::unordered_set would take 40.
class LeafTable {
  public:
    using Number = std::size_t;

    /// @param number   a new number, below 2^32 - 1
    /// @param bytesOf  gives the bytes of a leaf by its number, also of the new one
    /// @return the number that has the same bytes; the new one, which is then added, when none has
    template <typename BytesOf>
    Number FindOrAdd(Number number, BytesOf bytesOf) {
        if (number >= kFree) {
            @throw @"The property list has too many objects.";
        }
        if ((used_ + 1) * 4 > slots_.size() * 3) {
            Grow(bytesOf);
        }
        Slot& slot = SlotOf(bytesOf(number), bytesOf);
        if (slot == kFree) {
            slot = static_cast<Slot>(number);
            ++used_;
        }
        return slot;
    }

  private:
    using Slot = std::uint32_t;
    static constexpr Slot kFree = UINT32_MAX;

    /// The slot that holds a leaf, or the free one where it belongs.
    template <typename BytesOf>
    Slot& SlotOf(std::string_view bytes, BytesOf bytesOf) {
        std::size_t at = std::hash<std::string_view>{}(bytes) % slots_.size();
        while (slots_[at] != kFree && bytesOf(slots_[at]) != bytes) {
            at = (at + 1) % slots_.size();
        }
        return slots_[at];
    }

    template <typename BytesOf>
    void Grow(BytesOf bytesOf) {
        std::vector<Slot> old(2 * slots_.size(), kFree);
        old.swap(slots_);
        for (const Slot number : old) {
            if (number != kFree) {
                SlotOf(bytesOf(number), bytesOf) = number;
            }
        }
    }

    std::vector<Slot> slots_ = std::vector<Slot>(64, kFree);
    std::size_t used_ = 0;
};

}  // namespace propertylist
