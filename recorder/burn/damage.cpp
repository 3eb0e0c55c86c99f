// Owns the look into a damaged disc, with libisofs reading through the drive.
#include "burn/damage.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <libisofs/libisofs.h>

#include "burn/Drive.h"

namespace recorder {
namespace {

constexpr UInt64 kSector = 2048;

struct Reader {
    Recording& recording;
    UInt64 size;
    const std::atomic<bool>& stop;
};

// Opening and closing always succeed: the drive is held by the job.
int AlwaysFine(IsoDataSource*) {
    return 1;
}

int ReadSector(IsoDataSource* inSource, uint32_t inSector, uint8_t* outData) {
    const auto* reader = static_cast<const Reader*>(inSource->data);
    if (reader->stop.load()) return int(ISO_CANCELED);
    if (UInt64(inSector) * kSector + kSector > reader->size) return int(ISO_FILE_READ_ERROR);
    try {
        reader->recording.ReadBack(UInt64(inSector) * kSector, outData, kSector);
    } catch (const std::exception&) {     // C code is what calls
        return int(ISO_FILE_READ_ERROR);  // one unreadable place among others
    }
    return 1;
}

struct FreeSource {
    void operator()(IsoDataSource* inSource) const { iso_data_source_unref(inSource); }
};
struct FreeImage {
    void operator()(IsoImage* inImage) const { iso_image_unref(inImage); }
};
struct FreeReadOptions {
    void operator()(IsoReadOpts* inOptions) const { iso_read_opts_free(inOptions); }
};

std::unique_ptr<IsoImage, FreeImage> Import(Reader& inReader) {
    auto* raw = static_cast<IsoDataSource*>(std::calloc(1, sizeof(IsoDataSource)));
    IsoImage* image = nullptr;
    IsoReadOpts* options = nullptr;
    if (raw == nullptr || iso_image_new("", &image) < 0 || iso_read_opts_new(&options, 0) < 0) {
        std::free(raw);
        if (image != nullptr) iso_image_unref(image);
        return nullptr;
    }
    *raw = {0, 1, AlwaysFine, AlwaysFine, ReadSector, [](IsoDataSource*) {}, &inReader};
    const std::unique_ptr<IsoDataSource, FreeSource> source(raw);
    std::unique_ptr<IsoImage, FreeImage> owner(image);
    const std::unique_ptr<IsoReadOpts, FreeReadOptions> reading(options);
    iso_read_opts_set_no_aaip(options, 0);
    iso_read_opts_set_no_md5(options, 0);
    return iso_image_import(image, source.get(), options, nullptr) < 0 ? nullptr : std::move(owner);
}

using Sections = std::vector<iso_file_section>;

Sections SectionsOf(IsoFile* inFile) {
    int count = 0;
    iso_file_section* sections = nullptr;
    if (iso_file_get_old_image_sections(inFile, &count, &sections, 0) <= 0) return {};
    Sections result(sections, sections + count);
    std::free(sections);
    return result;
}

bool Overlaps(const Sections& inSections, UInt64 inOffset, UInt64 inLength) {
    for (const auto& section : inSections) {
        const UInt64 start = UInt64(section.block) * kSector;
        if (start < inOffset + inLength && inOffset < start + section.size) return true;
    }
    return false;
}

// Whether the file still has the sum that was recorded on the disc for it.
bool IsIntact(Reader& inReader, IsoImage* inImage, IsoFile* inFile, const Sections& inSections) {
    char recorded[16], found[16];
    void* sum = nullptr;
    if (iso_file_get_md5(inImage, inFile, recorded, 0) <= 0 || iso_md5_start(&sum) <= 0)
        return false;
    bool readable = true;
    std::vector<UInt8> chunk(Recording::kChunk);
    for (const auto& section : inSections) {
        for (UInt64 done = 0; readable && done < section.size;) {
            if (inReader.stop.load()) break;
            const size_t count = size_t(std::min<UInt64>(chunk.size(), section.size - done));
            try {
                inReader.recording.ReadBack(UInt64(section.block) * kSector + done, chunk.data(),
                                            count);
            } catch (const BurnFailure&) {
                readable = false;  // then this is the damaged one
            }
            iso_md5_compute(sum, reinterpret_cast<char*>(chunk.data()), int(count));
            done += count;
        }
    }
    iso_md5_end(&sum, found);
    return readable && iso_md5_match(recorded, found) != 0;
}

std::string FindFile(Reader& inReader, IsoImage* inImage, UInt64 inOffset, UInt64 inLength) {
    std::vector<std::pair<IsoDir*, std::string>> folders = {{iso_image_get_root(inImage), ""}};
    for (size_t i = 0; i < folders.size(); ++i) {
        IsoDirIter* children = nullptr;
        if (iso_dir_get_children(folders[i].first, &children) < 0) continue;
        std::string found;
        for (IsoNode* node = nullptr;
             found.empty() && !inReader.stop.load() && iso_dir_iter_next(children, &node) == 1;) {
            const std::string path = folders[i].second + "/" + iso_node_get_name(node);
            if (ISO_NODE_IS_DIR(node)) folders.emplace_back(ISO_DIR(node), path);
            if (!ISO_NODE_IS_FILE(node)) continue;
            const Sections sections = SectionsOf(ISO_FILE(node));
            if (Overlaps(sections, inOffset, inLength) &&
                !IsIntact(inReader, inImage, ISO_FILE(node), sections))
                found = path;
        }
        iso_dir_iter_free(children);
        if (!found.empty()) return found;
    }
    return {};
}

}  // namespace

std::string WhatLiesAt(Recording& inRecording, const JobContext& inContext, UInt64 inDiscSize,
                       UInt64 inOffset, UInt64 inLength) {
    Reader reader{inRecording, inDiscSize, inContext.stop};
    const auto image = Import(reader);
    const std::string file = image ? FindFile(reader, image.get(), inOffset, inLength) : "";
    inContext.CheckStop();
    return file.empty() ? "the directories or the space between files" : "the file " + file;
}

}  // namespace recorder
