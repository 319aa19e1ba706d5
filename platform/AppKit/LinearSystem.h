#pragma once

#include <cstddef>
#include <optional>
#include <vector>

/// A sum of variables times coefficients, and a constant.
class LinearExpression {
public:
    struct Term {
        std::size_t variable;
        double coefficient;
    };

    explicit LinearExpression(double constant = 0)
        : _constant(constant)
    {
    }

    double constant() const { return _constant; }
    /// By ascending variable; no coefficient is 0.
    const std::vector<Term>& terms() const { return _terms; }
    /// 0 for a variable that does not occur.
    double coefficientOf(std::size_t variable) const;

    void add(std::size_t variable, double coefficient);
    void add(const LinearExpression& other, double factor);
    /// Puts an expression in the place of a variable.
    void substitute(std::size_t variable, const LinearExpression& value);

private:
    std::vector<Term> _terms;
    double _constant;
};

/// Linear equations that are added one by one. Each leaves the earlier ones true: one that contradicts them
/// is refused.
class LinearSystem {
public:
    explicit LinearSystem(std::size_t variables)
        : _values(variables)
    {
    }

    /// Adds "expression = 0". False when this contradicts what was added before; nothing changes then.
    bool add(const LinearExpression& expression);
    /// The value of an expression whose variables the equations determine. A variable that is not determined
    /// counts as 0.
    double valueOf(const LinearExpression& expression) const;

private:
    LinearExpression reduced(const LinearExpression& expression) const;

    /// What each variable that an equation was solved for is equal to, in terms of the others.
    std::vector<std::optional<LinearExpression>> _values;
};
