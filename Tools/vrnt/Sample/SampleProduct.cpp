#include "Sample/SampleProduct.h"

#include "Arguments.h"
#include "Files/DocumentTable.h"
#include "Frwk_Settings.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "Records/Json.h"
#include "Resource.h"
#include "Sample/SampleTables.h"
#include "ZkComn_File.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_Registry.h"
#include "ZkComn_String.h"

#include <functional>
#include <sstream>
#include <windows.h>

namespace Vrnt {

namespace {

namespace File = ZkCommon::Storage::File;
using ZkCommon::Storage::Registry;
using ZkCommon::String::ToUtf8;

constexpr const wchar_t* g_szBeforeFile = L"registered-before.json";
constexpr const wchar_t* g_szOnlyInSamples = L"firewall-off.json";

/** A document in the program's resources. */
std::string Resource(const std::string& _rsName)
{
    const std::string_view svText = FindProgramResource(_rsName, L"SAMPLE");
    if (svText.empty()) {
        throw UsageError("this program has no sample \"" + _rsName + "\"");
    }
    return std::string(svText);
}

/** A file of the product: the plain text, and the document by whose key it is stored; null for a plain one. */
struct SampleFile
{
    std::wstring tszName;
    std::function<std::string()> fnText;
    const Varnhelt::Document* pDocument = nullptr;
};

/** The list says of each document what it is stored as, and by which document's key. */
std::vector<SampleFile> SampleFiles()
{
    std::vector<SampleFile> vecFile = {{L"StrVirus.xml", &SampleVirusNames},
                                       {L"antispy.xml", &SampleSpyware},
                                       {L"rivalact.xml", &SampleCompetitorActions},
                                       {L"rivaldet.xml", &SampleCompetitorPatterns}};
    std::istringstream cList(Resource("LIST"));
    for (std::string sLine; std::getline(cList, sLine);) {
        std::istringstream cWords(sLine);
        std::string sPlain;
        std::string sStored;
        std::string sDocument;
        if (!sLine.starts_with('#') && cWords >> sPlain >> sStored >> sDocument) {
            vecFile.push_back({ToWide(sStored), [sPlain] { return Resource(sPlain); },
                               sDocument == "-" ? nullptr : Varnhelt::FindDocument(ToWide(sDocument))});
        }
    }
    for (const char* szName : {"compatck.xml", "regkycfg.xml", "CmpVerIf.xml", "RegData.xml", "PrePuReq.xml",
                               "settings-17.2.xml", "firewall-off.json"}) {
        vecFile.push_back({ToWide(szName), [szName] { return Resource(szName); }});
    }
    return vecFile;
}

void WriteFile(const std::filesystem::path& _rtszPath, const std::string& _rsText)
{
    if (const std::uint32_t ulError = File::Replace(_rtszPath.wstring(), _rsText); ulError != ERROR_SUCCESS) {
        throw UsageError("cannot write " + Quoted(std::wstring_view(_rtszPath.native())) + ": " +
                         SystemErrorText(ulError));
    }
}

void WriteSample(const std::filesystem::path& _rtszFolder, const SampleFile& _rstFile)
{
    const std::filesystem::path tszPath = _rtszFolder / _rstFile.tszName;
    WriteFile(tszPath, _rstFile.fnText());
    if (_rstFile.pDocument != nullptr) {
        const auto* pKey = reinterpret_cast<const std::uint8_t*>(_rstFile.pDocument->szKey);
        if (!File::EncryptFile(tszPath.wstring(), tszPath.wstring(), File::KeySpan(pKey, File::g_uKeySize))) {
            throw UsageError("cannot encrypt " + Quoted(std::wstring_view(tszPath.native())));
        }
    }
}

/** A value of the registration, and what the sample product has there. */
struct RegisteredValue
{
    const wchar_t* pszName;
    Registry::Value stValue;
};

std::vector<RegisteredValue> RegistrationOf(const std::filesystem::path& _rtszFolder)
{
    return {{L"ProductPath", Registry::Value::Of((_rtszFolder / L"").wstring())},
            {L"Version", Registry::Value::Of(std::wstring(L"17.1.1040"))},
            {L"PID", Registry::Value::Of(std::wstring(L"QE17-0001"))},
            {L"Language", Registry::Value::Of(std::uint32_t{1})}};
}

Json ToJson(const std::optional<Registry::Value>& _rstValue)
{
    return !_rstValue ? Json() : _rstValue->ulType == REG_DWORD ? Json(_rstValue->Number()) : Json(_rstValue->Text());
}

void Restore(Registry& _rKey, const wchar_t* _pszName, const Json& _rjsBefore)
{
    if (const auto* pText = _rjsBefore.As<std::string>(); pText != nullptr) {
        _rKey.WriteString(_pszName, ToWide(*pText));
    } else if (const auto* pNumber = _rjsBefore.As<std::uint64_t>(); pNumber != nullptr) {
        _rKey.WriteNumber(_pszName, static_cast<std::uint32_t>(*pNumber));
    } else if (_rKey.Find(_pszName)) {
        _rKey.DeleteValue(_pszName);
    }
}

} // namespace

void LayOutSample(const std::filesystem::path& _rtszFolder)
{
    std::error_code cError;
    std::filesystem::create_directories(_rtszFolder, cError);
    const bool bEmpty = std::filesystem::is_empty(_rtszFolder, cError);
    if (cError) {
        throw UsageError("cannot make the folder " + Quoted(std::wstring_view(_rtszFolder.native())) + ": " +
                         SystemErrorText(static_cast<std::uint32_t>(cError.value())));
    }
    if (!bEmpty) {
        throw UsageError("the folder " + Quoted(std::wstring_view(_rtszFolder.native())) + " is not empty");
    }
    for (const SampleFile& stFile : SampleFiles()) {
        WriteSample(_rtszFolder, stFile);
    }
}

void RefuseOtherProduct()
{
    Registry cKey;
    const std::wstring tszRegistered =
        cKey.TryOpen(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey) ? cKey.ReadString(L"ProductPath", L"") : std::wstring();
    if (!tszRegistered.empty()) {
        throw UsageError("a product is registered in " + Quoted(std::wstring_view(tszRegistered)) +
                         "; --replace registers the sample in its place");
    }
}

void RegisterSample(const std::filesystem::path& _rtszFolder)
{
    Registry cKey;
    cKey.Create(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey);
    Json jsBefore = Json::Object();
    for (const RegisteredValue& stValue : RegistrationOf(_rtszFolder)) {
        jsBefore.Set(ToUtf8(stValue.pszName), ToJson(cKey.Find(stValue.pszName)));
    }
    WriteFile(_rtszFolder / g_szBeforeFile, jsBefore.ToText() + "\n");
    for (const RegisteredValue& stValue : RegistrationOf(_rtszFolder)) {
        cKey.Write(stValue.pszName, stValue.stValue);
    }
}

void RemoveSample(const std::filesystem::path& _rtszFolder)
{
    if (!File::Exists((_rtszFolder / g_szOnlyInSamples).wstring())) { // a product's own documents have the same names
        throw UsageError("there is no sample product in " + Quoted(std::wstring_view(_rtszFolder.native())));
    }
    const std::filesystem::path tszBefore = _rtszFolder / g_szBeforeFile;
    if (File::Exists(tszBefore.wstring())) {
        const Json jsBefore = ParseJson(ReadInputFile(ToUtf8(tszBefore.wstring())));
        Registry cKey;
        cKey.Create(HKEY_LOCAL_MACHINE, Frwk::g_szProductKey);
        if (cKey.ReadString(L"ProductPath", L"") == (_rtszFolder / L"").wstring()) { // else it is another's by now
            for (const RegisteredValue& stValue : RegistrationOf(_rtszFolder)) {
                const Json* pBefore = jsBefore.Find(ToUtf8(stValue.pszName));
                Restore(cKey, stValue.pszName, pBefore == nullptr ? Json() : *pBefore);
            }
        }
    }
    std::error_code cIgnored;
    for (const SampleFile& stFile : SampleFiles()) { // the last one is the one that is in samples only
        std::filesystem::remove(_rtszFolder / stFile.tszName, cIgnored);
    }
    std::filesystem::remove(tszBefore, cIgnored);
    std::filesystem::remove(_rtszFolder, cIgnored); // only when nothing else is in it
}

} // namespace Vrnt
