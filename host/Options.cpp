// Parses the command line: every option has a value, as "--name value" or "--name=value".
#include "Options.h"

#include <arpa/inet.h>

#include <charconv>
#include <cmath>
#include <functional>
#include <map>

#include "Records.h"

const char* const USAGE =
    "usage: flyhost [--to IP:PORT] [--bind IP:PORT] [--listen PORT] [--rate HZ] [--records N] [--orders LIST]\n"
    "               [--seconds S] [--csv FILE]\n"
    "\n"
    "A flight-simulation host: sends records to a viewer, checks the feedback and prints what came, once a second.\n"
    "\n"
    "  --to IP:PORT    the viewer's receiver (127.0.0.1:10004)\n"
    "  --bind IP:PORT  where records are sent from (127.0.0.1:10014); for a viewer on another machine give this\n"
    "                  machine's address there, or 0.0.0.0\n"
    "  --listen PORT   where feedback is expected, on the address of --bind (10005)\n"
    "  --rate HZ       datagrams a second (60)\n"
    "  --records N     records to a datagram, 1 to 606 (1)\n"
    "  --orders LIST   orders of the datagrams, separated by commas: V is one datagram, VxN is N of them, V* goes on\n"
    "                  until the end, what follows it is sent at the end (1,2*,0)\n"
    "  --seconds S     length of the run; without it until the orders end or the program is stopped\n"
    "  --csv FILE      writes every feedback record to a file\n"
    "\n"
    "Latency is the time from sending a datagram to the first feedback that arrives after it. Feedback names no "
    "record,\n"
    "so it may have been on its way already; datagrams without feedback within a second do not count.\n"
    "\n"
    "Exit status: 0 feedback came, 1 none came or a failure, 2 wrong usage. SIGINT and SIGTERM end the run with order "
    "0.\n";

namespace {

template <class T>
bool parseNumber(const std::string& text, T& out) {
    const char* end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, out);
    return error == std::errc() && at == end;
}

bool parsePort(const std::string& text, std::uint16_t& out, int lowest) {
    return parseNumber(text, out) && out >= lowest;
}

bool parseEndpoint(const std::string& text, Endpoint& out, int lowestPort) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) return false;
    out.address = text.substr(0, colon);
    in_addr address{};
    return inet_pton(AF_INET, out.address.c_str(), &address) == 1 &&
           parsePort(text.substr(colon + 1), out.port, lowestPort);
}

bool parseReal(const std::string& text, double& out, double lowest, double highest) {
    return parseNumber(text, out) && std::isfinite(out) && out >= lowest && out <= highest;
}

using Reader = std::function<bool(const std::string&)>;

std::map<std::string, Reader> makeReaders(Options& o) {
    return {{"--to", [&](const std::string& v) { return parseEndpoint(v, o.to, 1); }},
            {"--bind", [&](const std::string& v) { return parseEndpoint(v, o.bind, 0); }},
            {"--listen", [&](const std::string& v) { return parsePort(v, o.listen, 0); }},
            {"--rate", [&](const std::string& v) { return parseReal(v, o.rate, 0.01, 1e5); }},
            {"--records",
             [&](const std::string& v) {
                 return parseNumber(v, o.records) && o.records >= 1 && o.records <= MAX_RECORDS_PER_DATAGRAM;
             }},
            {"--orders", [&](const std::string& v) { return o.orders.parse(v); }},
            {"--seconds", [&](const std::string& v) { return parseReal(v, o.seconds, 0.001, 1e9); }},
            {"--csv", [&](const std::string& v) {
                 o.csv = v;
                 return !v.empty();
             }}};
}

}  // namespace

ParseResult parseOptions(int argc, char** argv, Options& options, std::string& error) {
    options.orders.parse("1,2*,0");
    const auto readers = makeReaders(options);
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--help" || argument == "-h") return ParseResult::HELP;
        const std::size_t equals = argument.find('=');
        const auto reader = readers.find(argument.substr(0, equals));
        if (reader == readers.end()) return error = "unknown option " + argument, ParseResult::WRONG;
        if (equals == std::string::npos && i + 1 == argc)
            return error = argument + " needs a value", ParseResult::WRONG;
        const std::string value = equals == std::string::npos ? argv[++i] : argument.substr(equals + 1);
        if (!reader->second(value)) return error = reader->first + ": bad value \"" + value + "\"", ParseResult::WRONG;
    }
    return ParseResult::RUN;
}
