// A document into records, from the file on, against the bare parser library over the same file with handlers that do
// nothing, and against other parsers; and the memory that this takes at its peak: elements, records and input together.

#include "Catalogue.h"
#include "Descriptions/DescriptionReader.h"
#include "Documents/ServiceUnits.h"
#include "Files/DocumentFile.h"
#include "Floor.h"
#include "Measure.h"
#include "Memory.h"
#include "Peers.h"
#include "ZkComn_XmlParser.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <windows.h>

namespace {

using namespace ZkCommon::Storage;
using Bench::Units;

/** A plain catalogue in its own file, and the parser library loaded: loading it is part of a query, not of reading. */
class CatalogueFile
{
public:
    explicit CatalogueFile(std::size_t _uSize)
        : m_Path(std::filesystem::temp_directory_path() /
                 ("varnhelt-bench-" + std::to_string(::GetCurrentProcessId()) + ".xml"))
    {
        const std::string sText = Bench::MakeCatalogue(_uSize);
        m_uSize = sText.size();
        std::ofstream(m_Path, std::ios::binary).write(sText.data(), static_cast<std::streamsize>(m_uSize));
    }
    CatalogueFile(const CatalogueFile&) = delete;
    CatalogueFile& operator=(const CatalogueFile&) = delete;
    ~CatalogueFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_Path, ignored);
    }

    std::wstring Path() const { return m_Path.wstring(); }
    std::size_t Size() const { return m_uSize; }
    const Bench::Expat& Library() const { return m_library; }

private:
    Bench::Expat m_library;
    std::filesystem::path m_Path;
    std::size_t m_uSize = 0;
};

Units Read(const std::wstring& _rtszFile, const XmlMemory* _pMemory = nullptr)
{
    Units vecUnit;
    XmlParser parser(_pMemory);
    XmlElement root;
    parser.Load(_rtszFile, XmlParser::OneByOne);
    parser.Select(L"/BaseFramework", root);
    Varnhelt::Documents::ReadRecords(root, Varnhelt::Documents::g_stServiceUnit, vecUnit);
    return vecUnit;
}

using Reader = Units (*)(const std::wstring&);

/** A reading of the file; what its caller does with the records, freeing them included, is no part of it. */
Bench::Way ReadingWay(const std::shared_ptr<CatalogueFile>& _pFile, Reader _pfnReader)
{
    return [=](Bench::Clock& _rClock) {
        Units vecUnit = _pfnReader(_pFile->Path());
        const bool bRead = !vecUnit.empty();
        _rClock.Discard(vecUnit);
        return bRead;
    };
}

Units ReadByOurs(const std::wstring& _rtszFile)
{
    return Read(_rtszFile);
}

void AddReading(const std::string& _rsName, std::size_t _uSize, bool _bAlways)
{
    Bench::Add(
        "read-" + _rsName,
        [=] {
            const auto pFile = std::make_shared<CatalogueFile>(_uSize);
            return Bench::Ways{ReadingWay(pFile, &ReadByOurs),
                               {[=](Bench::Clock&) { return pFile->Library().ScanFile(pFile->Path().c_str()); },
                                [=](Bench::Clock&) { return pFile->Library().ScanInPieces(pFile->Path().c_str()); }}};
        },
        _bAlways);
}

void AddPeer(const std::string& _rsName, std::size_t _uSize, Reader _pfnPeer, bool _bAlways)
{
    Bench::Add(
        "read-" + _rsName,
        [=] {
            const auto pFile = std::make_shared<CatalogueFile>(_uSize);
            const bool bSame = Bench::SameUnits(_pfnPeer(pFile->Path()), Read(pFile->Path()));
            return bSame ? Bench::Ways{ReadingWay(pFile, &ReadByOurs), {ReadingWay(pFile, _pfnPeer)}}
                         : Bench::Ways{[](Bench::Clock&) { return false; }, {}};
        },
        _bAlways);
}

/** Bytes at the peak for each byte of the document. */
void AddMemory(const std::string& _rsName, std::size_t _uSize, Reader _pfnReader)
{
    Bench::AddFigure("memory-" + _rsName, [=] {
        pugi::set_memory_management_functions(Bench::g_stCounted.malloc_fcn, Bench::g_stCounted.free_fcn);
        const CatalogueFile file(_uSize);
        const std::wstring tszPath = file.Path();
        Bench::StartCounting(file.Size());
        const bool bRead = !_pfnReader(tszPath).empty();
        return static_cast<double>(Bench::PeakBytes()) / static_cast<double>(file.Size()) * (bRead ? 1 : 0);
    });
}

/** Bytes at the peak for each byte written, storing a document of elements in each other. */
double MemoryOfDeepStore()
{
    constexpr int iDepth = 100'000;
    std::string sDeep;
    for (int i = 0; i < iDepth; ++i) {
        sDeep += "<a>";
    }
    for (int i = 0; i < iDepth; ++i) {
        sDeep += "</a>";
    }
    Bench::StartCounting(std::size_t{1} << 40);
    XmlParser parser(&Bench::g_stCounted);
    parser.LoadText(sDeep, XmlParser::KeepWhole);
    const std::size_t uOutput = Varnhelt::DocumentText(parser).size();
    return static_cast<double>(Bench::PeakBytes()) / static_cast<double>(uOutput);
}

[[maybe_unused]] const bool g_bAdded = [] {
    constexpr std::size_t uMegabyte = 1 << 20;
    constexpr auto OursCounted = [](const std::wstring& _rtszFile) { return Read(_rtszFile, &Bench::g_stCounted); };
    AddReading("20k", 20 << 10, true);
    AddReading("1m", uMegabyte, true);
    AddReading("50m", 50 * uMegabyte, true);
    AddReading("100m", 100 * uMegabyte, false);
    AddPeer("20k-pugixml", 20 << 10, &Bench::ReadByPugixml, true);
    AddPeer("1m-pugixml", uMegabyte, &Bench::ReadByPugixml, true);
    AddPeer("50m-pugixml", 50 * uMegabyte, &Bench::ReadByPugixml, false);
    AddPeer("20k-tinyxml2", 20 << 10, &Bench::ReadByTinyxml2, true);
    AddPeer("1m-tinyxml2", uMegabyte, &Bench::ReadByTinyxml2, true);
    AddPeer("50m-tinyxml2", 50 * uMegabyte, &Bench::ReadByTinyxml2, false);
    AddMemory("1m", uMegabyte, OursCounted);
    AddMemory("50m", 50 * uMegabyte, OursCounted);
    Bench::AddFigure("memory-store-deep", &MemoryOfDeepStore);
    AddMemory("1m-pugixml", uMegabyte, &Bench::ReadByPugixml);
    AddMemory("1m-tinyxml2", uMegabyte, &Bench::ReadByTinyxml2);
    return true;
}();

} // namespace
