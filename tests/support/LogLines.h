#pragma once

#include <CLogSystem.h>
#include <gtest/gtest.h>

#include <string>

namespace svgtool::test {

/// What @p call writes to @p output while @p level is the level, each line without its number,
/// which changes with every edit, and with a line feed.
template<class Call>
std::string linesOf(basic_logging::LevelOutput &output, const std::string &level, Call call)
{
    std::string lines;
    output.setSink([&lines](const std::string &line) {
        const auto number = line.find('\t') + 1;
        const auto end = line.find('\t', number);
        EXPECT_EQ(line.find_first_not_of("0123456789", number), end) << line;
        lines += line.substr(0, number) + line.substr(end) + '\n';
    });
    CLogSystem::theRootInstance->setLevel(level);
    call();
    CLogSystem::theRootInstance->setLevel("INFO");
    output.setSink({});
    return lines;
}

} // namespace svgtool::test
