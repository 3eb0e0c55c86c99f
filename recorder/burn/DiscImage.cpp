// Owns the building of a disc's file system with libisofs.
#include "burn/DiscImage.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include <libburn/libburn.h>
#include <libisofs/libisofs.h>

#include "burn/BurnFailure.h"
#include "burn/libraries.h"

namespace recorder {
namespace {

constexpr size_t kNodesBetweenQuestions = 1024;

int Check(int inResult, const std::string& inWhat) {
    if (inResult >= 0) return inResult;
    const SInt32 code = inResult == int(ISO_OUT_OF_MEM) ? SInt32(memFullErr) : SInt32(ioErr);
    throw BurnFailure(code, inWhat + ": " + iso_error_to_msg(inResult) + ".");
}

void SetTypeAndCreator(IsoNode* inNode, const SourceNode& inSource) {
    if (inSource.type == 0 && inSource.creator == 0) return;
    iso_hfsplus_xinfo_data* info = iso_hfsplus_xinfo_new(0);
    if (info == nullptr) throw BurnFailure(memFullErr, "There is not enough memory.");
    for (int i = 0; i < 4; ++i) {
        info->type_code[i] = UInt8(inSource.type >> (24 - 8 * i));
        info->creator_code[i] = UInt8(inSource.creator >> (24 - 8 * i));
    }
    Check(iso_node_add_xinfo(inNode, iso_hfsplus_xinfo_func, info), inSource.name);
}

struct Freed {
    void operator()(unsigned char* inBytes) const { std::free(inBytes); }
};

// The stream of bytes that are not in a file; it has a copy of them.
IsoStream* NewMemoryStream(const SourceNode& inSource, const std::string& inPath) {
    const size_t size = inSource.contents.size();
    std::unique_ptr<unsigned char, Freed> bytes(static_cast<unsigned char*>(std::malloc(size)));
    if (bytes == nullptr) throw BurnFailure(memFullErr, "There is not enough memory.");
    std::memcpy(bytes.get(), inSource.contents.data(), size);
    IsoStream* stream = nullptr;
    Check(iso_memory_stream_new(bytes.get(), size, &stream), inPath);
    bytes.release();  // The stream frees them, which the analyser does not see.
    return stream;    // NOLINT(clang-analyzer-unix.Malloc)
}

IsoNode* AddFile(IsoDir* inParent, const SourceNode& inSource, const std::string& inPath,
                 const SourceWatch* inWatch) {
    void* stream = inSource.contents.empty() ? nullptr : NewMemoryStream(inSource, inPath);
    IsoFile* file = nullptr;
    if (stream == nullptr)
        Check(NewSourceStream(inPath.c_str(), &inSource.facts, inWatch, &stream), inPath);
    const int result = iso_tree_add_new_file(inParent, inSource.name.c_str(),
                                             static_cast<IsoStream*>(stream), &file);
    if (result < 0) FreeSourceStream(stream);
    Check(result, inPath);
    SetTypeAndCreator(ISO_NODE(file), inSource);
    return ISO_NODE(file);
}

IsoNode* AddNode(IsoDir* inParent, const SourceTree& inTree, size_t inIndex,
                 const SourceWatch* inWatch) {
    const SourceNode& source = inTree.nodes[inIndex];
    const std::string path = inTree.PathOf(inIndex);
    if (source.kind == SourceNode::Kind::File) return AddFile(inParent, source, path, inWatch);
    if (source.kind == SourceNode::Kind::Folder) {
        IsoDir* folder = nullptr;
        Check(iso_tree_add_new_dir(inParent, source.name.c_str(), &folder), path);
        return ISO_NODE(folder);
    }
    IsoSymlink* link = nullptr;
    Check(iso_tree_add_new_symlink(inParent, source.name.c_str(), source.target.c_str(), &link),
          path);
    return ISO_NODE(link);
}

void SetFacts(IsoNode* inNode, const struct stat& inFacts) {
    iso_node_set_permissions(inNode, inFacts.st_mode & 07777);
    iso_node_set_mtime(inNode, inFacts.st_mtim.tv_sec);
    iso_node_set_atime(inNode, inFacts.st_atim.tv_sec);
    iso_node_set_ctime(inNode, inFacts.st_ctim.tv_sec);
}

struct FreeOptions {
    void operator()(IsoWriteOpts* inOptions) const { iso_write_opts_free(inOptions); }
};

std::unique_ptr<IsoWriteOpts, FreeOptions> WriteOptions(bool inHfsPlus) {
    IsoWriteOpts* made = nullptr;
    Check(iso_write_opts_new(&made, 1), "Options");
    std::unique_ptr<IsoWriteOpts, FreeOptions> options(made);
    iso_write_opts_set_iso_level(made, 3);
    iso_write_opts_set_rockridge(made, 1);
    iso_write_opts_set_joliet(made, 1);
    iso_write_opts_set_joliet_long_names(made, 1);
    iso_write_opts_set_joliet_longer_paths(made, 1);
    iso_write_opts_set_allow_deep_paths(made, 1);
    iso_write_opts_set_allow_longer_paths(made, 1);
    iso_write_opts_set_hardlinks(made, 1);
    iso_write_opts_set_dir_rec_mtime(made, 7);
    iso_write_opts_set_replace_mode(made, 0, 0, 2, 2);
    iso_write_opts_set_default_uid(made, 0);
    iso_write_opts_set_default_gid(made, 0);
    iso_write_opts_set_output_charset(made, "UTF-8");
    iso_write_opts_set_record_md5(made, 1, 1);
    iso_write_opts_set_aaip(made, 1);  // without it nobody finds the sums again
    iso_write_opts_set_hfsplus(made, inHfsPlus ? 1 : 0);
    iso_write_opts_set_fifo_size(made, 2048);
    return options;
}

class IsoStreamReader : public ImageStream {
  public:
    IsoStreamReader(::burn_source* inSource, const SourceWatcher& inWatcher)
        // libburn's header declares this structure inside a namespace, libisofs' outside.
        : mSource(reinterpret_cast<burn::burn_source*>(inSource)),
          mWatcher(inWatcher),
          mSize(UInt64(mSource->get_size(mSource))) {}
    ~IsoStreamReader() override {
        mSource->cancel(mSource);
        mSource->free_data(mSource);
        std::free(mSource);
    }

    UInt64 Size() const override { return mSize; }
    void Read(UInt8* outData, size_t inSize) override {
        if (mSource->read_xt(mSource, outData, int(inSize)) != int(inSize)) Explain();
    }

  private:
    [[noreturn]] void Explain() const {
        if (const auto failure = mWatcher.Failure()) throw *failure;
        if (const auto failure = CauseFromMessages()) throw *failure;
        throw BurnFailure(ioErr, "The disc's contents ended early.");
    }

    burn::burn_source* mSource;
    const SourceWatcher& mWatcher;
    UInt64 mSize;
};

}  // namespace

DiscImage::DiscImage(const SourceTree& inTree, const ImageSettings& inSettings,
                     const SourceWatcher& inWatcher, const std::function<bool()>& inKeepGoing)
    : mSettings(inSettings), mWatcher(inWatcher) {
    Check(iso_image_new(inSettings.volumeName.c_str(), &mImage), "New image");
    try {
        iso_image_set_ignore_aclea(mImage, 3);
        std::vector<IsoDir*> folders(inTree.nodes.size());
        folders[0] = iso_image_get_root(mImage);
        iso_node_set_permissions(ISO_NODE(folders[0]), 0755);
        for (size_t index = 1; index < inTree.nodes.size(); ++index) {
            if (index % kNodesBetweenQuestions == 0 && !inKeepGoing()) throw BurnCancelled();
            IsoNode* node =
                AddNode(folders[inTree.nodes[index].parent], inTree, index, inWatcher.Watch());
            SetFacts(node, inTree.nodes[index].facts);
            if (ISO_NODE_IS_DIR(node)) folders[index] = ISO_DIR(node);
        }
    } catch (...) {
        iso_image_unref(mImage);
        throw;
    }
}

DiscImage::~DiscImage() {
    iso_image_unref(mImage);
}

std::unique_ptr<ImageStream> DiscImage::Open() {
    ForgetMessages();
    ::burn_source* source = nullptr;
    const int result =
        iso_image_create_burn_source(mImage, WriteOptions(mSettings.hfsPlus).get(), &source);
    if (result < 0) {
        if (const auto failure = CauseFromMessages()) throw *failure;
        Check(result, "Planning the disc");
    }
    return std::make_unique<IsoStreamReader>(source, mWatcher);
}

}  // namespace recorder
