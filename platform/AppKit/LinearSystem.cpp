#include "LinearSystem.h"

#include <algorithm>
#include <cmath>

namespace {

/// Below this a coefficient, or in points a contradiction, is a rounding error.
constexpr double kPivotTolerance = 1e-6;

} // namespace

double LinearExpression::coefficientOf(std::size_t variable) const
{
    const auto term = std::lower_bound(_terms.begin(), _terms.end(), variable,
        [](const Term& candidate, std::size_t number) { return candidate.variable < number; });
    return term != _terms.end() && term->variable == variable ? term->coefficient : 0;
}

void LinearExpression::add(std::size_t variable, double coefficient)
{
    const auto term = std::lower_bound(_terms.begin(), _terms.end(), variable,
        [](const Term& candidate, std::size_t number) { return candidate.variable < number; });
    if (term == _terms.end() || term->variable != variable) {
        if (coefficient != 0)
            _terms.insert(term, {variable, coefficient});
        return;
    }
    term->coefficient += coefficient;
    if (std::fabs(term->coefficient) < kPivotTolerance)
        _terms.erase(term);
}

void LinearExpression::add(const LinearExpression& other, double factor)
{
    for (const Term& term : other._terms)
        add(term.variable, term.coefficient * factor);
    _constant += other._constant * factor;
}

void LinearExpression::substitute(std::size_t variable, const LinearExpression& value)
{
    const double coefficient = coefficientOf(variable);
    if (coefficient == 0)
        return;
    std::erase_if(_terms, [variable](const Term& term) { return term.variable == variable; });
    add(value, coefficient);
}

LinearExpression LinearSystem::reduced(const LinearExpression& expression) const
{
    LinearExpression result(expression.constant());
    for (const auto& [variable, coefficient] : expression.terms()) {
        if (_values[variable])
            result.add(*_values[variable], coefficient);
        else
            result.add(variable, coefficient);
    }
    return result;
}

bool LinearSystem::add(const LinearExpression& expression)
{
    const LinearExpression equation = reduced(expression);
    if (equation.terms().empty()) // larger numbers have larger rounding errors
        return std::fabs(equation.constant())
            <= kPivotTolerance * std::max(1.0, std::fabs(expression.constant()));

    const auto pivot = *std::max_element(equation.terms().begin(), equation.terms().end(),
        [](const LinearExpression::Term& a, const LinearExpression::Term& b) {
            return std::fabs(a.coefficient) < std::fabs(b.coefficient);
        });
    LinearExpression value;
    value.add(equation, -1 / pivot.coefficient);
    value.add(pivot.variable, 1); // which leaves 0 of it
    for (auto& other : _values) {
        if (other)
            other->substitute(pivot.variable, value);
    }
    _values[pivot.variable] = std::move(value);
    return true;
}

double LinearSystem::valueOf(const LinearExpression& expression) const
{
    return reduced(expression).constant();
}
