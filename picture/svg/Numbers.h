#pragma once

#include <cmath>
#include <cstdint>
#include <string>

namespace svgtool::picture {

/// Numbers in their shortest form, on a grid of decimals that no picture shows.
class Numbers
{
public:
    /// @param unitsPerPixel  the grid is finer than a thousandth of a pixel
    explicit Numbers(double unitsPerPixel)
    {
        double step = 1;
        while (m_decimals < 6 && step > unitsPerPixel * 0.002) {
            ++m_decimals;
            step /= 10;
        }
        m_scale = std::pow(10.0, m_decimals);
    }

    /// The place on the grid.
    int64_t steps(double value) const
    {
        constexpr double kFar = 9e15;
        const double scaled = std::floor(value * m_scale + 0.5);
        return std::isfinite(scaled) ? int64_t(std::fmin(std::fmax(scaled, -kFar), kFar)) : 0;
    }
    /// Appends a number of the grid, without a zero before the point.
    void append(std::string &out, int64_t steps) const;
    void append(std::string &out, double value) const { append(out, steps(value)); }

private:
    int m_decimals = 0;
    double m_scale = 1;
};

} // namespace svgtool::picture
