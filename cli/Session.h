// A session with the recorder for the length of one command: a recorder that this command launched
// is told to quit at the end.
#pragma once

namespace cli {

class Session {
  public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
};

}  // namespace cli
