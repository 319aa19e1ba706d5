#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// What a fuzzer runs: a function that checks what the library makes of any bytes and ends the process when a
/// promise is broken, and inputs to start from.
struct FuzzTarget {
    void (*run)(const std::uint8_t* data, std::size_t size);
    std::vector<std::string> (*seeds)();
};

/// The words of a libFuzzer dictionary in this folder: one quoted string per line, with `\xNN`, `\\` and
/// `\"`.
std::vector<std::string> dictionaryWords(const std::string& name);

/// The input with a few bytes replaced, words inserted, and pieces cut out or repeated.
std::string damaged(std::string input, const std::vector<std::string>& words, std::mt19937& random);

/// Runs the target on each seed as it is, and then `runs` times on a damaged one.
void runDamagedSeeds(
    const FuzzTarget& target, const std::vector<std::string>& words, unsigned randomSeed, int runs);
