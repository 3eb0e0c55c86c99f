// One function for each word of the command line. They print their result and throw a Failure when
// it cannot be had.
#pragma once

#include <Carbon/Carbon.h>

#include <optional>
#include <string>
#include <vector>

namespace cli {

struct BurnRequest {
    std::vector<std::string> files;
    std::string
        target;  // an image file to make, or a device; empty: the recorder's own drive decides
    std::string volumeName;
    std::string kind = "data";
    bool simulate = false;
    bool verify = true;
    std::optional<bool> eject;  // not said: eject a device, leave an image drive alone
    bool replace = false;
    bool json = false;
};

void Burn(const BurnRequest& inRequest);

struct ResourcesRequest {
    std::string file;
    std::optional<ResType> type;  // not said: all of them
    std::optional<ResID> id;      // not said: list, instead of the data of one
    std::string target;           // a file for the bytes
    bool raw = false;             // the bytes to standard output
    bool json = false;
};

void ShowResources(const ResourcesRequest& inRequest);

struct FindRequest {
    std::string creator, type;  // up to four characters; empty: any
    std::string name;           // what the name contains, in any case; empty: anything
    std::string volume;         // a volume's name, or a path on it
    bool json = false;
};

void Find(const FindRequest& inRequest);

struct MonitorRequest {
    std::optional<AEEventClass> eventClass;
    std::optional<AEEventID> eventID;
    std::string name;      // of the event in the target's dictionary; empty: any
    std::string process;   // the sender or the target, as Target.h has it; empty: any
    std::string capture;   // a file to keep what is shown in; empty: none
    bool isPlain = false;  // without names
    bool json = false;
};

// Until Ctrl-C.
void MonitorEvents(const MonitorRequest& inRequest);

struct SendRequest {
    std::string target;
    std::vector<std::string> event;  // CLASS ID or a name, then parameters or nothing
    bool awaitsReply = true;
    double seconds = 60;   // 0: for ever
    bool isPlain = false;  // without names
    bool json = false;
};

void SendEvent(const SendRequest& inRequest);

struct PropertyRequest {
    // PROPERTY, any number of `of` CLASS SELECTOR or `of` PROPERTY, TARGET, for setting the VALUE
    std::vector<std::string> words;
    bool isPlain = false;  // without names
    bool json = false;
};

void GetProperty(const PropertyRequest& inRequest);
void SetProperty(const PropertyRequest& inRequest);

// A signature, a name, a path; for quitting a PID or a number too.
void Launch(const std::string& inApplication, bool inJson);
void Quit(const std::string& inTarget, bool inJson);

struct ReplayRequest {
    std::string file;
    std::string target;  // a running program; empty: the captured ones
    bool json = false;
};

void ReplayEvents(const ReplayRequest& inRequest);

void ShowStatus(bool inJson);
void ShowMedia(bool inJson);
void ShowDrives(bool inJson);
void ShowProcesses(bool inJson);
// These, then each that comes or goes, until Ctrl-C.
void WatchProcesses(bool inJson);
void ShowVolumes(bool inJson);

// Of an application: its signature, name, PID or path.
void ShowDictionary(const std::string& inApplication, bool inJson);

void ShowInfo(const std::string& inPath, bool inJson);

void RequestBlank(bool inJson);
void Eject(bool inJson);

enum class Mode { kServer, kSimulation };

// Without `inOn` only tells how the mode stands.
void ShowOrSetMode(Mode inMode, std::optional<bool> inOn, bool inJson);

}  // namespace cli
