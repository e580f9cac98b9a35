#include "Check/DocumentPage.h"

#include <algorithm>

namespace Vrnt {

namespace {

/** The text up to a mark, which goes too; all of it where there is no mark. */
std::string_view TakeUpTo(std::string_view& _rsvText, std::string_view _svMark)
{
    const std::size_t uEnd = _rsvText.find(_svMark);
    const std::string_view svTaken = _rsvText.substr(0, uEnd);
    _rsvText.remove_prefix(uEnd == std::string_view::npos ? _rsvText.size() : uEnd + _svMark.size());
    return svTaken;
}

/** Without the marks of code and links, on one line. */
std::string PlainText(std::string_view _svMarkdown)
{
    std::string sText;
    for (std::size_t i = 0; i < _svMarkdown.size(); ++i) {
        const char c = _svMarkdown[i];
        if (c == ']' && _svMarkdown.substr(i + 1, 1) == "(") {
            i = std::min(_svMarkdown.find(')', i), _svMarkdown.size());
        } else if (c != '`' && c != '[') {
            sText += c == '\n' ? ' ' : c;
        }
    }
    const std::size_t uFirst = sText.find_first_not_of(' ');
    return uFirst == std::string::npos ? "" : sText.substr(uFirst, sText.find_last_not_of(' ') + 1 - uFirst);
}

/** A section of the page, without its heading; empty where there is none. */
std::string_view SectionOf(std::string_view _svPage, std::string_view _svHeading)
{
    TakeUpTo(_svPage, "\n## " + std::string(_svHeading) + "\n\n");
    return TakeUpTo(_svPage, "\n## ");
}

bool HasName(const std::string& _rsMarkdown, std::string_view _svName)
{
    return _rsMarkdown.find("`" + std::string(_svName) + "`") != std::string::npos;
}

} // namespace

DocumentPage::DocumentPage(std::string_view _svPage, std::string_view _svKind)
{
    std::string_view svSection = SectionOf(_svPage, _svKind);
    std::string_view svLinks = svSection;
    const std::string sParagraph = PlainText(TakeUpTo(svSection, "\n\n"));
    m_sPurpose = sParagraph.substr(0, sParagraph.find(". ")); // its first sentence
    AddRows(svSection);
    while (!svLinks.empty()) { // names that are as in another document
        TakeUpTo(svLinks, "](#");
        AddRows(SectionOf(_svPage, TakeUpTo(svLinks, ")")));
    }
    AddRows(SectionOf(_svPage, "What holds for all"));
}

void DocumentPage::AddRows(std::string_view _svSection)
{
    std::string sOwners; // of all words of a table, as its head names them
    while (!_svSection.empty()) {
        std::string_view svLine = TakeUpTo(_svSection, "\n");
        if (svLine.empty()) {
            sOwners.clear();
        } else if (svLine.starts_with("| word of ")) {
            sOwners = svLine.substr(0, svLine.find('|', 1));
        } else if (svLine.starts_with("| `")) {
            TakeUpTo(svLine, "|");
            const std::string sNames(TakeUpTo(svLine, "|"));
            const std::string sWhere(sOwners.empty() ? TakeUpTo(svLine, "|") : sOwners);
            m_vecRow.push_back({sNames, sWhere, PlainText(TakeUpTo(svLine, "|"))});
        }
    }
}

template <class... TTests>
std::string DocumentPage::FirstOf(std::string_view _svName, const TTests&... _fnIsWhere) const
{
    std::string sFound;
    const auto Find = [&](const auto& _fnTest) {
        const auto itRow = std::ranges::find_if(
            m_vecRow, [&](const Row& _rstRow) { return HasName(_rstRow.sNames, _svName) && _fnTest(_rstRow.sWhere); });
        sFound = itRow == m_vecRow.end() ? "" : itRow->sMeaning;
        return !sFound.empty();
    };
    (Find(_fnIsWhere) || ...);
    return sFound;
}

std::string DocumentPage::Meaning(std::string_view _svElement, std::string_view _svName) const
{
    return FirstOf(
        _svName, [&](const std::string& _rsWhere) { return HasName(_rsWhere, _svElement); },
        [](const std::string& _rsWhere) { return _rsWhere.find('`') == std::string::npos; });
}

std::string DocumentPage::WordMeaning(std::string_view _svElement, std::string_view _svName,
                                      std::string_view _svWord) const
{
    return FirstOf(
        _svWord,
        [&](const std::string& _rsWhere) { return HasName(_rsWhere, _svName) && HasName(_rsWhere, _svElement); },
        [&](const std::string& _rsWhere) { return HasName(_rsWhere, _svName); },
        [](const std::string& _rsWhere) { return _rsWhere == "| word of a flag "; });
}

} // namespace Vrnt
