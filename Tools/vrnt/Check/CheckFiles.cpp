#include "Check/CheckFiles.h"

#include "Arguments.h"
#include "Check/DocumentContent.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_Owner.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <system_error>
#include <thread>

namespace Vrnt {

namespace {

using ZkCommon::String::EqualsNoCase;
using ZkCommon::String::ToUtf8;

CheckedFile Trouble(const std::string& _rsName, std::string _sTrouble)
{
    CheckedFile stFile{_rsName};
    stFile.sTrouble = std::move(_sTrouble);
    return stFile;
}

bool IsPattern(const std::string& _rsArgument)
{
    constexpr std::string_view svLongPath = R"(\\?\)"; // whose question mark is not one of a pattern
    return _rsArgument.find_first_of("*?", _rsArgument.starts_with(svLongPath) ? svLongPath.size() : 0) !=
           std::string::npos;
}

void AddFolder(const std::string& _rsFolder, std::vector<CheckedFile>& _rvecFile)
{
    namespace fs = std::filesystem;
    const fs::path cFolder(ToFullPath(_rsFolder));
    std::vector<fs::path> vecFound;
    std::error_code cError;
    for (fs::recursive_directory_iterator it(cFolder, fs::directory_options::skip_permission_denied, cError), itEnd;
         !cError && it != itEnd; it.increment(cError)) {
        const std::wstring tszExtension = it->path().extension().wstring();
        std::error_code cIgnored;
        if ((EqualsNoCase(tszExtension, L".xml") || EqualsNoCase(tszExtension, L".xen")) &&
            it->is_regular_file(cIgnored)) {
            vecFound.push_back(it->path());
        }
    }
    std::ranges::sort(vecFound);
    for (const fs::path& rcPath : vecFound) {
        const fs::path cShown = fs::path(ToWide(_rsFolder)) / rcPath.lexically_relative(cFolder);
        _rvecFile.push_back({ToUtf8(cShown.wstring()), false, rcPath.wstring()});
    }
    if (cError) {
        _rvecFile.push_back(Trouble(_rsFolder, "cannot search " + Quoted(_rsFolder) + ": " +
                                                   SystemErrorText(static_cast<std::uint32_t>(cError.value()))));
    }
}

void AddPattern(const std::string& _rsPattern, std::vector<CheckedFile>& _rvecFile)
{
    const std::filesystem::path cFolder = std::filesystem::path(ToWide(_rsPattern)).parent_path();
    std::vector<std::filesystem::path> vecFound;
    WIN32_FIND_DATAW stFound{};
    const ZkCommon::FindHandle hFind(::FindFirstFileW(ToFullPath(_rsPattern).c_str(), &stFound));
    for (bool bFound = static_cast<bool>(hFind); bFound; bFound = ::FindNextFileW(hFind.Get(), &stFound) != FALSE) {
        if ((stFound.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            vecFound.push_back(cFolder / stFound.cFileName);
        }
    }
    std::ranges::sort(vecFound);
    for (const std::filesystem::path& rcPath : vecFound) {
        const std::string sName = ToUtf8(rcPath.wstring());
        _rvecFile.push_back({sName, false, ToFullPath(sName)});
    }
    if (vecFound.empty()) {
        _rvecFile.push_back(Trouble(_rsPattern, "no file matches " + Quoted(_rsPattern)));
    }
}

void CheckFile(CheckedFile& _rstFile, const Varnhelt::Document* _pDocument, const Progress& _fnProgress)
{
    if (!_rstFile.sTrouble.empty()) {
        return;
    }
    try {
        const std::string sBytes = ReadInputFile(_rstFile.tszPath.empty() ? "-" : ToUtf8(_rstFile.tszPath));
        const std::wstring tszName = ZkCommon::Storage::File::NameOf(_rstFile.tszPath);
        _rstFile.pDocument = _pDocument != nullptr ? _pDocument : KindOf(sBytes, tszName);
        if (_rstFile.pDocument != nullptr) {
            _rstFile.vecFinding = CheckContent(*_rstFile.pDocument, sBytes, _fnProgress);
        } else if (_rstFile.bNamed) {
            _rstFile.sTrouble = Quoted(_rstFile.sName) + " is like no kind of document: name its kind with --document";
        }
    } catch (ZkCommon::Exception::Base* _pError) {
        const ZkCommon::Exception::Caught pCaught(_pError);
        _rstFile.sTrouble = "cannot check " + Quoted(_rstFile.sName) + ": " + SystemErrorText(_pError->ErrorCode());
    } catch (const std::bad_alloc&) {
        _rstFile.sTrouble = "cannot check " + Quoted(_rstFile.sName) + ": out of memory";
    } catch (const std::exception& rError) {
        _rstFile.sTrouble = rError.what();
    }
}

} // namespace

std::vector<CheckedFile> FilesOf(const std::vector<std::string>& _rvecArgument)
{
    std::vector<CheckedFile> vecFile;
    for (const std::string& sArgument : _rvecArgument) {
        if (sArgument == "-") {
            vecFile.push_back({"<stdin>"});
        } else if (IsPattern(sArgument)) {
            AddPattern(sArgument, vecFile);
        } else if (const std::wstring tszPath = ToFullPath(sArgument); ZkCommon::Storage::File::IsFolder(tszPath)) {
            AddFolder(sArgument, vecFile);
        } else {
            vecFile.push_back({sArgument, true, tszPath});
        }
    }
    return vecFile;
}

void CheckFiles(std::vector<CheckedFile>& _rvecFile, const Varnhelt::Document* _pDocument, const Progress& _fnProgress)
{
    if (_rvecFile.size() == 1) {
        CheckFile(_rvecFile.front(), _pDocument, _fnProgress);
        return;
    }
    std::atomic<std::size_t> uNext = 0;
    const auto Work = [&](const Progress& _fnTell) {
        for (std::size_t uFile = uNext++; uFile < _rvecFile.size(); uFile = uNext++) {
            if (_fnTell) {
                _fnTell(static_cast<double>(uFile) / static_cast<double>(_rvecFile.size()));
            }
            CheckFile(_rvecFile[uFile], _pDocument, {});
        }
    };
    std::vector<std::jthread> vecThread;
    const std::size_t uTogether = std::min<std::size_t>(std::thread::hardware_concurrency(), _rvecFile.size());
    for (std::size_t i = 1; i < uTogether; ++i) {
        vecThread.emplace_back([&Work] { Work({}); });
    }
    Work(_fnProgress);
}

CheckTotals TotalsOf(const std::vector<CheckedFile>& _rvecFile)
{
    CheckTotals stTotals;
    for (const CheckedFile& stFile : _rvecFile) {
        const std::size_t uErrors = CountErrors(stFile.vecFinding);
        stTotals.uErrors += uErrors;
        stTotals.uWarnings += stFile.vecFinding.size() - uErrors;
        stTotals.uOfNoKind += stFile.IsOfNoKind() ? 1U : 0U;
        stTotals.bTrouble = stTotals.bTrouble || !stFile.sTrouble.empty();
    }
    return stTotals;
}

} // namespace Vrnt
