#pragma once

#include "records/BEndTools.h"
#include "records/Bytes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <string>

namespace svgtool {

enum class Kind { InPlace, InPlaceOrFalse, Copying };

/// A reader and what it does to the bytes on a big-endian host, as a list of the parts of its
/// structure: "4" a field of that many bytes, reversed; "4x5" five of them; "_8" bytes it leaves;
/// "=4" bytes copied as they stand; "z2" zeros; "d2" a field of the destination itself, reversed.
struct ReaderCase
{
    const char *name;
    bool (*call)(char *destination, char *source);
    Kind kind;
    const char *layout;
};

inline void PrintTo(const ReaderCase &reader, std::ostream *out)
{
    *out << reader.name;
}

template<class Record>
constexpr Kind kindOf(bool (*)(Record *))
{
    return Kind::InPlace;
}
template<class Record>
constexpr Kind kindOf(bool (*)(Record *, const Record *))
{
    return Kind::Copying;
}
template<class Record>
bool callReader(bool (*reader)(Record *), char *bytes, char *)
{
    return reader(overlay<Record>(bytes));
}
template<class Record>
bool callReader(bool (*reader)(Record *, const Record *), char *destination, char *source)
{
    return reader(overlay<Record>(destination), overlay<Record>(source));
}

template<auto Reader>
constexpr ReaderCase reader(const char *name, const char *layout, Kind kind = kindOf(Reader))
{
    return { name, [](char *to, char *from) { return callReader(Reader, to, from); }, kind,
             layout };
}

struct alignas(8) Block : std::array<char, 512>
{
};

/// Counts up from 1, with the high bit of every byte turned over on request.
inline Block pattern(int turnedBits = 0)
{
    Block block;
    for (std::size_t i = 0; i < block.size(); ++i)
        block[i] = static_cast<char>((i + 1) ^ static_cast<unsigned>(turnedBits));
    return block;
}

/// What a reader of @p layout makes of @p destination.
inline Block expectedAfter(const char *layout, Block destination, const Block &source)
{
    std::istringstream parts(layout);
    auto to = destination.begin();
    auto from = source.begin();
    for (std::string part; parts >> part;) {
        const char kind = part.find_first_of("_=zd") == 0 ? part[0] : ' ';
        char *end = part.data() + (kind == ' ' ? 0 : 1);
        const auto width = std::strtol(end, &end, 10);
        const auto repeats = *end == 'x' ? std::strtol(end + 1, nullptr, 10) : 1;
        for (long i = 0; i < repeats; ++i, to += width, from += width) {
            if (kind == ' ')
                std::reverse_copy(from, from + width, to);
            else if (kind == '=')
                std::copy_n(from, width, to);
            else if (kind == 'z')
                std::fill_n(to, width, '\0');
            else if (kind == 'd')
                std::reverse(to, to + width);
        }
    }
    return destination;
}

inline constexpr bool (*kPointReader)(POINTS *, const POINTS *) = InitWMRPOINTS;
inline constexpr bool (*kPointYXReader)(PointYX *, const PointYX *) = InitWMRPOINTS;

// clang-format off
inline constexpr ReaderCase kReaders[] = {
    reader<InitEnhMetaHeader>("InitEnhMetaHeader", "2 z2 4 4x4 4x4 4x4 2x2 4x3 4x2 4x2"),
    reader<InitEMR>("InitEMR", "4 4"),
    reader<InitEMRMETARECORD>("InitEMRMETARECORD", "4 4"),
    reader<InitPOINTL>("InitPOINTL", "4 4"),
    reader<InitPOINT>("InitPOINT", "4 4"),
    reader<InitPOINTS>("InitPOINTS", "2 2"),
    reader<InitRECT>("InitRECT", "4x4"),
    reader<InitRECTL>("InitRECTL", "4x4"),
    reader<InitSIZEL>("InitSIZEL", "4 4"),
    reader<InitEMRMOVETO>("InitEMRMOVETO", "_8 4 4"),
    reader<InitLINETO>("InitLINETO", "_8 4 4"),
    reader<InitEMRRECTANGLE>("InitEMRRECTANGLE", "_8 4x4"),
    reader<InitEMRELLIPSE>("InitEMRELLIPSE", "_8 4x4"),
    reader<InitEMRROUNDRECT>("InitEMRROUNDRECT", "_8 4x4 4x2"),
    reader<InitEMRARC>("InitEMRARC", "_8 4x4 4x2 4x2"),
    reader<InitEMRANGLEARC>("InitEMRANGLEARC", "_8 4x2 4 4 4"),
    reader<InitEMRCOLOR>("InitEMRCOLOR", "_8 4"),
    reader<InitEMRSELECTOBJECT>("InitEMRSELECTOBJECT", "_8 4"),
    reader<InitEMRDELETEOBJECT>("InitEMRDELETEOBJECT", "_8 4"),
    reader<InitEMRMAPMODE>("InitEMRMAPMODE", "_8 4"),
    reader<InitEMRORIGIN>("InitEMRORIGIN", "_8 4 4"),
    reader<InitEMREXT>("InitEMREXT", "_8 4 4"),
    reader<InitEMRSETTEXTALIGN>("InitEMRSETTEXTALIGN", "_8 4"),
    reader<InitEMRSETBKMODE>("InitEMRSETBKMODE", "_8 4"),
    reader<InitLOGBRUSH>("InitLOGBRUSH", "4 4 4"),
    reader<InitEMRCREATEBRUSHINDIRECT>("InitEMRCREATEBRUSHINDIRECT", "_8 4 4x3"),
    reader<InitEMREXTCREATEPEN>("InitEMREXTCREATEPEN", "_8 4x5 4x6"),
    reader<InitEMRLOGPEN>("InitEMRLOGPEN", "4 4x2 4"),
    reader<InitEMRCREATEPEN>("InitEMRCREATEPEN", "_8 4 4x4"),
    reader<InitEMRTEXT>("InitEMRTEXT", "4x2 4 4 4 4x4 4"),
    reader<InitEMREXTTEXTOUTA>("InitEMREXTTEXTOUTA", "_8 4x4 4 4 4 4x2 4 4 4 4x4 4"),
    reader<InitEMRSMALLTEXTOUT>("InitEMRSMALLTEXTOUT", "_8 4x2 4 4 4 4 4"),
    reader<InitXFORM>("InitXFORM", "4x6"),
    reader<InitBITMAPHEADER>("InitBITMAPHEADER", "4x3 2x2 4x6"),
    reader<InitBITMAPINFO>("InitBITMAPINFO", "4x3 2x2 4x6"),
    reader<InitEMRBITBLT>("InitEMRBITBLT", "4 4 4x4 4x4 4 4x2 4x6 4 4 4x4"),
    reader<InitEMRSTRETCHBLT>("InitEMRSTRETCHBLT", "_8 4x4 4x4 4 4x2 4x6 4 4 4x4 4x2"),
    reader<InitEMRMASKBLT>("InitEMRMASKBLT", "_8 4x4 4x4 4 4x2 4x6 4 4 4x4 4x2 4 4x4"),
    reader<InitEMRTRANSPARENTBLT>("InitEMRTRANSPARENTBLT", "_8 4x4 4x4 4 4x2 4x6 4 4 4x4 4x2"),
    reader<InitEMRSTRETCHDIBITS>("InitEMRSTRETCHDIBITS", "4 4 4x4 4x14"),
    reader<InitLOGFONTW>("InitLOGFONTW", "4x5 _8 2x32"),
    reader<InitEXTLOGFONTW>("InitEXTLOGFONTW", "4x5 _8 2x32 2x64 2x32 4x4 _4 4 _12"),
    reader<InitEMREXTCREATEFONTINDIRECTW>("InitEMREXTCREATEFONTINDIRECTW",
                                          "4 4 4 4x5 _8 2x32 2x64 2x32 4x4 _4 4 _12"),
    reader<InitEMRFILLRGN>("InitEMRFILLRGN", "_8 4x4 4 4"),
    reader<InitEMRFRAMERGN>("InitEMRFRAMERGN", "_8 4x4 4 4 4x2"),
    reader<InitEMREXTSELECTCLIPRGN>("InitEMREXTSELECTCLIPRGN", "_8 4 4"),
    reader<Init_RGNDATAHEADER>("Init_RGNDATAHEADER", "4x4 4x4"),
    reader<Init_RGNDATA>("Init_RGNDATA", "4x4 4x4"),
    reader<InitPlaceableMetaHeader>("InitPlaceableMetaHeader", "4 2 2x4 2 4 2"),
    reader<InitWindowsMetaHeader>("InitWindowsMetaHeader", "2 2 2 4 2 4 2"),
    reader<InitWMR>("InitWMR", "4 2"),
    reader<InitMETARECORD>("InitMETARECORD", "2 z2 2"),
    reader<kPointReader>("InitWMRPOINTS", "2 2"),
    reader<kPointYXReader>("InitWMRPOINTS", "2 2"),
    reader<InitRECT16>("InitRECT16", "2x4"),
    reader<InitWMRLINETO>("InitWMRLINETO", "_6 2 2"),
    reader<InitWMRSETVIEWPORTORGEX>("InitWMRSETVIEWPORTORGEX", "_6 2 2"),
    reader<InitWMRELLIPSE>("InitWMRELLIPSE", "_6 2x4"),
    reader<InitLOGPEN16>("InitLOGPEN16", "2 2x2 4"),
    reader<InitWMRCREATEPEN>("InitWMRCREATEPEN", "_6 2 2x2 4"),
    reader<InitLOGBRUSH16>("InitLOGBRUSH16", "2 4 2"),
    reader<InitWMRCREATEBRUSHINDIRECT>("InitWMRCREATEBRUSHINDIRECT", "_6 2 4 2"),
    reader<InitFONTSPEC>("InitFONTSPEC", "=4 d2x3"),
    reader<InitWMREXTCREATEFONTINDIRECT>("InitWMREXTCREATEFONTINDIRECT", "_6 =4 d2x3"),
    reader<InitWMRSELECTOBJECT>("InitWMRSELECTOBJECT", "_6 2"),
    reader<InitWMREXTTEXTOUT>("InitWMREXTTEXTOUT", "_6 2 2 4"),
    reader<InitWMRPATBLT>("InitWMRPATBLT", "_6 4 2x4"),
    reader<InitWMRBITBLT>("InitWMRBITBLT", "_6 4 2x6 _2 2", Kind::InPlaceOrFalse),
    reader<InitWMRSTRETCHBLT>("InitWMRSTRETCHBLT", "_6 4 2x9", Kind::InPlaceOrFalse),
    reader<InitWMRDIBSTRETCHBLT>("InitWMRDIBSTRETCHBLT", "_6 4 2x8", Kind::InPlaceOrFalse),
};

// An array follows these, so no pattern can stand for their counts; and one that is a case apart
// on a little-endian host.
inline constexpr ReaderCase kArrayReaders[] = {
    reader<InitEMRPOLYGON>("InitEMRPOLYGON", nullptr),
    reader<InitEMRPOLYGON16>("InitEMRPOLYGON16", nullptr),
    reader<InitEMRPOLYDRAW16>("InitEMRPOLYDRAW16", nullptr),
    reader<InitEMRPOLYPOLYGON>("InitEMRPOLYPOLYGON", nullptr),
    reader<InitEMRPOLYPOLYGON16>("InitEMRPOLYPOLYGON16", nullptr),
    reader<InitWMRPOLYLINE>("InitWMRPOLYLINE", nullptr),
    reader<InitWMRPOLYPOLYLINE>("InitWMRPOLYPOLYLINE", nullptr),
};
inline constexpr ReaderCase kExtLogPenReader = reader<InitEXTLOGPEN>("InitEXTLOGPEN", "4x6");
// clang-format on
static_assert(std::size(kReaders) + std::size(kArrayReaders) + 1 == 54 + 23 + 1);

} // namespace svgtool
