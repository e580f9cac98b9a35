#pragma once

#include "Files/DocumentTable.h"
#include "SrvFrwk_Interface.h"

#include <cstdint>
#include <span>
#include <string>

/** What the drivers ask of the library: one request for every kind of document. */
namespace Proof {

struct Desk
{
    SrvFrwk::Interface::IFunctionProvider& rFunction;
    std::wstring tszFolder; // of the product, ending in a backslash
};

struct Operation
{
    std::string_view svName;
    Varnhelt::DocumentId enDocument;
    const wchar_t* pszFile; // in the product's folder
    bool bStores;           // a success changes the document
    /** @return the result code; the records that came are dropped */
    std::uint32_t (*pRun)(const Desk& _rstDesk, const std::wstring& _tszFile);
};

std::span<const Operation> Operations() noexcept;
/** @throws std::runtime_error when there is none of that name */
const Operation& OperationOf(std::string_view _svName);

/** The bytes of a file; empty when it cannot be read. */
std::string Contents(const std::wstring& _tszPath);
bool Put(const std::wstring& _tszPath, std::string_view _svBytes);
/** A document's plain text, from the file as the product keeps it, and back. */
std::string PlainText(const std::wstring& _tszFile, Varnhelt::DocumentId _enDocument);
bool PutDocument(const std::wstring& _tszFile, Varnhelt::DocumentId _enDocument, std::string _sText);

/** A mixed policy becomes one of one permission, and its aliases' values become those of one letter. */
std::uint32_t StorePolicy(const Desk& _rstDesk, std::uint32_t _ulPermission);
std::uint32_t StoreAliases(const std::wstring& _tszFile, wchar_t _cLetter);
/** Stores one controller of the policy as it was read but for its permission, and reads that back; 0 for a failure. */
std::uint32_t StoreController(const Desk& _rstDesk, std::size_t _uController, std::uint32_t _ulPermission);
std::uint32_t PermissionOf(const Desk& _rstDesk, std::size_t _uController);
/** @return success, a failure, or success without its meaning: 1, when what was read is of two stores */
std::uint32_t LookAtPolicy(const Desk& _rstDesk);
std::uint32_t LookAtAliases(const std::wstring& _tszFile);

} // namespace Proof
