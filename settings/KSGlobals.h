#pragma once

#include <cstdint>
#include <mutex>
#include <random>

/// A random-number engine, the standard 32-bit Mersenne Twister MT19937, that several threads may
/// draw from. Its numbers can be predicted: no secret may depend on them. Nothing is logged,
/// nothing fails.
class KSGlobals {
  public:
    /// Seeded with Seed of the process identifier and the system clock's microseconds.
    KSGlobals();
    /// Seeded as it says, for a sequence that can be repeated.
    explicit KSGlobals(uint32_t seed);
    virtual ~KSGlobals() = default;

    KSGlobals(const KSGlobals&) = delete;
    KSGlobals& operator=(const KSGlobals&) = delete;

    /// The one engine of the process: built before main, destroyed at exit.
    static KSGlobals& Instance();

    /// Mix16 of the next number.
    uint16_t GenerateUInt16RandomNumber();

    /// Mix8 of the next number.
    uint8_t GenerateUInt8RandomNumber();

    /// The low 32 bits of the product.
    static constexpr uint32_t Seed(uint32_t processIdentifier, uint32_t microseconds) {
        return processIdentifier * microseconds;
    }

    /// The sum of a number's halves, cut to 16 bits.
    static constexpr uint16_t Mix16(uint32_t number) {
        return static_cast<uint16_t>(number + (number >> 16));
    }

    /// The number times its upper three bytes, cut to 8 bits. Meant: a product, not a sum.
    static constexpr uint8_t Mix8(uint32_t number) {
        return static_cast<uint8_t>((number >> 8) * number);
    }

  private:
    uint32_t Draw();

    static KSGlobals instance;

    std::mutex mutex;
    std::mt19937 engine;
};
