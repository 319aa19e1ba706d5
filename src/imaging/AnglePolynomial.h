#pragma once

#include <array>
#include <cstddef>

// An arctangent for vectors: how it is approximated, and how far off the result may be.
//
// Angles are counted in units of which a full turn has 255, as in an angle image: a pixel's byte is the whole
// part of its angle. Within an eighth of a turn the angle is z P(z²) with z = the shorter leg / the longer
// one; the others follow by subtraction from 63.75, 127.5 and 255.

/// Coefficients of P, the lowest first: those whose greatest error between 0 and 1 is least (Remez), rounded.
inline constexpr std::array<float, 6> kAnglePolynomial{
    40.5835859F, -13.4993347F, 7.85474152F, -4.72511202F, 2.13666725F, -0.475615487F};

/// z P(z²) is never further than this from the angle, where nothing is rounded.
inline constexpr double kPolynomialError = 7e-5;

/// What rounding to float adds at most, u = 2^-24 being the relative error of one operation.
constexpr double angleRoundingError()
{
    constexpr double u = 0x1p-24;
    // z is off by u z, and the angle grows by 255 / 2π / (1 + z²) times that: at most 20.3 u.
    double error = 20.3 * u;
    // By Horner's rule, term i is multiplied i times by a rounded z² and goes through i + 1 sums at most;
    // then z is multiplied with all.
    for (std::size_t i = 0; i < kAnglePolynomial.size(); ++i) {
        const double size = kAnglePolynomial[i] < 0 ? -kAnglePolynomial[i] : kAnglePolynomial[i];
        error += static_cast<double>(3 * i + 2) * u * size;
    }
    // The differences from 63.75, 127.5 and 255 are each rounded at their own size.
    return error + (64 + 128 + 256) / 2.0 * u;
}

/// An angle further than this from every whole number has the whole part of the exact one.
inline constexpr float kAngleDoubt = 0x1p-13F;
/// The arithmetic in double that defines the exact angle is off by less than 1e-12.
static_assert(kPolynomialError + angleRoundingError() + 1e-12 < kAngleDoubt);
