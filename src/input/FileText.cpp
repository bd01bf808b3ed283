#include "input/FileText.h"

namespace tarnvexo {

FileText::FileText(const char* fileName, int silenceSeconds, platform::StreamJudge goesOn) : mapped(fileName)
{
    isRead = IsMapped() || platform::ReadStream(fileName, silenceSeconds, goesOn, copy);
}

} // namespace tarnvexo
