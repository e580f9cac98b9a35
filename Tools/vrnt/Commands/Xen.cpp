// vrnt xen: encrypts and decrypts documents.

#include "Arguments.h"
#include "Commands/Commands.h"
#include "Files/DocumentTable.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "ZkComn_File.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_String.h"

#include <algorithm>

namespace Vrnt {

namespace {

namespace File = ZkCommon::Storage::File;

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
constexpr Argument g_stIn{.szName = "IN", .szHelp = "The file to read", .bRequired = true};
constexpr Argument g_stOut{
    .szName = "OUT", .szHelp = "The file to write; an existing one is replaced as a whole", .bRequired = true};
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

void Convert(Tool& _rTool, File::Conversion::Direction _enDirection, const Arguments& _rArguments)
{
    const std::string sKey = KeyOf(_rArguments);
    const std::string& rsIn = _rArguments.Text(g_stIn);
    const std::wstring tszIn = _rArguments.Path(g_stIn);
    const std::wstring tszOut = _rArguments.Path(g_stOut);
    const bool bEncrypts = _enDirection == File::Conversion::Direction::Encrypt;
    ProgressLine cProgress((bEncrypts ? "Encrypting " : "Decrypting ") + rsIn, ReadableSize(rsIn));
    const auto* pKey = reinterpret_cast<const std::uint8_t*>(sKey.data());
    File::Conversion cConversion(_enDirection);
    cProgress.Tell(0);
    bool bOk = cConversion.Run(tszIn, FILE_SHARE_READ, File::KeySpan(pKey, File::g_uKeySize));
    cProgress.Tell(0.5); // the rest is the disk's
    bOk = bOk && cConversion.Replace(tszOut);
    cProgress.End();
    if (_rTool.stOptions.bJson) {
        Write(Json{{"ok", bOk}}.ToText() + "\n");
    }
    if (!bOk) {
        _rTool.iExitStatus = ExitFailure;
        WriteError("vrnt: cannot make \"" + _rArguments.Text(g_stOut) + "\" of \"" + rsIn +
                   "\": the input is empty or no whole number of blocks, or the output cannot be written\n");
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
