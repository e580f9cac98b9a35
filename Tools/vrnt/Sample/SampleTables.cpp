#include "Sample/SampleTables.h"

#include <array>
#include <cctype>
#include <cstddef>

namespace Vrnt {

namespace {

constexpr std::size_t g_uViruses = 300;
constexpr std::size_t g_uSpyware = 200;
constexpr std::size_t g_uVendors = 12;
constexpr std::size_t g_uFirstThreat = 1000; // number

/** A word of two or more syllables, another one for each number; it begins with a capital. */
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
    sWord[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(sWord[0])));
    return sWord;
}

std::string Threat(std::size_t _uIndex, const std::string& _rsContent)
{
    return "    <Threat id=\"" + std::to_string(g_uFirstThreat + _uIndex) + "\">" + _rsContent + "</Threat>\n";
}

std::string TextElement(const char* _szName, const std::string& _rsText)
{
    return std::string("<") + _szName + ">" + _rsText + "</" + _szName + ">";
}

std::string WholeDocument(const std::string& _rsRoot, const std::string& _rsContent)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + _rsRoot + ">\n" + _rsContent + "</" + _rsRoot + ">\n";
}

struct SpywareKind
{
    const char* szName;
    const char* szDoes;
};

constexpr std::array g_aVirusKind = {"Trojan", "Worm", "Virus", "Backdoor", "Script", "Macro", "Downloader", "Rootkit"};
constexpr std::array g_aSpywareKind = {
    SpywareKind{"Adware", "shows advertisements that the user did not ask for"},
    SpywareKind{"Spyware", "reports the pages that the user visits to its maker"},
    SpywareKind{"Dialer", "dials numbers at the user\u2019s expense"},
    SpywareKind{"Browser helper", "changes the browser\u2019s start page &amp; search settings"},
    SpywareKind{"Keylogger", "records what is typed and keeps it in a hidden file"},
    SpywareKind{"Cookie", "is left by the sites of an advertising network"},
    SpywareKind{"Joke program", "frightens the user without doing harm"},
    SpywareKind{"Password tool", "shows the passwords that other programs have stored"}};
constexpr std::array g_aSuite = {"Antivirus", "Security Suite", "Complete Guard",
                                 "Firewall",  "Antispyware",    "Mail Guard"};

/** Another vendor's product. */
struct Product
{
    std::size_t uVendor;
    std::size_t uSuite;

    std::string Family() const { return Word(3 + 7 * uVendor); }
    std::string Vendor() const { return Family() + (uVendor % 3 == 0 ? " Labs" : " Software"); }
    std::string Name() const { return Family() + " " + g_aSuite[uSuite]; }
    std::string Number() const { return std::to_string(100 * (uVendor + 1) + uSuite + 1); }
    /** The start tag, which both databases share. */
    std::string Tag() const
    {
        const char* szCategory = uSuite == 3 ? "firewall" : uSuite < 3 ? "suite" : "tool";
        return "<Product ID=\"" + Number() + "\" category=\"" + szCategory + "\" vendor=\"" + Vendor() + "\" cpu=\"" +
               (uSuite % 3 == 2 ? "x86" : "both") + "\" registered=\"" + (uSuite % 2 == 0 ? "yes" : "no") + "\">\n";
    }
};

template <class TAppend>
std::string EachProduct(const TAppend& _fnAppend)
{
    std::string sText;
    for (std::size_t uVendor = 0; uVendor < g_uVendors; ++uVendor) {
        for (std::size_t uSuite = 0; uSuite < g_aSuite.size(); ++uSuite) {
            sText += _fnAppend(Product{uVendor, uSuite});
        }
    }
    return sText;
}

} // namespace

std::string SampleVirusNames()
{
    std::string sThreats;
    for (std::size_t i = 0; i < g_uViruses; ++i) {
        sThreats += Threat(i, TextElement("Name", g_aVirusKind[i % g_aVirusKind.size()] + ("." + Word(i))));
    }
    return WholeDocument("Quillmar", "  <Threats>\n" + sThreats + "  </Threats>\n");
}

std::string SampleSpyware()
{
    std::string sScanners;
    for (std::size_t i = 0; i < g_aSpywareKind.size(); ++i) {
        sScanners += "    <Scanner id=\"" + std::to_string(i + 1) + "\">" +
                     TextElement("Name", std::string(g_aSpywareKind[i].szName) + " scanner") +
                     TextElement("Desc", std::string("Looks for what ") + g_aSpywareKind[i].szDoes + ".") +
                     "</Scanner>\n";
    }
    std::string sThreats;
    for (std::size_t i = 0; i < g_uSpyware; ++i) {
        const SpywareKind& rstKind = g_aSpywareKind[i % g_aSpywareKind.size()];
        sThreats += Threat(
            i, "\n      " + TextElement("Name", std::string(rstKind.szName) + "." + Word(i)) + "\n      " +
                   TextElement("Description", Word(i) + " comes with free programs or from web pages. It " +
                                                  rstKind.szDoes + ". It starts together with Windows.") +
                   "\n      " +
                   TextElement("Recommendation",
                               "Remove it. Close all browser windows first, and restart the computer afterwards.") +
                   "\n    ");
    }
    return WholeDocument("Quillmar",
                         "  <Scanners>\n" + sScanners + "  </Scanners>\n  <Threats>\n" + sThreats + "  </Threats>\n");
}

std::string SampleCompetitorActions()
{
    const std::string sProducts = EachProduct([](const Product& _rstProduct) {
        const std::string sVersion = std::to_string(8 + _rstProduct.uVendor % 5) + ".0";
        const auto Action = [&](bool _bStrict, const char* _szStrict, const char* _szCompare) {
            return std::string(R"(      <Action on="install" name=")") + (_bStrict ? _szStrict : "warn") +
                   "\" version=\"" + sVersion + "\" versionCompare=\"" + _szCompare + "\"/>\n";
        };
        return "    " + _rstProduct.Tag() + Action(_rstProduct.uSuite < 4, "uninstall", "lessOrEqual") +
               Action(_rstProduct.uSuite < 3, "block", "greater") + "    </Product>\n";
    });
    return WholeDocument("CompetitorAction", "  <Sequence>\n" + sProducts + "  </Sequence>\n");
}

std::string SampleCompetitorPatterns()
{
    const std::string sProducts = EachProduct([](const Product& _rstProduct) {
        const std::string sVendor = _rstProduct.Vendor();
        const std::string sName = _rstProduct.Name();
        const char* szWow = _rstProduct.uSuite % 3 == 2 ? "Enable" : "Disable";
        return "  " + _rstProduct.Tag() +
               R"(    <Identification selfreboot="no" specialidentify="no">)"
               "\n" +
               R"(      <Path base="ProgramFiles" wownode=")" + szWow + "\">" + sVendor + "\\" + sName +
               "\\main.exe</Path>\n      <Key name=\"DisplayVersion\" type=\"REG_SZ\" compare=\"prefix\">SOFTWARE\\" +
               sVendor + "\\" + sName + "</Key>\n      <UninstallString base=\"HKLM\" wownode=\"" + szWow +
               R"(">SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)" + sName +
               "</UninstallString>\n    </Identification>\n    <Information manufacturer=\"" + sVendor +
               "\" url=\"http://support." + _rstProduct.Family() + ".example/remove/" + _rstProduct.Number() +
               "\">Remove " + sName + " in the Control Panel.</Information>\n  </Product>\n";
    });
    return WholeDocument("CompetitorDetection", sProducts);
}

} // namespace Vrnt
