#pragma once

#include "Update/UpdateRecording.h"

#include <string>
#include <vector>

/** The way back from a local update. */
namespace Varnhelt {

struct UpdateUndo
{
    std::string sDescription;          // a local update description, as a file holds it
    std::vector<std::wstring> vecLeft; // what it does not bring back, in words
};

/**
 * The description that brings the machine back from where a rehearsed update would take it. It is rehearsed too, on the
 * same record, so that what it leaves is what was seen to be left.
 * @param _rStorage  the record of the update; afterwards it is at the end of the undoing
 */
UpdateUndo UndoOf(RecordingStorage& _rStorage);

} // namespace Varnhelt
