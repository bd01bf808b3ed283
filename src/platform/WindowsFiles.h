// platform/WindowsFiles.h
// Files that another program has open. For the …Windows.cpp of this folder.
#pragma once

#include "platform/FilePath.h"
#include "platform/WindowsText.h"

#include <string>

namespace tarnvexo::platform {

inline std::string ReasonOfFileError(DWORD error)
{
    const bool isOpen =
        error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE;
    return isOpen ? FileIsOpenElsewhere : ReasonOfSystemError(error);
}

// What a step returns, 0 or an error, taken again for a while as long as the file is open elsewhere: virus scanners,
// indexers and synchronisation look into files right after they were written.
template <class Step> DWORD Persistently(const Step& step, DWORD patience = 2000)
{
    constexpr DWORD pause = 50; // milliseconds, as patience is
    DWORD error = step();
    for (DWORD waited = 0; waited < patience && (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ||
                                                 error == ERROR_ACCESS_DENIED);
         waited += pause) {
        Sleep(pause);
        error = step();
    }
    return error;
}

inline DWORD MoveNow(const std::string& from, const std::string& to)
{
    return MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)
               ? ERROR_SUCCESS
               : GetLastError();
}

} // namespace tarnvexo::platform
