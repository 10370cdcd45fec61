#include "cli/Options.h"

#include "cli/Files.h"
#include "picture/api/Options.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <thread>

namespace svgtool {

namespace {

    struct UsageError
    {
        std::string problem;
    };

    // All of it fits one screen of 80 columns.
    const char kHead[] = R"(Usage: metafile2svg [options] FILE|FOLDER...
Converts Windows metafiles (EMF and WMF, also packed by gzip) to SVG 1.1: the
pictures that GDI would paint. FILE may be - for standard input; of a FOLDER
the .emf, .wmf, .emz and .wmz files in it are taken.
)";

    const char kTail[] = R"(
Without -o a single file goes to standard output; the files of a folder, or
several, get documents beside them, chart.emf.svg for chart.emf, unless these
are there and newer.

  metafile2svg chart.emf >chart.svg
  metafile2svg -r drawings -o svg/            a tree of folders into another
  metafile2svg --check --report -r drawings   what would be missing, and why

Exit status: 0 all converted, 1 some not, 2 wrong usage, 3 all, but some are
damaged, 4 with --strict: all, but some are damaged or lack drawing.
)";

    // One option: its letter, or a blank, its name and, if it takes one, that of its value. A name
    // with neither letter nor help is a heading.
    struct Option
    {
        char letter;
        std::string_view name;
        std::string_view value;
        std::string_view help;
        bool isHeading() const { return help.empty(); }
    };

    constexpr Option kOptions[] = {
        { ' ', "Documents", "", "" },
        { 'o', "output", "OUT", "file (.svg, .svgz, -) or folder (there, or NAME/)" },
        { 'r', "recursive", "", "convert what is in the folders of a folder, too" },
        { 'j', "jobs", "N", "files at the same time; by default as many as cores" },
        { ' ', "force", "", "convert also what has a newer document" },
        { ' ', "check", "", "do everything but write documents" },
        { ' ', "fail-fast", "", "stop after the first file that fails" },
        { ' ', "Pictures", "", "" },
        { ' ', "width", "W", "pixels; the height follows if it is not given" },
        { ' ', "height", "H", "pixels" },
        { ' ', "scale", "S", "size as a multiple of the picture's own" },
        { ' ', "dpi", "D", "pixels to an inch of the picture; by default 96" },
        { ' ', "text", "HOW", "characters, or outlines: alike everywhere" },
        { ' ', "prefer", "KIND", "of two pictures in a file: wmf; emf, not EMF+" },
        { ' ', "id-prefix", "P", "what ids begin with; by default a hash" },
        { ' ', "limit", "MB", "no larger documents; by default 300" },
        { ' ', "exact", "", "the library's exact text, and not a picture" },
        { ' ', "Telling", "", "" },
        { ' ', "info", "", "tell format, size, bounds, records; write nothing" },
        { ' ', "report", "", "tell what became of the records, and why" },
        { ' ', "json", "", "tell it as JSON" },
        { ' ', "gallery", "PAGE", "show all results on PAGE.html" },
        { ' ', "strict", "", "status 4 if drawing is lost or a file is damaged" },
        { 'q', "quiet", "", "no progress, summary, nor what pictures lack" },
        { ' ', "dump-skipped", "FILE", "list records that the exact text lacks" },
        { ' ', "log-level", "LEVEL", "with --exact: fatal, warning, info or trace" },
        { 'h', "help", "", "show this" },
        { 'V', "version", "", "show the version, and those of libraries" },
    };

    std::string quoted(std::string_view name)
    {
        return '\'' + std::string(name) + '\'';
    }

    // Arguments as options and what is none. Letters may share a dash, and the last of them may be
    // followed by its value: -qj4.
    class Arguments
    {
    public:
        explicit Arguments(const std::vector<std::string> &arguments)
        {
            bool hasEnded = false;
            for (size_t i = 0; i < arguments.size(); ++i) {
                const std::string_view argument = arguments[i];
                if (hasEnded || argument.size() < 2 || argument[0] != '-')
                    m_inputs.emplace_back(argument);
                else if (argument == "--")
                    hasEnded = true;
                else if (argument[1] == '-')
                    readName(argument.substr(2), arguments, i);
                else
                    readLetters(argument.substr(1), arguments, i);
            }
        }

        const std::vector<std::string> &inputs() const { return m_inputs; }
        bool isGiven(std::string_view name) const { return !valuesOf(name).empty(); }

        // The value of an option that may be given once.
        std::string value(std::string_view name) const
        {
            const std::vector<std::string> &values = valuesOf(name);
            if (values.size() > 1)
                throw UsageError{ "--" + std::string(name) + " is given more than once" };
            if (values.empty())
                return {};
            if (values[0].empty())
                throw UsageError{ "the value of --" + std::string(name) + " is empty" };
            return values[0];
        }

    private:
        void readName(std::string_view text, const std::vector<std::string> &arguments, size_t &i)
        {
            const size_t equals = text.find('=');
            const std::string_view name = text.substr(0, equals);
            const Option *option = std::find_if(
                    std::begin(kOptions), std::end(kOptions),
                    [name](const Option &each) { return each.name == name && !each.isHeading(); });
            if (option == std::end(kOptions))
                throw UsageError{ "Unknown option " + quoted(name) };
            if (option->value.empty() && equals != text.npos)
                throw UsageError{ "Unexpected value after --" + std::string(name) };
            if (equals != text.npos)
                add(*option, text.substr(equals + 1));
            else
                add(*option, option->value.empty() ? "" : nextOf(*option, arguments, i));
        }

        void readLetters(std::string_view letters, const std::vector<std::string> &arguments,
                         size_t &i)
        {
            for (size_t at = 0; at < letters.size(); ++at) {
                const Option *option = std::find_if(
                        std::begin(kOptions), std::end(kOptions),
                        [&](const Option &each) { return each.letter == letters[at]; });
                if (option == std::end(kOptions) || letters[at] == ' ')
                    throw UsageError{ "Unknown option " + quoted(letters.substr(at, 1)) };
                if (option->value.empty()) {
                    add(*option, "");
                    continue;
                }
                std::string_view rest = letters.substr(at + 1);
                if (!rest.empty() && rest[0] == '=')
                    rest.remove_prefix(1);
                const bool isInside = at + 1 < letters.size();
                return add(*option, isInside ? rest : nextOf(*option, arguments, i));
            }
        }

        static std::string_view nextOf(const Option &option,
                                       const std::vector<std::string> &arguments, size_t &i)
        {
            if (i + 1 == arguments.size())
                throw UsageError{ "Missing value after --" + std::string(option.name) };
            return arguments[++i];
        }

        void add(const Option &option, std::string_view value)
        {
            m_values[size_t(&option - kOptions)].emplace_back(value);
        }

        const std::vector<std::string> &valuesOf(std::string_view name) const
        {
            size_t i = 0;
            while (kOptions[i].name != name)
                ++i;
            return m_values[i];
        }

        std::vector<std::string> m_inputs;
        std::array<std::vector<std::string>, std::size(kOptions)> m_values;
    };

    // The options in a column, what they do in another.
    std::string optionsText()
    {
        constexpr size_t kColumn = 26;
        std::string text;
        for (const Option &option : kOptions) {
            if (option.isHeading()) {
                text += '\n' + std::string(option.name) + ":\n";
                continue;
            }
            std::string line = "      --";
            if (option.letter != ' ')
                line = { ' ', ' ', '-', option.letter, ',', ' ', '-', '-' };
            line += option.name;
            if (!option.value.empty())
                line += " <" + std::string(option.value) + '>';
            line.resize(std::max(kColumn, line.size() + 1), ' ');
            text += line + std::string(option.help) + '\n';
        }
        return text;
    }

    template<class Number>
    bool readNumber(const std::string &text, Number &value)
    {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        return error == std::errc() && end == text.data() + text.size();
    }

    double positiveNumber(const Arguments &arguments, std::string_view name, double fallback)
    {
        const std::string text = arguments.value(name);
        if (text.empty())
            return fallback;
        double value = 0;
        if (!readNumber(text, value) || !(value > 0 && value <= 1e6))
            throw UsageError{ "--" + std::string(name)
                              + " needs a number above 0 and up to 1000000" };
        return value;
    }

    bool isOutlined(const Arguments &arguments)
    {
        const std::string text = arguments.value("text");
        if (!text.empty() && text != "characters" && text != "outlines")
            throw UsageError{ "--text needs characters or outlines" };
        return text == "outlines";
    }

    PictureSource source(const Arguments &arguments)
    {
        const std::string text = arguments.value("prefer");
        if (text.empty())
            return PictureSource::Best;
        if (text != "wmf" && text != "emf")
            throw UsageError{ "--prefer can be wmf or emf" };
        return text == "emf" ? PictureSource::Emf : PictureSource::Wmf;
    }

    int threadCount(const Arguments &arguments)
    {
        constexpr int kMostThreads = 1024;
        const std::string text = arguments.value("jobs");
        if (text.empty())
            return int(std::clamp(std::thread::hardware_concurrency(), 1U, unsigned(kMostThreads)));
        int value = 0;
        if (!readNumber(text, value) || value < 1 || value > kMostThreads)
            throw UsageError{ "--jobs needs a number from 1 to " + std::to_string(kMostThreads) };
        return value;
    }

    // The name tells a page from a metafile that stands where the page is forgotten.
    bool isPage(const std::string &path)
    {
        return endingOf(path) == "html" || endingOf(path) == "htm";
    }

    void rejectContradictions(const Arguments &arguments, const Options &options)
    {
        const auto given = [&arguments](std::string_view name) { return arguments.isGiven(name); };
        const auto has = [&options](const std::string &input) {
            return std::count(options.inputs.begin(), options.inputs.end(), input) > 0;
        };
        const struct
        {
            bool isWrong;
            const char *problem;
        } rules[] = {
            { options.inputs.empty(), "no input file or folder is given" },
            { has(""), "a file name is empty" },
            { options.inputs.size() > 1 && has(kStandardStream),
              "- is standard input and cannot be one of several inputs" },
            { options.isExact
                      && (given("width") || given("height") || given("scale") || given("dpi")),
              "--exact leaves the size as it is" },
            { options.isExact && given("text"), "--exact leaves text as it is" },
            { options.isExact && given("prefer"), "--exact always takes the file's own records" },
            { options.isExact && given("id-prefix"), "--exact leaves ids as they are" },
            { options.isExact && given("limit"), "--exact leaves nothing out for its length" },
            { options.isExact && options.isStrict,
              "--exact leaves out what it leaves out, so --strict has no use" },
            { given("dpi") && given("scale"), "--dpi and --scale exclude each other" },
            { options.isJson && options.report == Options::Report::None,
              "--json needs --info or --report" },
            { given("info") && given("report"), "--info and --report exclude each other" },
            { given("info") && given("output"), "--info writes no documents, so -o has no use" },
            { !options.gallery.empty() && !isPage(options.gallery),
              "--gallery needs the name of a page, which ends in .html" },
        };
        PictureOptions prefixed;
        prefixed.idPrefix = options.idPrefix;
        if (!isValid(prefixed))
            throw UsageError{ "--id-prefix needs a letter, and up to 63 letters, digits, - and _" };
        for (const auto &rule : rules) {
            if (rule.isWrong)
                throw UsageError{ rule.problem };
        }
        static constexpr std::string_view kLevels[] = { "", "fatal", "warning", "info", "trace" };
        if (std::count(std::begin(kLevels), std::end(kLevels), options.logLevel) == 0)
            throw UsageError{ "there is no log level " + options.logLevel };
    }

    // A CSS pixel is this part of an inch.
    constexpr double kPixelsPerInch = 96;

    Options optionsOf(const Arguments &arguments)
    {
        const auto given = [&arguments](std::string_view name) { return arguments.isGiven(name); };
        Options options;
        options.inputs = arguments.inputs();
        options.output = arguments.value("output");
        options.dumpFile = arguments.value("dump-skipped");
        options.logLevel = arguments.value("log-level");
        options.gallery = arguments.value("gallery");
        options.keepsDocuments = !options.gallery.empty();
        if (given("info"))
            options.report = Options::Report::Facts;
        else if (given("report"))
            options.report = Options::Report::Records;
        options.isJson = given("json");
        options.isExact = given("exact");
        options.isRecursive = given("recursive");
        options.isForced = given("force");
        options.isQuiet = given("quiet");
        options.failsFast = given("fail-fast");
        options.isStrict = given("strict");
        options.writes = !given("check") && !given("info");
        options.threads = threadCount(arguments);
        options.width = positiveNumber(arguments, "width", 0);
        options.height = positiveNumber(arguments, "height", 0);
        options.scale = given("dpi") ? positiveNumber(arguments, "dpi", 1) / kPixelsPerInch
                                     : positiveNumber(arguments, "scale", 1);
        options.idPrefix = arguments.value("id-prefix");
        options.limit = positiveNumber(arguments, "limit", options.limit);
        options.isOutlined = isOutlined(arguments);
        options.source = source(arguments);
        rejectContradictions(arguments, options);
        return options;
    }

    Options printing(std::string text)
    {
        Options options;
        options.action = Options::Action::PrintText;
        options.text = std::move(text);
        return options;
    }

} // namespace

Options parseArguments(const std::vector<std::string> &words)
{
    try {
        const Arguments arguments(words);
        if (arguments.isGiven("help"))
            return printing(kHead + optionsText() + kTail);
        if (arguments.isGiven("version"))
            return printing("metafile2svg " + std::string(kVersion)
                            + "\nbuilt with Qt " QT_VERSION_STR ", " METAFILE2SVG_LIBRARIES "\n");
        return optionsOf(arguments);
    } catch (const UsageError &error) {
        Options options;
        options.action = Options::Action::RejectUsage;
        options.text = error.problem;
        return options;
    }
}

} // namespace svgtool
