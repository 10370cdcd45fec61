#pragma once

#include "support/Conversion.h"
#include "support/EmfBuilder.h"

#include <gtest/gtest.h>

#include <ostream>

// The style texts in force before a file selects anything.
#define DEFAULT_STYLE "stroke=\"black\" stroke-width=\"1\" fill=\"none\" "
#define FALLBACK_STYLE " stroke=\"black\" stroke-width=\"1\" fill=\"none\""
#define DEFAULT_PEN "stroke=\"none\" stroke-width=\"1\"  fill=\"none\" "

namespace svgtool::test {

/// A whole EMF and the exact text between the head and the tail of its document.
struct EmfCase
{
    const char *name;
    EmfBuilder emf;
    const char *body;
};

inline void PrintTo(const EmfCase &emfCase, std::ostream *out)
{
    *out << emfCase.name;
}

class EmfBody : public testing::TestWithParam<EmfCase>
{
};

} // namespace svgtool::test
