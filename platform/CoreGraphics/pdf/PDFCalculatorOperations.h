#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

/// The operands of a running PostScript calculator function: at most 100 numbers and Booleans.
class PDFCalculatorStack {
public:
    struct Value {
        double number = 0;
        bool isBoolean = false;
    };

    void push(double number) { push(Value{number, false}); }
    void pushBoolean(bool value) { push(Value{value ? 1.0 : 0.0, true}); }
    void push(Value value)
    {
        if (_size == _values.size())
            _hasFailed = true;
        else
            _values[_size++] = value;
    }
    Value popValue()
    {
        if (_size > 0)
            return _values[--_size];
        _hasFailed = true;
        return {};
    }
    double pop() { return popValue().number; }
    /// Truncated; saturated to 32 bits. 0 for NaN.
    std::int32_t popInteger()
    {
        const double number = pop();
        if (std::isnan(number))
            return 0;
        constexpr double low = std::numeric_limits<std::int32_t>::min();
        constexpr double high = std::numeric_limits<std::int32_t>::max();
        return std::int32_t(std::clamp(number, low, high));
    }
    /// The `count` values on top; fails, and returns nothing, when there are fewer.
    std::span<Value> top(std::int32_t count)
    {
        if (count < 0 || std::size_t(count) > _size) {
            _hasFailed = true;
            return {};
        }
        return std::span(_values).subspan(_size - std::size_t(count), std::size_t(count));
    }
    std::size_t size() const { return _size; }
    bool hasFailed() const { return _hasFailed; }

private:
    std::array<Value, 100> _values; // as many as PDF asks of an interpreter
    std::size_t _size = 0;
    bool _hasFailed = false;
};

/// An operator that takes its operands from the stack and pushes its results.
using PDFCalculatorOperation = void (*)(PDFCalculatorStack&);

/// The operator of that name, such as "add"; null when there is none. Braces, `if` and `ifelse` are none.
PDFCalculatorOperation findCalculatorOperation(std::string_view name);
