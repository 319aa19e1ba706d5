#include "imaging/AnglePolynomial.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

// The error bounds of the vectorized arctangent. All angles are in units of 1/255 of a full turn.

namespace {

constexpr double kUnits = 255 / (2 * std::numbers::pi);

/// z P(z²) without rounding to float.
double polynomial(double z)
{
    double sum = 0;
    for (std::size_t i = kAnglePolynomial.size(); i-- > 0;)
        sum = sum * z * z + static_cast<double>(kAnglePolynomial[i]);
    return z * sum;
}

} // namespace

TEST(AnglePolynomial, DiffersFromTheArctangentByAtMostItsError)
{
    // Between two points a function deviates from its chord by at most its second derivative x the square of
    // their distance / 8. That of the arctangent is at most 9 / (8 √3); that of z P(z²), the sum of its
    // terms'.
    double secondDerivative = kUnits * 9 / (8 * std::sqrt(3));
    for (std::size_t i = 0; i < kAnglePolynomial.size(); ++i)
        secondDerivative +=
            std::abs(static_cast<double>(kAnglePolynomial[i])) * static_cast<double>((2 * i + 1) * (2 * i));
    constexpr int kPoints = 100'000;
    const double between = secondDerivative / (8.0 * kPoints * kPoints);
    EXPECT_LT(between, 1e-8);

    double greatest = 0;
    for (int i = 0; i <= kPoints; ++i) {
        const double z = static_cast<double>(i) / kPoints;
        greatest = std::max(greatest, std::abs(polynomial(z) - kUnits * std::atan(z)));
    }
    EXPECT_LE(greatest + between, kPolynomialError);
}

TEST(AnglePolynomial, SinglePrecisionAnglesAreWithinTheErrorBound)
{
    // The vectors' operations, one pixel at a time, on a lattice of legs up to the longest side's half.
    double greatest = 0;
    for (int longer = 1; longer <= 16383; longer += 1 + longer / 300) {
        for (int shorter = 0; shorter <= longer; shorter += 1 + longer / 400) {
            const float z = static_cast<float>(shorter) / static_cast<float>(longer);
            const float z2 = z * z;
            float sum = 0;
            for (std::size_t i = kAnglePolynomial.size(); i-- > 0;)
                sum = sum * z2 + kAnglePolynomial[i];
            const float angle = 255 - (127.5F - (63.75F - z * sum));
            const double exact = 191.25 - kUnits * std::atan2(shorter, longer);
            greatest = std::max(greatest, std::abs(static_cast<double>(angle) - exact));
        }
    }
    EXPECT_LT(greatest, kPolynomialError + angleRoundingError());
    EXPECT_GT(greatest, kPolynomialError / 2); // the bound is tight
}
