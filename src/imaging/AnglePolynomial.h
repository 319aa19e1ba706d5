#pragma once

#include <array>
#include <cstddef>

// The polynomial that approximates the arctangent in vector instructions, and a bound of its error.
//
// Angles are in units of 1/255 of a full turn, as in an angle image: a pixel's byte is its angle, truncated.
// Within an eighth of a turn the angle is z P(z²), where z is the shorter leg divided by the longer one;
// other angles follow by subtraction from 63.75, 127.5 and 255.

/// Coefficients of P, lowest first: the minimax polynomial on 0 to 1 (by the Remez algorithm), rounded to
/// float.
inline constexpr std::array<float, 6> kAnglePolynomial{
    40.5835859F, -13.4993347F, 7.85474152F, -4.72511202F, 2.13666725F, -0.475615487F};

/// Bound of the error of z P(z²) in exact arithmetic.
inline constexpr double kPolynomialError = 7e-5;

/// Bound of the error that rounding to float adds, where u = 2^-24 is the relative error of one operation.
constexpr double angleRoundingError()
{
    constexpr double u = 0x1p-24;
    // z is off by u z, and the angle grows by 255 / 2π / (1 + z²) times that: at most 20.3 u.
    double error = 20.3 * u;
    // By Horner's rule, term i is multiplied i times by a rounded z² and takes part in i + 1 sums at most;
    // then the whole is multiplied by z.
    for (std::size_t i = 0; i < kAnglePolynomial.size(); ++i) {
        const double size = kAnglePolynomial[i] < 0 ? -kAnglePolynomial[i] : kAnglePolynomial[i];
        error += static_cast<double>(3 * i + 2) * u * size;
    }
    // The differences from 63.75, 127.5 and 255 are each rounded relative to their size.
    return error + (64 + 128 + 256) / 2.0 * u;
}

/// An approximate angle that is further than this from every integer truncates like the exact one.
inline constexpr float kAngleDoubt = 0x1p-13F;
/// The double-precision arithmetic that defines the exact angle has an error of less than 1e-12.
static_assert(kPolynomialError + angleRoundingError() + 1e-12 < kAngleDoubt);
