#pragma once

#include <Foundation/Foundation.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// The objects that a property list consists of, and what all its readers and writers need of them.

namespace propertylist {

/// A list may nest this deep, in either direction: a hostile one must not exhaust the stack,
/// neither here nor later when its objects are compared or released.
/// @param level  of a container, 1 for the root
void CheckLevel(unsigned level);

/// Uid: the reference of one object to another in a keyed archive. It is a type of its own in the
/// binary format, and everywhere else a dictionary with an integer for the one key "CF$UID".
enum class Kind { Array, Boolean, Data, Date, Dictionary, Integer, Real, String, Uid };

/// Throws for nil and for what no property list can hold.
Kind KindOf(id value);

/// The number of a Uid, or of what becomes one; its last 32 bits count.
std::uint32_t UidIn(NSDictionary* dictionary);
/// An instance of Kind::Uid.
NSDictionary* MakeUid(std::uint32_t uid);

/// Whether an integer is below zero.
bool IsNegative(NSNumber* integer);

/// The UTF-16 units of a string.
std::u16string TextOf(NSString* string);

/// A dictionary's entries in the order of their keys, so that equal lists are written alike.
std::map<std::u16string, id> EntriesOf(NSDictionary* dictionary);

/// Makes the objects of a list, mutable or not, autoreleased.
class Maker {
  public:
    explicit Maker(NSPropertyListMutabilityOptions options);

    bool MutableContainers() const { return mutableContainers_; }
    bool MutableLeaves() const { return mutableLeaves_; }

    NSString* Text(std::u16string_view text) const;
    NSData* Data(std::string_view bytes) const;
    NSArray* Array(const std::vector<id>& values) const;
    /// Of two entries with equal keys the later one counts. Keys are copied.
    NSDictionary* Dictionary(const std::vector<id>& keys, const std::vector<id>& values) const;
    /// Even when it is not a number.
    static NSDate* Date(double seconds);

  private:
    bool mutableContainers_;
    bool mutableLeaves_;
};

}  // namespace propertylist
