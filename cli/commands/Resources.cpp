// Owns `vantor resources`: the resources of a file, and the data of one of them.
#include <array>
#include <cstdio>
#include <memory>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Output.h"
#include "ResourceFile.h"
#include "vantor/foundation/StResourceContext.h"

namespace cli {
namespace {

struct Facts {
    ResType type = 0;
    ResID id = 0;
    SInt32 size = 0;  // bytes
    ResAttributes attributes = 0;
    std::string name;
};

using Data = std::vector<UInt8>;

Facts FactsOf(Handle inResource) {
    Facts facts;
    Str255 name;
    GetResInfo(inResource, &facts.id, &facts.type, name);
    facts.size = GetResourceSizeOnDisk(inResource);
    facts.attributes = GetResAttrs(inResource);
    facts.name = MacRomanText(name);
    return facts;
}

// Every resource, or those of one type, in the order of the map.
std::vector<Facts> AllFacts(std::optional<ResType> inType) {
    std::vector<Facts> all;
    for (SInt16 i = 1; i <= Count1Types(); ++i) {
        ResType type = 0;
        Get1IndType(&type, i);
        if (inType && *inType != type) continue;
        const SInt16 count = Count1Resources(type);
        for (SInt16 j = 1; j <= count; ++j) all.push_back(FactsOf(Get1IndResource(type, j)));
    }
    return all;
}

std::vector<std::string> AttributesOf(const Facts& inFacts) {
    static constexpr std::array<std::pair<ResAttributes, const char*>, 6> kNames = {
        {{resSysHeap, "system heap"},
         {resPurgeable, "purgeable"},
         {resLocked, "locked"},
         {resProtected, "protected"},
         {resPreload, "preload"},
         {1, "compressed"}}};
    std::vector<std::string> names;
    for (const auto& [bit, name] : kNames)
        if (inFacts.attributes & bit) names.emplace_back(name);
    return names;
}

Json JsonOf(const Facts& inFacts) {
    return {{"type", Code(inFacts.type)},
            {"id", inFacts.id},
            {"size", inFacts.size},
            {"attributes", AttributesOf(inFacts)},
            {"name", inFacts.name}};
}

void PrintLine(const Facts& inFacts) {
    std::string attributes;
    for (const auto& name : AttributesOf(inFacts))
        attributes += (attributes.empty() ? "" : ", ") + name;
    std::printf("%-4s  %6d  %10d  %-10s  %s\n", Code(inFacts.type).c_str(), inFacts.id,
                inFacts.size, attributes.empty() ? "-" : attributes.c_str(), inFacts.name.c_str());
}

void List(const ResourcesRequest& inRequest) {
    const auto all = AllFacts(inRequest.type);
    if (inRequest.json) {
        Json list = Json::array();
        for (const auto& facts : all) list.push_back(JsonOf(facts));
        return PrintJson(list);
    }
    std::printf("%-4s  %6s  %10s  %-10s  %s\n", "TYPE", "ID", "SIZE", "ATTRIBUTES", "NAME");
    for (const auto& facts : all) PrintLine(facts);
}

// As it is stored, so that a compressed one can be looked at too.
Data DataOf(Handle inResource) {
    Data data(static_cast<size_t>(GetResourceSizeOnDisk(inResource)));
    ReadPartialResource(inResource, 0, data.data(), static_cast<SInt32>(data.size()));
    if (ResError() != resourceInMemory) ThrowIfFailed(ResError(), "read the resource");
    return data;
}

std::string HexOf(const Data& inData) {
    std::string text;
    char digits[3];
    for (const UInt8 byte : inData) {
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

void PrintHexLine(const Data& inData, size_t inAt) {
    std::string hex, text;
    for (size_t i = inAt; i < inAt + 16 && i < inData.size(); ++i) {
        hex += HexOf({inData[i]}) + (i % 8 == 7 ? "  " : " ");
        text += inData[i] >= ' ' && inData[i] <= '~' ? static_cast<char>(inData[i]) : '.';
    }
    std::printf("%08zx  %-50s|%s|\n", inAt, hex.c_str(), text.c_str());
}

void WriteRaw(const Data& inData, const std::string& inPath) {
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
    const bool isPipe = inPath.empty();
    File file(isPipe ? stdout : std::fopen(inPath.c_str(), "wb"),
              isPipe ? std::fflush : std::fclose);
    const bool isWritten =
        file && std::fwrite(inData.data(), 1, inData.size(), file.get()) == inData.size();
    if (!isWritten || std::fflush(file.get()) != 0)
        throw Failure((isPipe ? "standard output" : inPath) + ": cannot be written", ioErr);
}

void Dump(const ResourcesRequest& inRequest) {
    const Handle resource = Get1Resource(*inRequest.type, *inRequest.id);
    if (resource == nullptr) RefuseResources(inRequest.file, resNotFound);
    const Facts facts = FactsOf(resource);
    const Data data = DataOf(resource);
    if (inRequest.raw || !inRequest.target.empty()) return WriteRaw(data, inRequest.target);
    if (inRequest.json) {
        Json json = JsonOf(facts);
        json["data"] = HexOf(data);
        return PrintJson(json);
    }
    for (size_t at = 0; at < data.size(); at += 16) PrintHexLine(data, at);
}

}  // namespace

void ShowResources(const ResourcesRequest& inRequest) {
    const StResLoad noLoading(false);
    const ResourceFile file(inRequest.file);
    if (inRequest.id)
        Dump(inRequest);
    else
        List(inRequest);
}

}  // namespace cli
