#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The compression of SHA-256, which works whole blocks into the hash words. For the files of the
/// digest only.
namespace sha256 {

constexpr size_t kBlockBytes = 64;

using Hash = std::array<uint32_t, 8>;

/// Works `count` blocks into `hash`.
using ProcessBlocks = void(Hash& hash, const uint8_t* blocks, size_t count);

/// In plain C++, on every processor.
ProcessBlocks ProcessBlocksPlainly;

/// By the SHA instructions of the processor that this runs on; nullptr where it has none.
ProcessBlocks* ProcessBlocksByInstructions();

}  // namespace sha256
