#pragma once

#include "Files/DocumentTable.h"
#include "TempFolder.h"

#include <string>
#include <string_view>
#include <vector>

/**
 * An installed product: a folder that is registered as the installation folder while the object lives. Its documents
 * are given as plain text and stored as the product stores them.
 */
class TestProduct
{
public:
    TestProduct();
    TestProduct(const TestProduct&) = delete;
    TestProduct& operator=(const TestProduct&) = delete;
    ~TestProduct();

    const TempFolder& Folder() const { return m_cFolder; }
    /** Registers another text as the installation folder, unchanged. */
    static void Register(const std::wstring& _rtszPath);
    static void Unregister();

    /** _pszFile is for the documents that have no fixed name. */
    void Store(Varnhelt::DocumentId _enDocument, std::string_view _svXml, const wchar_t* _pszFile = nullptr) const;
    /** The stored bytes, and what they say. */
    std::string Stored(Varnhelt::DocumentId _enDocument, const wchar_t* _pszFile = nullptr) const;
    std::string Plain(Varnhelt::DocumentId _enDocument, const wchar_t* _pszFile = nullptr) const;

    /** Files that are no document of the product: there should be none after a request. */
    std::vector<std::wstring> Leftovers() const;

private:
    TempFolder m_cFolder;
};
