// Compares the font engine with rows of recorded numbers, which metrics_rows.py writes: they come
// on stdin, each mismatch and the count go to stdout. The status is 1 if there was a mismatch and
// 2 if a row cannot be read or there is none.

#include "platform/FontEngine.h"

#include <QString>

#include <charconv>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

namespace svgtool {

/// Reads the fields of one row, each behind the other.
class Row
{
public:
    explicit Row(const std::string &line) : m_line(line), m_fields(line) { }

    const std::string &line() const { return m_line; }

    std::string word()
    {
        std::string field;
        if (!(m_fields >> field))
            throw std::runtime_error("field missing");
        return field;
    }

    qint32 number()
    {
        const auto read = numberIfAny();
        return read ? *read : throw std::runtime_error("number missing");
    }

    /// Nothing for a number that was not recorded.
    std::optional<qint32> numberIfAny()
    {
        const std::string field = word();
        if (field == "*")
            return std::nullopt;
        return parsed<qint32>(field, 10);
    }

    QString text()
    {
        const std::string field = word();
        if (field[0] != '=')
            throw std::runtime_error("no text: " + field);
        QString units;
        for (size_t i = 1; i < field.size(); ++i) {
            if (field[i] != '\\') {
                units += QChar(static_cast<ushort>(field[i]));
                continue;
            }
            units += QChar(parsed<ushort>(field.substr(i, 6).erase(0, 2), 16));
            i += 5;
        }
        return units;
    }

    void end()
    {
        std::string field;
        if (m_fields >> field)
            throw std::runtime_error("one field too many: " + field);
    }

private:
    template<class Number>
    static Number parsed(const std::string &field, int base)
    {
        Number number{};
        const char *end = field.data() + field.size();
        const auto result = std::from_chars(field.data(), end, number, base);
        if (result.ec != std::errc{} || result.ptr != end)
            throw std::runtime_error("no number: " + field);
        return number;
    }

    std::string m_line;
    std::istringstream m_fields;
};

/// What a section of the rows came to.
struct Tally
{
    int rows = 0;
    int numbers = 0;
    int mismatches = 0;
};

class Comparison
{
public:
    void compare(const std::string &line);
    /// Prints what was compared.
    /// @return the exit status
    int finish() const;

private:
    void compareMetrics(Row &row);
    void compareExtent(Row &row);
    void compareSubstitute(Row &row);
    void compareGlyphs(Row &row);
    void expect(const Row &row, const char *what, std::optional<qint32> expected, qint32 actual);

    std::map<std::string, Tally> m_sections;
    Tally *m_section = nullptr;
};

void Comparison::expect(const Row &row, const char *what, std::optional<qint32> expected,
                        qint32 actual)
{
    if (!expected)
        return;
    ++m_section->numbers;
    if (*expected == actual)
        return;
    ++m_section->mismatches;
    std::cout << "MISMATCH: " << what << " is " << actual << ", not " << *expected << ": "
              << row.line() << '\n';
}

void Comparison::compareMetrics(Row &row)
{
    const QString face = row.text();
    const qint32 weight = row.number();
    const qint32 height = row.number();
    const FontMetrics alone = fontMetrics(face, weight, height);
    const FontMetrics withText = textExtent({}, face, weight, height).font;

    static constexpr struct
    {
        const char *name;
        qint32 FontMetrics::*number;
    } kNumbers[] = {
        { "height", &FontMetrics::height },
        { "ascent", &FontMetrics::ascent },
        { "descent", &FontMetrics::descent },
        { "internalLeading", &FontMetrics::internalLeading },
        { "externalLeading", &FontMetrics::externalLeading },
        { "averageWidth", &FontMetrics::averageWidth },
    };
    for (const auto &[name, number] : kNumbers) {
        const std::optional<qint32> expected = row.numberIfAny();
        expect(row, name, expected, alone.*number);
        if (withText.*number != alone.*number)
            expect(row, "number with a text", alone.*number, withText.*number);
    }
}

void Comparison::compareExtent(Row &row)
{
    const QString face = row.text();
    const qint32 weight = row.number();
    const qint32 height = row.number();
    const TextExtent extent = textExtent(row.text(), face, weight, height);
    expect(row, "width", row.numberIfAny(), extent.width);
    expect(row, "height", row.numberIfAny(), extent.height);
}

// The engine does not tell which face it selected, so a text is measured in both.
void Comparison::compareSubstitute(Row &row)
{
    QString text;
    for (const char letter : std::string("The quick brown fox"))
        text += QChar(static_cast<ushort>(letter));
    const QString asked = row.text();
    const QString selected = row.text();
    const qint32 weight = row.number();
    const qint32 height = row.number();
    const TextExtent expected = textExtent(text, selected, weight, height);
    const TextExtent actual = textExtent(text, asked, weight, height);
    expect(row, "width", expected.width, actual.width);
    expect(row, "height", expected.height, actual.height);
}

void Comparison::compareGlyphs(Row &row)
{
    const QString face = row.text();
    const qint32 weight = row.number();
    const std::wstring actual = textOfGlyphs(row.text(), face, weight).toStdWString();
    const std::wstring expected = row.text().toStdWString();
    expect(row, "whether the text is right", 1, actual == expected ? 1 : 0);
}

void Comparison::compare(const std::string &line)
{
    Row row(line);
    m_section = &m_sections[row.word()];
    ++m_section->rows;
    const std::string kind = row.word();
    if (kind == "metrics")
        compareMetrics(row);
    else if (kind == "extent")
        compareExtent(row);
    else if (kind == "substitute")
        compareSubstitute(row);
    else if (kind == "glyphs")
        compareGlyphs(row);
    else if (kind == "dpi")
        expect(row, "resolution", row.number(), horizontalDpi());
    else
        throw std::runtime_error("unknown kind: " + kind);
    row.end();
}

int Comparison::finish() const
{
    Tally all;
    for (const auto &[name, section] : m_sections) {
        std::cout << name << ": " << section.rows << " rows, " << section.numbers << " numbers, "
                  << section.mismatches << " mismatches\n";
        all.rows += section.rows;
        all.numbers += section.numbers;
        all.mismatches += section.mismatches;
    }
    std::cout << "all: " << all.rows << " rows, " << all.numbers << " numbers, " << all.mismatches
              << " mismatches\n";
    if (all.numbers == 0)
        return 2;
    return all.mismatches == 0 ? 0 : 1;
}

} // namespace svgtool

int main()
{
    svgtool::Comparison comparison;
    std::string line;
    while (std::getline(std::cin, line)) {
        try {
            comparison.compare(line);
        } catch (const std::exception &error) {
            std::cout << "unreadable row, " << error.what() << ": " << line << '\n';
            return 2;
        }
    }
    return comparison.finish();
}
