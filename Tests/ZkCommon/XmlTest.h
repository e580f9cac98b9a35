#pragma once

#include "Failure.h"
#include "ZkComn_String.h"
#include "ZkComn_XmlParser.h"
#include "ZkComn_XmlWriter.h"

#include <string>

/** A document of which all is kept. */
struct Whole final : ZkCommon::Storage::XmlParser
{
    explicit Whole(std::string_view _svText, std::size_t _uPieceSize = 0)
    {
        SetPieceSize(_uPieceSize);
        LoadText(_svText, KeepWhole);
    }
    ZkCommon::Storage::XmlElement Root() const { return Document().FirstChild(); }
};

/** An element in short: name[attribute=value](text){child,child}; a comment is !(text). For small trees. */
// NOLINTNEXTLINE(misc-no-recursion): the trees that tests compare as text are small
inline std::string Short(ZkCommon::Storage::XmlElement _element)
{
    using ZkCommon::String::ToUtf8;
    std::string sResult = _element.IsComment() ? "!" : ToUtf8(_element.Name());
    for (const auto& stAttribute : _element.Attributes()) {
        sResult += "[" + ToUtf8(stAttribute.svName) + "=" + ToUtf8(stAttribute.svValue) + "]";
    }
    if (!_element.Text().empty()) {
        sResult += "(" + ToUtf8(_element.Text()) + ")";
    }
    if (_element.FirstNode()) {
        sResult += "{";
        for (auto child = _element.FirstNode(); child; child = child.NextNode()) {
            sResult += (sResult.back() == '{' ? "" : ",") + Short(child);
        }
        sResult += "}";
    }
    return sResult;
}

inline std::string ShortChildren(ZkCommon::Storage::XmlElement _element)
{
    std::string sResult;
    for (auto child = _element.FirstChild(); child; child = child.NextSibling()) {
        sResult += Short(child) + ";";
    }
    return sResult;
}

/** The same of an element that is read while its document is parsed. */
inline std::string ShortOneByOne(std::string_view _svText, std::wstring_view _svPath, std::size_t _uPieceSize)
{
    ZkCommon::Storage::XmlParser parser;
    parser.SetPieceSize(_uPieceSize);
    parser.LoadText(_svText, ZkCommon::Storage::XmlParser::OneByOne);
    ZkCommon::Storage::XmlElement element;
    std::string sResult;
    if (parser.Select(_svPath, element)) {
        for (auto child = element.NextChild(); child; child = element.NextChild(child)) {
            sResult += Short(child) + ";";
        }
    }
    return sResult;
}

inline std::string Written(ZkCommon::Storage::XmlElement _element)
{
    ZkCommon::Storage::XmlWriter writer;
    writer.Write(_element);
    return writer.Output();
}
