#pragma once

#include "controller.h"
#include "eeprom_file.h"
#include "frame_reader.h"
#include "server_options.h"

#include <chrono>
#include <csignal>
#include <cstdint>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace marlune::sim {

// Serves one Controller on TCP and, if asked, on a pseudo-terminal. A request is
// the command bytes ended by CR; a reply is the reply bytes and 0x04. The
// controller runs on the real steady clock.
class SimServer final {
public:
    explicit SimServer(ServerOptions options);
    ~SimServer();
    SimServer(const SimServer&) = delete;
    SimServer& operator=(const SimServer&) = delete;

    // Opens the endpoints and prints one line for each; false and why not.
    bool start(std::ostream& out, std::string& error);
    // Serves until asked to stop, idle for too long, or past its time.
    void run(const volatile std::sig_atomic_t& stopRequested);

private:
    struct Link {
        int fd = -1;
        bool socket = true;
        FrameReader reader;
        std::string outbox;
        std::size_t held = 0;       // bytes of slow replies not yet in the outbox
        std::int64_t lastHeard = 0; // when a byte last came in, or when it was accepted
        std::int64_t exchanges = 0;
        bool dead = false; // dropped by the failure mode: no more answers
        bool closeWhenSent = false;
    };
    struct Pending {
        std::int64_t due = 0;
        int link = 0;
        std::string bytes;
    };

    std::int64_t elapsedMicros() const;
    void acceptClients(std::int64_t now);
    bool readFrom(int id, Link& link, std::int64_t now);
    // Answers the commands read so far while the client takes its replies.
    void serve(int id, Link& link, std::int64_t now);
    void answer(int id, Link& link, const FrameReader::Frame& frame, std::int64_t now);
    bool flush(Link& link);
    void closeLink(int id, std::int64_t now);
    void sendDueReplies(std::int64_t now);
    int pollTimeoutMs(std::int64_t now) const;
    // Saves the EEPROM to its file after a store; a failure is told on standard error.
    void keepEeprom();

    ServerOptions options_;
    Controller controller_;
    std::optional<EepromFile> eepromFile_; // --eeprom: kept between runs
    std::chrono::steady_clock::time_point started_;
    int listener_ = -1;
    int ptySlave_ = -1;
    int ptyId_ = 0;
    std::map<int, Link> links_; // by id; the pseudo-terminal is one of them
    int nextId_ = 1;
    std::vector<Pending> pending_;
    std::int64_t lastActivity_ = 0;
    std::string ptyLinkMade_;
};

} // namespace marlune::sim
