// A whole query of an encrypted catalogue, from the function object to the records, against the system calls, the cipher and
// the scan that it cannot do without. "query-20k" loads the parser library for each call, as hosts see it; "-kept" is the
// same for a host that keeps the library loaded. "query-fixed" is the query of a catalogue without a record, against
// making, writing, reading and closing one private file.

#include "Catalogue.h"
#include "Floor.h"
#include "FunctionProvider.h"
#include "Measure.h"
#include "SrvFrwk_Records.h"
#include "SrvFrwk_ResultCode.h"
#include "SrvFrwk_ValueType.h"
#include "TestProduct.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

enum class Library
{
    Loaded, // by each call
    Kept,
};

struct Bed
{
    Bed(std::size_t _uSize, Library _enLibrary)
    {
        cProduct.Store(Varnhelt::DocumentId::ServiceUnits, Bench::MakeCatalogue(_uSize));
        if (_enLibrary == Library::Kept) {
            cKept.emplace();
        }
    }
    bool Query()
    {
        std::vector<SrvFrwk::ServiceUnit> vecUnit;
        return cProvider.QueryValue(0, SrvFrwk::ValueType::g_ulServiceUnit, 0, &vecUnit, 0, nullptr) ==
               SrvFrwk::Result::g_ulSuccess;
    }
    static bool Floor()
    {
        const Varnhelt::Document& stDocument = Varnhelt::DocumentOf(Varnhelt::DocumentId::ServiceUnits);
        const auto vecPlain = Bench::ReadDecrypted(Bench::ReadProductPath() + L"\\" + stDocument.pszFile, stDocument);
        const Bench::Expat cExpat;
        return Bench::ScanThroughTemporaryFile(cExpat, &Bench::Expat::ScanFile, vecPlain);
    }

    TestProduct cProduct;
    CFunctionProvider cProvider;
    std::optional<Bench::Expat> cKept;
};

void AddQuery(const char* _szName, std::size_t _uSize, Library _enLibrary, bool (*_pfnFloor)())
{
    Bench::Add(_szName, [=] {
        const auto pBed = std::make_shared<Bed>(_uSize, _enLibrary);
        return Bench::Ways{[=](Bench::Clock&) { return pBed->Query(); }, {[=](Bench::Clock&) { return _pfnFloor(); }}};
    });
}

[[maybe_unused]] const bool g_bAdded = [] {
    AddQuery("query-20k", 20 << 10, Library::Loaded, &Bed::Floor);
    AddQuery("query-20k-kept", 20 << 10, Library::Kept, &Bed::Floor);
    AddQuery("query-fixed", 0, Library::Kept, &Bench::UseTemporaryFile);
    return true;
}();

} // namespace
