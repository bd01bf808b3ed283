#include "app/CutOffRuns.h"

#include "app/UnfinishedFile.h"
#include "platform/FilePath.h"

#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>

namespace tarnvexo {

namespace {

namespace fs = std::filesystem;

// Number of the process in "NAME.<process>SUFFIX"; "" when the file's name is another one.
std::string ProcessOf(std::string_view file, std::string_view name, std::string_view suffix)
{
    if (file.size() <= name.size() + 1 + suffix.size() || !file.starts_with(name) || file[name.size()] != '.' ||
        !file.ends_with(suffix)) {
        return "";
    }
    const std::string_view process = file.substr(name.size() + 1, file.size() - name.size() - 1 - suffix.size());
    return process.find_first_not_of("0123456789") == std::string_view::npos ? std::string(process) : "";
}

struct LeftFile {
    std::size_t set = 0;
    fs::path target;
    fs::path unfinished, earlier; // where they would be
    bool hasUnfinished = false, hasEarlier = false;
};

// One per name of the sets that the run wrote.
using LeftRun = std::vector<LeftFile>;

// Every name with its set.
struct NameOfSet {
    std::string name;
    std::size_t set;
};

std::vector<NameOfSet> AllNames(const std::vector<std::vector<std::string>>& sets)
{
    std::vector<NameOfSet> names;
    for (std::size_t set = 0; set < sets.size(); ++set) {
        for (const std::string& name : sets[set]) { names.push_back({name, set}); }
    }
    return names;
}

// Forgets the sets of which the run left nothing.
void DropOtherSets(std::size_t sets, LeftRun& run)
{
    std::vector<bool> isOfRun(sets, false);
    for (const LeftFile& file : run) {
        if (file.hasUnfinished || file.hasEarlier) {
            isOfRun[file.set] = true;
        }
    }
    std::erase_if(run, [&](const LeftFile& file) { return !isOfRun[file.set]; });
}

// By the numbers of their processes.
std::map<std::string, LeftRun> LeftRuns(const fs::path& directory, const std::vector<std::vector<std::string>>& sets)
{
    const std::vector<NameOfSet> names = AllNames(sets);
    std::map<std::string, LeftRun> runs;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        if (!fs::is_regular_file(entry->symlink_status(gone))) {
            continue; // a pipe or a link is nothing that a run leaves
        }
        const std::string file = entry->path().filename().string();
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string writing = ProcessOf(file, names[i].name, UnfinishedSuffix);
            const std::string replacing = ProcessOf(file, names[i].name, EarlierSuffix);
            if (!writing.empty() || !replacing.empty()) {
                LeftRun& run = runs[writing + replacing];
                run.resize(names.size());
                (writing.empty() ? run[i].hasEarlier : run[i].hasUnfinished) = true;
            }
        }
    }
    for (auto& [process, run] : runs) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string& name = names[i].name;
            run[i].set = names[i].set;
            run[i].target = directory / name;
            run[i].unfinished = directory / (name + "." + process + UnfinishedSuffix);
            run[i].earlier = directory / (name + "." + process + EarlierSuffix);
        }
        DropOtherSets(sets.size(), run);
    }
    return runs;
}

bool Exists(const fs::path& path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// All earlier files are moved aside first, then the new ones are moved in. In a run cut off between, nothing bears a
// name whose earlier file has been moved aside and whose new one is not in. Where something does, another program has
// written since, and its files stay.
bool WasCutOffWithin(const LeftRun& run)
{
    bool anyUnfinished = false, anyEarlier = false, anyIsIn = false;
    for (const LeftFile& file : run) {
        anyUnfinished = anyUnfinished || file.hasUnfinished;
        anyEarlier = anyEarlier || file.hasEarlier;
        anyIsIn = anyIsIn || (file.hasEarlier && !file.hasUnfinished);
    }
    for (const LeftFile& file : run) {
        const bool isAside = file.hasEarlier || anyIsIn;
        if (file.hasUnfinished && isAside && Exists(file.target)) {
            return false;
        }
    }
    return anyUnfinished && anyEarlier;
}

// True when any file has its name back. Where only earlier ones are left, either all new ones have their names, or a
// refused replacement could not be taken back.
bool PutBack(const LeftRun& run)
{
    const bool cutOffWithin = WasCutOffWithin(run);
    bool anyIsBack = false;
    std::error_code error;
    for (const LeftFile& file : run) {
        if (cutOffWithin && !file.hasUnfinished) { // the new file has taken its name
            fs::remove(file.target, error);
        }
        if (file.hasEarlier && !Exists(file.target)) {
            fs::rename(file.earlier, file.target, error);
            anyIsBack = anyIsBack || !error;
        }
    }
    return anyIsBack;
}

} // namespace

std::string ClearCutOffRuns(const std::string& directory, const std::vector<std::vector<std::string>>& sets)
{
    bool anyIsBack = false;
    std::size_t removed = 0;
    for (const auto& [process, run] : LeftRuns(platform::PathOf(directory), sets)) {
        anyIsBack = PutBack(run) || anyIsBack;
        for (const LeftFile& file : run) {
            std::error_code error;
            removed += fs::remove(file.unfinished, error) ? 1u : 0u;
            if (Exists(file.target)) { // else it could not be put back, and is all there is
                removed += fs::remove(file.earlier, error) ? 1u : 0u;
            }
        }
    }
    std::string note;
    if (anyIsBack) {
        note = directory + ": note: a run was cut off while its result files took their names; those of the run "
                           "before it are back";
    }
    if (removed > 0) {
        note += (note.empty() ? "" : "\n") + directory + ": note: removed " + std::to_string(removed) +
                (removed == 1 ? " file" : " files") + " that a run left unfinished when it was cut off";
    }
    return note;
}

} // namespace tarnvexo
