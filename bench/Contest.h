#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>

/// Registers one contestant of a row as "ROW/WHO". All contestants of a row do the same work; one
/// that gives another result than `expected` fails the bench.
/// @param bytes  what one turn works through; 0 where turns are counted
/// @param work   one turn: called with the string that receives the result, already of its size
template <typename Work>
void Enter(const std::string& row, const std::string& who, size_t bytes,
           const std::string& expected, Work work) {
    const auto run = [=](benchmark::State& state) mutable {
        std::string out(expected.size(), '\0');
        for (auto turn : state) {
            (void)turn;
            work(out);
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        }
        if (out != expected) {
            state.SkipWithError("wrong result");
        }
        const int64_t turns = static_cast<int64_t>(state.iterations());
        state.SetItemsProcessed(turns);
        state.SetBytesProcessed(turns * static_cast<int64_t>(bytes));
    };
    benchmark::RegisterBenchmark((row + "/" + who).c_str(), run);
}

/// Random bytes, the same ones in every process.
inline std::string RandomBytes(size_t length) {
    std::mt19937 engine(static_cast<uint32_t>(length));
    std::string bytes(length, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(engine());
    }
    return bytes;
}

inline const uint8_t* Data(const std::string& bytes) {
    return reinterpret_cast<const uint8_t*>(bytes.data());
}
inline uint8_t* Data(std::string& bytes) {
    return reinterpret_cast<uint8_t*>(&bytes[0]);
}

// One function a file of rows.
void EnterCiphers();
void EnterDigests();
void EnterBase64();
void EnterLogs();
void EnterSettings();
