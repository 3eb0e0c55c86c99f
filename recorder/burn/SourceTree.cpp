// Owns the walk over the files and folders that are going onto a disc.
#include "burn/SourceTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <map>
#include <memory>
#include <set>

#include "burn/BurnFailure.h"
#include "burn/FinderInfo.h"
#include "burn/disc_names.h"

namespace recorder {
namespace {

constexpr UInt64 kBlock = 2048;

struct CloseFolder {
    void operator()(DIR* inFolder) const { closedir(inFolder); }
};

bool IsCompanion(const std::string& inName) {
    return inName.starts_with("._");
}

const char* UnfitKind(mode_t inMode) {
    if (S_ISFIFO(inMode)) return "a pipe";
    if (S_ISSOCK(inMode)) return "a socket";
    return "a device";
}

class Walk {
  public:
    Walk(bool inWithFinderInfo, const WalkObserver& inObserver)
        : mWithFinderInfo(inWithFinderInfo), mObserver(inObserver) {
        mTree.nodes.emplace_back();
        mTree.nodes[0].facts.st_mode = S_IFDIR | 0755;
    }

    void AddItem(const std::string& inPath);
    void ReportClashes(const std::vector<std::string>& inNames, const std::string& inFolder);
    SourceTree Finish();

  private:
    void AddEntry(SourceNode&& inNode, int inFolderFd, const char* inName,
                  const std::string& inPath);
    void AddFile(SourceNode&& inNode, int inFolderFd, const char* inName,
                 const std::string& inPath);
    void TakeMacFacts(SourceNode& ioNode, int inFolderFd, const char* inName,
                      const std::string& inPath);
    void AddLink(SourceNode&& inNode, int inFolderFd, const char* inName,
                 const std::string& inPath);
    void AddMadeCompanion(const SourceNode& inOwner, const std::string& inPath);
    void ReadFolder(size_t inIndex);
    void Unreadable(const std::string& inPath, int inErrno);

    SourceTree mTree;
    bool mWithFinderInfo;
    const WalkObserver& mObserver;
};

void Walk::Unreadable(const std::string& inPath, int inErrno) {
    mTree.unreadable.push_back(inPath + ": cannot be read (" + std::strerror(inErrno) + ")");
}

void Walk::AddItem(const std::string& inPath) {
    SourceNode node;
    node.path = inPath;
    node.name = LeafName(inPath);
    if (stat(inPath.c_str(), &node.facts) != 0) throw FailureFromErrno(errno, inPath);
    if (access(CompanionPath(inPath).c_str(), F_OK) != 0) AddMadeCompanion(node, inPath);
    AddEntry(std::move(node), AT_FDCWD, inPath.c_str(), inPath);
}

void Walk::AddEntry(SourceNode&& inNode, int inFolderFd, const char* inName,
                    const std::string& inPath) {
    for (auto& line : NamesThatChange(inNode.name, inPath)) mTree.report.push_back(std::move(line));
    switch (inNode.facts.st_mode & S_IFMT) {
        case S_IFDIR:
            inNode.kind = SourceNode::Kind::Folder;
            mTree.nodes.push_back(std::move(inNode));
            return;
        case S_IFREG:
            return AddFile(std::move(inNode), inFolderFd, inName, inPath);
        case S_IFLNK:
            return AddLink(std::move(inNode), inFolderFd, inName, inPath);
        default:
            mTree.report.push_back(inPath + ": " + UnfitKind(inNode.facts.st_mode) +
                                   " cannot be put on a disc; left out");
    }
}

void Walk::AddFile(SourceNode&& inNode, int inFolderFd, const char* inName,
                   const std::string& inPath) {
    if (faccessat(inFolderFd, inName, R_OK, AT_EACCESS) != 0) return Unreadable(inPath, errno);
    inNode.kind = SourceNode::Kind::File;
    if (mWithFinderInfo) TakeMacFacts(inNode, inFolderFd, inName, inPath);
    mTree.contentBytes += (UInt64(inNode.facts.st_size) + kBlock - 1) / kBlock * kBlock;
    mTree.nodes.push_back(std::move(inNode));
}

// The HFS+ part has a place for type and creator, and none for a fork.
void Walk::TakeMacFacts(SourceNode& ioNode, int inFolderFd, const char* inName,
                        const std::string& inPath) {
    if (IsCompanion(ioNode.name)) return;
    const MacFacts facts = ReadMacFacts(inFolderFd, inName, inPath);
    ioNode.type = facts.type;
    ioNode.creator = facts.creator;
    if (facts.hasFork)
        mTree.report.push_back(inPath + ": its resource fork lies beside it, in \"" +
                               CompanionPath(ioNode.name) + "\"");
}

// What lies in extended attributes goes onto the disc as a companion, which readers know.
void Walk::AddMadeCompanion(const SourceNode& inOwner, const std::string& inPath) {
    if (IsCompanion(inOwner.name) || S_ISLNK(inOwner.facts.st_mode)) return;
    SourceNode node;
    node.contents = CompanionFromAttributes(inPath);
    if (node.contents.empty()) return;
    node.kind = SourceNode::Kind::File;
    node.parent = inOwner.parent;
    node.name = CompanionPath(inOwner.name);
    node.path = CompanionPath(inPath);
    if (node.name.size() > NAME_MAX) {
        mTree.report.push_back(inPath + ": its name is too long for a companion; its Finder " +
                               "information and resource fork are left out");
        return;
    }
    node.facts = inOwner.facts;
    node.facts.st_mode = S_IFREG | (inOwner.facts.st_mode & 0666);
    node.facts.st_size = off_t(node.contents.size());
    mTree.contentBytes += (node.contents.size() + kBlock - 1) / kBlock * kBlock;
    mTree.nodes.push_back(std::move(node));
}

void Walk::AddLink(SourceNode&& inNode, int inFolderFd, const char* inName,
                   const std::string& inPath) {
    char target[4096];
    const ssize_t size = readlinkat(inFolderFd, inName, target, sizeof target);
    if (size < 0) return Unreadable(inPath, errno);
    mTree.report.push_back(inPath +
                           ": a symbolic link; systems that read Joliet names do not show it");
    inNode.kind = SourceNode::Kind::Link;
    inNode.target.assign(target, size_t(size));
    mTree.nodes.push_back(std::move(inNode));
}

void Walk::ReadFolder(size_t inIndex) {
    const std::string path = mTree.PathOf(inIndex);
    if (!mObserver(mTree.nodes.size(), path)) throw BurnCancelled();
    const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return Unreadable(path, errno);
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(fd));
    if (!folder) {
        const int error = errno;
        close(fd);
        return Unreadable(path, error);
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(folder.get())) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            names.emplace_back(entry->d_name);
    }
    if (errno != 0) return Unreadable(path, errno);
    // Descending: libisofs finds the place of a new name from the front, so each one goes there at
    // once.
    std::sort(names.begin(), names.end(), std::greater<>());
    if (mWithFinderInfo) ReportClashes(names, path);
    size_t count = 0;
    for (const auto& name : names) {
        if (++count % 1024 == 0 && !mObserver(mTree.nodes.size(), path)) throw BurnCancelled();
        SourceNode node;
        node.parent = inIndex;
        node.name = name;
        const std::string leaf = node.name, full = path + "/" + leaf;
        if (fstatat(fd, leaf.c_str(), &node.facts, AT_SYMLINK_NOFOLLOW) != 0) {
            Unreadable(full, errno);
            continue;
        }
        if (!std::binary_search(names.begin(), names.end(), CompanionPath(leaf), std::greater<>()))
            AddMadeCompanion(node, full);
        AddEntry(std::move(node), fd, leaf.c_str(), full);
    }
}

// HFS+ takes names that differ in case or in the form of accented letters alone for one.
void Walk::ReportClashes(const std::vector<std::string>& inNames, const std::string& inFolder) {
    std::map<std::u16string, const std::string*> known;
    for (const auto& name : inNames) {
        const auto [first, isNew] = known.try_emplace(FoldedName(name), &name);
        if (isNew) continue;
        mTree.report.push_back((inFolder.empty() ? name : inFolder + "/" + name) +
                               ": HFS+ cannot tell its name from \"" + *first->second +
                               "\"; one of the two is shown changed there");
    }
}

SourceTree Walk::Finish() {
    for (size_t index = 1; index < mTree.nodes.size(); ++index)
        if (mTree.nodes[index].kind == SourceNode::Kind::Folder) ReadFolder(index);
    return std::move(mTree);
}

// An item's companion holds what its file system has no place for: it goes along, as inside
// folders.
void AddCompanions(std::vector<std::string>& ioPaths) {
    const size_t count = ioPaths.size();
    for (size_t i = 0; i < count; ++i) {
        const std::string companion = CompanionPath(ioPaths[i]);
        if (access(companion.c_str(), F_OK) == 0 &&
            std::find(ioPaths.begin(), ioPaths.end(), companion) == ioPaths.end())
            ioPaths.push_back(companion);
    }
}

void RefuseSameNames(const std::vector<std::string>& inPaths) {
    std::set<std::string> names;
    for (const auto& path : inPaths)
        if (!names.insert(LeafName(path)).second)
            throw BurnFailure(dupFNErr,
                              "Two of the added items are called \"" + LeafName(path) + "\".");
}

}  // namespace

std::string LeafName(const std::string& inPath) {
    const size_t end = inPath.find_last_not_of('/');
    if (end == std::string::npos) return {};
    const size_t slash = inPath.rfind('/', end);
    const size_t start = slash == std::string::npos ? 0 : slash + 1;
    return inPath.substr(start, end + 1 - start);
}

std::string SourceTree::PathOf(size_t inIndex) const {
    const SourceNode& node = nodes[inIndex];
    return inIndex == 0 || !node.path.empty() ? node.path : PathOf(node.parent) + "/" + node.name;
}

SourceTree WalkSources(const std::vector<std::string>& inPaths, bool inWithFinderInfo,
                       const WalkObserver& inObserver) {
    std::vector<std::string> paths = inPaths;
    AddCompanions(paths);
    RefuseSameNames(paths);
    std::sort(paths.begin(), paths.end(),
              [](const auto& a, const auto& b) { return LeafName(a) > LeafName(b); });
    Walk walk(inWithFinderInfo, inObserver);
    std::vector<std::string> names(paths.size());
    std::transform(paths.begin(), paths.end(), names.begin(), LeafName);
    if (inWithFinderInfo) walk.ReportClashes(names, "");
    for (const auto& path : paths) walk.AddItem(path);
    return walk.Finish();
}

}  // namespace recorder
