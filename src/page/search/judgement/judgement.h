// How sure it is that a quadrilateral is a sheet of paper.
#pragma once

#include "page/search/judgement/traits.h"

#include <span>
#include <string_view>

namespace doccam::page {

// What a trait adds to the logarithm of the odds that it is a sheet.
struct Weight {
    std::string_view name;
    double Traits::*trait;
    double weight;
};

std::span<const Weight> weights();

// The logarithm of the odds that it is one; below 0 it is none.
double surenessOf(const Traits& traits);

// From 0 to 1.
double confidenceOf(double sureness);

} // namespace doccam::page
