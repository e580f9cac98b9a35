// vrnt xen: encrypts and decrypts documents.

#include "Files/DocumentTable.h"
#include "Output/InputFile.h"
#include "Output/Output.h"
#include "Output/ProgressLine.h"
#include "Tool.h"
#include "ZkComn_File.h"
#include "ZkComn_FileCrypt.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <memory>

namespace Vrnt {

namespace {

namespace File = ZkCommon::Storage::File;

struct XenOptions
{
    std::string sDocument;
    std::string sKey;
    std::string sIn;
    std::string sOut;
};

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

std::string KeyOf(const XenOptions& _rstOptions)
{
    if (!_rstOptions.sDocument.empty()) {
        return Varnhelt::FindDocument(ToWide(_rstOptions.sDocument))->szKey;
    }
    const bool bAscii = std::all_of(_rstOptions.sKey.begin(), _rstOptions.sKey.end(),
                                    [](char _c) { return static_cast<unsigned char>(_c) < 0x80; });
    if (_rstOptions.sKey.size() != File::g_uKeySize || !bAscii) {
        throw UsageError("--key takes a key of exactly 16 ASCII characters");
    }
    return _rstOptions.sKey;
}

void Convert(Tool& _rTool, File::Conversion::Direction _enDirection, const XenOptions& _rstOptions)
{
    const std::string sKey = KeyOf(_rstOptions);
    const std::wstring tszIn = ToFullPath(_rstOptions.sIn);
    const std::wstring tszOut = ToFullPath(_rstOptions.sOut);
    const bool bEncrypts = _enDirection == File::Conversion::Direction::Encrypt;
    ProgressLine cProgress((bEncrypts ? "Encrypting " : "Decrypting ") + _rstOptions.sIn,
                           ReadableSize(_rstOptions.sIn));
    const auto* pKey = reinterpret_cast<const std::uint8_t*>(sKey.data());
    File::Conversion cConversion(_enDirection);
    cProgress.Tell(0);
    bool bOk = cConversion.Run(tszIn, FILE_SHARE_READ, File::KeySpan(pKey, File::g_uKeySize));
    cProgress.Tell(0.5); // the rest is the disk's
    bOk = bOk && cConversion.Replace(tszOut);
    cProgress.End();
    if (_rTool.stOptions.bJson) {
        Write(Json{{"ok", bOk}}.dump() + "\n");
    }
    if (!bOk) {
        _rTool.iExitStatus = ExitFailure;
        WriteError("vrnt: cannot make \"" + _rstOptions.sOut + "\" of \"" + _rstOptions.sIn +
                   "\": the input is empty or no whole number of blocks, or the output cannot be written\n");
    }
}

void AddDirection(Tool& _rTool, CLI::App* _pXen, const char* _szName, const char* _szHelp, const char* _szExample,
                  File::Conversion::Direction _enDirection)
{
    const auto pOptions = std::make_shared<XenOptions>();
    CLI::App* pCommand = _pXen->add_subcommand(_szName, _szHelp);
    CLI::Option_group* pKey = pCommand->add_option_group("Key");
    pKey->add_option("--document", pOptions->sDocument, "The document, whose key is taken")
        ->type_name("D")
        ->check(CLI::IsMember(EncryptedDocuments()));
    pKey->add_option("--key", pOptions->sKey, "The key itself, 16 characters")->type_name("KEY16");
    pKey->require_option(1);
    pCommand->add_option("IN", pOptions->sIn, "The file to read")->required();
    pCommand->add_option("OUT", pOptions->sOut, "The file to write; an existing one is replaced as a whole")
        ->required();
    pCommand->footer(_szExample);
    pCommand->callback([&_rTool, _enDirection, pOptions] { Convert(_rTool, _enDirection, *pOptions); });
}

} // namespace

void AddXen(Tool& _rTool)
{
    CLI::App* pXen = _rTool.cApp.add_subcommand("xen", "Encrypt and decrypt documents");
    pXen->require_subcommand(1);
    AddDirection(_rTool, pXen, "encrypt", "Encrypt a plain document",
                 "Example: vrnt xen encrypt --document policy FwPolicy.xml FwPolicy.xen",
                 File::Conversion::Direction::Encrypt);
    AddDirection(_rTool, pXen, "decrypt", "Decrypt a document",
                 "Example: vrnt xen decrypt --document policy FwPolicy.xen FwPolicy.xml",
                 File::Conversion::Direction::Decrypt);
}

} // namespace Vrnt
