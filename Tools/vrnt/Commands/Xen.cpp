// vrnt xen: encrypts and decrypts documents.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Files/DocumentTable.h"
#include "Machine/Reasons.h"
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
constexpr Argument g_stXenOut{.szName = "OUT",
                              .szHelp =
                                  "The file to write, - is standard output; an existing file is replaced as a whole",
                              .bRequired = true};
constexpr const Argument* g_apXenArgument[] = {&g_stDocument, &g_stKey, &g_stIn, &g_stXenOut};

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

/** Whether what _fnLoad loads into a parser is a document of this kind. */
template <class TLoad>
bool IsDocument(const Varnhelt::Document& _rstDocument, const TLoad& _fnLoad)
{
    try {
        ZkCommon::Storage::XmlParser cParser;
        _fnLoad(cParser);
        ZkCommon::Storage::XmlElement cRoot;
        return cParser.Select(_rstDocument.pszRoot, cRoot);
    } catch (ZkCommon::Exception::Base* pError) {
        const ZkCommon::Exception::Caught pCaught(pError);
        return false;
    }
}

/** One conversion of the command line. */
class XenFile
{
public:
    XenFile(File::Conversion::Direction _enDirection, const Arguments& _rArguments)
        : m_bEncrypts(_enDirection == File::Conversion::Direction::Encrypt),
          m_sKey(KeyOf(_rArguments)),
          m_sIn(_rArguments.Text(g_stIn)),
          m_sOut(_rArguments.Text(g_stXenOut)),
          m_cConversion(_enDirection)
    {
        if (_rArguments.Has(g_stDocument)) {
            m_pDocument = Varnhelt::FindDocument(ToWide(_rArguments.Text(g_stDocument)));
        }
        if (FromStream()) {
            m_sInput = ReadInputFile(m_sIn);
        } else {
            m_tszIn = ToFullPath(m_sIn);
        }
        m_tszOut = m_sOut == g_szStream ? std::wstring() : ToFullPath(m_sOut);
        if (std::error_code cIgnored; std::filesystem::equivalent(m_tszIn, m_tszOut, cIgnored)) {
            throw UsageError("IN and OUT are the same file");
        }
        m_ullSize = FromStream() ? m_sInput.size() : ReadableSize(m_sIn);
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
        const auto LoadInput = [&](ZkCommon::Storage::XmlParser& _rParser) {
            FromStream() ? _rParser.LoadText(m_sInput) : _rParser.Load(m_tszIn);
        };
        if (m_bEncrypts && m_pDocument != nullptr && !IsDocument(*m_pDocument, LoadInput)) {
            return sIn + " is not a " + Name() + " document; --key converts anything";
        }
        ProgressLine cProgress((m_bEncrypts ? "Encrypting " : "Decrypting ") + m_sIn, m_ullSize);
        cProgress.Tell(0);
        WatchTrace(ToolFolder());
        if (const ErrorLines cErrors; !RunConversion()) {
            const std::vector<std::string> vecReason = ReasonsOf(cErrors.Messages());
            return vecReason.empty() ? "cannot convert " + sIn : vecReason.front();
        }
        cProgress.Tell(0.5); // the rest is the disk's
        return WriteOutput();
    }

private:
    bool FromStream() const { return m_sIn == g_szStream; }
    std::string Name() const { return ZkCommon::String::ToUtf8(m_pDocument->svName); }

    bool RunConversion()
    {
        const File::KeySpan spanKey(reinterpret_cast<const std::uint8_t*>(m_sKey.data()), File::g_uKeySize);
        if (!FromStream()) {
            return m_cConversion.Run(m_tszIn, FILE_SHARE_READ, spanKey);
        }
        ZkCommon::ByteArray stInput;
        return stInput.Assign(std::as_bytes(std::span(m_sInput))) && m_cConversion.Run(std::move(stInput), spanKey);
    }

    std::string WriteOutput()
    {
        const std::span<const std::uint8_t> spanOutput = m_cConversion.Output();
        const std::string_view svOutput(reinterpret_cast<const char*>(spanOutput.data()), spanOutput.size());
        const auto LoadOutput = [&](ZkCommon::Storage::XmlParser& _rParser) { _rParser.LoadText(svOutput); };
        if (!m_bEncrypts && m_pDocument != nullptr && !IsDocument(*m_pDocument, LoadOutput)) {
            return "the key of " + Name() + " does not open " + Quoted(m_sIn) + ": what it gives is not a " + Name() +
                   " document; --key converts anything";
        }
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
    std::string m_sInput;                            // what came from standard input
    std::wstring m_tszIn;                            // empty: standard input
    std::wstring m_tszOut;                           // empty: standard output
    std::uint64_t m_ullSize = 0;
    File::Conversion m_cConversion;
};

void Convert(Tool& _rTool, File::Conversion::Direction _enDirection, const Arguments& _rArguments)
{
    const bool bToStream = _rArguments.Text(g_stXenOut) == g_szStream;
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
        Write(Quoted(_rArguments.Text(g_stXenOut)) + " is written.\n");
    }
    if (!sWhy.empty()) {
        _rTool.iExitStatus = ExitFailure;
        WriteError("vrnt: " + sWhy + "\n");
    }
}

constexpr Command g_stEncrypt{.szName = "encrypt",
                              .szHelp = "Encrypt a plain document",
                              .szExample = "vrnt xen encrypt --document policy FwPolicy.xml FwPolicy.xen",
                              .aArgument = g_apXenArgument,
                              .pfnRun = [](Tool& _rTool, const Arguments& _rArguments) {
                                  Convert(_rTool, File::Conversion::Direction::Encrypt, _rArguments);
                              }};
constexpr Command g_stDecrypt{.szName = "decrypt",
                              .szHelp = "Decrypt a document",
                              .szExample = "vrnt xen decrypt --document policy FwPolicy.xen FwPolicy.xml",
                              .aArgument = g_apXenArgument,
                              .pfnRun = [](Tool& _rTool, const Arguments& _rArguments) {
                                  Convert(_rTool, File::Conversion::Direction::Decrypt, _rArguments);
                              }};
constexpr const Command* g_apXenCommand[] = {&g_stEncrypt, &g_stDecrypt};

} // namespace

constinit const Command g_stXen{.szName = "xen",
                                .szHelp = "Encrypt and decrypt documents",
                                .szExample = "vrnt xen encrypt --document policy FwPolicy.xml FwPolicy.xen",
                                .aCommand = g_apXenCommand};

} // namespace Vrnt
