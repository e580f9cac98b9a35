#include "Sample/SampleTables.h"

#include <array>
#include <cctype>
#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace Vrnt {

namespace {

constexpr std::size_t g_uViruses = 6000;
constexpr std::size_t g_uSpyware = 4000;
constexpr std::size_t g_uVendors = 48;
constexpr std::size_t g_uFirstThreat = 1000; // number

/** A word of two or more syllables, another one for each number. */
std::string Word(std::size_t _uNumber)
{
    static constexpr std::string_view svFirst = "bacordelfinguhalkermolnaporasitovexyl";
    static constexpr std::string_view svOther = "mirdanoskelvaturbel";
    std::string sWord(svFirst.substr(3 * (_uNumber % 12), 3));
    std::size_t uRest = _uNumber / 12;
    do {
        sWord += svOther.substr(3 * (uRest % 6), 3);
        uRest /= 6;
    } while (uRest > 0);
    return sWord;
}

/** The same with a capital. */
std::string Title(std::size_t _uNumber)
{
    std::string sWord = Word(_uNumber);
    sWord[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sWord[0])));
    return sWord;
}

/** The text with its parts in the places of %1, %2 and so on. */
std::string Filled(std::string_view _svText, std::initializer_list<std::string_view> _lstPart)
{
    std::string sText;
    for (std::size_t i = 0; i < _svText.size(); ++i) {
        if (_svText[i] == '%') {
            sText += _lstPart.begin()[_svText[++i] - '1'];
        } else {
            sText += _svText[i];
        }
    }
    return sText;
}

std::string WholeDocument(std::string_view _svRoot, std::string_view _svContent)
{
    return Filled("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<%1>\n%2</%1>\n", {_svRoot, _svContent});
}

/** A threat's number, family and variant: A to I. */
struct Threat
{
    std::size_t uIndex;
    std::size_t uFamilies;

    std::string Number() const { return std::to_string(g_uFirstThreat + uIndex); }
    std::string Family() const { return Title(uIndex % uFamilies); }
    std::string Variant() const { return {static_cast<char>('A' + uIndex / uFamilies)}; }
};

struct SpywareKind
{
    const char* szName;
    const char* szDoes;
    const char* szRecommendation;
};

constexpr std::array g_aVirusKind = {"Trojan", "Worm",       "Virus",   "Backdoor", "Script",
                                     "Macro",  "Downloader", "Rootkit", "Exploit",  "Page"};
constexpr const char* g_szRemove =
    "Remove it. Close all browser windows first, and start the computer anew afterwards.";
constexpr std::array g_aSpywareKind = {
    SpywareKind{"Adware", "shows advertisements that the user did not ask for", g_szRemove},
    SpywareKind{"Spyware", "reports the pages that the user visits to its maker", g_szRemove},
    SpywareKind{"Dialer", "dials numbers at the user\u2019s expense", g_szRemove},
    SpywareKind{"Browser helper", "changes the browser\u2019s start page &amp; search settings", g_szRemove},
    SpywareKind{"Keylogger", "records what is typed and keeps it in a hidden file", g_szRemove},
    SpywareKind{"Cookie", "is left behind by the sites of an advertising network",
                "It may be left where it is. To be rid of it, delete the cookie."},
    SpywareKind{"Joke program", "frightens the user without doing harm", g_szRemove},
    SpywareKind{"Password tool", "shows the passwords that other programs have stored", g_szRemove}};
constexpr std::array g_aSuite = {"Antivirus",   "Security Suite", "Complete Guard", "Firewall",
                                 "Antispyware", "Endpoint Agent", "Mail Guard",     "Page Filter"};

/** Another vendor's product. */
struct Product
{
    std::size_t uVendor;
    std::size_t uSuite;

    std::size_t Family() const { return 3 + 7 * uVendor; }
    std::string Vendor() const
    {
        return Title(Family()) + (uVendor % 9 == 4 ? " S\u00e9curit\u00e9" : uVendor % 3 == 0 ? " Labs" : " Software");
    }
    std::string Name() const { return Title(Family()) + " " + g_aSuite[uSuite]; }
    std::string Number() const { return std::to_string(100 * (uVendor + 1) + uSuite + 1); }
    std::string Version() const { return std::to_string(8 + uVendor % 5); }
    bool Is32Bit() const { return uSuite % 3 == 2; }
    bool IsRegistered() const { return uSuite % 2 == 0; }
    /** The start tag, which both databases share. */
    std::string Tag() const
    {
        return Filled(R"(<Product ID="%1" category="%2" vendor="%3" cpu="%4" registered="%5">)",
                      {Number(),
                       uSuite == 3  ? "firewall"
                       : uSuite < 3 ? "suite"
                                    : "tool",
                       Vendor(), Is32Bit() ? "x86" : "both", IsRegistered() ? "yes" : "no"});
    }
};

template <class TText>
std::string EachProduct(const TText& _fnText)
{
    std::string sText;
    for (std::size_t uVendor = 0; uVendor < g_uVendors; ++uVendor) {
        for (std::size_t uSuite = 0; uSuite < g_aSuite.size(); ++uSuite) {
            sText += _fnText(Product{uVendor, uSuite});
        }
    }
    return sText;
}

/** A second way to recognise a product, by a value of its key. */
std::string IdentificationByKey(const Product& _rstProduct)
{
    return Filled(R"(    <Identification selfreboot="no" specialidentify="no">
      <Path base="" wownode="Disable"></Path>
      <Key name="Installed" type="REG_DWORD" compare="equal">SOFTWARE\%1\%2 %3</Key>
      <UninstallString base="HKLM" wownode="Disable">SOFTWARE\%1\Uninstall</UninstallString>
    </Identification>
)",
                  {_rstProduct.Vendor(), _rstProduct.Name(), _rstProduct.Version()});
}

} // namespace

std::string SampleVirusNames()
{
    std::string sThreats;
    for (std::size_t i = 0; i < g_uViruses; ++i) {
        const Threat stThreat{i, 700};
        sThreats +=
            Filled("    <Threat id=\"%1\"><Name>%2.%3.%4</Name></Threat>\n",
                   {stThreat.Number(), g_aVirusKind[i % g_aVirusKind.size()], stThreat.Family(), stThreat.Variant()});
    }
    return WholeDocument("Quillmar", "  <Threats>\n" + sThreats + "  </Threats>\n");
}

std::string SampleSpyware()
{
    std::string sScanners;
    for (std::size_t i = 0; i < g_aSpywareKind.size(); ++i) {
        sScanners += Filled(R"(    <Scanner id="%1">
      <Name>%2 scanner</Name>
      <Desc>Looks for what %3.</Desc>
    </Scanner>
)",
                            {std::to_string(i + 1), g_aSpywareKind[i].szName, g_aSpywareKind[i].szDoes});
    }
    std::string sThreats;
    for (std::size_t i = 0; i < g_uSpyware; ++i) {
        const SpywareKind& rstKind = g_aSpywareKind[i % g_aSpywareKind.size()];
        const Threat stThreat{i, 500};
        sThreats += Filled(R"(    <Threat id="%1">
      <Name>%2.%3.%4</Name>
      <Description>%3 comes with free programs or by way of web pages. It %5. )"
                           R"(It starts together with Windows and may bring further programs of its kind.</Description>
      <Recommendation>%6</Recommendation>
    </Threat>
)",
                           {stThreat.Number(), rstKind.szName, stThreat.Family(), stThreat.Variant(), rstKind.szDoes,
                            rstKind.szRecommendation});
    }
    return WholeDocument("Quillmar",
                         "  <Scanners>\n" + sScanners + "  </Scanners>\n  <Threats>\n" + sThreats + "  </Threats>\n");
}

std::string SampleCompetitorActions()
{
    const std::string sProducts = EachProduct([](const Product& _rstProduct) {
        return Filled(R"(    %1
      <Action on="install" name="%2" version="%4.0" versionCompare="lessOrEqual"/>
      <Action on="install" name="%3" version="%4.0" versionCompare="greater"/>
    </Product>
)",
                      {_rstProduct.Tag(), _rstProduct.uSuite < 4 ? "uninstall" : "warn",
                       _rstProduct.uSuite < 3 ? "block" : "warn", _rstProduct.Version()});
    });
    return WholeDocument("CompetitorAction", "  <Sequence>\n" + sProducts + "  </Sequence>\n");
}

std::string SampleCompetitorPatterns()
{
    const std::string sProducts = EachProduct([](const Product& _rstProduct) {
        const std::string sIdentification =
            Filled(R"(    <Identification selfreboot="%3" specialidentify="%4">
      <Path base="ProgramFiles" wownode="%5">%1\%2\main.exe</Path>
      <Key name="DisplayVersion" type="REG_SZ" compare="prefix">SOFTWARE\%1\%2</Key>
      <UninstallString base="HKLM" wownode="%5">SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\%2</UninstallString>
    </Identification>
)",
                   {_rstProduct.Vendor(), _rstProduct.Name(), _rstProduct.uSuite % 4 == 3 ? "yes" : "no",
                    _rstProduct.uSuite == 5 ? "yes" : "no", _rstProduct.Is32Bit() ? "Enable" : "Disable"});
        return Filled(R"(  %1
%2%3    <Information manufacturer="%4" url="http://support.%5.example/remove/%6">)"
                      R"(Remove %7 by way of the Control Panel.</Information>
  </Product>
)",
                      {_rstProduct.Tag(), sIdentification,
                       _rstProduct.IsRegistered() ? IdentificationByKey(_rstProduct) : std::string(),
                       _rstProduct.Vendor(), Word(_rstProduct.Family()), _rstProduct.Number(), _rstProduct.Name()});
    });
    return WholeDocument("CompetitorDetection", sProducts);
}

} // namespace Vrnt
