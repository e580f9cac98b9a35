// vrnt xen: encrypts and decrypts documents.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Files/DocumentTable.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "ZkComn_Exception.h"
#include "ZkComn_File.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"

#include <algorithm>
#include <filesystem>
#include <span>

namespace Vrnt {

namespace {

namespace File = ZkCommon::Storage::File;

constexpr const char* g_szStream = "-";

/** The names of the documents that are stored encrypted. */
std::vector<std::string> EncryptedDocuments()
{
    std::vector<std::string> vecName;
    for (const Varnhelt::Document& stDocument : Varnhelt::DocumentTable()) {
        if (stDocument.szKey != nullptr) {
            vecName.push_back(ZkCommon::String::ToUtf8(stDocument.svName));
        }
    }
    return vecName;
}

constexpr Argument g_stDocument{.szName = "--document",
                                .szHelp = "The document, whose key is used",
                                .szValue = "D",
                                .pfnChoices = &EncryptedDocuments};
constexpr Argument g_stKey{
    .szName = "--key", .szHelp = "The key itself, 16 characters", .szValue = "KEY16", .pExcludes = &g_stDocument};
constexpr Argument g_stIn{.szName = "IN", .szHelp = "The file to read; - is standard input", .bRequired = true};
constexpr Argument g_stOut{.szName = "OUT",
                           .szHelp = "The file to write, - is standard output; an existing file is replaced as a whole",
                           .bRequired = true};
constexpr const Argument* g_apArgument[] = {&g_stDocument, &g_stKey, &g_stIn, &g_stOut};

std::string KeyOf(const Arguments& _rArguments)
{
    if (_rArguments.Has(g_stDocument)) {
        return Varnhelt::FindDocument(ToWide(_rArguments.Text(g_stDocument)))->szKey;
    }
    if (!_rArguments.Has(g_stKey)) {
        throw UsageError("one of --document and --key is required");
    }
    const std::string& rsKey = _rArguments.Text(g_stKey);
    const bool bAscii =
        std::all_of(rsKey.begin(), rsKey.end(), [](char _c) { return static_cast<unsigned char>(_c) < 0x80; });
    if (rsKey.size() != File::g_uKeySize || !bAscii) {
        throw UsageError("--key needs a key of exactly 16 ASCII characters");
    }
    return rsKey;
}

/** Whether a plain file is a document of this kind. */
bool IsDocument(const Varnhelt::Document& _rstDocument, const std::wstring& _rtszPath)
{
    try {
        ZkCommon::Storage::XmlParser cParser;
        cParser.Load(_rtszPath);
        ZkCommon::Storage::XmlElement cRoot;
        return cParser.Select(_rstDocument.pszRoot, cRoot);
    } catch (ZkCommon::Exception::Base* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        return false;
    }
}

/** A private file that holds the bytes as long as this object. @throws UsageError when it cannot be made */
void Fill(File::TempFile& _rFile, std::span<const std::uint8_t> _spanBytes)
{
    std::uint32_t ulError = _rFile.Create(File::SystemTempFolder());
    ulError = ulError == ERROR_SUCCESS ? _rFile.Write(_spanBytes) : ulError;
    if (ulError != ERROR_SUCCESS) {
        throw UsageError("cannot write a temporary file: " + SystemErrorText(ulError));
    }
}

std::span<const std::uint8_t> BytesOf(const std::string& _rsText)
{
    return {reinterpret_cast<const std::uint8_t*>(_rsText.data()), _rsText.size()};
}

/** One conversion of the command line. */
class XenFile
{
public:
    XenFile(File::Conversion::Direction _enDirection, const Arguments& _rArguments)
        : m_bEncrypts(_enDirection == File::Conversion::Direction::Encrypt),
          m_sKey(KeyOf(_rArguments)),
          m_sIn(_rArguments.Text(g_stIn)),
          m_sOut(_rArguments.Text(g_stOut)),
          m_cConversion(_enDirection)
    {
        if (_rArguments.Has(g_stDocument)) {
            m_pDocument = Varnhelt::FindDocument(ToWide(_rArguments.Text(g_stDocument)));
        }
        if (m_sIn == g_szStream) {
            Fill(m_cInput, BytesOf(ReadInputFile(m_sIn)));
        }
        m_tszIn = m_sIn == g_szStream ? m_cInput.Path() : ToFullPath(m_sIn);
        m_tszOut = m_sOut == g_szStream ? std::wstring() : ToFullPath(m_sOut);
        if (std::error_code cIgnored; std::filesystem::equivalent(m_tszIn, m_tszOut, cIgnored)) {
            throw UsageError("IN and OUT are the same file");
        }
        m_ullSize = m_sIn == g_szStream ? std::filesystem::file_size(m_tszIn) : ReadableSize(m_sIn);
    }

    /** Converts and writes. @return why not; empty on success */
    std::string Convert()
    {
        const std::string sIn = Quoted(m_sIn);
        if (m_ullSize == 0) {
            return sIn + " is empty";
        }
        if (!m_bEncrypts && m_ullSize % File::g_uKeySize != 0) {
            return sIn + " has " + Count(m_ullSize, "byte") +
                   ", which is not a multiple of 16: it is cut off, or it is not encrypted";
        }
        if (m_bEncrypts && m_pDocument != nullptr && !IsDocument(*m_pDocument, m_tszIn)) {
            return sIn + " is not a " + Name() + " document; --key converts anything";
        }
        const auto* pKey = reinterpret_cast<const std::uint8_t*>(m_sKey.data());
        ProgressLine cProgress((m_bEncrypts ? "Encrypting " : "Decrypting ") + m_sIn, m_ullSize);
        cProgress.Tell(0);
        if (!m_cConversion.Run(m_tszIn, FILE_SHARE_READ, File::KeySpan(pKey, File::g_uKeySize))) {
            return "cannot convert " + sIn;
        }
        cProgress.Tell(0.5); // the rest is the disk's
        return WriteOutput();
    }

private:
    std::string Name() const { return ZkCommon::String::ToUtf8(m_pDocument->svName); }

    std::string WriteOutput()
    {
        const std::span<const std::uint8_t> spanOutput = m_cConversion.Output();
        if (!m_bEncrypts && m_pDocument != nullptr) {
            File::TempFile cPlain;
            Fill(cPlain, spanOutput);
            if (!IsDocument(*m_pDocument, cPlain.Path())) {
                return "the key of " + Name() + " does not open " + Quoted(m_sIn) + ": what it gives is not a " +
                       Name() + " document; --key converts anything";
            }
        }
        const std::string_view svOutput(reinterpret_cast<const char*>(spanOutput.data()), spanOutput.size());
        if (m_tszOut.empty()) {
            Write(svOutput);
            return {};
        }
        const std::uint32_t ulError = File::Replace(m_tszOut, svOutput);
        return ulError == ERROR_SUCCESS ? "" : "cannot write " + Quoted(m_sOut) + ": " + SystemErrorText(ulError);
    }

    bool m_bEncrypts;
    std::string m_sKey;
    std::string m_sIn;
    std::string m_sOut;
    const Varnhelt::Document* m_pDocument = nullptr; // null: any content
    File::TempFile m_cInput;                         // what came from standard input
    std::wstring m_tszIn;
    std::wstring m_tszOut; // empty: standard output
    std::uint64_t m_ullSize = 0;
    File::Conversion m_cConversion;
};

void Convert(Tool& _rTool, File::Conversion::Direction _enDirection, const Arguments& _rArguments)
{
    const bool bToStream = _rArguments.Text(g_stOut) == g_szStream;
    if (bToStream && _rTool.stOptions.bJson) {
        throw UsageError("--json and - as OUT would both write to standard output");
    }
    const std::string sWhy = XenFile(_enDirection, _rArguments).Convert();
    if (_rTool.stOptions.bJson) {
        Json jsAnswer{{"ok", sWhy.empty()}};
        if (!sWhy.empty()) {
            jsAnswer.Set("why", std::vector<std::string>{sWhy});
        }
        Write(jsAnswer.ToText() + "\n");
    } else if (sWhy.empty() && !bToStream) {
        Write(Quoted(_rArguments.Text(g_stOut)) + " is written.\n");
    }
    if (!sWhy.empty()) {
        _rTool.iExitStatus = ExitFailure;
        WriteError("vrnt: " + sWhy + "\n");
    }
}

constexpr Command g_stEncrypt{.szName = "encrypt",
                              .szHelp = "Encrypt a plain document",
                              .szExample = "vrnt xen encrypt --document policy FwPolicy.xml FwPolicy.xen",
                              .aArgument = g_apArgument,
                              .pfnRun = [](Tool& _rTool, const Arguments& _rArguments) {
                                  Convert(_rTool, File::Conversion::Direction::Encrypt, _rArguments);
                              }};
constexpr Command g_stDecrypt{.szName = "decrypt",
                              .szHelp = "Decrypt a document",
                              .szExample = "vrnt xen decrypt --document policy FwPolicy.xen FwPolicy.xml",
                              .aArgument = g_apArgument,
                              .pfnRun = [](Tool& _rTool, const Arguments& _rArguments) {
                                  Convert(_rTool, File::Conversion::Direction::Decrypt, _rArguments);
                              }};
constexpr const Command* g_apCommand[] = {&g_stEncrypt, &g_stDecrypt};

} // namespace

constinit const Command g_stXen{.szName = "xen",
                                .szHelp = "Encrypt and decrypt documents",
                                .szExample = "vrnt xen encrypt --document policy FwPolicy.xml FwPolicy.xen",
                                .aCommand = g_apCommand};

} // namespace Vrnt
