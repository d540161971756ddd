// The command line.
#pragma once

#include <cstdint>
#include <string>

#include "OrderPlan.h"

struct Endpoint {
    std::string address;  ///< dotted decimal
    std::uint16_t port = 0;
};

/// The defaults match a viewer with its default ports on the same machine.
struct Options {
    Endpoint to{"127.0.0.1", 10004};    ///< the viewer's receiver
    Endpoint bind{"127.0.0.1", 10014};  ///< local endpoint from which records are sent
    std::uint16_t listen = 10005;       ///< local port for feedback, on the address of `bind`
    double rate = 60.0;                 ///< datagrams per second
    int records = 1;                    ///< per datagram
    OrderPlan orders;
    double seconds = 0.0;  ///< length of the run; 0: until it is stopped or the orders end
    std::string csv;       ///< file for the feedback; empty for none
};

enum class ParseResult { RUN, HELP, WRONG };

/// Parses the command line into `options`. On WRONG, `error` describes the fault in one line.
ParseResult parseOptions(int argc, char** argv, Options& options, std::string& error);

extern const char* const USAGE;
