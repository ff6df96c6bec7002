#pragma once

// Texts of units taken apart into factors, and put together again.

#include "embedded/units/unit_database.hpp"

namespace units2::core::detail {

/// Factors of a unit's text: {N, 1}, {m, 1}, {s, -2} for "N*m/s^2". A text that holds anything but symbols, products,
/// whole exponents and brackets, or that the database reads in another way, is one factor in brackets: {(1000 Ohm), 1}.
Factors factors_of(const std::string& text);

/// Adds `factor` to the power of `exponent`; factors of equal text are joined, what cancels is left out.
void multiply(Factors& factors, const std::string& factor, int exponent);

/// "N*m/s^2", "(kOhm*F)^2", "W/(m^2*K)"; "1" without factors.
std::string text_of(const Factors& factors);

}  // namespace units2::core::detail
