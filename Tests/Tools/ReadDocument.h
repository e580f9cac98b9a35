#pragma once

#include "Files/DocumentTable.h"
#include "TestKey.h"
#include "TestProduct.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

/** What a reader makes of a document. */
struct Reading
{
    bool bRefused = false;
    std::map<std::wstring_view, std::size_t> mapRecord{}; // how many of each element; of an update what would be done
    std::vector<std::string> vecValue{};                  // "key=value", in order

    friend bool operator==(const Reading&, const Reading&) = default;

    /** How many records there are of an element; of all where it is no record's. */
    std::size_t Records(std::wstring_view _svElement) const;
};

/** A machine on which documents of all kinds are read. */
class DocumentReader
{
public:
    DocumentReader();
    DocumentReader(const DocumentReader&) = delete;
    DocumentReader& operator=(const DocumentReader&) = delete;
    ~DocumentReader();

    /** The path of the plain document, after it was stored. */
    std::wstring Store(Varnhelt::DocumentId _enDocument, const std::string& _rsXml) const;
    Reading Read(Varnhelt::DocumentId _enDocument) const;

    /** A key that updates may change, below HKEY_CURRENT_USER. */
    const std::wstring& Key() const { return m_cKey.Path(); }

private:
    TestProduct m_cProduct;
    TestKey m_cKey;
};
