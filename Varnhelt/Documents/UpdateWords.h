#pragma once

#include "Descriptions/YesNo.h"
#include "Frwk_DataTypesUtility.h"
#include "ZkComn_Platform.h"
#include "ZkComn_Registry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

/** The words of a local update description; all of them with case. */
namespace Varnhelt::UpdateWords {

/** The types of values. */
enum Type : std::uint32_t
{
    TypeUint32,
    TypeUint64,
    TypeString,
    TypeBinary,
};

/** What an entry does. */
enum Action : std::uint32_t
{
    ActionCreate,
    ActionAppend,
    ActionWrite,
    ActionRemove,
};

inline constexpr std::wstring_view g_svYes = g_aYesNo[0].svText;
inline constexpr std::wstring_view g_svNo = g_aYesNo[1].svText;
/** A condition that every machine meets. */
inline constexpr std::wstring_view g_svAll = L"all";

inline constexpr Frwk::Word g_aType[] = {
    {L"uint32", TypeUint32}, {L"uint64", TypeUint64}, {L"string", TypeString}, {L"binary", TypeBinary}};
inline constexpr Frwk::Word g_aAction[] = {
    {L"create", ActionCreate}, {L"append", ActionAppend}, {L"write", ActionWrite}, {L"remove", ActionRemove}};
inline constexpr Frwk::Word g_aView[] = {{L"eModeDefault", ZkCommon::Storage::ViewDefault},
                                         {L"eMode32bit", ZkCommon::Storage::View32},
                                         {L"eMode64bit", ZkCommon::Storage::View64}};
inline constexpr Frwk::Word g_aPlatform[] = {
    {L"xp32", ZkCommon::Platform::OsXp32},
    {L"xp64", ZkCommon::Platform::OsXp64},
    {L"xp32or64", ZkCommon::Platform::OsXp32Or64},
    {L"vista32", ZkCommon::Platform::OsVista32},
    {L"vista64", ZkCommon::Platform::OsVista64},
    {L"vista32or64", ZkCommon::Platform::OsVista32Or64},
    {L"seven32", ZkCommon::Platform::OsSeven32},
    {L"seven64", ZkCommon::Platform::OsSeven64},
    {L"seven32or64", ZkCommon::Platform::OsSeven32Or64},
    {L"xporlater", ZkCommon::Platform::OsXpOrLater},
    {L"vistaorlater", ZkCommon::Platform::OsVistaOrLater},
    {L"sevenorlater", ZkCommon::Platform::OsSevenOrLater},
};
/** An edition, by the second letter of the product's number. */
inline constexpr Frwk::Word g_aEdition[] = {{L"qmr", L'I'}, {L"qmrpro", L'E'}, {L"lum", L'B'}};
/** The edition of a product that has no number. */
inline constexpr std::wstring_view g_svUnknownEdition = L"unknown";

/** A condition that two editions meet. */
struct EditionPair
{
    std::wstring_view svWord;
    std::wstring_view svFirst;
    std::wstring_view svSecond;
};
inline constexpr EditionPair g_aEditionPair[] = {{L"lumorqmr", L"lum", L"qmr"}, {L"qmrorpro", L"qmr", L"qmrpro"}};

/** A language, by the product's flag for it; the first is that of every flag that is not listed. */
inline constexpr Frwk::Word g_aLanguage[] = {
    {L"en_us", 1},     {L"tw", 2},      {L"ja", 4},      {L"cn", 8},      {L"de", 32},
    {L"fr", 64},       {L"es", 128},    {L"pt", 256},    {L"it", 512},    {L"sa", 1024},
    {L"en_eu", 2048},  {L"pl", 4096},   {L"ru", 8192},   {L"nl", 16384},  {L"es_sa", 32768},
    {L"en_gb", 65536}, {L"sv", 131072}, {L"no", 262144}, {L"da", 524288}, {L"fr_ca", 1048576},
};

/** "all", and after it the words of a table. */
template <std::size_t uSize>
consteval std::array<Frwk::Word, uSize + 1> WithAll(const Frwk::Word (&_aWord)[uSize])
{
    std::array<Frwk::Word, uSize + 1> aAll{{{g_svAll, 0}}};
    std::copy(std::begin(_aWord), std::end(_aWord), aAll.begin() + 1);
    return aAll;
}

// What conditions may be: words that no machine meets are in none of them.
inline constexpr Frwk::Word g_aProductCondition[] = {
    {g_svAll, 0},  {g_aEditionPair[0].svWord, 0}, {g_aEditionPair[1].svWord, 0}, g_aEdition[0], g_aEdition[1],
    g_aEdition[2], {g_svUnknownEdition, 0},
};
inline constexpr auto g_aLanguageCondition = WithAll(g_aLanguage);
inline constexpr auto g_aPlatformCondition = WithAll(g_aPlatform);
static_assert(Frwk::IsDistinct(g_aType) && Frwk::IsDistinct(g_aAction) && Frwk::IsDistinct(g_aView));
static_assert(Frwk::IsDistinct(g_aPlatform) && Frwk::IsDistinct(g_aEdition) && Frwk::IsDistinct(g_aLanguage));

inline constexpr Frwk::WordTable g_stType{g_aType, {}};
inline constexpr Frwk::WordTable g_stAction{g_aAction, {}};
inline constexpr Frwk::WordTable g_stYesNo{g_aYesNo, {}};
inline constexpr Frwk::WordTable g_stView{g_aView, {.ulUnknownText = ZkCommon::Storage::ViewDefault}};
inline constexpr Frwk::WordTable g_stPlatform{g_aPlatform, {}};
inline constexpr Frwk::WordTable g_stProductCondition{g_aProductCondition, {}};
inline constexpr Frwk::WordTable g_stLanguageCondition{g_aLanguageCondition, {}};
inline constexpr Frwk::WordTable g_stPlatformCondition{g_aPlatformCondition, {}};

} // namespace Varnhelt::UpdateWords
