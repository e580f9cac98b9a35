#pragma once

#include "Documents/LocalUpdate.h"
#include "Request.h"
#include "SrvFrwk_ResultCode.h"
#include "Update/LocalUpdateManager.h"
#include "UpdateBench.h"

#include <cstdint>
#include <gmock/gmock-more-matchers.h>
#include <string>
#include <vector>

using namespace SrvFrwk;
using namespace Varnhelt;
using testing::ElementsAre;
using testing::IsEmpty;

/** What tests of local updates share: decisions, the round trip of an update and its undo, and words for descriptions. */
namespace UpdateTest {

/** What was decided: the items' roots, a letter for each entry's effect, and all reasons. */
class Decisions : public UpdateObserver
{
public:
    void OnItem(const LocalUpdateKey& _rstItem, UpdateReason _enReason) override
    {
        vecRoot.push_back(_rstItem.tszRoot);
        if (_enReason != UpdateReason::None) {
            vecReason.push_back(_enReason);
        }
    }
    void OnEntry(const UpdatePlace&, const LocalUpdateEntry&, const UpdateDecision& _rstDecision) override
    {
        tszEffects += L"cwar-!"[static_cast<std::size_t>(_rstDecision.enEffect)];
        vecReason.push_back(_rstDecision.enReason);
        vecError.push_back(_rstDecision.ulError);
        tszInPart += _rstDecision.bInPart ? L'p' : L'.';
    }

    friend bool operator==(const Decisions& _rLeft, const Decisions& _rRight)
    {
        return _rLeft.tszEffects == _rRight.tszEffects && _rLeft.vecReason == _rRight.vecReason &&
               _rLeft.tszInPart == _rRight.tszInPart;
    }

    std::vector<std::wstring> vecRoot;
    std::wstring tszEffects;
    std::vector<UpdateReason> vecReason;
    std::vector<std::uint32_t> vecError;
    std::wstring tszInPart; // a letter for each entry, 'p' where it was done in part
};

class LocalUpdate : public testing::Test
{
protected:
    /** Carries the description out on a storage; its file stays. */
    static void Run(const std::wstring& _rtszPath, UpdateStorages& _rStorages, Decisions& _rDecisions);

    /**
     * Rehearses, applies and undoes. The rehearsal changes nothing and decides what the update decides; afterwards the
     * machine is as rehearsed, and after the undoing as it was, but for what the undo says that it leaves.
     * @return the effects, and the lines that only one of the two states has
     */
    std::vector<std::wstring> RoundTrip(const std::wstring& _rtszPath);

    /** Whether the last undo says that it leaves what a line of a snapshot is about. */
    bool IsNamed(const std::wstring& _rtszLine) const;

    std::uint32_t Read(const std::wstring& _rtszPath);

    UpdateBench m_cBench;
    Worker m_stWorker;
    LocalUpdateConfig m_stConfig;
    std::vector<std::wstring> m_vecAfter; // the snapshot after the last update
    std::vector<std::wstring> m_vecLeft;  // by the last undo
};

using Texts = std::vector<std::string>;

/** Entries from "action name type value+flags"; the flag "over" is that of overwriting, others are of all access. */
std::string Entries(const Texts& _rvecText, const std::string& _rsOpening, const std::string& _rsClosing);

std::string Reg(const Texts& _rvecEntry, const std::string& _rsPath = "@K@", const std::string& _rsRoot = "HKLM",
                const std::string& _rsMode = "");

std::string Ini(const Texts& _rvecEntry, const std::string& _rsSection = "A",
                const std::string& _rsPath = "@F@\\test.ini");

} // namespace UpdateTest

using namespace UpdateTest;
