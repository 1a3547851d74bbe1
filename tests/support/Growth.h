#pragma once

#include <algorithm>
#include <functional>
#include <limits>

/// How many times as long the larger of two amounts takes, in the first of five rounds that stays below
/// a limit, or the best of them: a machine that is busy with something else slows down some rounds, but
/// never makes what is quadratic look linear.
/// @param seconds  of processor time that an amount takes
inline double Growth(const std::function<double(size_t)>& seconds, size_t few, size_t many,
                     double limit) {
    double least = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 5 && least >= limit; ++round) {
        const double ofFew = seconds(few);
        least = std::min(least, seconds(many) / ofFew);
    }
    return least;
}
