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

    TEST_P(ReaderOnLittleEndian, ChangesNothing)
    {
        Block source = pattern();
        Block destination = pattern(0x80);
        EXPECT_EQ(GetParam().call(destination.data(), source.data()),
                  GetParam().kind == Kind::InPlace);
        EXPECT_EQ(destination, pattern(0x80));
        EXPECT_EQ(source, pattern());
    }

    /// The trace lines of one call.
    std::vector<std::string> traceOf(const ReaderCase &reader)
    {
        std::vector<std::string> lines;
        Block source = pattern();
        Block destination = pattern();
        const std::string level = CLogSystem::theRootInstance->getLevel();
        basic_logging::tracelevel.setSink([&](const std::string &line) { lines.push_back(line); });
        CLogSystem::theRootInstance->setLevel("TRACE");
        reader.call(destination.data(), source.data());
        CLogSystem::theRootInstance->setLevel(level);
        basic_logging::tracelevel.setSink({});
        return lines;
    }

    /// @p line without its line number.
    std::string withoutNumber(const std::string &line)
    {
        return line.substr(0, line.find('\t') + 1) + line.substr(line.rfind('\t'));
    }

    TEST_P(ReaderOnLittleEndian, TracesUnderItsOwnName)
    {
        const std::vector<std::string> lines = traceOf(GetParam());
        const std::string name = GetParam().name;
        ASSERT_FALSE(lines.empty());
        // Quirk: the background-mode reader is silent, so what it asks comes first.
        const std::string first = name == "InitEMRSETBKMODE" ? "IsBigEndian" : name;
        EXPECT_EQ(withoutNumber(lines.front()), ".\\BEndTools.cpp\t\t Enter " + first + " ");
        EXPECT_EQ(withoutNumber(lines.back()), ".\\BEndTools.cpp\t\t Exit " + first + " ");
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

    TEST(Unaligned, HoldsTheLowWordFirst)
    {
        const Unaligned32 field = 0x12345678;
        EXPECT_EQ(field.words[0], 0x5678);
        EXPECT_EQ(field.words[1], 0x1234);
        EXPECT_EQ(field, 0x12345678u);
    }

} // namespace
} // namespace svgtool
