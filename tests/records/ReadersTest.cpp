// The readers as every host runs them today: the host is taken for little-endian.

#include "ReaderTable.h"

#include <CLogSystem.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace svgtool {
namespace {

    TEST(ByteOrder, HostIsLittleEndianAndScalarsBecomeZero)
    {
        EXPECT_FALSE(IsBigEndian());
        EXPECT_EQ(LE2BE_Word(0x1234), 0u);
        EXPECT_EQ(LE2BE_DWord(0x12345678), 0u);
        EXPECT_EQ(GetFloatFromBLOB("\x3F\x80\x00\x00"), 1.0f);
    }

    class ReaderOnLittleEndian : public testing::TestWithParam<ReaderCase>
    {
    };

    TEST_P(ReaderOnLittleEndian, ChangesNothingAndTracesUnderItsOwnName)
    {
        std::vector<std::string> lines;
        basic_logging::tracelevel.setSink([&](const std::string &line) {
            // Without the line number.
            lines.push_back(line.substr(0, line.find('\t') + 1) + line.substr(line.rfind('\t')));
        });
        CLogSystem::theRootInstance->setLevel("TRACE");
        Block source = pattern();
        Block destination = pattern(0x80);
        EXPECT_EQ(GetParam().call(destination.data(), source.data()),
                  GetParam().kind == Kind::InPlace);
        CLogSystem::theRootInstance->setLevel("INFO");
        basic_logging::tracelevel.setSink({});
        EXPECT_EQ(destination, pattern(0x80));
        EXPECT_EQ(source, pattern());

        const std::string name = GetParam().name;
        ASSERT_FALSE(lines.empty());
        // Quirk: the background-mode reader is silent, so what it asks comes first.
        const std::string first = name == "InitEMRSETBKMODE" ? "IsBigEndian" : name;
        EXPECT_EQ(lines.front(), ".\\BEndTools.cpp\t\t Enter " + first + " ");
        EXPECT_EQ(lines.back(), ".\\BEndTools.cpp\t\t Exit " + first + " ");
    }

    INSTANTIATE_TEST_SUITE_P(Fixed, ReaderOnLittleEndian, testing::ValuesIn(kReaders));
    INSTANTIATE_TEST_SUITE_P(Arrays, ReaderOnLittleEndian, testing::ValuesIn(kArrayReaders));

    TEST(ExtLogPen, BecomesZerosWithoutAHostTest)
    {
        Block pen = pattern();
        Block expected = pattern();
        std::fill_n(expected.begin(), 24, '\0');
        EXPECT_TRUE(kExtLogPenReader.call(pen.data(), nullptr));
        EXPECT_EQ(pen, expected);
    }

} // namespace
} // namespace svgtool
