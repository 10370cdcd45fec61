#include "core/records/EmfPlusRecordTypes.h"
#include "picture/play/RecordSupport.h"

#include <cstdio>

// Prints a line for each type of records: format, name, what is lost without it, what is done with
// it, and why not more.

using namespace svgtool;

static void print(const char *format, const std::vector<picture::RecordSupport> &list,
                  MetafileFormat types)
{
    static constexpr const char *kLosses[] = { "drawing", "state", "hint" };
    static constexpr const char *kOutcomes[] = { "drawn", "approximated", "skipped", "neutral" };
    for (const auto &[type, best] : list)
        std::printf("%s\t%s\t%s\t%s\t%s\n", format, recordName(types, type).c_str(),
                    kLosses[size_t(findRecordType(types, type)->loss)],
                    kOutcomes[size_t(best.outcome)], best.why);
}

int main()
{
    print("EMF", picture::emfSupport(), MetafileFormat::Emf);
    print("EMF+", picture::emfPlusSupport(), MetafileFormat::Emf);
    print("WMF", picture::wmfSupport(), MetafileFormat::Wmf);
}
