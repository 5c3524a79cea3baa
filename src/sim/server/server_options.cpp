#include "server_options.h"

#include "controller.h"

#include <charconv>
#include <cstdlib>

namespace marlune::sim {

namespace {

template <typename Number>
bool ParseNumber(const std::string& text, Number& value)
{
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return !text.empty() && ec == std::errc() && end == text.data() + text.size();
}

bool ParseSeconds(const std::string& text, double& seconds) { return ParseNumber(text, seconds) && seconds >= 0; }

bool ParseFailure(const std::string& mode, FailureModes& failures)
{
    if (mode == "no-reply")
        failures.noReply = true;
    else if (mode == "garbage")
        failures.garbageReply = true;
    else if (mode == "no-terminator")
        failures.noTerminator = true;
    else if (mode.rfind("drop-after=", 0) == 0)
        return ParseNumber(mode.substr(11), failures.dropAfterExchanges) && failures.dropAfterExchanges >= 0;
    else if (mode.rfind("slow=", 0) == 0)
        return ParseNumber(mode.substr(5), failures.slowReplyMs) && failures.slowReplyMs >= 0;
    else
        return false;
    return true;
}

} // namespace

bool ParseServerOptions(const std::vector<std::string>& args, ServerOptions& options, std::string& error)
{
    options.port = kDefaultTcpPort;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const auto next = [&](std::string& value) {
            if (i + 1 >= args.size()) {
                error = arg + " needs a value";
                return false;
            }
            value = args[++i];
            return true;
        };
        std::string value;
        if (arg == "--help" || arg == "-h") {
            options.help = true;
        } else if (arg == "--pty") {
            options.pty = true;
        } else if (arg == "--no-tcp") {
            options.tcp = false;
        } else if (arg == "--port") {
            if (!next(value) || !ParseNumber(value, options.port)) {
                error = error.empty() ? "--port needs a number from 0 to 65535" : error;
                return false;
            }
        } else if (arg == "--bind") {
            if (!next(options.bindAddress))
                return false;
        } else if (arg == "--eeprom") {
            if (!next(options.eepromFile))
                return false;
        } else if (arg == "--pty-link") {
            if (!next(options.ptyLink))
                return false;
            options.pty = true;
        } else if (arg == "--idle-exit") {
            if (!next(value) || !ParseSeconds(value, options.idleExitSeconds)) {
                error = error.empty() ? "--idle-exit needs seconds" : error;
                return false;
            }
        } else if (arg == "--exit-after") {
            double seconds = 0;
            if (!next(value) || !ParseSeconds(value, seconds)) {
                error = error.empty() ? "--exit-after needs seconds" : error;
                return false;
            }
            options.exitAfterSeconds = seconds;
        } else if (arg == "--fail") {
            if (!next(value) || !ParseFailure(value, options.failures)) {
                error = error.empty() ? "--fail takes no-reply, garbage, no-terminator, drop-after=N or slow=MS"
                                      : error;
                return false;
            }
        } else {
            error = "unknown option " + arg;
            return false;
        }
    }
    if (!options.tcp && !options.pty) {
        error = "--no-tcp needs --pty: there would be nothing to serve";
        return false;
    }
    return true;
}

std::string ServerUsage()
{
    return "usage: marlune-sim [--port N] [--bind ADDRESS] [--no-tcp] [--pty] [--pty-link PATH]\n"
           "                   [--idle-exit SECONDS] [--exit-after SECONDS] [--eeprom FILE]\n"
           "                   [--fail no-reply|garbage|no-terminator|drop-after=N|slow=MS]...\n"
           "Serves one simulated Marlune KV controller. A command ends with CR (LF is ignored);\n"
           "a reply ends with the byte 0x04. TCP listens on 127.0.0.1:"
           + std::to_string(kDefaultTcpPort)
           + " unless told otherwise; --port 0 picks a free port.\n"
             "One line per endpoint is printed at start-up: \"tcp ADDRESS:PORT\", \"pty PATH\".\n"
             "--eeprom FILE keeps the EEPROM in FILE: loaded at start as at power-up, saved after each STORE.\n";
}

} // namespace marlune::sim
