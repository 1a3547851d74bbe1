#pragma once

#include <Foundation/Foundation.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The objects that a property list consists of, and what all its readers and writers need of them.

namespace propertylist {

/// A list may nest this deep, in either direction: a hostile one must not exhaust the stack,
/// neither here nor later when its objects are compared or released.
constexpr unsigned kDeepestNesting = 512;

/// What is wrong, as a sentence that lives as long as the process; nullptr if nothing is.
using Problem = const char*;
constexpr Problem kTooDeep = "The property list is nested too deep, or contains itself.";

/// Uid: the reference of one object to another in a keyed archive. It is a type of its own in the
/// binary format, and everywhere else a dictionary with an integer for the one key "CF$UID".
enum class Kind { Array, Boolean, Data, Date, Dictionary, Integer, Real, String, Uid, Unsuitable };

/// Unsuitable: nil, or nothing that a property list can hold.
Kind KindOf(id value);

/// The number of a Uid, or of what becomes one; its last 32 bits count.
std::uint32_t UidIn(NSDictionary* dictionary);
/// An instance of Kind::Uid that the caller owns.
NSDictionary* NewUid(std::uint32_t uid);

/// Whether an integer is below zero.
bool IsNegative(NSNumber* integer);

/// @param text  gets the string's UTF-16 units
void GetText(NSString* string, std::u16string& text);

/// An entry of a dictionary.
struct Entry {
    std::u16string key;
    id value;
};

/// A dictionary's entries in the order of their keys, so that equal lists are written alike.
/// @return false when a key is no string
bool GetEntries(NSDictionary* dictionary, std::vector<Entry>& entries);

/// Owns a reference to each of some objects.
class References {
  public:
    References() = default;
    References(const References&) = delete;
    References& operator=(const References&) = delete;
    ~References();

    /// @return false when there is nothing to add
    bool Add(id owned);
    void Reserve(std::size_t count) { objects_.reserve(count); }
    void Reverse();
    const id* data() const { return objects_.data(); }
    std::size_t size() const { return objects_.size(); }

  private:
    std::vector<id> objects_;
};

/// Makes the objects of a list, mutable or not. The caller owns what the functions return.
class Maker {
  public:
    explicit Maker(NSPropertyListMutabilityOptions options);

    bool MutableLeaves() const { return mutableLeaves_; }

    NSString* NewText(std::u16string_view text) const;
    /// A character for each byte.
    NSString* NewLatin1(std::string_view bytes) const;
    /// One leading byte-order mark is dropped; nil if the bytes are not UTF-8.
    NSString* NewUtf8(std::string_view bytes) const;
    NSData* NewData(std::string_view bytes) const;
    NSArray* NewArray(const References& values) const;
    /// Of two entries with equal keys the later one counts.
    NSDictionary* NewDictionary(const References& keys, const References& values) const;
    /// Even when it is not a number.
    static NSDate* NewDate(double seconds);

  private:
    NSString* NewBroken(std::u16string_view text) const;

    bool mutableContainers_;
    bool mutableLeaves_;
};

}  // namespace propertylist
