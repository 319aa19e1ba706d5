#pragma once

#include "CoreGraphics/pdf/PDFCalculatorOperations.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

/// The program of a PostScript calculator function, compiled to a flat list of instructions. Programs have
/// branches but no loops, so a run takes at most `size()` steps.
///
/// Runs are total. An operation without a result, such as a division by 0, gives 0; a stack of fewer values
/// than an operator takes, or of more than 100, ends the run with all results 0.
class PDFCalculator {
public:
    /// Compiles `{ … }`; what follows the last brace is ignored. Nothing for an unknown operator, for braces
    /// that do not match and for more than `kMaxInstructions`.
    static std::optional<PDFCalculator> compile(std::string_view program);

    static constexpr std::size_t kMaxInstructions = 50'000;

    /// Runs on a stack of the inputs, the last one on top, and takes the results from the top of the stack,
    /// the last one first.
    void run(std::span<const double> inputs, std::span<double> results) const;

    /// Number of instructions.
    std::size_t size() const { return _code.size(); }

private:
    class Compiler;

    enum class Kind : std::uint8_t { Push, Apply, Jump, JumpUnless };
    struct Instruction {
        Kind kind = Kind::Push;
        std::uint32_t target = 0;                   ///< index of the next instruction after a jump
        double number = 0;                          ///< what is pushed
        PDFCalculatorOperation operation = nullptr; ///< what is applied
    };

    std::vector<Instruction> _code;
};
