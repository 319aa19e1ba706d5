#include "CoreGraphics/pdf/PDFCalculator.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

bool isSpace(char c)
{
    return c == ' ' || c == '\n' || c == '\r' || c == '\t' || c == '\f' || c == '\0';
}

/// Nothing when it is not a number in full.
std::optional<double> numberFrom(std::string_view token)
{
    if (token.starts_with('+'))
        token.remove_prefix(1);
    double number = 0;
    const char* const end = token.data() + token.size();
    const auto [rest, error] = std::from_chars(token.data(), end, number);
    if (error != std::errc() || rest != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

} // namespace

/// Translates a program token by token. A procedure is followed by the operator that runs it or not: the jump
/// over it is emitted in front, and its target filled in behind.
class PDFCalculator::Compiler {
public:
    Compiler(std::string_view program, std::vector<Instruction>& code)
        : _rest(program)
        , _code(code)
    {
    }

    bool compileProgram() { return nextToken() == "{" && compileBlock(0); }

private:
    /// Up to the closing brace.
    bool compileBlock(int depth)
    {
        constexpr int kMaxDepth = 32;
        if (depth > kMaxDepth)
            return false;
        for (;;) {
            const std::string_view token = nextToken();
            if (token == "}")
                return true;
            const bool isCompiled = token == "{" ? compileBranch(depth) : compileWord(token);
            if (!isCompiled || _code.size() > kMaxInstructions)
                return false;
        }
    }

    /// `{ … } if` or `{ … } { … } ifelse`, from behind the first brace.
    bool compileBranch(int depth)
    {
        const std::size_t over = emit({.kind = Kind::JumpUnless});
        if (!compileBlock(depth + 1))
            return false;
        const std::string_view token = nextToken();
        if (token == "if") {
            _code[over].target = std::uint32_t(_code.size());
            return true;
        }
        if (token != "{")
            return false;
        const std::size_t toEnd = emit({.kind = Kind::Jump});
        _code[over].target = std::uint32_t(_code.size());
        if (!compileBlock(depth + 1) || nextToken() != "ifelse")
            return false;
        _code[toEnd].target = std::uint32_t(_code.size());
        return true;
    }

    bool compileWord(std::string_view token)
    {
        if (const auto number = numberFrom(token)) {
            emit({.kind = Kind::Push, .number = *number});
            return true;
        }
        const PDFCalculatorOperation operation = findCalculatorOperation(token);
        if (operation)
            emit({.kind = Kind::Apply, .operation = operation});
        return operation != nullptr;
    }

    std::size_t emit(const Instruction& instruction)
    {
        _code.push_back(instruction);
        return _code.size() - 1;
    }

    /// Empty at the end.
    std::string_view nextToken()
    {
        skipSpaceAndComments();
        std::size_t length = 0;
        while (length < _rest.size() && !isSpace(_rest[length]) && !isDelimiter(_rest[length]))
            ++length;
        if (length == 0 && !_rest.empty())
            length = 1;
        const std::string_view token = _rest.substr(0, length);
        _rest.remove_prefix(length);
        return token;
    }

    void skipSpaceAndComments()
    {
        while (!_rest.empty() && (isSpace(_rest.front()) || _rest.front() == '%')) {
            if (_rest.front() == '%')
                _rest.remove_prefix(std::min(_rest.find_first_of("\r\n"), _rest.size()));
            else
                _rest.remove_prefix(1);
        }
    }

    static bool isDelimiter(char c) { return c == '{' || c == '}' || c == '%'; }

    std::string_view _rest;
    std::vector<Instruction>& _code;
};

std::optional<PDFCalculator> PDFCalculator::compile(std::string_view program)
{
    PDFCalculator calculator;
    if (!Compiler(program, calculator._code).compileProgram())
        return std::nullopt;
    calculator._code.shrink_to_fit();
    return calculator;
}

void PDFCalculator::run(std::span<const double> inputs, std::span<double> results) const
{
    PDFCalculatorStack stack;
    for (const double input : inputs)
        stack.push(input);
    for (std::size_t next = 0; next < _code.size() && !stack.hasFailed();) {
        const Instruction& instruction = _code[next++];
        switch (instruction.kind) {
        case Kind::Push:
            stack.push(instruction.number);
            break;
        case Kind::Apply:
            instruction.operation(stack);
            break;
        case Kind::Jump:
            next = instruction.target;
            break;
        case Kind::JumpUnless:
            if (stack.pop() == 0)
                next = instruction.target;
            break;
        }
    }
    const auto top = stack.top(std::int32_t(results.size()));
    if (stack.hasFailed())
        std::ranges::fill(results, 0.0);
    else
        std::ranges::transform(
            top, results.begin(), [](const PDFCalculatorStack::Value& value) { return value.number; });
}
